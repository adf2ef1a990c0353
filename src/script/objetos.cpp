// SPDX-License-Identifier: Apache-2.0
#include "script/objetos.h"

#include "plant/claves_de_bloque.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

using vbscript::Fault;
using vbscript::HostTable;
using vbscript::HostValues;
using vbscript::Value;
using Argumentos = std::span<const Value>;

PedidoDelGuion pedido(const MiembroDeMw& miembro, Argumentos args, HostValues& valores) {
    PedidoDelGuion p{miembro, {}, {}};
    std::size_t numeros = 0;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (miembro.argumentos[i] == 't') {
            p.texto = valores.text(args[i]);
            continue;
        }
        const double n = valores.number(args[i]);
        p.numeros.at(numeros++) = miembro.argumentos[i] == 's' ? (n != 0 ? 1 : 0) : n;
    }
    return p;
}

std::int32_t color(const Value& v, HostValues& valores) {
    const auto n = entero(valores.number(v));
    if (!n) throw Fault(vbscript::errors::overflow);
    return *n;
}

} // namespace

std::string direccionDeNombre(std::string_view nombre) {
    std::string direccion = reemplazarSinCaja(nombre, kPrefijoDeNombre, "");
    std::replace(direccion.begin(), direccion.end(), '_', '.');
    return direccion;
}

std::string PedidoDelGuion::direccion() const { return direccionDeNombre(texto); }

void agregarMw(vbscript::Engine& motor, const std::function<Value(const PedidoDelGuion&)>& hacer) {
    const auto mw = std::make_shared<HostTable>();
    for (const MiembroDeMw& m : miembrosDeMw()) {
        const auto cuantos = static_cast<std::uint8_t>(m.argumentos.size());
        mw->method(m.nombre,
                   [&m, hacer](Argumentos args, HostValues& valores) {
                       return hacer(pedido(m, args, valores));
                   },
                   {cuantos, cuantos});
    }
    motor.addObject("mw", mw);
}

void agregarLabel(
    vbscript::Engine& motor, const std::shared_ptr<LabelDelGuion>& label,
    const std::function<void(std::string_view propiedad, const std::string& valor)>& cambio) {
    const auto objeto = std::make_shared<HostTable>();
    objeto->property(
        "Caption", [label](Argumentos, HostValues&) { return Value::text(label->Caption); },
        [label, cambio](const Value& v, HostValues& valores) {
            label->Caption = valores.text(v);
            cambio("Caption", label->Caption);
        });
    for (const auto& [nombre, campo] : {std::pair{"BackColor", &LabelDelGuion::BackColor},
                                        std::pair{"ForeColor", &LabelDelGuion::ForeColor}}) {
        objeto->property(
            nombre,
            [label, campo = campo](Argumentos, HostValues&) {
                return Value::longint((*label).*campo);
            },
            [label, cambio, nombre = nombre, campo = campo](const Value& v, HostValues& valores) {
                (*label).*campo = color(v, valores);
                cambio(nombre, textoDeNumero((*label).*campo));
            });
    }
    objeto->property(
        "Visible", [label](Argumentos, HostValues&) { return Value::boolean(label->Visible); },
        [label, cambio](const Value& v, HostValues& valores) {
            label->Visible = valores.number(v) != 0;
            cambio("Visible", label->Visible ? "True" : "False");
        });
    objeto->defaultProperty("Caption");
    motor.addObject("Label", objeto);
}

} // namespace kv
