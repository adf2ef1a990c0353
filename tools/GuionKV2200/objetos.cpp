// SPDX-License-Identifier: Apache-2.0
#include "objetos.h"

#include "script/objetos.h"
#include "text/numeros.h"
#include "vbscript/host_object.h"

#include <memory>
#include <span>
#include <string>

using vbscript::HostTable;
using vbscript::HostValues;
using vbscript::Value;

namespace {

std::string dicho(const kv::PedidoDelGuion& p) {
    std::string linea(p.miembro.nombre);
    std::size_t numeros = 0;
    for (const char clase : p.miembro.argumentos) {
        linea += ' ';
        if (clase == 't')
            linea += p.texto;
        else if (clase == 's')
            linea += p.numeros.at(numeros++) != 0 ? "True" : "False";
        else
            kv::agregarNumero(linea, p.numeros.at(numeros++));
    }
    return linea;
}

} // namespace

void agregarObjetos(vbscript::Engine& motor, Papel& papel) {
    auto wscript = std::make_shared<HostTable>();
    wscript->method("Echo", [&papel](std::span<const Value> args, HostValues& valores) {
        std::string linea;
        for (std::size_t k = 0; k < args.size(); ++k)
            linea += (k > 0 ? " " : "") + valores.text(args[k]);
        papel.linea(linea);
        return Value();
    });
    motor.addObject("WScript", wscript);
    kv::agregarMw(motor, [&papel](const kv::PedidoDelGuion& p) {
        papel.linea(dicho(p));
        const bool escribe = p.miembro.operacion == kv::OperacionDeMw::escribirDireccion;
        return escribe ? Value::integer(0) : Value();
    });
    kv::agregarLabel(motor, std::make_shared<kv::LabelDelGuion>(),
                     [&papel](std::string_view propiedad, const std::string& valor) {
                         papel.linea("Label." + std::string(propiedad) + " = " + valor);
                     });
}

kv::LugarDelGuion::Objeto objetoDelEscritorio() { return {"WScript", {"Echo"}}; }
