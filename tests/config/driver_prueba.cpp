// SPDX-License-Identifier: Apache-2.0
#include "config/driver.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

struct Lectura {
    ListasDeConfiguracion listas;
    Problemas problemas;
};

Lectura leer(std::string_view contenido) {
    Lectura l;
    leerDriverDeTexto(contenido, "D.ini", l.listas, l.problemas);
    return l;
}

std::string problemasDe(const Lectura& l) {
    std::string t;
    for (const Problema& p : l.problemas.lista())
        t += textoDeProblema(p) + "\n";
    return t;
}

std::string bloque(int n, const char* plc) {
    const std::string b = "Bloque" + std::to_string(n);
    return b + "_PLC=" + plc + "\n" + b + "_Quantity=1\n" + b + "_ScanTime=2\n";
}

} // namespace

TEST(Driver, EjemploCompleto) {
    const auto [listas, problemas] =
        leer("[CONFIG]\r\nCANT_PUERTOS=1\r\n[PUERTO1]\r\nNUMERO=1\r\nDEFAULT_SCAN_TIME=6\r\n"
             "READ_AFTER_WRITE=2\r\nREINTENTOS_MAX=4\r\nTIME_OUT=0,75\r\nTIPO_PLC_DEFAULT=8\r\n"
             "SEG_RECONECCION=40\r\nCantEsclavos=1\r\nEsclavo0_Numero=3\r\n"
             "Esclavo0_Ip=192.168.0.10\r\nEsclavo0_Puerto=5020\r\nEsclavo0_Indice=2\r\n"
             "Esclavo0_Digitos=4\r\nCantBloques=2\r\nBloque0_Bloque=A\xF1o\r\nBloque0_PLC=1\r\n"
             "Bloque0_Quantity=5\r\nBloque0_StarAdrees=0A\r\nBloque0_ScanTime=2.5\r\n"
             "Bloque0_Nivel=3\r\nBloque0_Numero=9\r\nBLOQUE1_plc=2\r\nBloque1_Quantity=1\r\n"
             "Bloque1_ScanTime=90\r\nBloque1_ActiveDefault=true\r\n");
    EXPECT_TRUE(problemas.ninguno());
    ASSERT_EQ(listas.puertos.size(), 1U);
    const Puerto& p = listas.puertos[0];
    EXPECT_EQ(p.numero, 1);
    EXPECT_EQ(p.scanPorDefecto, 6);
    EXPECT_FALSE(p.leerDespuesDeEscribir);
    EXPECT_EQ(p.reintentosMax, 4);
    EXPECT_EQ(p.tiempoFuera, 0.75) << "a decimal comma";
    EXPECT_EQ(p.tipoPlcPorDefecto, 8);
    EXPECT_EQ(p.segReconeccion, 40);
    const LineasDePuerto& l = listas.lineasDePuertos[0];
    EXPECT_EQ(
        std::tuple(l.numero, l.scanPorDefecto, l.reintentosMax, l.tiempoFuera, l.segReconeccion),
        std::tuple(4, 5, 7, 8, 10));
    ASSERT_EQ(listas.estaciones.size(), 1U);
    const Estacion& e = listas.estaciones[0];
    EXPECT_EQ(std::tuple(e.numero, e.indice, e.digitos, e.puerto), std::tuple(3, 2, 4, 1));
    EXPECT_EQ(e.ip + ":" + e.puertoTCP, "192.168.0.10:5020");
    EXPECT_EQ(listas.lineasDeEstaciones[0], 12U);
    ASSERT_EQ(listas.bloques.size(), 2U);
    const ConfiguracionDeBloque& b = listas.bloques[0];
    EXPECT_EQ(b.nombre, "Año");
    EXPECT_EQ(b.direccion, "0A");
    EXPECT_EQ(std::tuple(b.plc, b.cantidad, b.scanSegundos, b.nivel, b.numeroConfigurado),
              std::tuple(1, 5, 2.5, 3, 9));
    EXPECT_TRUE(b.activoPorDefecto);
    EXPECT_FALSE(listas.bloques[1].activoPorDefecto); // only "1" enables
    EXPECT_EQ(listas.bloques[1].nivel, 0);
    EXPECT_EQ(listas.lineasDeBloques[1], 25U);
}

