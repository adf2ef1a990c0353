#include "write/forzado.h"

#include "core/tables/bases.h"
#include "link/Modulo_Tramas_KV2200.h"
#include "text/numeros.h"
#include "text/texto.h"

#include <cmath>

namespace kv {
namespace {

constexpr std::int64_t kTicInmediato = 1;
constexpr std::size_t kScan = 2; // columns of the blocks list
constexpr std::size_t kColumnaLibre = 4;

/// Number of the bit that an address names, or -1.
double bitDe(const std::vector<std::string_view>& partes) {
    if (partes.size() != 4) return -1;
    const double bit = numeroDeTexto(partes[3]).value_or(-1);
    return bit >= 0 && bit <= 15 && bit == std::floor(bit) ? bit : -1;
}

} // namespace

Forzado::Forzado(Tablas& tablas, Turnos& turnos, Poleo& poleo, Modelo& modelo, Vista& vista,
                 Sello& sello, ArchivoLog& log, ArregloDeTemporizadores& Timer1_Bloques)
    : tablas_(tablas), turnos_(turnos), poleo_(poleo), modelo_(modelo), vista_(vista),
      sello_(sello), log_(log), Timer1_Bloques_(Timer1_Bloques) {}

void Forzado::decir(const std::string& texto) {
    vista_.txtDemandaLecturaEscritura.agregar(sello_.ahora() + texto);
}

void Forzado::forzarBloque_porID(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    tablas_.ponerActivo(bloque, true);
    tablas_.ponerPendiente(bloque, true);
    b.scanBasesRestantes = 0;
    if (!b.habilitadoPorRespuestas) {
        // It rests because its station was silent. Its timer counts the rest, and the read follows.
        return Timer1_Bloques_[bloque].habilitar(true);
    }
    Timer1_Bloques_[bloque].rearmar(kTicInmediato);
    poleo_.polearBloque(bloque);
}

void Forzado::forzarPoleo(const std::string& direccion) {
    const auto partes = partir(direccion, '.');
    const auto puertoYPlc = [&]() -> std::pair<std::optional<double>, std::optional<double>> {
        if (partes.size() < 3) return {};
        return {numeroDeTexto(partes[0]), numeroDeTexto(partes[1])};
    }();
    const auto [puerto, plc] = puertoYPlc;
    const bool hayPuerto = puerto && tablas_.puertos.vive(*puerto - 1);
    const auto lugar =
        hayPuerto && plc ? tablas_.buscarEstacion(*puerto, *plc) : Tablas::LugarDeEstacion{};
    if (lugar.conexion == kNinguno) {
        decir(" NO EXISTE PUERTO O PLC \r\n");
        log_.escribirLog("DRIVER", "Error al forzar un poleo",
                         sello_.ahora() + " NO EXISTE PUERTO O PLC PARA: " + direccion);
        return;
    }
    const Indice conocido = buscarBloque(lugar.conexion, *plc, partes[2]);
    if (conocido != kNinguno) return forzarConocido(conocido, direccion, bitDe(partes), false);
    darDeAlta(lugar, tablas_.puertos[static_cast<std::size_t>(*puerto) - 1], *plc,
              std::string(partes[2]), direccion, bitDe(partes));
}

/// The first block of the station whose range of decimal addresses holds the register. One with
/// letters lies in no such range: that is the block of this very register.
Indice Forzado::buscarBloque(Indice conexion, double plc, std::string_view direccion) const {
    const auto registro = numeroDeTexto(direccion);
    if (!registro) return tablas_.buscarPorRegistro(conexion, plc, direccion);
    for (const Indice i : tablas_.conexiones[conexion].bloques) {
        const BloqueLectura& b = tablas_.bloques[i];
        const auto inicio = numeroDeTexto(b.direccion);
        if (b.plc == plc && inicio && *inicio <= *registro && *registro < *inicio + b.cantidad)
            return i;
    }
    return kNinguno;
}

void Forzado::forzarConocido(Indice bloque, const std::string& direccion, double bit, bool nuevo) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    const ConexionIP& c = tablas_.conexiones[b.idConexion];
    if (bit >= 0) {
        const double k = numeroDeTexto(partir(direccion, '.')[2]).value_or(0) -
                         numeroDeTexto(b.direccion).value_or(0);
        modelo_.levantarBitDeDireccion(bloque, static_cast<std::size_t>(k),
                                       static_cast<std::size_t>(bit));
    }
    if (!turnos_.conectada(b.idConexion)) {
        decir(" Imposible FORZAR, Sin conexion con estacion " + c.ip + ":" + c.puertoTCP + "\r\n");
    } else if (!b.habilitadoPorRespuestas) {
        decir(" Imposible de forzar la lectura por deshabilitacion del bloque" +
              (nuevo ? std::string() : ": " + b.clave) + "\r\n");
    } else {
        forzarBloque_porID(bloque);
        decir(" Forzado OK " + direccion + "\r\n");
    }
}

