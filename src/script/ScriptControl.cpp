// SPDX-License-Identifier: Apache-2.0
#include "script/ScriptControl.h"

#include "script/valor_visible.h"
#include "text/numeros.h"

#include <algorithm>
#include <exception>

namespace kv {
namespace {

constexpr int kAceptar = 1;
constexpr std::size_t kLargoVisible = 200; // bytes of a text: what a look takes in

} // namespace

ScriptControl::ScriptControl(const Reloj& reloj, Vista& vista, OrdenesDelGuion& ordenes)
    : reloj_(reloj), vista_(vista), ordenes_(ordenes), motor_(*this) {
    agregarMw(motor_, [this](const PedidoDelGuion& p) { return pedir(p); });
    agregarLabel(motor_, label_, [this](std::string_view, const std::string&) { mostrarLabel(); });
}

ScriptControl::~ScriptControl() = default;

vbscript::Value ScriptControl::pedir(const PedidoDelGuion& pedido) {
    double indice = -1;
    try {
        indice = ordenes_.hacer(pedido);
    } catch (const std::exception& falla) {
        ordenes_.alFallar(pedido.miembro.nombre, falla.what());
    }
    if (pedido.miembro.operacion != OperacionDeMw::escribirDireccion) return {};
    return vbscript::Value::number(indice);
}

void ScriptControl::mostrarLabel() {
    vista_.Label10.poner(label_->Caption);
    vista_.Label10.vestir({label_->BackColor, label_->ForeColor, label_->Visible});
}

void ScriptControl::AddCode(std::string_view texto) {
    const std::int64_t empezo = reloj_.monotonicoUs();
    motor_.addCode(texto);
    ultima_ = {reloj_.monotonicoUs() - empezo, motor_.memoryUsed()};
}

std::optional<std::string> ScriptControl::valorVisibleDe(std::string_view nombre) const {
    const auto valor = motor_.find(nombre);
    if (!valor) return std::nullopt;
    return valorVisible(motor_, *valor, kLargoVisible);
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
                                    std::string_view proposed) {
    vista_.mostrarMensaje(prompt, title);
    return std::string(proposed);
}

} // namespace kv
