// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kv::mundo {

/// What stations behind an address may do wrong.
enum class Clase : std::uint8_t {
    Caprichosa, ///< answers in time, or not at all
    Lenta,      ///< also late, now and then or always
    ConBasura,  ///< also damaged, doubled, swapped, echoed, unasked for
};

/// What a station puts into the four free bytes of its answers.
enum class Habito : std::uint8_t {
    RepiteTodo,     ///< the first four bytes of the request
    RepiteSinOrden, ///< its station and its register
    SoloEstacion,
    SoloRegistro,
    Constante,
    AlAzar,
    Contador,
    Cuantos
};

/// Who writes a register; each has one writer, so that the order of its writes is known.
enum class Fuente : std::uint8_t { Nadie, Operador, Cliente, Guion, Bit };

struct PlanDeConexion {
    std::string ip;
    std::uint32_t puertoTCP = 502;
    Clase clase = Clase::Caprichosa;
    std::int64_t demoraUs = 0;      ///< of an answer of the station when nothing is wrong
    std::int64_t tiempoFueraMs = 0; ///< of its port, like the next
    int reintentos = 0;
    std::vector<Habito> habitos{Habito::RepiteTodo}; ///< of its stations in turn
    int tardanza = 0;              ///< every answer comes so many thousandths of a time-out late
    bool eco = false;              ///< requests come back, as from a half-duplex converter
    bool danaTercera = false;      ///< about every third answer is damaged
    bool repite = false;           ///< every answer comes twice
    bool aparte = false;           ///< nothing else goes wrong with it: what it yields is measured
    int muertos = 0;               ///< blocks of its second station, which is dead until the calm
    std::int64_t reconexionMs = 0; ///< of its port
};

struct PlanDePuerto {
    std::int64_t tiempoFueraMs = 5000;
    int reintentos = 3;
    std::int64_t reconexionMs = 30'000;
};

struct PlanDeBloque {
    std::size_t puerto = 0; ///< from 0
    std::size_t conexion = 0;
    int plc = 0;
    int indice = 0;   ///< of the station, 0 to 99
    int registro = 0; ///< 0 to 255
    std::int64_t scanMs = 1000;
    int cantidad = 1;
    int nivel = 1;
    bool activo = true;
    Fuente fuente = Fuente::Nadie;
    bool aparte = false; ///< like its connection

    [[nodiscard]] std::string direccion() const; ///< port.PLC.register
};

/// A size that is wanted instead of the one drawn.
struct Tamano {
    std::int64_t conexiones = 0; ///< 0: what the seed says
    std::int64_t bloques = 0;    ///< of each connection
};

/// A plant, drawn from a seed.
struct Plan {
    explicit Plan(std::uint64_t semilla, Tamano querido = {});

    std::uint64_t semilla;
    std::int64_t duracionMs = 0; ///< of the life before the calm
    int faltasPorHora = 150;
    std::int64_t pausaMs = 800;
    std::int64_t baseDeSolicitudesMs = 5000;
    bool exigeLogin = false;
    double vigenciaSegundos = 600; ///< of writes
    std::vector<PlanDePuerto> puertos;
    std::vector<PlanDeConexion> conexiones;
    std::vector<PlanDeBloque> bloques;
    /// The driver's file. Version 0 is what is planned; in others some of the blocks that nobody
    /// writes have another register, scan or level.
    [[nodiscard]] std::string configuracion(std::uint32_t version) const;

    [[nodiscard]] std::string resumen() const;

  private:
    [[nodiscard]] std::string otroDato(const PlanDeBloque& b, std::string_view clave,
                                       std::size_t suerte, const std::string& dato) const;

    std::string archivo_;
    std::vector<std::size_t> enArchivo_; ///< which of `bloques` those of the file are, in order
};

} // namespace kv::mundo
