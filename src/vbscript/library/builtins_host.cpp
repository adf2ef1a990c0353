// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/library/dictionary.h"
#include "vbscript/library/files.h"
#include "vbscript/library/regexp.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

namespace vbscript {

namespace {

std::string textArg(Runtime& rt, Arguments a, std::size_t k) {
    return given(a, k) ? shown(toText(rt, a[k])) : std::string();
}

Value createObject(Runtime& rt, Arguments a) {
    const Value name = toText(rt, a[0]);
    const std::u16string id = lowered(name.chars());
    if (id == u"scripting.dictionary") return makeDictionary(rt);
    if (id == u"vbscript.regexp") return makeRegExp();
    if (id == u"scripting.filesystemobject") {
        if (auto disk = rt.world.disk()) return makeFileSystem(std::move(disk));
    }
    throw Fault(errors::cannotCreate);
}

Value getObject(Runtime&, Arguments) { throw Fault(errors::cannotCreate); }
Value loadPicture(Runtime&, Arguments) { throw Fault(errors::invalidPicture); }

Value getRef(Runtime& rt, Arguments a) {
    Value v = plain(rt, a[0]);
    if (!v.is(Type::String)) throw Fault(errors::typeMismatch);
    return rt.procedureNamed(v.utf8());
}

Value msgBox(Runtime& rt, Arguments a) {
    const std::string text = shown(joinable(rt, a[0]));
    const auto buttons = static_cast<int>(numberArg(rt, a, 1, 0));
    return Value::integer(rt.world.messageBox(text, buttons, textArg(rt, a, 2)));
}

Value inputBox(Runtime& rt, Arguments a) {
    const std::string prompt = shown(joinable(rt, a[0]));
    return Value::text(rt.world.inputBox(prompt, textArg(rt, a, 1), textArg(rt, a, 2)));
}

Value scriptEngine(Runtime&, Arguments) { return Value::text("VBScript"); }
Value majorVersion(Runtime&, Arguments) { return Value::longint(5); }
Value minorVersion(Runtime&, Arguments) { return Value::longint(8); }
Value buildVersion(Runtime&, Arguments) { return Value::longint(16384); }

// Compiled as steps of their own: here so that the names are known.
Value compiled(Runtime&, Arguments) { throw Fault(errors::internal); }

constexpr Builtin table[] = {
    {"CreateObject", createObject, 1, 2},
    {"GetObject", getObject, 0, 2},
    {"LoadPicture", loadPicture, 0, 1},
    {"GetRef", getRef, 1, 1},
    {"MsgBox", msgBox, 1, 5},
    {"InputBox", inputBox, 1, 7},
    {"ScriptEngine", scriptEngine, 0, 0},
    {"ScriptEngineMajorVersion", majorVersion, 0, 0},
    {"ScriptEngineMinorVersion", minorVersion, 0, 0},
    {"ScriptEngineBuildVersion", buildVersion, 0, 0},
    {"Eval", compiled, 1, 1},
    {"Execute", compiled, 1, 1},
    {"ExecuteGlobal", compiled, 1, 1},
};

} // namespace

std::span<const Builtin> hostBuiltins() { return table; }

} // namespace vbscript
