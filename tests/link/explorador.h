// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "wire/Modulo_Tramas_KV2200.h"
#include "wire/respuestas_debidas.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace kv {

/// What the stations of the explored line put into the free bytes of their answers.
enum class Habito : std::uint8_t {
    RepiteTodo,
    SoloEstacion,
    SoloRegistro,
    Constante,
    Contador,
    CambiaDeTodoAConstante, ///< from some answer on
    CambiaDeOrden,
    MienteUnaVez ///< an answer in time has what another register's would have
};

/// What becomes of one request.
enum class Desenlace : std::uint8_t {
    EnTiempo,
    TardeUnoCoMaTres, // 1.3 time-outs
    TardeDos,
    TardeCasiTres,
    Perdida,
    DobleJunta,
    DobleJuntaTarde,
    DobleEnLaPausa,
    DobleTarde, ///< the second copy more than a time-out behind the first
    Danada,
    EnDosPiezas, ///< the second half after the time-out
    TrasRuido,
    TrasSuEco,
    TrasMarcaYEco,
    MentidaEnTiempo,
    Ultimo
};

/// What the network does meanwhile: it holds back all that is on its way, in both directions, or
/// lets it go.
enum class Red : std::uint8_t {
    Nada,
    DetieneAntes,
    DetieneDespues,
    SueltaAntes,
    SueltaEsperando,
    Ultimo
};

struct Orden {
    int registro = -1; ///< 0 to 2, or -1: the line is quiet for as long as an answer may be late
    Desenlace desenlace = Desenlace::EnTiempo;
    Red red = Red::Nada;
};

/// A line with three registers on two stations, its driver's side being the rules under test. Time
/// is in tenths of the time-out. A value, so that one can be tried in every direction.
class Linea {
  public:
    static constexpr std::int64_t kTiempoFuera = 10;
    static constexpr int kRegistros = 3;

    explicit Linea(Habito habito) : habito_(habito) {}

    /// Does one order. False when it makes no sense in this state; then the line is of no use.
    bool hacer(const Orden& orden);
    /// From now on all goes well. The number of requests until every register has had an accepted
    /// answer of its own, or nothing when that takes more than `maximo`.
    [[nodiscard]] std::optional<int> sanar(int maximo);

    /// A value was accepted as that of another register.
    [[nodiscard]] bool enOtroLugar() const { return enOtroLugar_; }
    /// What was accepted last came with a late second copy of an answer given twice.
    [[nodiscard]] bool eraCopia() const { return eraCopia_; }
    /// No station ever gave it: noise had the form of an answer.
    [[nodiscard]] bool eraRuido() const { return eraRuido_; }
    [[nodiscard]] std::uint64_t huella() const;
    [[nodiscard]] int aceptadas() const { return aceptadas_; }
    void ensenar(int rondas);

  private:
    struct EnCamino {
        std::int64_t cuando;
        std::uint8_t registro;
        bool copia;
        std::uint8_t largo;
        std::array<std::uint8_t, 8> bytes;
    };
    struct Detenido {
        std::uint8_t registro;
        Desenlace desenlace;
    };
    enum class Fin : std::uint8_t { Contestado, EnDuda, Vencido };

    [[nodiscard]] Respuesta respuestaDe(int registro, bool mentida);
    void contestar(int registro, Desenlace como);
    void poner(std::int64_t dentroDe, int registro, std::span<const std::uint8_t> bytes,
               bool copia = false);
    void detener() { detenida_ = true; }
    void soltar();
    void dejarPasar(std::int64_t hasta);
    [[nodiscard]] bool esperarTurno(int registro);
    [[nodiscard]] Fin esperar(int registro, std::optional<std::int64_t> soltarA);
    [[nodiscard]] std::optional<Fin> entregar(int esperado);
    [[nodiscard]] std::int64_t proximo() const;
    Fin pedir(int registro, Desenlace desenlace, Red red);

    Habito habito_;
    bool cambiado_ = false;
    std::uint8_t contador_ = 0;
    RespuestasDebidas regla_;
    std::vector<std::uint8_t> tenidos_;
    std::vector<EnCamino> enCamino_;
    std::vector<Detenido> detenidos_;
    bool detenida_ = false;
    bool pasoUna_ = false; ///< an answer came after the last request
    int aPrueba_ = -1;
    std::int64_t ahora_ = 0;
    int aceptadas_ = 0;
    bool enOtroLugar_ = false, eraCopia_ = false, eraRuido_ = false;
};

[[nodiscard]] std::string comoTexto(const std::vector<Orden>& ordenes);

} // namespace kv
