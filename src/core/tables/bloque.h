#pragma once

#include "core/tables/ranuras.h"
#include "core/tables/registros.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace kv {

/// Number of a record in its table.
using Indice = std::uint32_t;
inline constexpr Indice kNinguno = 0xFFFFFFFF;

/// The bit variables of one register slot. Made when the first of them is.
struct BitsDeVariable {
    std::array<double, 16> bitNumerosDePunto{};
    std::array<bool, 16> bitDefinido{};
    std::array<std::string, 16> bitNombres;
    std::array<FilaDeLista, 16> bitFilas{};
    std::array<Indice, 16> ranuraValor{};
    std::array<Indice, 16> ranuraEstado{};
};

/// A block: one register of one station. A `Variable` is slot k of the lists at the end.
struct BloqueLectura : ConfiguracionDeBloque {
    bool activo = false;                 ///< enabled; for a write: still to be done
    bool forzado = false;                ///< a forced read by level is running
    bool pendiente = false;              ///< due; set with Tablas::ponerPendiente
    bool habilitadoPorRespuestas = true; ///< set with Tablas::habilitar
    bool tieneTrama = false;             ///< the address fits a frame: it can be polled
    bool publicable = false;             ///< its name is an identifier of the script
    double forzadoVeces = 0;
    double forzadoContador = 0;
    Indice indice = kNinguno; ///< in its own table
    Indice idConexion = kNinguno;
    Indice idEstacion = kNinguno;
    Indice posicionEnConexion = 0;
    double digitos = 0;
    double indiceEstacion = 0;
    std::string clave;

    double scanBaseMs = 0, scanCantidadBases = 0, scanBasesRestantes = 0;
    double tiempoFueraSegundos = 0;
    double tiempoFueraBaseMs = 0, tiempoFueraCantidadBases = 0, tiempoFueraBasesRestantes = 0;
    double segReconeccion = 0;
    double reconeccionBaseMs = 0, reconeccionCantidadBases = 0, reconeccionBasesRestantes = 0;
    double reintentosMax = 0;
    double reintentos = 0;

    Solicitud tramaSolicitud{};
    std::string tramaSolicitudTexto;

    Ranuras<double> valores;
    Ranuras<double> estados;
    Ranuras<double> numerosDePunto;
    std::string nombreScript;      ///< all slots of a block are published under one name
    Indice ranuraValor = kNinguno; ///< of the script's variable, kNinguno if not published
    Indice ranuraEstado = kNinguno;
    Ranuras<FilaDeLista> filasVariables;
    std::vector<std::unique_ptr<BitsDeVariable>> bits; ///< empty, or one per slot
    FilaDeLista filaBloque = kSinFila;

    Indice ultimaEscritura = kNinguno; ///< the write asked for last of this register

    [[nodiscard]] bool tieneBits(std::size_t k) const { return k < bits.size() && bits[k]; }
};

/// A write block: the layout of a read block and what only writes need.
struct BloqueEscritura : BloqueLectura {
    bool esBit = false;
    bool esperandoConfirmacion = false;
    double bit = -1;
    double valorBit = 0;
    bool enviada = false;         ///< at least once
    bool respuestaDudosa = false; ///< an answer came that may be another request's
    std::string origen;           ///< who asked for it
    double valorAnterior = 0;     ///< of the register when the write was asked for
    bool seConociaAnterior = false;
    Indice indiceBloqueLectura = kNinguno;
    Solicitud tramaLectura{};
    std::string trazaLectura;
};

} // namespace kv