void Forzado::darDeAlta(const Tablas::LugarDeEstacion& lugar, const Puerto& puerto, double plc,
                        const std::string& registro, const std::string& direccion, double bit) {
    std::string traza;
    const Estacion& estacion = tablas_.conexiones[lugar.conexion].estaciones[lugar.estacion];
    // Anybody may ask for any address: only what a station can be asked for becomes a block.
    if (dadosDeAlta_ >= kDadosDeAltaMaximo ||
        !armarTramaLectura(registro, textoDeNumero(estacion.indice), traza))
        return decir(" Error al dar de alta bloque, Direccion fuera de trama. Bloque: " +
                     direccion.substr(0, 100) + "\r\n");
    const double nuevo = modelo_.levantarBloquePoleo(puerto.numero, plc, registro, 1,
                                                     puerto.scanPorDefecto, true, 0);
    if (nuevo < 0)
        return decir(" Error al dar de alta bloque, No se encuentra Puerto y PLC. Bloque: " +
                     direccion);
    ++dadosDeAlta_;
    decir(" Bloque " + direccion + " dado de alta. DefaultScan de " +
          textoDeNumero(puerto.scanPorDefecto) + " Segundos\r\n");
    forzarConocido(static_cast<Indice>(nuevo), direccion, bit, true);
}

template <class Accion>
void Forzado::enNivel(double nivel, const Accion& accion) {
    if (!(nivel >= 0 && nivel < static_cast<double>(tablas_.bloquesPorNivel.size()))) return;
    // A copy: a forced read lets events run, and they may add blocks to the level.
    const std::string deNivel = tablas_.bloquesPorNivel[static_cast<std::size_t>(nivel)];
    for (const std::string_view parte : partir(deNivel, ';')) {
        if (const auto i = numeroDeTexto(parte)) accion(static_cast<Indice>(*i));
    }
}

void Forzado::forzarBloque_porNivel(double nivel) {
    enNivel(nivel, [this](Indice i) {
        tablas_.bloques[i].forzado = true;
        vista_.lstViewEstadoDeBloques.poner(tablas_.bloques[i].filaBloque, kColumnaLibre,
                                            "FORZANDO POR NIVEL");
        forzarBloque_porID(i);
    });
}

void Forzado::forzarBloque_porNivel_NVeces(double nivel, double veces) {
    enNivel(nivel, [this, veces](Indice i) {
        BloqueLectura& b = tablas_.bloques[i];
        if (veces > 0) {
            b.forzado = true;
            b.forzadoVeces = veces;
            b.forzadoContador = 1;
            vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kColumnaLibre,
                                                "FORZANDO POR NIVEL, Cantidad de veces a leer : " +
                                                    textoDeNumero(veces));
            forzarBloque_porID(i);
        } else if (veces == 0) {
            b.forzado = false;
            Activar_Desactivar_Bloque_Por_Solicitud(i, true);
        } else if (veces == -1) {
            Activar_Desactivar_Bloque_Por_Solicitud(i, false);
        }
    });
}

void Forzado::ponerChecks(const BloqueLectura& b, bool estado) {
    vista_.lstViewEstadoDeBloques.tildar(b.filaBloque, estado);
    for (const FilaDeLista fila : b.filasVariables)
        vista_.lstViewVariables.tildar(fila, estado);
    for (const auto& bits : b.bits) {
        for (std::size_t n = 0; bits && n < bits->bitDefinido.size(); ++n) {
            if (bits->bitDefinido[n]) vista_.lstViewVariables.tildar(bits->bitFilas[n], estado);
        }
    }
}

void Forzado::Activar_Desactivar_Bloque_Por_Solicitud(Indice bloque, bool estado) {
    BloqueLectura& b = tablas_.bloques[bloque];
    tablas_.ponerActivo(bloque, estado);
    ponerChecks(b, estado);
    if (estado) {
        if (!turnos_.conectada(b.idConexion)) return;
        if (!b.pendiente) return forzarBloque_porID(bloque);
        // It waited for its turn when it was switched off, and waits again.
        Timer1_Bloques_[bloque].habilitar(true);
        return poleo_.buscoSiguienteAPolear(b.idConexion);
    }
    Timer1_Bloques_[bloque].habilitar(false);
    b.scanBasesRestantes = b.reconeccionBasesRestantes = 0;
    b.reintentos = b.tiempoFueraBasesRestantes = 0;
}

void Forzado::Activar_Dir(std::string_view clave, bool estado) {
    for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior(); ++i) {
        if (tablas_.bloques[i].clave != clave) continue;
        tablas_.bloques[i].forzado = false;
        return Activar_Desactivar_Bloque_Por_Solicitud(static_cast<Indice>(i), estado);
    }
}

void Forzado::ModificarScanDeBloque(double bloque, double segundos) {
    if (!tablas_.bloques.vive(bloque) || !(segundos >= 0 && segundos <= Modelo::kScanMaximo))
        return;
    const auto i = static_cast<Indice>(bloque);
    BloqueLectura& b = tablas_.bloques[i];
    b.scanSegundos = segundos;
    establecerBaseDeTiempoEnMilisegundos(segundos, b.scanBaseMs, b.scanCantidadBases);
    b.scanBasesRestantes = b.scanCantidadBases;
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kScan, textoDeNumero(segundos));
    forzarBloque_porID(i);
}

} // namespace kv
