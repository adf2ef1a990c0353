// SPDX-License-Identifier: Apache-2.0
#include "text/windows1252.h"

#include <gtest/gtest.h>

namespace kv {

TEST(Windows1252, TodoByteVaYVuelveIgual) {
    std::string todos;
    for (int b = 0; b < 256; ++b)
        todos += static_cast<char>(b);
    EXPECT_EQ(windows1252DesdeUtf8(utf8DesdeWindows1252(todos)), todos);
}

TEST(Windows1252, CaracteresConocidos) {
    EXPECT_EQ(utf8DesdeWindows1252("\xC4\xA7\xE6\xE3"), "Ä§æã");
    EXPECT_EQ(utf8DesdeWindows1252("\x80 \xA6"), "€ ¦");
    EXPECT_EQ(windows1252DesdeUtf8("n°L ñ €"), "n\xB0L \xF1 \x80");
    EXPECT_EQ(windows1252DesdeUtf8("π😀"), "??");
    EXPECT_EQ(windows1252DesdeUtf8("a\xFF\xC3"), "a\xFF\xC3") << "not UTF-8: as it came";
}

TEST(Windows1252, ReconoceUnArchivoGuardadoEnUtf8) {
    EXPECT_TRUE(pareceUtf8("Ä§æãpuertos"));
    EXPECT_FALSE(pareceUtf8("\xC4\xA7\xE6\xE3puertos"));
    EXPECT_FALSE(pareceUtf8("sin acentos"));
}

} // namespace kv
