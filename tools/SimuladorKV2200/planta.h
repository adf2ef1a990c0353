// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SimuladorKV2200/fallas.h"
#include "SimuladorKV2200/senal.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace kv::simulador {

/// Which stations an order is meant for; what is left out means all.
struct Lugar {
    std::string direccion; ///< "IP:PORT" as `claveDeConexion` writes it
    std::optional<std::uint8_t> estacion;
};

/// A register of the stations of a place, or every register.
struct DefinicionDeRegistro {
    Lugar lugar;
    std::optional<std::uint8_t> registro;
    Senal senal;
};

/// Options of the stations of a place, by name, as `fijarFalla` takes them.
struct DefinicionDeFallas {
    Lugar lugar;
    std::vector<std::pair<std::string, std::string>> opciones;
};

/// The simulated stations and their registers: one table for every address and station byte. Knows
/// no sockets; time is given.
class Planta {
  public:
    Planta(std::uint64_t semilla, Fallas fallas, std::vector<DefinicionDeRegistro> registros,
           std::vector<DefinicionDeFallas> porLugar);

    /// Gives the address's number. Without stations every station byte answers there, otherwise
    /// only those.
    std::size_t agregarDireccion(std::string clave, std::set<std::uint8_t> estaciones);

    struct Atencion {
        Respuesta respuesta;
        const Fallas& fallas;
    };
    /// Reads or writes the register and gives the answer; nothing when no station answers to the
    /// byte. A write also ends the register's own changing. `ms` is the time since the start.
    [[nodiscard]] std::optional<Atencion> atender(std::size_t direccion, const Solicitud& solicitud,
                                                  std::int64_t ms);
    /// The faults of an address as a whole.
    [[nodiscard]] Fallas fallasDe(std::size_t direccion) const;
    [[nodiscard]] std::uint64_t semilla() const { return semilla_; }

  private:
    struct Direccion {
        std::string clave;
        std::set<std::uint8_t> estaciones;
    };
    struct Estacion {
        std::array<Senal, 256> registros;
        Fallas fallas;
    };
    [[nodiscard]] Estacion& estacion(std::size_t direccion, std::uint8_t byte);
    [[nodiscard]] Fallas fallasDe(const std::string& clave,
                                  std::optional<std::uint8_t> estacion) const;

    std::uint64_t semilla_;
    Fallas fallas_;
    std::vector<DefinicionDeRegistro> registros_;
    std::vector<DefinicionDeFallas> porLugar_;
    std::vector<Direccion> direcciones_;
    std::unordered_map<std::uint64_t, std::unique_ptr<Estacion>> estaciones_;
};

} // namespace kv::simulador
