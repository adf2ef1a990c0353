// SPDX-License-Identifier: Apache-2.0
// What the check before the first start finds.

#include "apoyo/configuracion.h"
#include "apoyo/estaciones.h"
#include "config/comprobacion.h"
#include "config/desconocidas.h"
#include "config/driver.h"
#include "config/informe_json.h"
#include "config/referencia.h"
#include "platform/epoll/sistema.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"
#include "text/parecido.h"
#include "text/windows1252.h"

#include <gtest/gtest.h>

#include <fstream>

namespace kv {
namespace {

struct ComprobacionPrueba : testing::Test {
    ArchivosSimulados archivos;
    Ajustes ajustes{archivos, "P"};
    std::string configuracion =
        Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "60").texto();

    Revision con(const std::string& deAjustes) {
        archivos.poner("P\\sis_config.ini", deAjustes);
        archivos.poner("P\\DRIVER_KV2200_Config.ini", configuracion);
        ajustes.vueltaNueva();
        return revisar(ajustes);
    }
    /// The problems without their file.
    static std::vector<std::string> que(const Revision& r) {
        std::vector<std::string> lista;
        for (const Problema& p : r.configuracion.problemas.lista())
            lista.push_back(std::to_string(p.linea) + ": " + p.que);
        return lista;
    }
    using Lineas = std::vector<std::string>;
};

/// What was read of a configuration, and what was asked of its stations.
struct SondeoPrueba : testing::Test {
    BucleSimulado bucle;
    Revision r;
    bool termino = false;

