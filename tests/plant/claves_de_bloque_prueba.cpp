// SPDX-License-Identifier: Apache-2.0
#include "plant/claves_de_bloque.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

using Textos = std::vector<std::string>;

TEST(RegistrosDeBloque, FollowTheStartInHexadecimalWithItsDigitsAndItsLetters) {
    EXPECT_EQ(registrosDeBloque("10", 1), (Textos{"10"}));
    EXPECT_EQ(registrosDeBloque("0F", 3), (Textos{"0F", "10", "11"}));
    EXPECT_EQ(registrosDeBloque("9", 8), (Textos{"9", "A", "B", "C", "D", "E", "F", "10"}));
    EXPECT_EQ(registrosDeBloque("009", 2), (Textos{"009", "00A"}));
    EXPECT_EQ(registrosDeBloque("1e", 3), (Textos{"1e", "1f", "20"}));
    EXPECT_EQ(registrosDeBloque("a9", 2), (Textos{"a9", "aa"}));
}

TEST(RegistrosDeBloque, OnlyThoseThatAFrameCanAskFor) {
    EXPECT_EQ(registrosDeBloque("FE", 1e9), (Textos{"FE", "FF"}));
    EXPECT_EQ(registrosDeBloque("0", 10'000).size(), 256U);
    for (const char* nada : {"1FF", "10.3", "G0", "", "-1"})
        EXPECT_EQ(registrosDeBloque(nada, 5), (Textos{nada})) << nada;
}

} // namespace
} // namespace kv