TEST(Driver, LasEntradasSeNumeranATravesDeLasSecciones) {
    // The sections stand in the file in another order than their ordinals, the entries too.
    const auto l = leer("[PUERTO2]\nNUMERO=2\nCantEsclavos=1\nEsclavo2_Numero=12\nCantBloques=2\n" +
                        bloque(4, "14") + bloque(3, "13") +
                        "[CONFIG]\nCANT_PUERTOS=2\n[PUERTO1]\nNUMERO=1\nCantEsclavos=2\n"
                        "Esclavo1_Numero=11\nEsclavo0_Numero=10\nEsclavo0_Numero=99\n"
                        "CantBloques=3\n" +
                        bloque(0, "1") + bloque(1, "malo") + bloque(2, "3"));
    std::string orden;
    for (const auto& e : l.listas.estaciones)
        orden += std::to_string(e.puerto) + "." + std::to_string(e.numero) + " ";
    for (const auto& b : l.listas.bloques)
        orden += std::to_string(b.puerto) + "." + std::to_string(static_cast<int>(b.plc)) + " ";
    EXPECT_EQ(orden, "1.10 1.11 2.12 1.1 1.3 2.13 2.14 ");
    EXPECT_EQ(problemasDe(l), "D.ini:19: Esclavo0_Numero está repetida: vale la de la línea 18; "
                              "esta no cuenta\n"
                              "D.ini:24: Bloque1_PLC=\"malo\" no es un número; no se crea el "
                              "bloque\n");
}

TEST(Driver, ValoresPorDefecto) {
    const auto l = leer("[config]\ncant_puertos=2\n[puerto1]\n[puerto2]\nCantEsclavos=1\n"
                        "Esclavo0_Indice=7\n");
    ASSERT_EQ(l.listas.puertos.size(), 2U);
    EXPECT_EQ(l.listas.puertos[0].numero, 0); // its ordinal minus 1
    const Puerto& p = l.listas.puertos[1];
    EXPECT_EQ(std::tuple(p.numero, p.scanPorDefecto, p.reintentosMax, p.tiempoFuera,
                         p.tipoPlcPorDefecto, p.segReconeccion, p.leerDespuesDeEscribir),
              std::tuple(1, 5, 3, 5, 5, 30, true));
    ASSERT_EQ(l.listas.estaciones.size(), 1U);
    EXPECT_EQ(l.listas.estaciones[0].ip + ":" + l.listas.estaciones[0].puertoTCP, "127.0.0.1:502");
    EXPECT_TRUE(leer("[CONFIG]\nCANT_PUERTOS=0\n[PUERTO1]\n").listas.puertos.empty());
    EXPECT_TRUE(leer("").listas.puertos.empty());
    EXPECT_TRUE(leer("[CONFIG]\nCANT_PUERTOS=-3\n").listas.puertos.empty());
}

TEST(Driver, CantidadesQueElArchivoNoTiene) {
    const auto l =
        leer("[CONFIG]\nCANT_PUERTOS=1000000000\n[PUERTO1]\nNUMERO=1\n"
             "CantEsclavos=1e9\nEsclavo0_Numero=1\nEsclavo1000000_Numero=2\n"
             "CantBloques=1000000000\n" +
             bloque(1, "1") + bloque(0, "2") + "[PUERTO2]\nCantBloques=0\n" + bloque(1, "7"));
    EXPECT_EQ(l.listas.puertos.size(), 2U);
    EXPECT_EQ(l.listas.estaciones.size(), 2U);
    EXPECT_EQ(l.listas.bloques.size(), 2U);
    EXPECT_EQ(problemasDe(l),
              "D.ini:5: CantEsclavos es 1000000000 y el archivo tiene sólo 2; la primera que "
              "falta es Esclavo1; lo que falta no se crea\n"
              "D.ini:8: CantBloques es 1000000000 y el archivo tiene sólo 2; la primera que "
              "falta es Bloque2; lo que falta no se crea\n"
              "D.ini:15: falta NUMERO en [PUERTO2]; se toma 1, el anterior a su orden\n"
              "D.ini:17: CantBloques es 0, desde Bloque1000000000, y hay entradas con otros "
              "números; se ignoran\n"
              "D.ini:2: CANT_PUERTOS es 1000000000 y no hay secciones desde [PUERTO3] en adelante; "
              "se leen sólo los puertos que el archivo tiene\n");
    const auto hueco = leer("[CONFIG]\nCANT_PUERTOS=3\n[PUERTO3]\nNUMERO=3\n[PUERTO4]\n");
    ASSERT_EQ(hueco.listas.puertos.size(), 3U); // the third keeps its place
    EXPECT_EQ(hueco.listas.puertos[1].numero, 1);
    EXPECT_EQ(hueco.listas.puertos[2].numero, 3);
    ASSERT_EQ(hueco.problemas.lista().size(), 3U);
    EXPECT_EQ(textoDeProblema(hueco.problemas.lista()[1]),
              "D.ini:3: faltan CantEsclavos y CantBloques en la sección; el puerto queda sin "
              "estaciones ni bloques");
    const auto cortado = leer("[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\nCantEsclavos=0\n");
    ASSERT_EQ(cortado.problemas.lista().size(), 1U);
    EXPECT_EQ(textoDeProblema(cortado.problemas.lista()[0]),
              "D.ini:3: falta CantBloques en la sección; el puerto queda sin bloques");
}

