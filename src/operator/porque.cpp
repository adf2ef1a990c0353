// SPDX-License-Identifier: Apache-2.0
#include "operator/porque.h"

#include "plant/bases.h"
#include "text/numeros.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::int64_t kVecesLoEsperado = 3;

std::string contar(std::uint32_t n, std::string_view uno, std::string_view varios) {
    return std::to_string(n) + " " + std::string(n == 1 ? uno : varios);
}

/// Whole seconds, none of which is over when they are told.
std::string dentroDe(std::int64_t ms) {
    return ms <= 0 ? "ya" : "dentro de " + textoDeDuracion((ms + 999) / 1000 * 1000);
}

std::string enSegundos(std::int64_t ms) {
    return textoDeNumero(static_cast<double>(ms) / 1000) + " s";
}

} // namespace

FechaHora PorQue::fecha(std::int64_t ms) const {
    const FechaHora ahora = reloj_.ahora();
    const long long aquel =
        segundosDesdeFecha(ahora) * 1000 + ahora.milisegundo - (reloj_.monotonicoMs() - ms);
    return fechaDesdeSegundos(aquel / 1000, static_cast<int>(aquel % 1000));
}

std::string PorQue::hora(std::int64_t ms) const {
    const FechaHora ahora = reloj_.ahora();
    const FechaHora f = fecha(ms);
    const std::string general = formatoGeneral(f); // dd/mm/yyyy hh:mm:ss
    constexpr std::size_t kDia = 11;
    const bool hoy = f.dia == ahora.dia && f.mes == ahora.mes && f.anio == ahora.anio;
    return hoy ? general.substr(kDia) : general;
}

std::string PorQue::hace(std::int64_t ms) const {
    return textoDeDuracion(std::max<std::int64_t>(0, reloj_.monotonicoMs() - ms));
}

std::int64_t PorQue::turnoDeTodosMs(Indice conexion) const {
    const double unaMs =
        turnos_.pausa() + static_cast<double>(contadores_.respuestaUsualUs(conexion)) / 1000;
    return static_cast<std::int64_t>(tablas_.conexiones[conexion].activos * unaMs);
}

Edad PorQue::edad(Indice bloque) const {
    return edad(bloque, reloj_.monotonicoMs(), turnoDeTodosMs(tablas_.bloques[bloque].idConexion));
}

Edad PorQue::edad(Indice bloque, std::int64_t ahoraMs, std::int64_t turnoMs) const {
    const BloqueLectura& b = tablas_.bloques[bloque];
    Edad e{.ok = b.estado == kOk, .desdeMs = b.estadoDesde.ms(), .leidaMs = b.leidoMs};
    if (!b.activo || !b.tieneTrama || b.scanMs == 0) return e;
    e.esperadaMs = kVecesLoEsperado * std::max(b.scanMs, turnoMs);
    e.vieja = e.ok && ahoraMs - b.leidoMs > e.esperadaMs;
    return e;
}

/// One register may be bad: a station is silent when as many tries in a row as a block has, two at
/// least, had no answer.
bool PorQue::callada(const Estacion& e) const {
    if (e.muda || e.bloques.empty()) return e.muda;
    const double deUno = tablas_.bloques[e.bloques.front()].reintentosMax + 1;
    return e.fallidos.total() >= std::max(2.0, deUno);
}

ResumenDeEstacion PorQue::resumen(Indice conexion, Indice estacion) const {
    const Estacion& e = tablas_.conexiones[conexion].estaciones[estacion];
    ResumenDeEstacion r;
    r.callada = callada(e);
    r.intentos = e.fallidos.total();
    if (e.fallidos.desde.hay()) r.desdeMs = e.fallidos.desde.ms();
    const std::int64_t ahora = reloj_.monotonicoMs();
    const std::int64_t turno = turnoDeTodosMs(conexion);
    for (const Indice i : e.bloques) {
        if (!tablas_.bloques[i].activo) continue;
        const Edad suya = edad(i, ahora, turno);
        ++(!suya.ok ? r.bad : suya.vieja ? r.viejas : r.ok);
    }
    return r;
}

