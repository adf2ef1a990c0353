#include "script/ScriptControl.h"

#include "text/numeros.h"
#include "text/texto.h"
#include "vbscript/host_object.h"
#include "vbscript/surroundings/fault.h"

#include <algorithm>
#include <exception>

namespace kv {
namespace {

using vbscript::Fault;
using vbscript::HostTable;
using vbscript::HostValues;
using vbscript::Value;

constexpr int kNumeroDeArgumentos = 450;
constexpr int kAceptar = 1;

} // namespace

std::string direccionDeNombre(std::string_view nombre) {
    std::string direccion = reemplazarSinCaja(nombre, "MW_", "");
    std::replace(direccion.begin(), direccion.end(), '_', '.');
    return direccion;
}

ScriptControl::ScriptControl(const Reloj& reloj, Vista& vista)
    : reloj_(reloj), vista_(vista), motor_(*this) {
    agregarMw();
    agregarLabel();
}

ScriptControl::~ScriptControl() = default;

void ScriptControl::agregarMw() {
    const auto mw = std::make_shared<HostTable>();
    mw->method("writeMW", [this](std::span<const Value> args, HostValues& valores) {
        if (args.size() != 2) throw Fault(kNumeroDeArgumentos);
        const std::string direccion = direccionDeNombre(valores.text(args[0]));
        const double valor = valores.number(args[1]);
        if (ordenes_ == nullptr) return Value();
        try {
            ordenes_->escribirDireccion(direccion, valor);
        } catch (const std::exception& falla) {
            ordenes_->alFallar("writeMW", falla.what());
        }
        return Value();
    });
    mw->method("READBLOQ", [this](std::span<const Value> args, HostValues& valores) {
        if (args.size() != 1) throw Fault(kNumeroDeArgumentos);
        const std::string direccion = direccionDeNombre(valores.text(args[0]));
        if (ordenes_ == nullptr) return Value();
        try {
            ordenes_->forzarPoleo(direccion);
        } catch (const std::exception& falla) {
            ordenes_->alFallar("READBLOQ", falla.what());
        }
        return Value();
    });
    motor_.addObject("mw", mw);
}

void ScriptControl::agregarLabel() {
    const auto label = std::make_shared<HostTable>();
    label->property(
        "Caption",
        [this](std::span<const Value>, HostValues&) { return Value::text(vista_.Label10.texto()); },
        [this](const Value& v, HostValues& valores) { vista_.Label10.poner(valores.text(v)); });
    label->defaultProperty("Caption");
    motor_.addObject("Label", label);
}

void ScriptControl::fijarPresupuesto(const PresupuestoDelGuion& presupuesto) {
    motor_.setLimits({static_cast<std::int64_t>(presupuesto.tiempoMs),
                      static_cast<int>(presupuesto.llamadasAnidadas),
                      static_cast<std::size_t>(presupuesto.memoriaKiB) * 1024,
                      static_cast<std::int64_t>(presupuesto.pasos)});
}

std::optional<double> ScriptControl::valorDe(std::string_view nombre) {
    const auto ranura = motor_.global(nombre);
    if (!ranura) return std::nullopt;
    std::string texto = motor_.text(motor_.value(*ranura));
    std::replace(texto.begin(), texto.end(), ',', '.');
    return numeroDeTexto(texto);
}

vbscript::LocalTime ScriptControl::wallClock() {
    const FechaHora f = reloj_.ahora();
    return {f.anio, f.mes, f.dia, f.hora, f.minuto, f.segundo, f.milisegundo};
}

int ScriptControl::messageBox(std::string_view text, int /*buttons*/, std::string_view title) {
    vista_.mostrarMensaje(text, title);
    return kAceptar;
}

std::string ScriptControl::inputBox(std::string_view prompt, std::string_view title,
                                    std::string_view /*proposed*/) {
    vista_.mostrarMensaje(prompt, title);
    return {};
}

} // namespace kv
