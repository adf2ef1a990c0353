// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "papel.h"
#include "valores.h"

#include "vbscript/engine.h"

#include <map>
#include <optional>
#include <set>
#include <string>

/// An error as the desk tells it: file, place, and the place in a text that the script ran.
[[nodiscard]] std::string textoDe(const std::string& archivo, const vbscript::ScriptError& e);

/// Runs a script as the driver does, once for each row of values, in one module whose variables
/// stay.
class Corrida {
  public:
    /// All must outlive it. `archivo` is what errors are reported with; `valores` null: the script
    /// runs without given values.
    Corrida(vbscript::Engine& motor, Papel& papel, std::string archivo, const Valores* valores);
    /// Every row, `veces` times over; stops where a budget stopped the script. After each run
    /// `trasCadaUna` is called. False: some run failed; the errors are reported, each once.
    template <class F>
    bool correr(const std::string& texto, std::uint64_t veces, F trasCadaUna) {
        const std::size_t filas = valores_ != nullptr ? valores_->filas.size() : 1;
        bool sigue = true;
        for (std::uint64_t v = 0; v < veces && sigue; ++v) {
            for (std::size_t f = 0; f < filas && sigue; ++f) {
                preparar(f, v, filas, veces);
                sigue = una(texto);
                trasCadaUna();
            }
        }
        return fallas_ == 0;
    }
    /// The globals that are not as they were, or as the rows left them.
    [[nodiscard]] std::string cambios() const;
    [[nodiscard]] std::uint64_t corridas() const { return corridas_; }
    [[nodiscard]] std::uint64_t fallas() const { return fallas_; }

  private:
    void preparar(std::size_t fila, std::uint64_t vuelta, std::size_t filas, std::uint64_t veces);
    /// False: there is no use in another run.
    [[nodiscard]] bool una(const std::string& texto);
    [[nodiscard]] std::string mostrar(const vbscript::Value& v) const;

    vbscript::Engine& motor_;
    Papel& papel_;
    std::string archivo_;
    const Valores* valores_;
    std::vector<std::optional<vbscript::Engine::Slot>> ranuras_; ///< empty: no name of the language
    std::map<std::string, std::string> antes_; ///< what the globals were, or were given last
    std::set<std::string> dichos_;
    std::uint64_t corridas_ = 0;
    std::uint64_t fallas_ = 0;
};
