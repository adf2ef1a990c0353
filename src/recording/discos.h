// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "recording/grabador.h"
#include "recording/reproductor.h"
#include "vbscript/surroundings/disk.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace kv {

/// The files of a folder, for scripts; null where `carpeta` is "".
[[nodiscard]] std::shared_ptr<vbscript::Disk> discoDeCarpeta(const std::string& carpeta);

/// What recorder and player expect of a script's files: that they are as they last were, and that
/// what a script does to them succeeds.
class RespuestasDeDisco {
  public:
    [[nodiscard]] vbscript::DiskAnswer esperada(const vbscript::DiskOrder& orden) const;
    /// Beyond some room all is forgotten, at the same answer by either of the two.
    void anotar(const vbscript::DiskOrder& orden, const vbscript::DiskAnswer& respuesta);

  private:
    using Pregunta = std::pair<vbscript::DiskOrder::What, std::string>;
    std::map<Pregunta, vbscript::DiskAnswer> vistas_;
    std::size_t bytes_ = 0;
};

/// A script's files whose answers are written down when they are not as expected.
class DiscoGrabado final : public vbscript::Disk {
  public:
    /// All but `disco` must outlive this.
    DiscoGrabado(std::shared_ptr<vbscript::Disk> disco, Grabador& grabador,
                 RespuestasDeDisco& respuestas)
        : disco_(std::move(disco)), grabador_(grabador), respuestas_(respuestas) {}
    [[nodiscard]] vbscript::DiskAnswer ask(const vbscript::DiskOrder& orden) override;

  private:
    std::shared_ptr<vbscript::Disk> disco_;
    Grabador& grabador_;
    RespuestasDeDisco& respuestas_;
};

/// The files of the recording. What is written goes nowhere.
class DiscoReproducido final : public vbscript::Disk {
  public:
    /// Both must outlive this. Throws CintaMala, as the player does.
    DiscoReproducido(Reproductor& reproductor, RespuestasDeDisco& respuestas)
        : reproductor_(reproductor), respuestas_(respuestas) {}
    [[nodiscard]] vbscript::DiskAnswer ask(const vbscript::DiskOrder& orden) override;

  private:
    Reproductor& reproductor_;
    RespuestasDeDisco& respuestas_;
};

} // namespace kv