    void conPlanta(const std::string& texto) {
        ConfiguracionLeida c;
        leerDriverDeTexto(texto, "D.ini", c.listas, c.problemas);
        r = revisarListas(std::move(c), 100);
        ASSERT_TRUE(r.configuracion.problemas.ninguno());
        SondeoDeAlcance sondeo(bucle, r.configuracion.listas, r.validacion, r.pausaMs);
        sondeo.empezar([this] { termino = true; });
        bucle.avanzar(120'000);
        r.alcance = sondeo.resultados();
        revisarAlcance(r.configuracion.listas, r.validacion, r.alcance, r.configuracion.problemas);
    }
};

} // namespace

TEST(Parecido, LaMasCercanaYNingunaSiTodasQuedanLejos) {
    const std::vector<std::string_view> nombres{"Numero", "Ip", "Puerto", "Escucha_Solo_Lectura"};
    EXPECT_EQ(masParecido("Escucha_Solo_Lectur", nombres), "Escucha_Solo_Lectura");
    EXPECT_EQ(masParecido("PUETRO", nombres), "Puerto"); // swapped letters are one fault
    EXPECT_EQ(masParecido("numro", nombres), "Numero");
    EXPECT_EQ(masParecido("Tiempo", nombres), "");
    EXPECT_EQ(masParecido(std::string(100'000, 'x'), nombres), "");
    EXPECT_EQ(masParecido("", nombres), "");
}

TEST_F(ComprobacionPrueba, LasDescripcionesYLoQueTienenMal) {
    archivos.poner("P\\descripciones.csv", windows1252DesdeUtf8("Dirección,descripcion\r\n"));
    EXPECT_EQ(que(con("[DRIVER_KV2200]\r\n")),
              (Lineas{"1: \"Dirección\" no es una columna conocida: ¿es direccion?",
                      "1: falta la columna direccion"}));
    archivos.poner("P\\descripciones.csv",
                   windows1252DesdeUtf8("unidad\tdescripcion\tdireccion\n°C\tTemperatura\t1.1.10\n"
                                        "\tAlarma\t1.1.010.15\n\tNadie\t1.1.11\n\tx\tcaldera\n"
                                        "\t\t\n\t\"dos\nrenglones\"\t1.1.10.1\n\tOtra\t1.1.10\n"
                                        "\tNo hex\t1.1.zz\n"));
    const Revision r = con("[DRIVER_KV2200]\r\n");
    EXPECT_EQ(que(r),
              (Lineas{"5: columna direccion: \"caldera\" no es puerto.PLC.registro, ni con bit",
                      "7: columna descripcion: tiene más de un renglón",
                      "8: columna direccion: \"1.1.10\" ya tiene descripción",
                      "9: columna direccion: \"1.1.zz\" no es puerto.PLC.registro, ni con bit",
                      "4: ningún bloque lee \"1.1.11\""}));
    const Descripciones& d = r.configuracion.listas.descripciones;
    ASSERT_NE(d.de("1.1.10"), nullptr);
    EXPECT_EQ(d.de("1.1.10")->texto, "Temperatura");
    EXPECT_EQ(d.de("1.1.10")->unidad, "°C");
    EXPECT_EQ(d.de("1.1.10.15")->texto, "Alarma");
    EXPECT_EQ(d.de("1.1.10.1"), nullptr);
    // However large a row is, it takes no more than its bound, and time for its length.
    archivos.poner("P\\descripciones.csv", "direccion;descripcion\n" + std::string(8 << 20, ';') +
                                               "\n" + std::string(4 << 20, ' ') + "x" +
                                               std::string(4 << 20, '"'));
    EXPECT_TRUE(con("[DRIVER_KV2200]\r\n").configuracion.listas.descripciones.ninguna());
}

TEST_F(ComprobacionPrueba, LasClavesYSeccionesDesconocidasDeLosAjustesConLaMasParecida) {
    const Revision r = con("[DRIVER_KV2200]\nTiempo_Entre_polleo=100\nVER=si\nIdioma=fr\n"
                           "OtraCosa=1\nsin igual\n[PROYECTO_PREDETERMINDO]\nRutaProyecto=x\n");
    EXPECT_EQ(que(r), (Lineas{"3: VER=\"si\" no es 0 ni 1", "4: Idioma=\"fr\" no es es-AR ni en-US",

                              "2: \"Tiempo_Entre_polleo\" no es una clave de [DRIVER_KV2200]: ¿es "
                              "Tiempo_Entre_poleo?",
                              "5: \"OtraCosa\" no es una clave de [DRIVER_KV2200]",
                              "6: \"sin igual\" no es una clave: falta el \"=\"",
                              "7: \"PROYECTO_PREDETERMINDO\" no es una sección conocida: ¿es "
                              "PROYECTO_PREDETERMINADO?"}));
    EXPECT_EQ(r.resultado(), 1);
    EXPECT_EQ(con("[DRIVER_KV2200]\nver=1\nIDIOMA_VENTANA=en\n").resultado(), 0);
}

TEST_F(ComprobacionPrueba, LoRepetidoQueNoCuenta) {
    const auto repetida = [](const std::string& linea, const std::string& que,
                             const std::string& vale) {
        return linea + ": " + que + " está repetida: vale la de la línea " + vale;
    };
    const Revision r = con("[DRIVER_KV2200]\nTiempo_Entre_poleo=100\nVER=0\n"
                           "tiempo_entre_POLEO=200\n[PROYECTO_PREDETERMINADO]\n"
                           "[driver_kv2200]\nVER=0\n");
    EXPECT_EQ(que(r), (Lineas{repetida("4", "\"tiempo_entre_POLEO\"", "2"),
                              repetida("6", "la sección \"driver_kv2200\"", "1")}));
    EXPECT_EQ(r.pausaMs, 100);
    configuracion += "TIME_OUT=9\nbloque0_nivel=2\n[PUERTO1]\nTIMEOUT=1\n"
                     "[CONFIG]\nCANT_PUERTOS=2\n";
    const auto linea = [this](std::string_view texto) {
        const auto hasta =
            configuracion.begin() + static_cast<std::ptrdiff_t>(configuracion.rfind(texto));
        return std::to_string(std::count(configuracion.begin(), hasta, '\n') + 1);
    };
    EXPECT_EQ(que(con("[DRIVER_KV2200]\n")),
              (Lineas{repetida(linea("[CONFIG]"), "la sección [CONFIG]", "1"),
                      repetida(linea("[PUERTO1]"), "la sección [PUERTO1]", "3"),
                      repetida(linea("TIME_OUT=9"), "TIME_OUT", linea("TIME_OUT=5")),
                      repetida(linea("bloque0_nivel"), "Bloque0_Nivel", linea("Bloque0_Nivel"))}));
}

TEST_F(ComprobacionPrueba, SinNumeroDePuertoSeDicePrimero) {
    configuracion = "[CONFIG]\nCANT_PUERTOS=2\n[PUERTO1]\nNUMERO=1\nCantEsclavos=0\nCantBloques=0\n"
                    "[PUERTO2]\nCantEsclavos=0\nCantBloques=0\n";
    EXPECT_EQ(que(con("[DRIVER_KV2200]\n")),
              (Lineas{"7: falta NUMERO en [PUERTO2]", "7: el puerto 1 está repetido"}));
}

TEST_F(ComprobacionPrueba, LasDeLaConfiguracionUnaVezCadaUna) {
    configuracion = "[CONFIG]\nCANT_PUERTOS=1\nCANT_PUERTO=1\n[PUERTO1]\nNUMERO=1\nTIMEOUT=3\n"
                    "CantEsclavos=1\nEsclavo0_Numero=1\nEsclavo0_Indice=1\nEsclavo0_Pverto=502\n"
                    "CantBloques=2\n";
    for (const std::string b : {"Bloque0_", "bloque1_"}) {
        const std::string registro = b == "Bloque0_" ? "10" : "11";
        configuracion.append(b + "PLC=1\n" + b + "Quantity=1\n" + b + "StarAdrees=" + registro)
            .append("\n" + b + "ScanTime=60\n" + b + "ScamTime=1\n");
    }
    configuracion += "Bloque07_Nivel=5\n[PUERTO01]\nNUMERO=3\n[PUERTO40000]\nNUMERO=4\n";
    EXPECT_EQ(que(con("[DRIVER_KV2200]\n")),
              (Lineas{"3: \"CANT_PUERTO\" no es una clave de [CONFIG]: ¿es CANT_PUERTOS?",
                      "6: \"TIMEOUT\" no es una clave de un puerto: ¿es TIME_OUT?",

                      "10: \"Esclavo0_Pverto\" no es un dato de una estación: ¿es Puerto?",
                      "16: \"Bloque0_ScamTime\" no es un dato de un bloque (y 1 vez más): ¿es "
                      "ScanTime?",
                      "22: \"Bloque07_Nivel\" no es una clave de un puerto",
                      "23: \"PUERTO01\" no es una sección conocida: ¿es PUERTO1?",
                      "25: \"PUERTO40000\" no es una sección conocida"}));
}

TEST_F(ComprobacionPrueba, LasDeLaExportacion) {
    ArchivosReales reales;
    const std::string ejemplo = std::string(KV_FUENTES) + "/examples/planta-chica/";
    std::string exportada = *reales.leer(ejemplo + "Planta.KalmorKV2200_Conf", 1 << 20);
    Problemas problemas;
    const std::string archivo = "E";
    const auto revisarExportada = [&] {
        Porciones una;
        Trabajo todo = revisarNombresDeExportacion(exportada, archivo, problemas, una);
        una.hacer(todo);
    };
    revisarExportada();
    EXPECT_TRUE(problemas.ninguno()) << problemas.lista()[0].que;
    const auto cambiar = [&exportada](const std::string& de, const std::string& a) {
        for (auto i = exportada.find(de); i != std::string::npos; i = exportada.find(de, i))
            exportada.replace(i, de.size(), a);
    };
    cambiar("nivel:", "nivle:");
    cambiar("puerto:", "puertto:");
    revisarExportada();
    ASSERT_EQ(problemas.lista().size(), 2U);
    EXPECT_EQ(problemas.lista()[1].que,
              "\"nivle\" no es un dato de un bloque (y 19 veces más): ¿es nivel?");
    EXPECT_EQ(problemas.lista()[0].que,
              "\"puertto\" no es un dato de una estación (y 5 veces más): ¿es puerto?");
}

TEST_F(ComprobacionPrueba, UnaPuertaMalPuestaNoAtiendeALaPlanta) {
    Revision r = con("[DRIVER_KV2200]\nEscucha_Solo_Lectur=1\n");
    EXPECT_EQ(que(r), Lineas{"2: \"Escucha_Solo_Lectur\" no es una clave conocida: ¿es "
                             "Escucha_Solo_Lectura?"});
    EXPECT_EQ(r.resultado(), 2);
    EXPECT_NE(informeDe(r).find("la puerta queda cerrada"), std::string::npos);
    EXPECT_EQ(con("[DRIVER_KV2200]\nEscucha_Plazo_De_Login_Segundos=mil\n").resultado(), 2);
    r = con("[DRIVER_KV2200]\nEscucha_Solo_Lectura=no\nEscucha_Login_Antes_De_Todo=0\n");
    EXPECT_EQ(que(r), Lineas{"2: Escucha_Solo_Lectura=\"no\" no es 0 ni 1"});
    EXPECT_TRUE(r.escucha.soloLectura && !r.escucha.exigeLogin && r.resultado() == 1);
    // A setting of a client that is shut out by a list is a choice.
    EXPECT_EQ(con("[DRIVER_KV2200]\nEscucha_Clientes_Permitidos=10.0.0.9\n").resultado(), 0);
    EXPECT_EQ(con("").resultado(), 2); // no whole settings
    configuracion = "";
    EXPECT_EQ(con("[DRIVER_KV2200]\n").resultado(), 2); // nothing to read
}

TEST_F(ComprobacionPrueba, ElPresupuestoDeScansEnCifras) {
    Configuracion c;
    c.puerto().estacion(1, "10.0.0.1", 1).estacion(2, "10.0.0.2", 1);
    c.bloque(1, "10", "0.2", true, 16);
    c.bloque(1, "40", "0.1", false, 16).bloque(1, "60", "0"); // ask for nothing
    c.bloque(2, "10", "1").bloque(2, "11", "20", true, 3);
    configuracion = c.texto();
    const Revision r = con("[DRIVER_KV2200]\n");
    EXPECT_EQ(que(r), Lineas{"8: en \"10.0.0.1:502\" 16 bloques a 0,2 s piden 80 lecturas/s; la "
                             "pausa de 800 ms permite 1,2"});
    EXPECT_EQ(r.configuracion.problemas.lista()[0].consecuencia,
              "una vuelta completa tarda al menos 12,8 s");
    EXPECT_EQ(textoDePresupuesto(r.presupuestos[1], 800),
              "1 bloque a 1 s y 3 bloques a 20 s piden 1,1 lecturas/s; la pausa de 800 ms permite "
              "1,2");
    EXPECT_EQ(con("[DRIVER_KV2200]\nTiempo_Entre_poleo=12\n").resultado(), 0);
    EXPECT_EQ(con("[DRIVER_KV2200]\nTiempo_Entre_poleo=0\n").resultado(), 0); // no bound
}

TEST_F(SondeoPrueba, PreguntaUnaVezACadaEstacionYDiceQuienNoEsta) {
    Estaciones unas(bucle.red(), bucle.reloj());
    bucle.red().atender("10.0.0.1", 502, unas);
    bucle.red().enmudecer("10.0.0.3", 502);
    std::vector<int> pedidos;
    unas.demora = [&pedidos](const Solicitud& t) -> std::optional<double> {
        pedidos.push_back(t[1]);
        // The second answers when nobody waits any more: it must not pass for the third.
        if (t[1] == 2) return 5001;
        return t[1] == 3 ? std::nullopt : std::optional<double>(20);
    };
    Configuracion c;
    c.puerto().estacion(1, "10.0.0.1", 1).estacion(2, "10.0.0.1", 2).estacion(3, "10.0.0.1", 3);
    c.estacion(4, "10.0.0.1", 4).estacion(5, "10.0.0.2", 1).estacion(6, "10.0.0.3", 1);
    c.estacion(7, "10.0.0.1", 7);
    for (int plc = 1; plc <= 6; ++plc)
        c.bloque(plc, "10", "60");
    conPlanta(c.texto());
    ASSERT_TRUE(termino);
    EXPECT_EQ(pedidos, (std::vector<int>{1, 2, 3, 4})); // the seventh has nothing to ask for
    std::string informe;
    listarAlcance(r.configuracion.listas, r.validacion, r.alcance, informe);
    EXPECT_NE(informe.find("Alcance de 10.0.0.1:502: conecta\n  PLC 1: responde en 20 ms, registro "
                           "10 = "),
              std::string::npos)
        << informe;
    EXPECT_NE(informe.find("  PLC 2: no responde\n  PLC 3: no responde\n  PLC 4: responde en"),
              std::string::npos)
        << informe;
    EXPECT_NE(informe.find("  PLC 7: no tiene qué preguntarle\n"), std::string::npos) << informe;
    EXPECT_NE(informe.find("Alcance de 10.0.0.3:502: no conecta: no contesta en 5 s\n"),
              std::string::npos)
        << informe;
    EXPECT_EQ(r.configuracion.problemas.lista().size(), 4U); // two addresses, two stations
    EXPECT_EQ(r.resultado(), 1);
    EXPECT_NE(informeJsonDe(r).find("\"ip\":\"10.0.0.2\",\"puertoTCP\":\"502\",\"puerto\":1,"
                                    "\"bloques\":1,\"variables\":1,\"lecturasPedidas\":"
                                    "0.016666666666666666,\"lecturasPermitidas\":10,"
                                    "\"conecta\":false,"),
              std::string::npos)
        << informeJsonDe(r);
}

TEST_F(SondeoPrueba, VeinteMilDireccionesQueFallanEnseguida) {
    Configuracion c;
    c.puerto();
    for (int i = 0; i < 20'000; ++i)
        c.estacion(i, "10." + std::to_string(i / 250) + ".0." + std::to_string(i % 250), 1);
    for (int i = 0; i < 20'000; ++i)
        c.bloque(i, "10", "60");
    conPlanta(c.texto());
    EXPECT_TRUE(termino);
    EXPECT_EQ(r.configuracion.problemas.lista().size() + r.configuracion.problemas.demas(),
              20'000U);
}

/// Whoever changes a table takes the new text over: it is left beside the build.
TEST(Referencia, EsLaDeLasTablas) {
    ArchivosReales reales;
    const std::string archivo = std::string(KV_FUENTES) + "/docs/claves.md";
    const std::string nueva = std::string(KV_BIN) + "/../claves.md";
    const std::string texto = referenciaDeClaves();
    std::ofstream(nueva) << texto;
    EXPECT_TRUE(reales.leer(archivo, 1 << 20) == texto) << "cp " << nueva << " " << archivo;
}

} // namespace kv
