// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/disk.h"
#include "vbscript/surroundings/surroundings.h"

#include <string>
#include <vector>

namespace vbscript {

/// A world that stands still: 15 March 2024, 14:30:15.250; every look at the clock takes a
/// millisecond, so that time budgets do not depend on the machine.
class Entorno : public Surroundings {
  public:
    std::int64_t monotonicMs() override { return ++reloj; }
    LocalTime wallClock() override { return {2024, 3, 15, 14, 30, 15, 250}; }
    int messageBox(std::string_view texto, int botones, std::string_view titulo) override;
    std::string inputBox(std::string_view texto, std::string_view titulo,
                         std::string_view propuesto) override;
    std::shared_ptr<Disk> disk() override {
        return carpeta.empty() ? nullptr : std::make_shared<FolderDisk>(carpeta);
    }

    std::int64_t reloj = 0;
    std::string carpeta;
    std::vector<std::string> dialogos;
};

} // namespace vbscript
