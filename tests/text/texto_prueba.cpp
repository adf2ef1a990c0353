// SPDX-License-Identifier: Apache-2.0
#include "text/fecha.h"
#include "text/idioma.h"
#include "text/numeros.h"
#include "text/texto.h"

#include <gtest/gtest.h>

#include <limits>

namespace kv {

TEST(Numeros, ATextoEnLaFormaMasCorta) {
    EXPECT_EQ(textoDeNumero(1234.0), "1234");
    EXPECT_EQ(textoDeNumero(-2), "-2");
    EXPECT_EQ(textoDeNumero(1.5), "1.5");
    EXPECT_EQ(textoDeNumero(0.1), "0.1");
    EXPECT_EQ(textoDeNumero(-0.0), "0");
    EXPECT_EQ(textoDeNumero(100000000), "100000000");
    EXPECT_EQ(textoDeNumero(1e300), "1e+300");
}

TEST(Numeros, DeTextoSoloLoQueEsNumero) {
    EXPECT_EQ(numeroDeTexto(" 12 "), 12);
    EXPECT_EQ(numeroDeTexto("-1.5e2"), -150);
    EXPECT_EQ(numeroDeTexto("+7"), 7);
    EXPECT_EQ(numeroDeTexto(".5"), 0.5);
    for (const char* malo :
         {"", " ", "1,5", "0x10", "inf", "nan", "+-1", "-", "1 2", "12a", "1e999"})
        EXPECT_FALSE(esNumerico(malo)) << malo;
    EXPECT_EQ(numeroConComa("-0,75"), -0.75);
    for (const char* malo : {"1,5,0", "1.000,5", ","})
        EXPECT_EQ(numeroConComa(malo), std::nullopt) << malo;
}

TEST(Numeros, EnterosRedondeanAlParYNoDesbordan) {
    EXPECT_EQ(enteroCorto(2.5), 2);
    EXPECT_EQ(enteroCorto(3.5), 4);
    EXPECT_EQ(enteroCorto(-32768), -32768);
    EXPECT_FALSE(enteroCorto(32768));
    EXPECT_FALSE(entero(3e9));
    EXPECT_FALSE(entero(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ(hexadecimal("1F"), 31U);
    EXPECT_EQ(hexadecimal("ffffffff"), 0xFFFFFFFFU);
    for (const char* malo : {"", "G", "0x1", " 1", "-1", "123456789"})
        EXPECT_FALSE(hexadecimal(malo)) << malo;
}

TEST(Texto, BuscaYReemplazaSinMirarLaCaja) {
    EXPECT_EQ(reemplazarSinCaja("C:\\P\\Linea1.QMX", ".qmx", ".K"), "C:\\P\\Linea1.K");
    EXPECT_EQ(reemplazarSinCaja("aAaA", "aa", "b"), "bb");
    EXPECT_EQ(reemplazarSinCaja("abc", "", "x"), "abc");
    EXPECT_EQ(buscarSinCaja("xx[WRITE]", "[Write]"), 2U);
    EXPECT_EQ(buscarSinCaja("[Write]", "[Write]", 1), std::string_view::npos);
    EXPECT_EQ(enUnaLinea("a\r\nb\rc\nd\n\r"), "a b c d  ");
    EXPECT_EQ(partir("1.2.", '.'), (std::vector<std::string_view>{"1", "2", ""}));
}

TEST(Texto, ElComienzoNoCortaUnCaracter) {
    EXPECT_EQ(comienzo("año", 4), "año");
    EXPECT_EQ(comienzo("año", 3), "añ");
    EXPECT_EQ(comienzo("año", 2), "a");
    EXPECT_EQ(comienzo("ñ", 0), "");
}

TEST(Fecha, FormatosYCalendario) {
    const FechaHora f{2026, 11, 16, 14, 5, 9, 0};
    EXPECT_EQ(formatoDeSello(f), "14:05:09 16-11-2026");
    EXPECT_EQ(formatoGeneral(f), "16/11/2026 14:05:09");
    EXPECT_EQ(formatoDeDia(f), "261116");
    EXPECT_EQ(formatoDeHora(f), "2026111614");
    EXPECT_EQ(fechaDesdeSegundos(0), (FechaHora{1970, 1, 1, 0, 0, 0, 0}));
    EXPECT_EQ(fechaDesdeSegundos(951782399), (FechaHora{2000, 2, 28, 23, 59, 59, 0}));
    EXPECT_EQ(fechaDesdeSegundos(951782400), (FechaHora{2000, 2, 29, 0, 0, 0, 0}));
    EXPECT_EQ(fechaDesdeSegundos(-1), (FechaHora{1969, 12, 31, 23, 59, 59, 0}));
}

TEST(Frases, LasPartesVanASuLugarYNoSeTomanPorLugares) {
    constexpr Frase frase{"%1 de %2, 100 %", "of %2 %1, 100 %"};
    EXPECT_EQ(decir(frase, Idioma::Castellano, {"%2", "b"}), "%2 de b, 100 %");
    EXPECT_EQ(decir(frase, Idioma::Ingles, {"%2", "b"}), "of b %2, 100 %");
    constexpr Frase nombre{"el usuario %1", "the user %1"};
    EXPECT_EQ(pasarA(Idioma::Ingles, nombre, "el usuario el usuario"), "the user el usuario");
    EXPECT_EQ(pasarA(Idioma::Ingles, nombre, "otro usuario"), std::nullopt);
    EXPECT_EQ(pasarA(Idioma::Ingles, Frase("otros", "others"), "otros dos"), std::nullopt);
}

} // namespace kv
