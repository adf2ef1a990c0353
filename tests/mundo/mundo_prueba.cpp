// SPDX-License-Identifier: Apache-2.0
// What the world relies on itself: the same seed lives the same life, and a history that fails is
// cut down to what makes it fail.

#include "mundo/corrida.h"
#include "mundo/reduccion.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kv::mundo {
namespace {

bool tiene(const std::vector<Episodio>& parte, std::uint32_t numero) {
    return std::any_of(parte.begin(), parte.end(),
                       [numero](const Episodio& s) { return s.numero == numero; });
}

} // namespace

TEST(Mundo, LaMismaSemillaViveLaMismaVida) {
    constexpr std::uint64_t kCorta = 31; // a plant of few exchanges
    const Plan plan(kCorta);
    const auto historia = historiaDe(plan);
    const Resultado una = vivir(plan, historia);
    const Resultado otra = vivir(Plan(kCorta), historiaDe(Plan(kCorta)));
    EXPECT_EQ(una.fallo, "");
    EXPECT_EQ(una.sucesos, otra.sucesos);
    EXPECT_EQ(una.intercambios, otra.intercambios);
    EXPECT_EQ(una.comprobadas, otra.comprobadas);
    EXPECT_EQ(una.faltas, historia.size());
    EXPECT_NE(vivir(plan, {}).sucesos, una.sucesos);
}

TEST(Mundo, UnaHistoriaSeReduceALoQueFalla) {
    std::vector<Episodio> historia(500);
    for (std::uint32_t k = 0; k < historia.size(); ++k)
        historia[k].numero = k;
    const auto corta = reducir(historia, [](const std::vector<Episodio>& parte) {
        return tiene(parte, 7) && tiene(parte, 300) && tiene(parte, 301);
    });
    ASSERT_EQ(corta.size(), 3U);
    EXPECT_TRUE(tiene(corta, 7) && tiene(corta, 300) && tiene(corta, 301));
    EXPECT_TRUE(reducir(historia, [](const auto&) { return true; }).empty());
}

} // namespace kv::mundo
