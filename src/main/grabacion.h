// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/orden_de_operador.h"
#include "platform/archivos.h"
#include "platform/bucle.h"
#include "recording/cinta.h"
#include "recording/discos.h"
#include "recording/grabador.h"

#include <cstdint>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>

namespace kv {

struct ComoGrabar {
    std::string archivo;                  ///< empty: nothing is recorded
    std::uint64_t maximo = 1024ULL << 20; ///< bytes
    /// A recording that is full is followed by another, of a driver that starts anew.
    bool enAnillo = false;
};

/// The recordings before, newest first, are kept beside a new one as its name with .1, .2 and so
/// on.
inline constexpr int kGrabacionesDeAntes = 3;

/// The flight recorder: loop and files for a driver that runs, written down if a recording is
/// wanted.
class Grabacion final : private RegistroDeOrdenes {
  public:
    /// Nothing recorded: `bucle` and `archivos` are given as they are.
    Grabacion(Bucle& bucle, Archivos& archivos, ComoGrabar como, const std::string& carpeta);

    [[nodiscard]] Bucle& bucle();
    [[nodiscard]] Archivos& archivos();
    /// The same for a script's files.
    [[nodiscard]] std::shared_ptr<vbscript::Disk> disco(std::shared_ptr<vbscript::Disk> disco);
    /// The driver's start begins; nothing is written before, as another driver may be running that
    /// records in the same file.
    void empezar();
    /// The driver's start ends.
    void empezada();
    /// Who has to hear of the operator's orders; null while nothing is recorded.
    [[nodiscard]] RegistroDeOrdenes* registro() { return grabador_ ? this : nullptr; }
    /// Why nothing is recorded any more, once; empty: it goes on, was not asked for, or the reason
    /// was given already. A plant wants its driver also without a recording.
    [[nodiscard]] std::string novedad();
    /// It is full, and is to go on in another file when the driver starts anew.
    [[nodiscard]] bool pideOtra() const;

  private:
    void empieza(std::string_view orden) override { grabador_->empezarOrden(orden); }
    void termina() override { grabador_->terminarTramo(); }

    Bucle& bucle_;
    Archivos& archivos_;
    ComoGrabar como_;
    std::optional<CintaEscrita> cinta_;
    std::optional<Grabador> grabador_;
    std::optional<ArchivosGrabados> grabados_;
    RespuestasDeDisco respuestas_;
    bool dicho_ = false;
};

/// Runs the driver again on what a recording holds and prints every line of its traces. The exit
/// code: 0, or 1 with a message when the file cannot be read, is not a recording or leads elsewhere
/// than it did.
[[nodiscard]] int reproducir(const std::string& archivo, std::ostream& errores);

} // namespace kv
