// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/simulador.h"

#include "plant/direcciones.h"

#include <ostream>

namespace kv::simulador {

Simulador::Simulador(BucleEpoll& bucle, const Orden& orden, std::ostream& salida)
    : bucle_(bucle), salida_(salida),
      planta_(orden.semilla, orden.fallas, orden.registros, orden.porLugar),
      traza_(salida, orden.traza), inicioMs_(bucle.reloj().monotonicoMs()) {
    bucle_.alFinalDeVuelta([this] { alTerminarVuelta(); });
}

bool Simulador::abrir(const std::vector<Escuchada>& escuchadas, std::ostream& errores) {
    for (const Escuchada& e : escuchadas) {
        const std::size_t n =
            planta_.agregarDireccion(claveDeConexion(e.ip, std::to_string(e.puerto)), e.estaciones);
        auto escucha = std::make_unique<Escucha>(bucle_, [this, n](int d) { alLlegar(n, d); });
        const std::string error = escucha->abrir(e.ip, e.puerto);
        if (!error.empty()) {
            errores << "SimuladorKV2200: no se puede escuchar en " << e.ip << ":" << e.puerto
                    << ": " << error << '\n';
            return false;
        }
        const std::string nombre = e.ip + ":" + std::to_string(escucha->puerto());
        direcciones_.push_back({std::move(escucha), nombre, 0});
        salida_ << "Escuchando " << nombre << std::endl; // seen at once by who waits for it
    }
    return true;
}

void Simulador::alLlegar(std::size_t direccion, int descriptor) {
    Direccion& d = direcciones_[direccion];
    // Each link has chance of its own, so that what happens on one does not depend on the others.
    const std::uint64_t numero = ++d.enlaces;
    const Azar azar(mezclar(mezclar(planta_.semilla(), direccion), numero));
    auto enlace = std::make_unique<Enlace>(Enlace::Entorno{bucle_, planta_, traza_, inicioMs_},
                                           direccion, d.nombre + " #" + std::to_string(numero),
                                           descriptor, azar, [this](Enlace& e) {
                                               const auto lugar = enlaces_.find(&e);
                                               terminados_.push_back(std::move(lugar->second));
                                               enlaces_.erase(lugar);
                                           });
    enlaces_.emplace(enlace.get(), std::move(enlace));
}

void Simulador::alTerminarVuelta() {
    terminados_.clear();
    traza_.volcar();
    if (!salida_) bucle_.detener(); // nobody sees what happens
}

} // namespace kv::simulador
