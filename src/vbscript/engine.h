// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/host_object.h"
#include "vbscript/surroundings/line_sink.h"
#include "vbscript/surroundings/surroundings.h"
#include "vbscript/values/value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vbscript {

/// One module of the script language with its globals: code is added to it and runs at once. All
/// of it belongs to one thread. Text is UTF-8.
class Engine {
  public:
    /// `world` must outlive the engine.
    explicit Engine(Surroundings& world, Limits limits = {});
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// Take effect at once, or from the next look at the clock on.
    void setLimits(const Limits& limits);
    /// "es-AR" (how an engine starts) or "en-US"; false: unknown, nothing changed. Scripts change
    /// it too, with SetLocale.
    bool setLocale(std::string_view tag);
    /// Makes `object` known as `name`; its members are not global. Replaces an earlier one.
    void addObject(std::string_view name, std::shared_ptr<HostObject> object);

    using Slot = std::uint32_t;
    /// The slot of a global variable, made Empty on first use; it stays good as long as the engine.
    /// nullopt: `name` is no identifier, or a reserved word.
    std::optional<Slot> global(std::string_view name);
    /// What the statement `name = number` would do, at a constant price; also in the midst of a
    /// run. A name that scripts use as a constant or procedure keeps its meaning, as the statement
    /// would have failed.
    void setNumber(Slot slot, double number);
    [[nodiscard]] Value value(Slot slot) const;
    /// The value of a global variable or constant; nothing where no variable or constant has the
    /// name, which is not made either.
    [[nodiscard]] std::optional<Value> find(std::string_view name) const;
    /// Text of a value as CStr gives it; "" where CStr would fail.
    [[nodiscard]] std::string text(const Value& value) const;

    /// Adds to the module and runs the top-level statements; true: without an error. A text that is
    /// added again is not compiled again. During a run it refuses (error 17 in error()).
    bool addCode(std::string_view text);
    /// A fresh module: what scripts made is gone, variables of the host keep their slots and
    /// numbers, its objects, limits and country stay. During a run nothing happens.
    void restart();
    /// Only compiles.
    bool check(std::string_view text);

    /// Of the latest addCode or check that failed.
    [[nodiscard]] const ScriptError& error() const;
    void clearError();
    [[nodiscard]] bool running() const;
    /// How many texts have been compiled so far, and what the values hold now, in bytes.
    [[nodiscard]] std::uint64_t compilations() const;
    [[nodiscard]] std::size_t memoryUsed() const;

    struct Variable {
        std::string name; ///< as it was first written
        Value value;
    };
    /// The module's variables as they are now; no constants, procedures or objects of the host.
    [[nodiscard]] std::vector<Variable> variables() const;
    /// `sink`, which must outlive its use, is called with the lines of the texts that are compiled
    /// from now on, when they run; null: no text reports its lines. Texts that were compiled
    /// before, and those that a text runs itself, stay silent and cost nothing.
    void tellLinesTo(LineSink* sink);

  private:
    struct Inside;
    std::unique_ptr<Inside> inside_;
};

} // namespace vbscript
