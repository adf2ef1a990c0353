// SPDX-License-Identifier: Apache-2.0
#include "config/exportacion.h"
#include "platform/simulated/archivos_simulados.h"
#include "text/texto.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

/// A line of an export, written with "|" for the delimiter.
std::string conDelimitadores(std::string_view t) { return reemplazarSinCaja(t, "|", kDelimitador); }

const std::string kCabecera = "uno\r\ndos\r\n|puertos:inicio|\r\n";
const std::string kPuerto = "|Numero:1|DEFAULT_SCAN_TIME:6|MIN_RECONECCION:31|READ_AFTER_WRITE:1|"
                            "REINTENTOS_MAX:4|TIME_OUT:7|TIPO_PLC_DEFAULT:8|\r\n";
const std::string kEsclavo = "|EsclavoNumero:1|Digitos:4|indice:2|Ip:192.168.0.10|puerto:502|\r\n";
const std::string kBloque = "|Bloque:1|plc:1|Quantity:3|ScanTime:2|StarAdrees:1F|nivel:1|"
                            "activo_Si_o_No_X_defecto:1|\r\n";

std::string puerto(const std::string& esclavos, const std::string& bloques) {
    return kPuerto + "|esclavos:inicio|\r\n" + esclavos + "|esclavos:fin|\r\n|bloques:inicio|\r\n" +
           bloques + "|bloques:fin|\r\n";
}

struct Lectura {
    ListasDeConfiguracion listas;
    Problemas problemas;
    int mensajes = 0;
    [[nodiscard]] std::string cuenta() const {
        return std::to_string(listas.puertos.size()) + "/" +
               std::to_string(listas.estaciones.size()) + "/" +
               std::to_string(listas.bloques.size()) + (mensajes != 0 ? " error" : "");
    }
};

Lectura leer(const std::string& contenido) {
    Lectura l;
    leerProyectoDeTexto(conDelimitadores(contenido), "P", l.listas, l.problemas,
                        [&l](std::string_view t) {
                            EXPECT_EQ(t, "Error al abrir el archivo");
                            ++l.mensajes;
                        });
    return l;
}

std::string con(std::string texto, std::string_view viejo, std::string_view nuevo) {
    return texto.replace(texto.find(viejo), viejo.size(), nuevo);
}

} // namespace

TEST(Exportacion, CamposDeUnaLinea) {
    const auto ip = [](const std::string& campos) {
        const auto l = leer(
            kCabecera + puerto("|EsclavoNumero:1|Digitos:4|indice:2" + campos + "\r\n", kBloque));
        return l.listas.estaciones.empty() ? "(error)" : l.listas.estaciones[0].ip;
    };
    EXPECT_EQ(ip("|Numero:1|IP:10.0.0.1|"), "10.0.0.1");
    EXPECT_EQ(ip("|OtraIp:5|Ip:1|"), "1");
    EXPECT_EQ(ip("|Ip:a:b|Ip:otra|"), "a:b");
    EXPECT_EQ(ip("|Numero:1|"), "");
    EXPECT_EQ(ip("|Ip:||x:1|"), "");
    EXPECT_EQ(ip("|Numero:1|Ip:10"), "(error)");
    // The delimiter's own letters may be small or capital.
    EXPECT_EQ(ip("\xE4\xA7\xC6\xC3Ip:1\xC4\xA7\xE6\xE3"), "1");
    EXPECT_TRUE(camposDeExportacion("\xA7\xE6\xE3\xC4\xA7\xE6").empty());
}