/// Whoever reads a file that is still being written is told, wherever it ends: only what may be
/// missing can be missing unnoticed.
TEST(Driver, UnArchivoAMedioEscribirSeDiceEnCadaByte) {
    const std::string entero =
        "[CONFIG]\r\nCANT_PUERTOS=2\r\n[PUERTO1]\r\nNUMERO=1\r\nCantEsclavos=2\r\n"
        "Esclavo0_Ip=10.0.0.1\r\nEsclavo0_Puerto=502\r\nEsclavo0_Numero=1\r\n"
        "Esclavo1_Ip=10.0.0.2\r\nEsclavo1_Puerto=502\r\nEsclavo1_Numero=2\r\n"
        "CantBloques=0\r\n[PUERTO2]\r\nNUMERO=2\r\nCantEsclavos=0\r\nCantBloques=1\r\n"
        "Bloque0_StarAdrees=10\r\nBloque0_PLC=1\r\nBloque0_Quantity=1\r\nBloque0_ScanTime=2\r\n"
        "Bloque0_Nivel=3\r\n";
    const std::string todoMenos = "Bloque0_Nivel=3\r\n";
    for (std::size_t n = 1; n < entero.size(); ++n) {
        const auto l = leer(std::string_view(entero).substr(0, n));
        const bool entreLineas = entero[n - 1] == '\r' || entero[n - 1] == '\n';
        const bool basta =
            n + 1 >= entero.size() || (entreLineas && n >= entero.size() - todoMenos.size() - 1);
        EXPECT_EQ(l.problemas.lista().empty(), basta) << entero.substr(0, n);
    }
}

TEST(Driver, NumerosMalos) {
    const auto l = leer("[CONFIG]\nCANT_PUERTOS=2\n[PUERTO1]\nNUMERO=uno\nTIME_OUT=\n"
                        "CantEsclavos=1\nEsclavo0_Numero=1\n[PUERTO2]\nNUMERO=40000\n"
                        "CantEsclavos=3\nEsclavo1_Numero=70000\nEsclavo2_Indice=x\n"
                        "Esclavo3_Numero=2.5\nCantBloques=todos\nBloque0_PLC=1\n");
    EXPECT_EQ(l.listas.puertos[0].numero, 0);
    EXPECT_EQ(l.listas.puertos[0].tiempoFuera, 5);
    ASSERT_EQ(l.listas.estaciones.size(), 2U);
    EXPECT_EQ(l.listas.estaciones[1].numero, 2);
    EXPECT_EQ(l.listas.estaciones[1].puerto, 0); // 40000 names no port
    std::string lineas;
    for (const Problema& p : l.problemas.lista())
        lineas += std::to_string(p.linea) + " ";
    EXPECT_EQ(lineas, "4 5 3 11 12 14 15 ");
}

TEST(Driver, CodificacionEquivocada) {
    const auto utf8 = leer("\xEF\xBB\xBF[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\n"
                           "CantBloques=1\nBloque0_Bloque=año\n" +
                           bloque(0, "1"));
    EXPECT_EQ(utf8.listas.bloques.size(), 1U);
    ASSERT_EQ(utf8.problemas.lista().size(), 1U);
    EXPECT_EQ(utf8.problemas.lista()[0].linea, 6U);
    EXPECT_EQ(leer("\xFF\xFE[\0C").problemas.lista().size(), 1U);
}

TEST(Driver, LosProblemasSonContadosYNoTodosGuardados) {
    std::string contenido = "[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\nCantBloques=5000\n";
    for (int i = 0; i < 5000; ++i)
        contenido += "Bloque" + std::to_string(i) + "_PLC=x\x01" + std::string(200, 'y') + "\n";
    const auto l = leer(contenido);
    EXPECT_EQ(l.problemas.lista().size(), 1000U);
    EXPECT_EQ(l.problemas.demas(), 4000U);
    EXPECT_EQ(l.problemas.lista()[0].que,
              "Bloque0_PLC=\"x?" + std::string(58, 'y') + "…\" no es un número");
}

TEST(Driver, MuchasEntradasEnCualquierOrden) {
    constexpr int kCuantas = 10'000;
    std::string t =
        "[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\nCantBloques=" + std::to_string(kCuantas) +
        "\nCantEsclavos=0\n";
    for (int i = 0; i < kCuantas; ++i) {
        const int n = (i * 7919 + 13) % kCuantas;
        t += bloque(n, std::to_string(n).c_str());
    }
    t += bloque(77, "1"); // once more: the first one counts
    const auto [listas, problemas] = leer(t);
    ASSERT_EQ(problemas.lista().size(), 1U);
    EXPECT_TRUE(problemas.lista()[0].que.starts_with("Bloque77_PLC está repetida")) << "told once";
    ASSERT_EQ(listas.bloques.size(), static_cast<std::size_t>(kCuantas));
    for (std::size_t n = 0; n < listas.bloques.size(); ++n)
        ASSERT_EQ(listas.bloques[n].plc, static_cast<double>(n));
}

} // namespace kv
