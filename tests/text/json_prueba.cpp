// SPDX-License-Identifier: Apache-2.0
// JSON that comes from outside: taken to the letter, or refused with the place.

#include "text/json.h"
#include "text/json_leido.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

std::string falla(std::string_view texto) {
    std::string que;
    return leerJson(texto, que) ? "vale" : que;
}

} // namespace

TEST(Json, LeeTodoLoQueHayYNadaMas) {
    std::string que;
    const auto j = leerJson(R"( {"a":[1,-2.5e1,true,false,null,"x"],"b":{"c":""}} )", que);
    ASSERT_TRUE(j) << que;
    const auto& a = j->miembro("a")->elementos();
    ASSERT_EQ(a.size(), 6U);
    EXPECT_EQ(a[1].numero(), -25);
    EXPECT_EQ(a[1].comoJson(), "-2.5e1");
    EXPECT_EQ(a[2].logico(), true);
    EXPECT_EQ(a[4].clase(), Json::Clase::Nulo);
    EXPECT_EQ(*j->miembro("b")->miembro("c")->texto(), "");
    EXPECT_EQ(j->miembro("z"), nullptr);
    EXPECT_EQ(a[0].miembro("a"), nullptr);
}

TEST(Json, LosTextosVuelvenComoEran) {
    std::string que;
    for (const std::string t : {"", "ñandú \"\\/\b\f\n\r\t\x01", "🙂", "a\xE2\x82\xAC"}) {
        const auto j = leerJson(enJson(t), que);
        ASSERT_TRUE(j) << que;
        EXPECT_EQ(*j->texto(), t);
    }
    EXPECT_EQ(*leerJson(R"("\ud83d\ude42\u00f1")", que)->texto(), "🙂ñ");
}

TEST(Json, LoQueNoEsSeRechazaConSuLugar) {
    EXPECT_EQ(falla("{\"a\":1,}"), "columna 8: falta el nombre de un miembro, entre comillas");
    EXPECT_EQ(falla("{\"a\":1,\"a\":2}"), "columna 11: un nombre esta dos veces");
    for (const char* malo : {"",
                             " ",
                             "{",
                             "[1",
                             "[1,]",
                             "[1 2]",
                             "{\"a\"}",
                             "{a:1}",
                             "01",
                             "-",
                             "1.",
                             ".5",
                             "1e",
                             "+1",
                             "1e999",
                             "nul",
                             "tru",
                             "NaN",
                             "\"",
                             "\"\\x\"",
                             "\"\\u12\"",
                             "\"\\ud800\"",
                             "\"\\udc00\"",
                             "\"\\ud800\\u0041\"",
                             "\"\n\"",
                             "\"\xC0\x80\"",
                             "\"\xED\xA0\x80\"",
                             "\"\xFF\"",
                             "1 1",
                             "{}{}",
                             "'a'"})
        EXPECT_NE(falla(malo), "vale") << malo;
    EXPECT_EQ(falla(std::string(16, '[') + std::string(16, ']')), "vale");
    EXPECT_NE(falla(std::string(18, '[') + std::string(18, ']')), "vale");
    EXPECT_NE(falla(std::string(1 << 20, '[')), "vale") << "and not the stack's end";
}

} // namespace kv