TEST(Exportacion, RegistrosCompletos) {
    const auto l = leer(kCabecera + puerto(kEsclavo, kBloque) + "|puertos:fin|");
    EXPECT_EQ(l.cuenta(), "1/1/1");
    EXPECT_TRUE(l.problemas.ninguno());
    const Puerto& p = l.listas.puertos[0];
    EXPECT_EQ(std::tuple(p.numero, p.scanPorDefecto, p.segReconeccion, p.leerDespuesDeEscribir,
                         p.reintentosMax, p.tiempoFuera, p.tipoPlcPorDefecto),
              std::tuple(1, 6, 31, true, 4, 7, 8));
    const Estacion& e = l.listas.estaciones[0];
    EXPECT_EQ(std::tuple(e.numero, e.digitos, e.indice, e.puerto), std::tuple(1, 4, 2, 1));
    EXPECT_EQ(e.ip + ":" + e.puertoTCP, "192.168.0.10:502");
    const ConfiguracionDeBloque& b = l.listas.bloques[0];
    EXPECT_EQ(std::tuple(b.nombre, b.plc, b.cantidad, b.scanSegundos, b.direccion, b.nivel,
                         b.activoPorDefecto, b.puerto, b.numeroConfigurado),
              std::tuple("1", 1, 3, 2, "1F", 1, true, 1, 0));
    EXPECT_EQ(l.listas.lineasDeBloques[0], 9U);
}

TEST(Exportacion, VariosPuertosYSeccionesAusentes) {
    const std::string dos = con(kPuerto, "Numero:1", "Numero:2");
    const auto l = leer(kCabecera + puerto(kEsclavo + kEsclavo, kBloque) + "separa\r\n" +
                        con(puerto(kEsclavo, kBloque + kBloque), kPuerto, dos) + "|puertos:fin|");
    EXPECT_EQ(l.cuenta(), "2/3/3");
    EXPECT_EQ(l.listas.estaciones[1].puerto, 1);
    EXPECT_EQ(l.listas.estaciones[2].puerto, 2);
    EXPECT_EQ(l.listas.bloques[2].puerto, 2);
    // A line in the place of a mark is dropped; in the place of "bloques:inicio" it also separates.
    EXPECT_EQ(leer(kCabecera + kPuerto + "x\n|bloques:inicio|\n" + kBloque +
                   "|bloques:fin|\n|puertos:fin|")
                  .cuenta(),
              "1/0/1");
    EXPECT_EQ(leer(kCabecera + kPuerto + "x\ny\n" + kPuerto + "x\n|puertos:fin|\n").cuenta(),
              "2/0/0");
}

TEST(Exportacion, SinMarcaInicialNoHayConfiguracionNiMensaje) {
    for (const char* tercera :
         {"|Puertos:inicio|", "|puertos:inicio| ", "puertos:inicio", "", "|puertos:fin|"}) {
        const auto l = leer(std::string("a\r\nb\r\n") + tercera + "\r\n" +
                            puerto(kEsclavo, kBloque) + "|puertos:fin|");
        EXPECT_EQ(l.cuenta(), "0/0/0") << tercera;
        EXPECT_EQ(l.problemas.lista().size(), 1U);
        EXPECT_EQ(l.problemas.lista()[0].linea, 3U);
    }
    EXPECT_EQ(leer("").cuenta(), "0/0/0");
    EXPECT_EQ(leer("a\r\nb").cuenta(), "0/0/0 error");
    const auto utf8 = leer("a\nb\nÄ§æãpuertos:inicioÄ§æã\n");
    EXPECT_EQ(utf8.problemas.lista()[0].que,
              "el archivo está guardado como UTF-8 y debe ser Windows-1252");
}

