// SPDX-License-Identifier: Apache-2.0
// JSON that comes from outside: taken to the letter, or refused with the place.

#include "text/json.h"
#include "text/json_leido.h"

#include <gtest/gtest.h>

#include <cmath>

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

TEST(Json, LoQueSeEscribeEsJsonSeaLoQueSea) {
    std::string todo;
    ObjetoJson o(todo);
    o.texto("a",
            "l\xF3pez \x80.ini \xC3\xB3 \xED\xA0\x80 \xF0\x9F\x99") // 1252, UTF-8, halves of it
        .texto("b", std::string("\0\x1F\x7F\"\\", 5))
        .numero("c", std::nan(""))
        .numero("d", -HUGE_VAL)
        .numero("e", -1.7976931348623157e308)
        .numero("f", 5e-324)
        .numero("g", 999999999999999)
        .numero("h", 1e15)
        .logico("i", true);
    ListaJson lista(o.valor("j"));
    lista.texto("x");
    ListaJson(lista.elemento()).fin();
    ObjetoJson vacio(lista.elemento());
    vacio.fin();
    ObjetoJson(lista.elemento()).numero("k", -0.5).fin();
    lista.fin();
    o.fin();
    std::string que;
    const auto j = leerJson(todo, que);
    ASSERT_TRUE(j) << que << "\n" << todo;
    EXPECT_EQ(*j->miembro("a")->texto(), "lópez €.ini ó í\xC2\xA0€ ðŸ™");
    EXPECT_EQ(*j->miembro("b")->texto(), std::string("\0\x1F\x7F\"\\", 5));
    EXPECT_EQ(j->miembro("c")->clase(), Json::Clase::Nulo);
    EXPECT_EQ(j->miembro("d")->clase(), Json::Clase::Nulo);
    EXPECT_EQ(j->miembro("e")->numero(), -1.7976931348623157e308);
    EXPECT_EQ(j->miembro("f")->numero(), 5e-324);
    EXPECT_EQ(j->miembro("g")->comoJson(), "999999999999999");
    EXPECT_EQ(j->miembro("h")->numero(), 1e15);
    EXPECT_TRUE(todo.ends_with(R"(,"i":true,"j":["x",[],{},{"k":-0.5}]})")) << todo;
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
