// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/bloque.h"
#include "plant/configurados.h"
#include "plant/ordenantes.h"
#include "plant/posiciones.h"
#include "plant/tabla.h"
#include "wire/respuestas_debidas.h"

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kv {

/// What a connection is doing; link/turno keeps it.
enum class EstadoDeTurno : std::uint8_t {
    Libre,     ///< nothing is outstanding: a request may leave
    Esperando, ///< a request is outstanding and its time-out runs
    EnPausa,   ///< the pause between two requests runs, or the line is being held back
};

/// One TCP connection: all stations with the same address share it, one request at a time.
struct ConexionIP {
    // What an exchange touches comes first, so that it lies together.
    EstadoDeTurno turno = EstadoDeTurno::Libre;
    bool pausaCumplida = false;  ///< a pause of no length: over when the present handler is
    bool retenida = false;       ///< the pause waits for the line to fall silent
    bool llegoBasura = false;    ///< bytes that make no answer, since the last request
    bool retirada = false;       ///< no longer configured, see Tablas
    bool porOrdenar = false;     ///< some of its blocks were retired since, see Tablas::ordenar
    bool dichoSinEnlace = false; ///< since it was last up: that it does not come up
    bool enTiempoFuera = false;
    Indice bloqueEnCurso = kNinguno;  ///< kNinguno until a read is sent on the link
    Indice cursorBloques = kNinguno;  ///< position of the block polled last; kNinguno at first
    Indice bloqueDePrueba = kNinguno; ///< asked on trial: has the next turn whose answer counts
    Indice escrituraEnCurso = kNinguno;
    RespuestasDebidas::Registro registroEnCurso = 0; ///< what the outstanding request asks for
    std::uint32_t escriturasSeguidas = 0;            ///< writes sent since the last read
    std::int64_t escribeDesdeMs = 0;                 ///< when the last write got the line
    std::int64_t leeHastaMs = 0;                     ///< until then due reads go before writes
    std::int64_t enviadoUs = 0;  ///< when the last request left, on the clock that never goes back
    std::int64_t recibidoUs = 0; ///< when the last valid answer came, whosever it was
    std::uint64_t enlaceSupervisado = 0; ///< which of the socket's links the supervision acted on
    double estadoSupervision = 0;
    Solicitud tramaEnCurso{}; ///< what was sent last
    std::vector<std::uint8_t> recepcion;
    std::vector<Indice> bloques;    ///< the connection's read blocks in creation order
    ConjuntoDePosiciones porPolear; ///< positions of those that wait for their turn
    RespuestasDebidas debidas;
    Tabla<Estacion, std::vector<Estacion>> estaciones;

    std::string ip;
    std::string puertoTCP;
    std::uint32_t numeroDePuertoTCP = 0; ///< 0 when the text is no port
    std::uint32_t activos = 0;           ///< its blocks that are polled: on, and with a frame
    double puerto = 0;
    std::int64_t pacienciaMs =
        0; ///< all tries of its slowest block: a dead cable is noticed by then
    std::unordered_map<std::uint64_t, Indice> porRegistro; ///< first block of a station's register
    std::list<Indice> escrituras; ///< the writes still to be done, oldest first
    FilaDeLista filaLista = kSinFila;
    Momento enlaceDesde; ///< since when it is up, or lost; empty: it never was up
    std::string motivo;  ///< why it is not up, as the last attempt gave it
    double contadorIntervalos = 0, contadorSolicitudes = 0, contadorTiempoFuera = 0;

    /// Those of `estaciones` that are configured, in their order.
    [[nodiscard]] std::vector<Indice> estacionesEnUso() const;
};
/// "address:port", as lists, boxes, log and doors name a connection.
[[nodiscard]] inline std::string direccionDe(const ConexionIP& c) {
    return c.ip + ":" + c.puertoTCP;
}

/// The runtime tables. Records refer to each other by their numbers; records are never removed, but
/// for the writes, when no write is left to do. What is no longer configured is retired: its record
/// stays for those who hold its number, nobody finds it and nobody asks for it. Until the tables
/// are put in order again it may still stand in the lists of its level and station.
class Tablas {
  public:
    Tabla<Puerto> puertos;
    Tabla<ConexionIP> conexiones;
    Tabla<BloqueLectura> bloques;
    Tabla<BloqueEscritura> escrituras;
    /// In creation order; what was retired, or given another level, is passed over.
    std::vector<std::vector<Indice>> bloquesPorNivel;
    /// Who may have switched a block on or off; the first is the configuration.
    std::vector<std::string> ordenantes{nombreDe(Ordenante::Configuracion)};
    std::size_t largoDeClaves = 0; ///< of all blocks together
    double cantidadDePuntos = 0;
    double cantidadDeEstaciones = 0;

    // What decides whether a block waits for a turn is changed through these, so that a connection
    // always knows its waiting blocks without looking at all of them.
    void ponerPendiente(Indice bloque, bool pendiente);
    void ponerActivo(Indice bloque, bool activo);
    void habilitar(Indice bloque, bool habilitado);
    /// The number in `ordenantes` of who gives an order; beyond the limit all others share one.
    [[nodiscard]] std::uint8_t ordenante(std::string_view quien);
    /// Position in the connection's `bloques` of the block to be polled next, the one polled last
    /// being tried last; ConjuntoDePosiciones::kNinguna when no block waits.
    [[nodiscard]] std::size_t siguientePorPolear(Indice conexion) const;
    /// The one after `posicion` in that order, which may be `posicion` itself.
    [[nodiscard]] std::size_t siguientePorPolear(Indice conexion, std::size_t posicion) const {
        return conexiones[conexion].porPolear.siguienteEnRonda(posicion);
    }
    [[nodiscard]] Estacion& estacionDe(const BloqueLectura& b) {
        return conexiones[b.idConexion].estaciones[b.idEstacion];
    }
    [[nodiscard]] const Estacion& estacionDe(const BloqueLectura& b) const {
        return conexiones[b.idConexion].estaciones[b.idEstacion];
    }

    /// The live connection of an address: IP without regard to case, port as a number. kNinguno if
    /// no connection has it.
    [[nodiscard]] Indice buscarConexion(const std::string& ip, const std::string& puertoTCP) const;
    /// The station `plc` of a port: connection and place in it; connection kNinguno if the port has
    /// no such station.
    struct LugarDeEstacion {
        Indice conexion = kNinguno;
        Indice estacion = kNinguno;
    };
    [[nodiscard]] LugarDeEstacion buscarEstacion(double puerto, double plc) const;

    /// The first read block of a connection that polls a station's register, both addresses read as
    /// hexadecimal numbers; kNinguno if no block does, or `registro` is no such number.
    [[nodiscard]] Indice buscarPorRegistro(Indice conexion, double plc,
                                           std::string_view registro) const;

    /// The record has been retired: nobody finds it any more.
    void olvidarBloque(Indice bloque);
    void olvidarEstacion(Indice conexion, Indice estacion);
    void olvidarConexion(Indice conexion);
    /// After some were: makes the look-ups anew, in creation order. Those of one connection's
    /// blocks; those of stations.
    void ordenar(Indice conexion);
    void ordenarEstaciones();
    /// `bloquesPorNivel`, put in order by the caller.
    void tomarNiveles(std::vector<std::vector<Indice>> niveles);
    /// Another number after every such change.
    [[nodiscard]] std::uint64_t edicion() const { return edicion_; }

    /// Enters a new block among those of its level, and into the look-up above.
    void anotarNivel(Indice bloque);
    void anotarRegistro(Indice bloque);
    /// Enters a new connection or station into the look-ups above.
    void anotarConexion(Indice conexion);
    void anotarEstacion(Indice conexion, Indice estacion);

  private:
    void actualizarPorPolear(const BloqueLectura& b);

    std::uint64_t edicion_ = 0;
    bool estacionesPorOrdenar_ = false; ///< some were retired since
    std::unordered_map<std::string, Indice> porDireccion_;
    std::unordered_map<std::uint64_t, LugarDeEstacion> porNumero_; ///< port and station number
};

/// "[PLC 1 - Indice 2] 10.0.0.1:502": a block's station, for operators.
[[nodiscard]] std::string nombreDeEstacion(const Tablas& tablas, Indice bloque);
/// "1.2": what the addresses of a station's variables begin with.
[[nodiscard]] std::string direccionDeEstacion(const Tablas& tablas, Indice conexion,
                                              Indice estacion);

} // namespace kv