std::string PorQue::porQueVariable(Indice bloque) const {
    const BloqueLectura& b = tablas_.bloques[bloque];
    const Edad e = edad(bloque);
    const std::string leida =
        e.leidaMs < 0 ? "nunca leida" : "leida por ultima vez hace " + hace(e.leidaMs);
    if (!e.ok) return "BAD desde " + hora(e.desdeMs) + ", " + leida + ": " + causa(b) + ".";
    std::string texto = std::string(e.vieja ? "OK pero vieja" : "OK") + ", " + leida;
    if (e.vieja) texto += " (se espera a lo sumo cada " + enSegundos(e.esperadaMs) + ")";
    const bool haceFalta = e.vieja || !b.activo || b.fallidos.desde.hay();
    return texto + (haceFalta ? ": " + causa(b) : "") + ".";
}

std::string PorQue::porQueBloque(Indice bloque) const {
    const BloqueLectura& b = tablas_.bloques[bloque];
    return b.clave + ": " + causa(b) + ".";
}

std::string PorQue::apagado(const BloqueLectura& b) const {
    if (!b.ordenDesde.hay()) return "el bloque esta apagado por la configuracion";
    return "el bloque esta apagado desde " + hora(b.ordenDesde.ms()) + " por " +
           tablas_.ordenantes[b.ordenante];
}

std::string PorQue::causa(const BloqueLectura& b) const {
    if (b.retirado) return "ya no esta en la configuracion";
    if (!b.tieneTrama)
        return "no se puede polear: la direccion o el indice de la estacion no caben en un pedido";
    if (!b.activo) return apagado(b);
    if (!turnos_.conectada(b.idConexion)) return sinEnlace(b.idConexion);
    if (!b.habilitadoPorRespuestas) return enDescanso(b);
    return enSuTurno(b);
}

std::string PorQue::desdeCuandoSinEnlace(Indice conexion) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    // The supervision has not looked at it since.
    if (c.estadoSupervision == 1)
        return "se acaba de perder (estaba conectada desde " + hora(c.enlaceDesde.ms()) + ")";
    if (c.enlaceDesde.hay()) return "esta caida desde " + hora(c.enlaceDesde.ms());
    return conexiones_.wsSocket(conexion).conexiones() > 0
               ? "se establece y se pierde antes de usarse"
               : "no se establecio nunca";
}

std::string PorQue::sinEnlace(Indice conexion) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    const std::string quien = "la conexion " + c.ip + ":" + c.puertoTCP + " ";
    const EstadoZocalo estado = conexiones_.wsSocket(conexion).estado();
    if (estado == EstadoZocalo::Conectado)
        return quien + "acaba de establecerse y se usa desde la proxima supervision";
    std::string texto = quien + desdeCuandoSinEnlace(conexion);
    if (const std::string motivo = conexiones_.porQueNoHayEnlace(conexion); !motivo.empty())
        texto += ": " + motivo;
    if (estado == EstadoZocalo::Conectando) return texto + "; se esta intentando ahora";
    return texto + "; proximo intento " + dentroDe(conexiones_.proximoIntentoMs(conexion));
}

std::string PorQue::intentos(const Fallidos& f) const {
    if (!f.desde.hay()) return "no hubo respuesta";
    const auto& n = f.cuantas;
    std::string como;
    const auto agregar = [&como](std::uint32_t cuantos, std::string_view que) {
        if (cuantos == 0) return;
        como += (como.empty() ? "" : ", ") + std::to_string(cuantos) + " " + std::string(que);
    };
    agregar(n[static_cast<std::size_t>(FinDeIntento::SinNada)], "sin nada");
    agregar(n[static_cast<std::size_t>(FinDeIntento::Danada)], "con bytes que no son respuesta");
    agregar(n[static_cast<std::size_t>(FinDeIntento::Dudosa)], "con respuesta dudosa");
    return "sin respuesta desde " + hora(f.desde.ms()) + " (" +
           contar(f.total(), "intento", "intentos") + ": " + como + ")";
}

Indice PorQue::quienSondea(const Estacion& e) const {
    const auto i = std::find_if(e.bloques.begin(), e.bloques.end(),
                                [this](Indice k) { return bloques_.faltanMs(k) >= 0; });
    return i == e.bloques.end() ? kNinguno : *i;
}

std::string PorQue::enDescanso(const BloqueLectura& b) const {
    const Estacion& e = tablas_.estacionDe(b);
    if (!e.muda) {
        const std::int64_t faltan = bloques_.faltanMs(b.indice);
        return intentos(b.fallidos) + "; descansa hasta " + hora(reloj_.monotonicoMs() + faltan) +
               ", proximo intento " + dentroDe(faltan);
    }
    const std::string estacion =
        "la estacion " + nombreDeEstacion(tablas_, b.indice) + " esta " + intentos(e.fallidos);
    const Indice quien = quienSondea(e);
    if (quien == kNinguno) return estacion + "; se esta preguntando por ella";
    return estacion + "; " +
           (quien == b.indice ? "este bloque" : "el bloque " + tablas_.bloques[quien].clave) +
           " pregunta por todos " + dentroDe(bloques_.faltanMs(quien));
}

