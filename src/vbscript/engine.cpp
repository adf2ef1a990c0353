#include "vbscript/engine.h"

#include "vbscript/host_adapter.h"
#include "vbscript/library/object_err.h"
#include "vbscript/library/standard.h"
#include "vbscript/run/machine.h"
#include "vbscript/values/convert.h"

#include <new>

namespace vbscript {

struct Engine::Inside {
    // Values made while the machine is built are charged to the engine, too.
    static std::unique_ptr<Machine> make(Surroundings& world) {
        auto* account = new Memory; // the machine's from here on
        const MemoryScope scope(*account);
        return std::make_unique<Machine>(world, *account, standardProvisions());
    }
    explicit Inside(Surroundings& world) : machine(make(world)) {}

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

    std::unique_ptr<Machine> machine;
    ScriptError error;
};

Engine::Engine(Surroundings& world, Limits limits) : inside_(std::make_unique<Inside>(world)) {
    setLimits(limits);
    const MemoryScope scope(inside_->machine->memory());
    inside_->place("Err", Value::object(new ErrObject));
}

Engine::~Engine() = default;

void Engine::setLimits(const Limits& limits) { inside_->machine->setLimits(limits); }

bool Engine::setLocale(std::string_view tag) {
    const Locale* l = localeByTag(tag);
    if (l) inside_->machine->locale = l;
    return l != nullptr;
}

void Engine::addObject(std::string_view name, std::shared_ptr<HostObject> object) {
    const MemoryScope scope(inside_->machine->memory());
    inside_->place(name, Value::object(new HostAdapter(std::move(object))));
}

std::optional<Engine::Slot> Engine::global(std::string_view name) {
    if (!isIdentifier(name)) return std::nullopt;
    Machine& m = *inside_->machine;
    const Slot slot = m.globals.slot(m.names.of(name));
    m.globals[slot].defined = true;
    return slot;
}

void Engine::setNumber(Slot slot, double number) {
    Global& g = inside_->machine->globals[slot];
    if (g.constant || g.host || g.proc || g.cls) return;
    g.value = Value::number(number);
}

Value Engine::value(Slot slot) const { return inside_->machine->globals[slot].value; }

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
        in.failed(17, "Can't perform requested operation: a script is running", runtimeSource);
        return false;
    }
    in.machine->err.clear();
    return in.attempt([&] { in.machine->runUnit(in.machine->unitFor(text)); });
}

bool Engine::check(std::string_view text) {
    return inside_->attempt([&] { inside_->machine->unitFor(text); });
}

const ScriptError& Engine::error() const { return inside_->error; }
void Engine::clearError() { inside_->error = ScriptError(); }
bool Engine::running() const { return inside_->machine->running(); }
std::uint64_t Engine::compilations() const { return inside_->machine->compilations(); }
std::size_t Engine::memoryUsed() const { return inside_->machine->memory().used(); }

} // namespace vbscript
