// SPDX-License-Identifier: Apache-2.0
#include "vbscript/engine.h"

#include <cstddef>
#include <cstdint>

// Any bytes as a script that runs, twice, under small budgets, with an object of the host at hand.

namespace {

/// Files that are what they are called.
class Disco : public vbscript::Disk {
  public:
    vbscript::DiskAnswer ask(const vbscript::DiskOrder& o) override {
        return {.fault = o.path.ends_with('!') ? 70 : 0,
                .kind = static_cast<vbscript::DiskAnswer::Kind>(o.path.size() % 3),
                .size = o.path.size(),
                .bytes = o.path};
    }
};

class Mundo : public vbscript::Surroundings {
  public:
    std::shared_ptr<vbscript::Disk> disk() override { return std::make_shared<Disco>(); }
    std::int64_t monotonicMs() override { return ++reloj_; }
    vbscript::LocalTime wallClock() override { return {2024, 2, 29, 23, 59, 58, 0}; }
    int messageBox(std::string_view, int, std::string_view) override { return 1; }
    std::string inputBox(std::string_view, std::string_view, std::string_view propuesto) override {
        return std::string(propuesto);
    }

  private:
    std::int64_t reloj_ = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Mundo mundo;
    vbscript::Limits limites;
    limites.maxMilliseconds = 20;
    limites.maxDepth = 200;
    limites.maxBytes = 4 << 20;
    vbscript::Engine motor(mundo, limites);
    auto eco = std::make_shared<vbscript::HostTable>();
    eco->method("", [](std::span<const vbscript::Value> args, vbscript::HostValues& valores) {
        for (const auto& v : args)
            static_cast<void>(valores.text(v));
        return vbscript::Value();
    });
    motor.addObject("Echo", eco);
    const auto lugar = *motor.global("MW_1");
    const std::string_view texto(reinterpret_cast<const char*>(data), size);
    for (int k = 0; k < 2; ++k) {
        motor.setNumber(lugar, k * 1.5);
        motor.addCode(texto);
        if (motor.running()) __builtin_trap();
    }
    return 0;
}