/// What the connection does instead of asking for the block.
std::string PorQue::queOcupaLaLinea(const BloqueLectura& b) const {
    const ConexionIP& c = tablas_.conexiones[b.idConexion];
    if (c.retenida) return "la linea espera a que no lleguen respuestas atrasadas";
    const bool leyendo = c.turno == EstadoDeTurno::Esperando && c.bloqueEnCurso != kNinguno;
    if (leyendo && tablas_.bloques[c.bloqueEnCurso].tramaSolicitud == c.tramaEnCurso) {
        if (c.bloqueEnCurso == b.indice) return "se le esta preguntando ahora";
        const Estacion& otra = tablas_.estacionDe(tablas_.bloques[c.bloqueEnCurso]);
        if (otra.fallidos.desde.hay())
            return "espera su turno detras de la estacion " +
                   nombreDeEstacion(tablas_, c.bloqueEnCurso) + ", " + intentos(otra.fallidos);
    }
    if (c.turno == EstadoDeTurno::Esperando && !leyendo)
        return "espera su turno detras de una escritura";
    return "espera su turno, uno de " + contar(c.activos, "bloque", "bloques");
}

std::string PorQue::enSuTurno(const BloqueLectura& b) const {
    const std::string fallidos = b.fallidos.desde.hay() ? intentos(b.fallidos) + "; " : "";
    const std::int64_t faltan = bloques_.faltanMs(b.indice);
    if (b.pendiente) return fallidos + queOcupaLaLinea(b);
    if (faltan >= 0)
        return fallidos + "se le pregunta cada " + enSegundos(b.scanMs) + ", otra vez " +
               dentroDe(faltan);
    if (b.scanMs == 0)
        return fallidos + "tiene scan 0: se lee solo al conectar y cuando se lo fuerza";
    return fallidos + "espera que le toque";
}

std::string PorQue::porQueEstacion(Indice conexion, Indice estacion) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    const Estacion& e = c.estaciones[estacion];
    const std::string nombre = "PLC " + std::to_string(e.numero) + ": ";
    if (!turnos_.conectada(conexion)) return nombre + sinEnlace(conexion) + ".";
    const Cuentas cuentas = contadores_.deEstacion(conexion, estacion);
    if (callada(e) || (e.fallidos.desde.hay() && cuentas.respuestas == 0)) {
        std::string texto = nombre + intentos(e.fallidos);
        const Indice quien = e.muda ? quienSondea(e) : kNinguno;
        if (quien != kNinguno)
            texto += "; pregunta " + tablas_.bloques[quien].clave + " " +
                     dentroDe(bloques_.faltanMs(quien));
        return texto + ".";
    }
    if (cuentas.respuestas == 0) {
        const bool alguno = std::any_of(e.bloques.begin(), e.bloques.end(), [this](Indice i) {
            return tablas_.bloques[i].activo && tablas_.bloques[i].tieneTrama;
        });
        return nombre + (alguno ? "todavia no se le pregunto." : "no tiene bloques que se poleen.");
    }
    const std::int64_t decimas = cuentas.ultimoUs / 100;
    std::string tardo = textoDeNumero(static_cast<double>(decimas) / 10);
    std::replace(tardo.begin(), tardo.end(), '.', ',');
    return nombre + "contesta; ultima respuesta hace " + hace(cuentas.ultimaRespuestaMs) + ", en " +
           tardo + " ms.";
}

std::string PorQue::porQueConexion(Indice conexion) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    if (!turnos_.conectada(conexion)) {
        std::string texto = sinEnlace(conexion) + ".";
        texto[0] = 'L';
        return texto;
    }
    std::string texto = "La conexion " + c.ip + ":" + c.puertoTCP + " esta conectada desde " +
                        hora(c.enlaceDesde.ms());
    for (std::size_t k = 0; k < c.estaciones.limiteSuperior(); ++k) {
        const Estacion& e = c.estaciones[k];
        if (callada(e)) texto += "; PLC " + std::to_string(e.numero) + " " + intentos(e.fallidos);
    }
    return texto + ".";
}

} // namespace kv
