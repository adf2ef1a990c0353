// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "config/proyecto.h"
#include "log/archivo_log.h"
#include "operator/traspaso.h"
#include "plant/descripciones.h"
#include "platform/bucle.h"
#include "script/guion.h"
#include "view/vista.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace kv {

/// Takes over a changed configuration while the plant is served. What did not change is not
/// touched: its links stay, its reads come when they were due, its values stay as they are. What
/// went is BAD once more for whoever knew it, and gone; what came is asked at once. A file with a
/// fault that the last one taken over did not have changes nothing; the log names a key
/// that means nothing. What an operator switched or set otherwise than configured stays so, unless
/// the configuration of just that changed.
///
/// It is done in portions, and everything else goes on between them: with the plant as it was until
/// the file has been read, checked and compared, and then record by record.
class Recarga {
  public:
    /// All of them must outlive it.
    struct Partes {
        Bucle& bucle;
        Ajustes& ajustes;
        Guion& guion;
        Vista& vista;
        ArchivoLog& log;
        Descripciones& descripciones;
        Traspaso::Partes planta;
    };
    explicit Recarga(const Partes& partes);

    /// The faults of the configuration that the driver started with, and what in it means nothing.
    void conocer(const Problemas& problemas, const Problemas& ignoradas) {
        conocidos_.conocer(problemas, ignoradas);
    }
    /// Called with the path of each configuration that is taken over.
    void alAdoptar(std::function<void(const std::string&)> tarea) { alAdoptar_ = std::move(tarea); }
    /// Called when nothing is left to be taken over, or was refused.
    void alTerminar(std::function<void()> tarea) { alTerminar_ = std::move(tarea); }
    /// Reads the configuration and takes it over; what came of it stands in the log, and a refusal
    /// is shown to the operator too. The first portion is done at once and may be all. Lets events
    /// run. Called meanwhile, it is done once more in the end, with the file as it is then.
    void recargar();
    [[nodiscard]] bool enCurso() const { return trabajo_.has_value(); }
    /// Takes a block away that was made because its register was asked for; never a configured one.
    /// Later, when a configuration is just being taken over.
    void olvidar(Indice bloque);
    /// How much is done at a stretch, as `Porciones` count.
    void fijarPorcion(std::int64_t tamano) { porciones_.fijarTamano(tamano); }

  private:
    void seguir();
    Trabajo todas();
    Trabajo unaVez();
    Trabajo adoptar(ConfiguracionLeida& leida, const Validacion& validacion);
    Trabajo soltar(ConfiguracionLeida& leida);
    void contar(const Traspaso::Hecho& hecho, const std::string& ignorado);
    [[nodiscard]] std::string ignoradoNuevo(const Problemas& ignoradas) const;
    [[nodiscard]] std::string queja(const ConfiguracionLeida& leida) const;
    void rechazar(const std::string& porque);

    Partes p_;
    ProblemasConocidos conocidos_; ///< of the configuration in use
    std::function<void(const std::string&)> alAdoptar_;
    std::function<void()> alTerminar_;
    Porciones porciones_;
    Traspaso traspaso_;
    std::unique_ptr<Temporizador> Timer_Porcion_;
    std::optional<Trabajo> trabajo_;
    std::vector<Indice> porOlvidar_;
    std::vector<char> retazo_;
    bool otraVez_ = false;
};

} // namespace kv
