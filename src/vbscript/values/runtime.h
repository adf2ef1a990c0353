// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/fault.h"
#include "vbscript/surroundings/surroundings.h"
#include "vbscript/values/locale.h"
#include "vbscript/values/names.h"
#include "vbscript/values/value.h"

#include <cstdint>
#include <string>

namespace vbscript {

class Linked;

/// What Err shows.
struct ErrState {
    int number = 0;
    std::string description, source, helpFile;
    int helpContext = 0;
    void clear() { *this = ErrState(); }
    void set(const Fault& f);
};

/// Rnd's generator: 24 bits, the classic constants, so that seeds give the classic sequences.
class Chance {
  public:
    float next();
    void seed(float v);
    void randomize(double v);
    [[nodiscard]] float last() const;

  private:
    std::uint32_t state_ = 0x50000;
};

/// What built-in functions and objects see of the engine.
class Runtime {
  public:
    explicit Runtime(Surroundings& w) : world(w) {}
    virtual ~Runtime() = default;
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    Surroundings& world;
    const Locale* locale = &spanish();
    Names names;
    ErrState err;
    Chance chance;

    /// The default member's value. Throws Fault 91 for Nothing, 438 without a default member.
    virtual Value defaultOf(const Value& object) = 0;
    /// A callable for GetRef. Throws Fault 5 when there is no such procedure.
    virtual Value procedureNamed(std::string_view name) = 0;
    /// What takes long says so as it goes: some 1000 units (elements, characters, bytes) count as a
    /// step, and the clock is looked at when it is due. Throws BudgetFault when the time is up.
    virtual void spend(std::size_t units) = 0;
    /// Looks at the clock at once.
    virtual void checkTime() = 0;
    [[nodiscard]] virtual bool running() const = 0;
    /// The objects that may hold others.
    virtual Linked& ring() = 0;
};

} // namespace vbscript
