#pragma once

#include "platform/archivos.h"
#include "platform/bucle.h"
#include "platform/grabado/cinta.h"
#include "platform/grabado/grabador.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>

namespace kv {

/// The flight recorder: loop and files for a driver that runs, written down if a recording is
/// wanted.
class Grabacion {
  public:
    /// `archivo` empty: nothing is recorded, and `bucle` and `archivos` are given as they are.
    /// `maximo` in bytes. Throws std::runtime_error when the recording cannot be created.
    Grabacion(Bucle& bucle, Archivos& archivos, const std::string& archivo, std::uint64_t maximo,
              const std::string& carpeta);

    [[nodiscard]] Bucle& bucle();
    [[nodiscard]] Archivos& archivos();
    /// Something that the operator asks for, right before it is done.
    void anotarOrden(std::string_view orden);
    /// True once: the recording has just become full.
    [[nodiscard]] bool seLleno();

  private:
    Bucle& bucle_;
    Archivos& archivos_;
    std::optional<CintaEscrita> cinta_;
    std::optional<Grabador> grabador_;
    std::optional<ArchivosGrabados> grabados_;
    bool dicho_ = false;
};

/// Runs the driver again on what a recording holds and prints every line of its traces. The exit
/// code: 0, or 2 with a message when the recording is none or leads elsewhere than it did.
[[nodiscard]] int reproducir(const std::string& archivo, std::ostream& errores);

} // namespace kv
