// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/validacion.h"
#include "platform/bucle.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kv {

/// What became of asking a station once.
struct AlcanceDeEstacion {
    std::size_t estacion = 0; ///< index into the lists
    std::string registro;     ///< that was asked for; empty: the station has no usable one
    bool responde = false;
    int valor = 0; ///< of its answer
    std::int64_t ms = 0;
};

/// What became of a connection. `motivo` says why it did not come up, empty if it did.
struct AlcanceDeConexion {
    std::string motivo;
    std::vector<AlcanceDeEstacion> estaciones;
};

/// Connects to every address that would be built and asks every station there once, for its first
/// register, one after the other with the pause between them. Many addresses at a time, each with
/// the patience of its port. A link on which an answer is missing is made anew, so that a late one
/// counts for no station.
class SondeoDeAlcance {
  public:
    /// All must outlive this object.
    SondeoDeAlcance(Bucle& bucle, const ListasDeConfiguracion& listas, const Validacion& validacion,
                    double pausaMs);
    ~SondeoDeAlcance();
    SondeoDeAlcance(const SondeoDeAlcance&) = delete;
    SondeoDeAlcance& operator=(const SondeoDeAlcance&) = delete;

    /// `alTerminar` is called in the loop when all is known, or at once if there is nothing to ask.
    void empezar(std::function<void()> alTerminar);
    /// By connection, as in the validation.
    [[nodiscard]] const std::vector<AlcanceDeConexion>& resultados() const { return resultados_; }

  private:
    class Sonda;
    void seguir();
    void terminoUna();

    Bucle& bucle_;
    const ListasDeConfiguracion& listas_;
    const Validacion& v_;
    double pausaMs_;
    std::vector<std::vector<std::string>> registros_; ///< to ask each station for; at most one
    std::vector<AlcanceDeConexion> resultados_;
    std::vector<std::unique_ptr<Sonda>> sondas_;
    std::size_t corriendo_ = 0;
    bool siguiendo_ = false;
    std::function<void()> alTerminar_;
};

/// Appends what was found to a report: a line for each connection and each station that was asked,
/// of the first hundreds.
void listarAlcance(const ListasDeConfiguracion& listas, const Validacion& v,
                   const std::vector<AlcanceDeConexion>& resultados, std::string& informe);
/// Tells what could not be reached.
void revisarAlcance(const ListasDeConfiguracion& listas, const Validacion& v,
                    const std::vector<AlcanceDeConexion>& resultados, Problemas& problemas);

} // namespace kv