TEST(Exportacion, UnErrorTerminaLaLecturaYDejaLoLeido) {
    const auto conBloque = [](std::string_view viejo, std::string_view nuevo) {
        return leer(kCabecera + puerto(kEsclavo, kBloque + con(kBloque, viejo, nuevo) + kBloque) +
                    "|puertos:fin|");
    };
    for (const auto& [viejo, nuevo] :
         std::vector<std::pair<const char*, const char*>>{{"plc:1", "plc:uno"},
                                                          {"Quantity:3|", ""},
                                                          {"Bloque:1", "Bloque:B1"},
                                                          {"defecto:1", "defecto:SI"},
                                                          {"defecto:1|", "defecto:1"}}) {
        const auto l = conBloque(viejo, nuevo);
        EXPECT_EQ(l.cuenta(), "1/1/1 error") << nuevo;
        EXPECT_EQ(l.mensajes, 1);
        ASSERT_EQ(l.problemas.lista().size(), 1U);
        EXPECT_EQ(l.problemas.lista()[0].linea, 10U);
    }
    EXPECT_EQ(conBloque("defecto:1", "defecto:0").listas.bloques[1].activoPorDefecto, false);
    EXPECT_EQ(conBloque("defecto:1", "defecto:True").listas.bloques[1].activoPorDefecto, false);
    EXPECT_EQ(leer(kCabecera + puerto(con(kEsclavo, "indice:2", "indice:32768"), kBloque)).cuenta(),
              "1/0/0 error");
    const auto sinPuerto = leer(kCabecera + puerto(con(kEsclavo, "puerto:502|", ""), kBloque));
    EXPECT_EQ(sinPuerto.cuenta(), "1/1/1");
    EXPECT_EQ(sinPuerto.listas.estaciones[0].puertoTCP, "");
}

TEST(Exportacion, ArchivosCortados) {
    const std::string todo = kCabecera + puerto(kEsclavo, kBloque) + "|puertos:fin|\r\n";
    const auto hasta = [&todo](std::string_view donde) {
        const auto l = leer(todo.substr(0, todo.find(donde) + donde.size()));
        EXPECT_EQ(l.problemas.lista().size(), 1U) << donde;
        return l.cuenta();
    };
    EXPECT_EQ(hasta("PLC_DEFAULT:8|"), "0/0/0 error");
    EXPECT_EQ(hasta("esclavos:inicio|\r\n"), "1/0/0 error");
    EXPECT_EQ(hasta("puerto:502|\r\n"), "1/0/0 error"); // the last line is not used
    EXPECT_EQ(hasta("bloques:inicio|\r\n"), "1/1/0");
    EXPECT_EQ(hasta("defecto:1|"), "1/1/0");
    EXPECT_EQ(hasta("bloques:fin|\r\n"), "1/1/1");
    for (std::size_t n = 0; n <= todo.size(); ++n)
        EXPECT_LE(leer(todo.substr(0, n)).mensajes, 1);
}

TEST(Exportacion, TextosLargosYLineasDeCienMegabytes) {
    const std::string largo(100'000'000, '\xE1');
    const auto l =
        leer(kCabecera + puerto(con(kEsclavo, "192.168.0.10", largo), kBloque) + "|puertos:fin|");
    EXPECT_EQ(l.cuenta(), "1/1/1");
    EXPECT_EQ(l.listas.estaciones[0].ip.size(), 508U); // 254 characters, in UTF-8
    EXPECT_EQ(l.problemas.lista().size(), 1U);
}

TEST(Exportacion, EnPorcionesEsLaMisma) {
    std::string bloques;
    for (int i = 0; i < 40; ++i)
        bloques += con(kBloque, "1F", std::to_string(i));
    const std::string entera = kCabecera + puerto(kEsclavo, bloques) + "|puertos:fin|";
    for (const std::string& texto : {entera, entera.substr(0, entera.size() / 2), std::string()}) {
        const Lectura deUnaVez = leer(texto);
        Lectura l;
        ArchivosSimulados archivos;
        archivos.poner("P", conDelimitadores(texto));
        const MensajeDeError mensaje = [&l](std::string_view) { ++l.mensajes; };
        Porciones deAUno(1);
        Trabajo t =
            leerConfiguracionDeProyecto(archivos, "P", l.listas, l.problemas, mensaje, deAUno);
        std::size_t veces = 1;
        while (!deAUno.hacer(t))
            ++veces;
        EXPECT_GE(veces, l.listas.bloques.size());
        EXPECT_EQ(l.cuenta(), deUnaVez.cuenta());
        ASSERT_EQ(l.problemas.lista().size(), deUnaVez.problemas.lista().size());
        for (std::size_t i = 0; i < l.problemas.lista().size(); ++i)
            EXPECT_EQ(textoDeProblema(l.problemas.lista()[i]),
                      textoDeProblema(deUnaVez.problemas.lista()[i]));
    }
}

} // namespace kv
