// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/planta.h"

namespace kv::simulador {
namespace {

bool alcanza(const Lugar& lugar, const std::string& direccion,
             std::optional<std::uint8_t> estacion) {
    if (!lugar.direccion.empty() && lugar.direccion != direccion) return false;
    return !lugar.estacion || lugar.estacion == estacion;
}

} // namespace

Planta::Planta(std::uint64_t semilla, Fallas fallas, std::vector<DefinicionDeRegistro> registros,
               std::vector<DefinicionDeFallas> porLugar)
    : semilla_(semilla), fallas_(fallas), registros_(std::move(registros)),
      porLugar_(std::move(porLugar)) {}

std::size_t Planta::agregarDireccion(std::string clave, std::set<std::uint8_t> estaciones) {
    direcciones_.push_back({std::move(clave), std::move(estaciones)});
    return direcciones_.size() - 1;
}

Fallas Planta::fallasDe(const std::string& clave, std::optional<std::uint8_t> estacion) const {
    Fallas f = fallas_;
    for (const DefinicionDeFallas& d : porLugar_) {
        if (!alcanza(d.lugar, clave, estacion)) continue;
        for (const auto& [nombre, valor] : d.opciones)
            static_cast<void>(fijarFalla(f, nombre, valor)); // checked with the command line
    }
    return f;
}

Fallas Planta::fallasDe(std::size_t direccion) const {
    return fallasDe(direcciones_[direccion].clave, std::nullopt);
}

Planta::Estacion& Planta::estacion(std::size_t direccion, std::uint8_t byte) {
    auto& puesto = estaciones_[std::uint64_t{direccion} << 8 | byte];
    if (puesto) return *puesto;
    puesto = std::make_unique<Estacion>();
    const std::string& clave = direcciones_[direccion].clave;
    for (const DefinicionDeRegistro& d : registros_) {
        if (!alcanza(d.lugar, clave, byte)) continue;
        if (d.registro)
            puesto->registros[*d.registro] = d.senal;
        else
            puesto->registros.fill(d.senal);
    }
    puesto->fallas = fallasDe(clave, byte);
    return *puesto;
}

std::optional<Planta::Atencion> Planta::atender(std::size_t direccion, const Solicitud& solicitud,
                                                std::int64_t ms) {
    const std::uint8_t byte = solicitud[1];
    const std::uint8_t registro = solicitud[3];
    const auto& sirve = direcciones_[direccion].estaciones;
    if (!sirve.empty() && !sirve.contains(byte)) return std::nullopt;
    Estacion& e = estacion(direccion, byte);
    if (solicitud[0] == kEscribir)
        e.registros[registro] = {Forma::Fijo,
                                 static_cast<std::int16_t>(solicitud[4] << 8 | solicitud[5])};
    const std::uint64_t quien =
        std::uint64_t{direccion} << 16 | std::uint64_t{byte} << 8 | registro;
    const auto valor =
        static_cast<std::uint16_t>(valorDe(e.registros[registro], ms, mezclar(semilla_, quien)));
    // The header repeats what was asked for; nobody needs it, but it helps who reads a trace.
    Respuesta r{kMarcaRespuesta,
                byte,
                0,
                registro,
                0,
                static_cast<std::uint8_t>(valor >> 8),
                static_cast<std::uint8_t>(valor & 0xFF),
                0};
    r.back() = sumaDeControl(std::span(r).subspan(1, kLargoRespuesta - 2));
    return Atencion{r, e.fallas};
}

} // namespace kv::simulador
