#include "objetos.h"

#include <iostream>
#include <map>
#include <memory>
#include <string>

using vbscript::Fault;
using vbscript::HostTable;
using vbscript::HostValues;
using vbscript::Value;

namespace {

Value eco(std::span<const Value> args, HostValues& valores) {
    std::string linea;
    for (std::size_t k = 0; k < args.size(); ++k) {
        if (k > 0) linea += ' ';
        linea += valores.text(args[k]);
    }
    std::cout << linea << '\n';
    return {};
}

std::shared_ptr<HostTable> variables() {
    auto mw = std::make_shared<HostTable>();
    mw->method("writeMW", [](std::span<const Value> args, HostValues& valores) {
        if (args.size() != 2) throw Fault(450);
        std::cout << "writeMW " << valores.text(args[0]) << ' ' << valores.text(args[1]) << '\n';
        return Value();
    });
    mw->method("READBLOQ", [](std::span<const Value> args, HostValues& valores) {
        if (args.size() != 1) throw Fault(450);
        std::cout << "READBLOQ " << valores.text(args[0]) << '\n';
        return Value();
    });
    return mw;
}

std::shared_ptr<HostTable> etiqueta() {
    auto texto = std::make_shared<std::string>();
    auto label = std::make_shared<HostTable>();
    label->property(
        "Caption", [texto](std::span<const Value>, HostValues&) { return Value::text(*texto); },
        [texto](const Value& v, HostValues& valores) {
            *texto = valores.text(v);
            std::cout << "Label.Caption = " << *texto << '\n';
        });
    label->defaultProperty("Caption");
    return label;
}

} // namespace

void agregarObjetos(vbscript::Engine& motor) {
    auto wscript = std::make_shared<HostTable>();
    wscript->method("Echo", eco);
    motor.addObject("WScript", wscript);
    motor.addObject("mw", variables());
    motor.addObject("Label", etiqueta());
}
