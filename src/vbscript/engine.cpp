// SPDX-License-Identifier: Apache-2.0
#include "vbscript/engine.h"

#include "vbscript/host_adapter.h"
#include "vbscript/library/object_err.h"
#include "vbscript/library/standard.h"
#include "vbscript/run/machine.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"

#include <new>
#include <utility>
#include <vector>

namespace vbscript {

struct Engine::Inside {
    static constexpr Slot none = UINT32_MAX;
    struct Published {
        std::uint32_t at; ///< Its global in the machine.
        bool set;         ///< By the host, so that its number outlives the module.
    };
    struct HostName {
        std::string name;
        std::shared_ptr<HostObject> object;
    };

    // Values made while the machine is built are charged to the engine, too.
    static std::unique_ptr<Machine> make(Surroundings& world) {
        auto* account = new Memory; // the machine's from here on
        const MemoryScope scope(*account);
        return std::make_unique<Machine>(world, *account, standardProvisions());
    }
    explicit Inside(Surroundings& w) : world(w), machine(make(w)) { placeErr(); }

    void placeErr() {
        const MemoryScope scope(machine->memory());
        place("Err", makeErr());
    }
    void place(const HostName& o) {
        const MemoryScope scope(machine->memory());
        place(o.name, Value::object(new HostAdapter(o.object)));
    }
    Slot slotOf(std::string_view name) {
        const std::uint32_t at = machine->globals.slot(machine->names.of(name));
        machine->globals[at].defined = true;
        if (at >= slots.size()) slots.resize(at + at / 2 + 64, none);
        if (slots[at] == none) {
            slots[at] = static_cast<Slot>(places.size());
            places.push_back({at, false});
        }
        return slots[at];
    }
    void restart();

    void place(std::string_view name, const Value& object) {
        Global& g = machine->globals[machine->globals.slot(machine->names.of(name))];
        g.value = object;
        g.defined = g.host = true;
    }

    void failed(int number, std::string description, std::string_view source,
                const Place& at = {}) {
        error = {
            number,      std::move(description), std::string(source), at.line, at.column, at.text,
            at.textLine, at.textColumn};
    }
    void failed(const Fault& f) {
        std::string text = f.description.empty() ? std::string(errorText(f.number)) : f.description;
        if (!f.detail.empty()) text += ": '" + f.detail + "'";
        failed(f.number, std::move(text), f.source.empty() && !f.raised ? runtimeSource : f.source,
               f.at);
    }
    void failed(const CompileFault& f) {
        failed(f.number, f.description.empty() ? std::string(errorText(f.number)) : f.description,
               compileSource, {f.line, f.column, {}, 0, 0});
        error.compileTime = true;
    }
    void failed(const BudgetFault& f) {
        failed(budgetNumber(f.kind), std::string(budgetText(f.kind)), runtimeSource, f.at);
        error.budget = true;
    }

    template <class Work>
    bool attempt(Work work) {
        const MemoryScope scope(machine->memory());
        try {
            work();
            return true;
        } catch (const CompileFault& f) {
            failed(f);
        } catch (const BudgetFault& f) {
            failed(f);
        } catch (const Fault& f) {
            failed(f);
        } catch (const std::bad_alloc&) {
            failed(BudgetFault(BudgetKind::Memory));
        }
        return false;
    }

    Surroundings& world;
    std::unique_ptr<Machine> machine;
    Limits limits;
    const Locale* locale = nullptr; ///< What the host wants; null: what a module begins with.
    std::vector<HostName> objects;
    std::vector<Published> places; ///< What a slot stands for.
    std::vector<Slot> slots;       ///< The other way round.
    std::uint64_t compilationsBefore = 0;
    ScriptError error;
};

// What the host made is there again, at the slots that it knows.
void Engine::Inside::restart() {
    const auto old = std::exchange(machine, make(world));
    machine->setLimits(limits);
    if (locale) machine->locale = locale;
    compilationsBefore += old->compilations();
    placeErr();
    for (const HostName& o : objects)
        place(o);
    slots.clear();
    const auto before = std::exchange(places, {});
    for (const auto& [at, set] : before) {
        const Global& was = old->globals[at];
        Published& now = places[slotOf(old->names.text(was.name))];
        now.set = set;
        if (set && !was.value.owns()) machine->globals[now.at].value = was.value;
    }
}

Engine::Engine(Surroundings& world, Limits limits) : inside_(std::make_unique<Inside>(world)) {
    setLimits(limits);
}

Engine::~Engine() = default;

void Engine::setLimits(const Limits& limits) {
    inside_->limits = limits;
    inside_->machine->setLimits(limits);
}

bool Engine::setLocale(std::string_view tag) {
    const Locale* l = localeByTag(tag);
    if (l) inside_->locale = inside_->machine->locale = l;
    return l != nullptr;
}

void Engine::addObject(std::string_view name, std::shared_ptr<HostObject> object) {
    auto& known = inside_->objects;
    std::erase_if(known, [&](const auto& o) { return o.name == name; });
    known.push_back({std::string(name), std::move(object)});
    inside_->place(known.back());
}

std::optional<Engine::Slot> Engine::global(std::string_view name) {
    if (!isIdentifier(name)) return std::nullopt;
    return inside_->slotOf(name);
}

void Engine::setNumber(Slot slot, double number) {
    auto& place = inside_->places[slot];
    place.set = true;
    Global& g = inside_->machine->globals[place.at];
    if (g.constant || g.host || g.definition) return;
    g.value = Value::number(number);
}

Value Engine::value(Slot slot) const {
    return inside_->machine->globals[inside_->places[slot].at].value;
}

std::optional<Value> Engine::find(std::string_view name) const {
    const Machine& m = *inside_->machine;
    const Atom atom = m.names.known(name);
    const Global* g = atom == 0 ? nullptr : m.globals.find(atom);
    if (!g || !g->defined || g->host || g->definition) return std::nullopt;
    return g->value;
}

std::string Engine::text(const Value& value) const {
    try {
        return toText(*inside_->machine, value).utf8();
    } catch (const Fault&) {
        return {};
    } catch (const BudgetFault&) {
        return {};
    }
}

bool Engine::addCode(std::string_view text) {
    Inside& in = *inside_;
    if (running()) {
        in.failed(errors::cannotPerform, "Can't perform requested operation: a script is running",
                  runtimeSource);
        return false;
    }
    in.machine->err.clear();
    return in.attempt([&] { in.machine->runUnit(in.machine->unitFor(text)); });
}

bool Engine::check(std::string_view text) {
    return inside_->attempt([&] { inside_->machine->unitFor(text); });
}

void Engine::restart() {
    if (!running()) inside_->restart();
}

const ScriptError& Engine::error() const { return inside_->error; }
void Engine::clearError() { inside_->error = ScriptError(); }
bool Engine::running() const { return inside_->machine->running(); }
std::uint64_t Engine::compilations() const {
    return inside_->compilationsBefore + inside_->machine->compilations();
}
std::size_t Engine::memoryUsed() const { return inside_->machine->memory().used(); }

std::vector<Engine::Variable> Engine::variables() const {
    const Machine& m = *inside_->machine;
    std::vector<Variable> all;
    for (std::uint32_t k = 0; k < m.globals.size(); ++k) {
        const Global& g = m.globals[k];
        if (g.defined && !g.constant && !g.host && !g.definition)
            all.push_back({m.names.text(g.name), g.value});
    }
    return all;
}

void Engine::tellLinesTo(LineSink* sink) { inside_->machine->tellLinesTo(sink); }

} // namespace vbscript
