// SPDX-License-Identifier: Apache-2.0
#include "engine/reproduccion.h"

#include <utility>

namespace kv {

DriverReproducido::DriverReproducido(std::string contenido)
    : cinta_(std::move(contenido)), carpeta_(cinta_.texto()), bucle_(cinta_), archivos_(bucle_),
      motor_(bucle_, archivos_, carpeta_), arranque_(motor_, procesos_) {
    motor_.scriptControl.fijarDisco([this]() -> std::shared_ptr<vbscript::Disk> {
        if (carpetaDelGuion(motor_.ajustes, archivos_).empty()) return nullptr;
        return std::make_shared<DiscoReproducido>(bucle_, respuestas_);
    });
    bucle_.alOrdenar([this](std::string_view texto) {
        const auto orden = ordenDeTexto(texto);
        if (!orden) throw CintaMala{"una orden que no lo es: " + std::string(texto)};
        motor_.operador.hacer(*orden);
    });
}

bool DriverReproducido::correr() {
    bucle_.empezar();
    arranque_.arrancar();
    arranque_.abrirServidor();
    return bucle_.correr();
}

} // namespace kv
