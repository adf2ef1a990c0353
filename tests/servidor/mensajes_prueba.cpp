// SPDX-License-Identifier: Apache-2.0
#include "server/mensajes.h"
#include "text/texto.h"

#include <gtest/gtest.h>

#include <random>

namespace kv {
namespace {

/// The rule as it reads, one frame after the other over the whole text: slow and plain.
Tramas alPieDeLaLetra(std::string texto, const Marcas& marcas,
                      std::size_t maximo = static_cast<std::size_t>(-1)) {
    Tramas t;
    while (t.contenidos.size() < maximo) {
        const auto abre = buscarSinCaja(texto, marcas.abre);
        if (abre == std::string::npos) break;
        const auto cierra = buscarSinCaja(texto, marcas.cierra, abre + marcas.abre.size());
        if (cierra == std::string::npos) break;
        const auto desde = abre + marcas.abre.size();
        t.contenidos.push_back(texto.substr(desde, cierra - desde));
        const std::string trama = texto.substr(abre, cierra + marcas.cierra.size() - abre);
        texto = reemplazarSinCaja(texto, trama, "");
    }
    t.resto = texto;
    return t;
}

using Textos = std::vector<std::string>;

Textos escrituras(std::string_view llegada) {
    return extraerTramas(llegada, kMarcasDeEscritura).contenidos;
}

} // namespace

TEST(Mensajes, VariasTramasEnOrdenConCualquierCaja) {
    const auto t = extraerTramas("a[Write]1.1.1;5[/Write];[WRITE]1.1.2;7[/write]b[write]1.1",
                                 kMarcasDeEscritura);
    EXPECT_EQ(t.contenidos, (Textos{"1.1.1;5", "1.1.2;7"}));
    EXPECT_EQ(t.resto, "a;b[write]1.1");
    EXPECT_EQ(escrituras("01;5[/Write][Write]"), Textos{});
}

TEST(Mensajes, UnaTramaRepetidaSeVaConLaPrimera) {
    const auto t = extraerTramas(
        "[Write]1.1.1;1[/Write][Write]1.1.1;0[/Write][write]1.1.1;1[/Write]", kMarcasDeEscritura);
    EXPECT_EQ(t.contenidos, (Textos{"1.1.1;1", "1.1.1;0"}));
    EXPECT_EQ(t.repetidas, 1U);
    // Also out of the middle of another frame, and marks form anew where the text closes up.
    EXPECT_EQ(escrituras("[Write]a;1[/Write][Write]x[Write]a;1[/Write]y;5[/Write]"),
              (Textos{"a;1", "xy;5"}));
    EXPECT_EQ(escrituras("[Wri[Write]a;1[/Write]te]b;2[/Write]"), (Textos{"a;1", "b;2"}));
}

TEST(Mensajes, HaceLoMismoQueLaReglaAlPieDeLaLetra) {
    std::mt19937 azar(7);
    const Textos piezas{"[Write]",
                        "[/Write]",
                        "[write]",
                        "a",
                        "b",
                        ";",
                        "[Wri",
                        "te]",
                        "[/Wri",
                        "[",
                        "/",
                        "]",
                        "te",
                        "[Write]a[/Write]",
                        "[Write]b[/Write]",
                        "[Write]a;b[/Write]"};
    for (int caso = 0; caso < 20'000; ++caso) {
        std::string texto;
        for (auto n = azar() % 40; n > 0; --n)
            texto += piezas[azar() % piezas.size()];
        const Tramas t = extraerTramas(texto, kMarcasDeEscritura);
        const Tramas debido = alPieDeLaLetra(texto, kMarcasDeEscritura);
        ASSERT_EQ(t.contenidos, debido.contenidos) << texto;
        ASSERT_EQ(t.resto, debido.resto) << texto;
        const std::size_t maximo = azar() % (debido.contenidos.size() + 1);
        ASSERT_EQ(extraerTramas(texto, kMarcasDeEscritura, maximo).resto,
                  alPieDeLaLetra(texto, kMarcasDeEscritura, maximo).resto)
            << "after " << maximo << " of " << texto;
    }
}

TEST(Mensajes, Lecturas) {
    const auto lecturas = [](std::string_view llegada) {
        Textos direcciones;
        for (const auto& c : extraerTramas(llegada, kMarcasDeLectura).contenidos)
            direcciones.emplace_back(direccionDeLectura(c));
        return direcciones;
    };
    EXPECT_EQ(lecturas("Read;1.1.10;FinRead;read;1.1.11;finread;"), (Textos{"1.1.10", "1.1.11"}));
    EXPECT_EQ(lecturas("Read;1.1.10;FinRead;Read;1.1.10;FinRead;"), Textos{"1.1.10"});
    EXPECT_EQ(lecturas("Read;FinRead;"), Textos{""});
    EXPECT_EQ(lecturas("Read;;FinRead;"), Textos{""});
    EXPECT_EQ(lecturas("FinRead;"), Textos{});
    // The closing mark of nothing ends in an opening mark.
    EXPECT_EQ(lecturas("FinRead;1.1.10;FinRead;"), Textos{"1.1.10"});
}

TEST(Mensajes, CienMilTramasDistintasYUnaMarcaQueNoCierra) {
    // Quadratic work would take hours here.
    std::string muchas;
    for (int i = 0; i < 100'000; ++i)
        muchas += "[Write]1.1." + std::to_string(i) + ";1[/Write]";
    EXPECT_EQ(escrituras(muchas).size(), 100'000U);
    std::string anidadas;
    for (int i = 0; i < 100'000; ++i)
        anidadas += "[Write]";
    EXPECT_EQ(escrituras(anidadas), Textos{});
    EXPECT_EQ(escrituras(anidadas + "[/Write]").size(), 1U);
    std::string cierres;
    for (int i = 0; i < 100'000; ++i)
        cierres += "[/Write][Wri";
    EXPECT_EQ(escrituras(cierres), Textos{});
}

TEST(Mensajes, PartesDeUnaLlegada) {
    std::string texto = "xSincronizarySINCRONIZARz";
    EXPECT_TRUE(quitarPalabra(texto, kSincronizar));
    EXPECT_EQ(texto, "xyz");
    EXPECT_FALSE(quitarPalabra(texto, kSincronizar));
    EXPECT_FALSE(dosCampos("solo"));
    EXPECT_EQ(dosCampos("1.1.10;5;x")->second, "5");
    EXPECT_EQ(dosCampos(";")->second, "");
    EXPECT_TRUE(esSoloKeepAlive(" [keep_desde_dri][KEEP_DESDE_SERVIDOR]"));
    EXPECT_FALSE(esSoloKeepAlive("[KEEP_DESDE_DRI]x"));
}

TEST(Mensajes, RegistrosConLosBytesDelCampo) {
    std::string s;
    abrirSobre(s, {});
    agregarRegistro(s, "1.1.Caño", 1234, 6, {});
    cerrarSobre(s, {});
    EXPECT_EQ(s, "[DRI]#1.1.Ca\xF1o;1234;6;#[/DRI]");
}

} // namespace kv
