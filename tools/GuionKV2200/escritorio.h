// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "papel.h"

#include "vbscript/surroundings/surroundings.h"

#include <string>

/// The desk: dialogs are printed and answered with what they propose; files are those that a driver
/// in `carpeta`, where the script lies, would let it use.
class Escritorio final : public vbscript::Surroundings {
  public:
    Escritorio(std::string carpeta, Papel& papel) : carpeta_(std::move(carpeta)), papel_(papel) {}

    std::int64_t monotonicMs() override;
    vbscript::LocalTime wallClock() override;
    int messageBox(std::string_view texto, int botones, std::string_view titulo) override;
    std::string inputBox(std::string_view texto, std::string_view titulo,
                         std::string_view propuesto) override;
    std::shared_ptr<vbscript::Disk> disk() override;

  private:
    std::string carpeta_;
    Papel& papel_;
};
