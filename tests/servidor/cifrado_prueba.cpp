// SPDX-License-Identifier: Apache-2.0
#include "server/cifrado.h"

#include <gtest/gtest.h>

#include <random>

namespace kv {
namespace {

const std::string kClaveDeSietes(20, '7');

Azar azarCon(unsigned semilla) {
    return [generador = std::mt19937(semilla)]() mutable {
        return std::uniform_real_distribution<double>(0, 1)(generador);
    };
}

bool esError(const std::string& texto) { return texto.starts_with("ERROR DE ENCRIPT\r\n"); }

} // namespace

TEST(Cifrado, UnidadesConocidas) {
    EXPECT_EQ(unidadDeCifrado('P', '7', 3), "63405");
    EXPECT_EQ(unidadDeCifrado(255, '9', 9), "792808");
    EXPECT_EQ(descifrar(kClaveDeSietes + "2" + "45" + "63405"), "P");
}

TEST(Cifrado, IdaYVueltaDeTodosLosCaracteres) {
    std::string todos;
    for (int c = 0; c < 256; ++c)
        todos += static_cast<char>(c);
    const std::string uno = cifrar(todos, azarCon(1));
    const std::string otro = cifrar(todos, azarCon(2));
    EXPECT_NE(uno, otro);
    EXPECT_EQ(descifrar(uno), todos);
    EXPECT_EQ(descifrar(otro), todos);
    for (const double extremo : {0.0, 0.999999999999}) {
        const std::string cifrado = cifrar(todos, [extremo] { return extremo; });
        EXPECT_EQ(cifrado.find_first_not_of("0123456789"), std::string::npos);
        EXPECT_EQ(cifrado.substr(0, 21).find('0'), std::string::npos);
        EXPECT_EQ(descifrar(cifrado), todos);
    }
    const std::string vacio = cifrar("", azarCon(3));
    EXPECT_EQ(descifrar(vacio), "");
}

TEST(Cifrado, LoQueNoSePuedeLeerEsError) {
    const std::string cabeza = kClaveDeSietes + "1" + "5";
    for (const std::string& malo : {
             std::string(), std::string("x"), kClaveDeSietes + "1", std::string(22, 'x'),
             kClaveDeSietes + "9" + "1234",        // filler cut short
             kClaveDeSietes + "x" + "5" + "63405", // filler length that is no digit
             cabeza + "6340",                      // a unit shorter than its length says
             cabeza + "60405",                     // d of zero
             cabeza + "6x405", cabeza + "63x05", cabeza + "x3405", cabeza + "00", cabeza + "11",
             cabeza + "23", cabeza + "334", // too short to be units
             cabeza + "61001",              // a code below zero
             cabeza + "919999999",          // a code above 255
         })
        EXPECT_TRUE(esError(descifrar(malo))) << malo;
    EXPECT_TRUE(esError(descifrar("x" + std::string(19, '7') + "15" + "63405")));
    EXPECT_EQ(descifrar(cabeza + "634056"), "P") << "one character left over is no unit";
}

} // namespace kv
