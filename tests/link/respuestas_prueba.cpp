// SPDX-License-Identifier: Apache-2.0
// Whose answer an answer is, in every order of events up to a depth: three requests, each with one
// of 15 fates and five things that the network may do meanwhile, to one of three registers on two
// stations, or a quiet line, from a line that knows nothing and from one that has learned its
// stations' habit. Some 450,000 states a habit.
//
// An accepted answer was its register's, and from every state a line that behaves again has an
// accepted answer of every register within 14 requests. Left out, because nobody could tell:
// - a second copy of an answer, more than a time-out behind the first, that comes while another
//   request waits: it is the only answer there is to see;
// - noise in the form of an answer: eight bits of sum;
// - a station that puts the bytes of exactly the register that is waited for on a late answer of
//   another (it may lie in time);
// - a network that lets an answer through and at once holds the next ones back for as long as the
//   line has to be quiet (`Linea::hacer`).

#include "link/explorador.h"

#include <gtest/gtest.h>

#include <unordered_map>

namespace kv {
namespace {

class Exploracion {
  public:
    Exploracion(Habito habito, bool copiasTardias, int hondura)
        : habito_(habito), copiasTardias_(copiasTardias), hondura_(hondura) {}

    void recorrer() {
        Linea linea(habito_);
        probar(linea, hondura_);
        Linea sabida(habito_);
        sabida.ensenar(8);
        probar(sabida, hondura_);
    }
    std::size_t estados = 0, aceptadas = 0, copias = 0, ruidos = 0;
    int masLargo = 0;
    std::string falla;

  private:
    static constexpr int kPedidosParaSanar = 14;

    void probar(const Linea& linea, int quedan) {
        if (!falla.empty()) return;
        auto& visto = vistos_[linea.huella()];
        if (visto > quedan) return;
        if (visto == 0) {
            ++estados;
            Linea sana = linea;
            const auto pedidos = sana.sanar(kPedidosParaSanar);
            if (!pedidos) return fallar("no se recupera: ");
            masLargo = std::max(masLargo, *pedidos);
        }
        visto = quedan + 1;
        if (quedan == 0) return;
        seguir(linea, quedan, {});
        for (int r = 0; r < Linea::kRegistros; ++r) {
            for (int d = 0; d < static_cast<int>(Desenlace::Ultimo); ++d) {
                const auto desenlace = static_cast<Desenlace>(d);
                if (desenlace == Desenlace::DobleTarde && !copiasTardias_) continue;
                for (int red = 0; red < static_cast<int>(Red::Ultimo); ++red)
                    seguir(linea, quedan, {r, desenlace, static_cast<Red>(red)});
            }
        }
    }
    void seguir(const Linea& linea, int quedan, const Orden& orden) {
        if (!falla.empty()) return;
        Linea otra = linea;
        camino_.push_back(orden);
        if (otra.hacer(orden)) {
            aceptadas += static_cast<std::size_t>(otra.aceptadas() - linea.aceptadas());
            if (copiasTardias_ && otra.eraCopia()) {
                ++copias;
            } else if (!otra.enOtroLugar()) {
                probar(otra, quedan - 1);
            } else if (otra.eraRuido()) {
                ++ruidos;
            } else {
                fallar("en otro lugar: ");
            }
        }
        camino_.pop_back();
    }
    void fallar(const std::string& que) { falla = que + comoTexto(camino_); }

    Habito habito_;
    bool copiasTardias_;
    int hondura_;
    std::vector<Orden> camino_;
    std::unordered_map<std::uint64_t, int> vistos_;
};

// Under the sanitizers everything takes ten times as long.
#ifdef KV_CON_SANITIZADORES
constexpr int kHondura = 2;
#else
constexpr int kHondura = 3;
#endif

class Respuestas : public testing::TestWithParam<Habito> {};

} // namespace

TEST_P(Respuestas, EnTodoOrdenDeSucesosSonDeSuRegistroYLaLineaSeRecupera) {
    for (const bool copias : {false, true}) {
        Exploracion e(GetParam(), copias, kHondura);
        e.recorrer();
        EXPECT_EQ(e.falla, "") << (copias ? "with late second copies" : "");
        EXPECT_GT(e.estados, 1000U);
        EXPECT_GT(e.aceptadas, 1000U);
        RecordProperty("estados", static_cast<int>(e.estados));
    }
}

INSTANTIATE_TEST_SUITE_P(Habitos, Respuestas,
                         testing::Values(Habito::RepiteTodo, Habito::SoloEstacion,
                                         Habito::SoloRegistro, Habito::Constante, Habito::Contador,
                                         Habito::CambiaDeTodoAConstante, Habito::CambiaDeOrden,
                                         Habito::MienteUnaVez));

} // namespace kv
