// SPDX-License-Identifier: Apache-2.0
#include "apoyo/configuracion.h"
#include "config/driver.h"
#include "config/planilla.h"
#include "platform/epoll/sistema.h"
#include "text/windows1252.h"

#include <gtest/gtest.h>

#include <array>

namespace kv {
namespace {

ListasDeConfiguracion listasDe(const std::string& ini) {
    ListasDeConfiguracion listas;
    Problemas problemas;
    leerDriverDeTexto(ini, "D.ini", listas, problemas);
    EXPECT_TRUE(problemas.ninguno()) << problemas.lista()[0].que;
    return listas;
}

/// The problems, each as "row: what".
std::vector<std::string> malas(const std::string& planilla) {
    ListasDeConfiguracion listas;
    Problemas problemas;
    leerPlanilla(planilla, "p.csv", listas, problemas);
    std::vector<std::string> todas;
    for (const Problema& p : problemas.lista())
        todas.push_back(std::to_string(p.linea) + ": " + p.que);
    return todas;
}

/// What the file and its table must agree in.
void igualesTrasIrYVolver(const std::string& ini) {
    const ListasDeConfiguracion listas = listasDe(ini);
    const std::string planilla = planillaDe(listas);
    ListasDeConfiguracion vueltas;
    Problemas problemas;
    leerPlanilla(planilla, "p.csv", vueltas, problemas);
    ASSERT_TRUE(problemas.ninguno()) << problemas.lista()[0].que;
    EXPECT_EQ(planillaDe(vueltas), planilla);
    // The table has every field of the records: what is the same in it is the same.
    EXPECT_EQ(planillaDe(listasDe(iniDe(vueltas))), planilla);
}

} // namespace

TEST(Planilla, IdaYVueltaSinPerdida) {
    ArchivosReales archivos;
    for (const char* planta : {"planta-chica", "planta-50-estaciones"})
        igualesTrasIrYVolver(*archivos.leer(std::string(KV_FUENTES) + "/examples/" + planta +
                                                "/DRIVER_KV2200_Config.ini",
                                            1 << 20));
    // Texts and numbers that a table or the file has its own meaning for.
    std::string raras = Configuracion()
                            .puerto({"0.001", "0", "31536000"})
                            .estacion(-3, "caldera", 0)
                            .bloque(-3, "0a", "0.333333333333333", false, 7, 10'000)
                            .bloque(-3, "\" ;\t,\"", "0")
                            .puerto()
                            .estacion(1, "fe80::1%eth0", 99, " 0502 ")
                            .texto();
    raras.insert(raras.find("Bloque0_PLC"),
                 windows1252DesdeUtf8("Bloque0_Bloque=\"Ñandú; \"nivel\", 3 ½ \"\r\n"));
    igualesTrasIrYVolver(raras);
    EXPECT_NE(planillaDe(listasDe(raras)).find(";0,333333333333333;"), std::string::npos);
}

TEST(Planilla, LlevaYTraeLasDescripciones) {
    ListasDeConfiguracion listas = listasDe(Configuracion()
                                                .puerto()
                                                .estacion(1, "10.0.0.1", 1)
                                                .bloque(1, "0A", "1", true, 0, 2)
                                                .bloque(1, "A", "1")
                                                .texto());
    // A block's own, its second register's, a bit's, and that of what nobody has configured.
    const std::vector<std::array<std::string, 3>> todas{{"1.1.A", "Caudal; \"norte\"", "m³/h"},
                                                        {"1.1.0b", "Resistencia", "kΩ"},
                                                        {"1.1.0A.3", "Bomba en marcha", ""},
                                                        {"7.2.FF", "Nadie", "%"}};
    for (const auto& [direccion, texto, unidad] : todas)
        listas.descripciones.poner(direccion, {texto, unidad});
    const std::string planilla = planillaDe(listas);
    ListasDeConfiguracion vueltas;
    Problemas problemas;
    leerPlanilla(planilla, "p.csv", vueltas, problemas);
    ASSERT_TRUE(problemas.ninguno()) << problemas.lista()[0].que;
    EXPECT_EQ(planillaDe(vueltas), planilla);
    EXPECT_TRUE(vueltas.hayDescripciones);
    for (const auto& [direccion, texto, unidad] : todas) {
        const Descripcion* d = vueltas.descripciones.de(direccion);
        ASSERT_NE(d, nullptr) << direccion;
        EXPECT_EQ(d->texto, texto);
        EXPECT_EQ(d->unidad, unidad);
    }
    // A table without the column does not say that there are no descriptions.
    leerPlanilla("tipo;puerto\npuerto;1\n", "p.csv", vueltas, problemas);
    EXPECT_FALSE(vueltas.hayDescripciones);
    EXPECT_EQ(malas("tipo;puerto;PLC;StarAdrees;descripcion;unidad\n"
                    "variable;1;1;10;uno\nvariable;1;1;010;dos\nvariable;1;1;10.16;bit\n"
                    "variable;1;1;11;x;" +
                    std::string(21, 'x') + "\nvariable;;1;12;\xC3\xA1\n"),
              (std::vector<std::string>{"3: columna StarAdrees: \"1.1.010\" ya tiene descripción",
                                        "4: columna StarAdrees: \"1.1.10.16\" no es "
                                        "puerto.PLC.registro, ni con bit",
                                        "5: columna unidad: tiene más de 20 caracteres",
                                        "6: columna puerto: falta"}));
}

TEST(Planilla, LaQueOtroProgramaGuardo) {
    const std::string planilla = "Scantime,TIPO,Puerto,plc,Ip,PuertoTCP,Indice,StarAdrees\n"
                                 ",Puerto,1\n\n"
                                 ",estación,1,4,10.0.0.1,502,4,\n"
                                 "\"0,5\",BLOQUE,1,4,,,,\"1F\"\n";
    ListasDeConfiguracion listas;
    for (const std::string& t : {planilla, windows1252DesdeUtf8(planilla)}) {
        Problemas problemas;
        leerPlanilla(t, "p.csv", listas, problemas);
        ASSERT_TRUE(problemas.ninguno()) << problemas.lista()[0].que;
        ASSERT_EQ(listas.bloques.size(), 1U);
        EXPECT_EQ(listas.bloques[0].scanSegundos, 0.5);
        EXPECT_EQ(listas.bloques[0].direccion, "1F");
        EXPECT_EQ(listas.lineasDeBloques[0], 5U);
        EXPECT_EQ(listas.puertos[0].tiempoFuera,
                  5); // what it does not have is as the driver has it
    }
}

TEST(Planilla, LoQueEstaMalConFilaYColumna) {
    using Lineas = std::vector<std::string>;
    EXPECT_EQ(malas("tipo;puerto;ScanTme\n"),
              Lineas{"1: \"ScanTme\" no es una columna conocida: ¿es ScanTime?"});
    EXPECT_EQ(malas(""), Lineas{"1: falta la columna tipo"});
    EXPECT_EQ(malas("\xFF\xFEt\0i"), Lineas{"1: el archivo está guardado como UTF-16"});
    EXPECT_EQ(
        malas("tipo;puerto;PLC;Ip;PuertoTCP;Indice;ScanTime;StarAdrees;ActiveDefault\n"
              "puerto;1\npuerto;1\nbloqe;1\nestacion;2;1;;502;1,5\n"
              "bloque;1;1;;;;rápido;日;2\nbloque;1;;;;;\"1\";\"dos\nrenglones\"\n"),
        (Lineas{
            "3: columna puerto: 1 está repetido",
            "4: columna tipo: \"bloqe\" no es puerto, estacion, bloque ni variable: ¿es bloque?",
            "5: columna puerto: ninguna fila de antes es el puerto 2",
            "5: columna Indice: 1.5 no es un entero de -32768 a 32767", "5: columna Ip: falta",
            "6: columna StarAdrees: \"?\" tiene letras que Windows-1252 no tiene",
            "6: columna ScanTime: \"rápido\" no es un número",
            "6: columna ActiveDefault: 2 no es 0 ni 1", "7: columna PLC: falta",
            "7: columna StarAdrees: tiene más de un renglón"}));
    EXPECT_EQ(malas("tipo;puerto;StarAdrees\npuerto;1\nbloque;1;\"sin cerrar").size(), 2U);
    // Not every spreadsheet ends its last line, but all of them write its cells.
    EXPECT_EQ(malas("puerto;ScanTime;tipo;TIME_OUT;;\n1;;puerto;2"), Lineas{});
    EXPECT_EQ(malas("puerto;ScanTime;tipo;TIME_OUT\n1;;puerto\n1;;variable"),
              (Lineas{"3: la última línea no termina y le faltan celdas: la tabla está cortada"}));
}

} // namespace kv
