// SPDX-License-Identifier: Apache-2.0
#include "operator/porque.h"

#include "operator/dichos_de_porque.h"
#include "plant/ordenantes.h"
#include "plant/valor_y_estado.h"
#include "platform/motivo_de_enlace.h"
#include "text/numeros.h"

#include <algorithm>
#include <cctype>

namespace kv {
namespace {

constexpr std::int64_t kVecesLoEsperado = 3;

} // namespace

std::string PorQue::decir(const Frase& frase, Partes partes) const {
    return kv::decir(frase, idioma_, partes);
}

std::string PorQue::contar(const Frase& una, const Frase& varias, std::uint32_t n) const {
    return n == 1 ? decir(una) : decir(varias, {std::to_string(n)});
}

std::string PorQue::numero(double valor) const {
    std::string texto = textoDeNumero(valor);
    if (idioma_ == Idioma::Castellano) std::replace(texto.begin(), texto.end(), '.', ',');
    return texto;
}

std::string PorQue::enSegundos(std::int64_t ms) const {
    return numero(static_cast<double>(ms) / 1000) + " s";
}

std::string PorQue::duracion(std::int64_t ms) const {
    std::string texto = textoDeDuracion(ms);
    if (idioma_ == Idioma::Ingles) std::replace(texto.begin(), texto.end(), ',', '.');
    return texto;
}

/// Whole seconds, rounded up: a wait is never said to be shorter than it is.
std::string PorQue::dentroDe(std::int64_t ms) const {
    if (ms <= 0) return decir(dicho::kYa);
    return decir(dicho::kDentroDe, {duracion((ms + 999) / 1000 * 1000)});
}

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
    return duracion(std::max<std::int64_t>(0, reloj_.monotonicoMs() - ms));
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

std::string PorQue::sinRespuesta(const ResumenDeEstacion& r) const {
    const std::string desde = r.desdeMs < 0 ? decir(dicho::kSinRespuesta)
                                            : decir(dicho::kSinRespuestaDesde, {hora(r.desdeMs)});
    return desde + " (" + std::to_string(r.intentos) + ")";
}

std::string PorQue::porQueVariable(Indice bloque) const {
    const BloqueLectura& b = tablas_.bloques[bloque];
    const Edad e = edad(bloque);
    const std::string leida =
        e.leidaMs < 0 ? decir(dicho::kNuncaLeida) : decir(dicho::kLeidaHace, {hace(e.leidaMs)});
    if (!e.ok) return decir(dicho::kBad, {hora(e.desdeMs), leida, causa(b)}) + ".";
    const std::string texto = e.vieja ? decir(dicho::kVieja, {leida, enSegundos(e.esperadaMs)})
                                      : decir(dicho::kOk, {leida});
    const bool haceFalta = e.vieja || !b.activo || b.fallidos.desde.hay();
    return texto + (haceFalta ? ": " + causa(b) : "") + ".";
}

std::string PorQue::porQueBloque(Indice bloque) const {
    const BloqueLectura& b = tablas_.bloques[bloque];
    return b.clave + ": " + causa(b) + ".";
}

std::string PorQue::apagado(const BloqueLectura& b) const {
    if (!b.ordenDesde.hay()) return decir(dicho::kApagadoPorConfiguracion);
    return decir(dicho::kApagado,
                 {hora(b.ordenDesde.ms()), ordenanteEn(idioma_, tablas_.ordenantes[b.ordenante])});
}

std::string PorQue::causa(const BloqueLectura& b) const {
    if (b.retirado) return decir(dicho::kRetirado);
    if (!b.tieneTrama) return decir(dicho::kNoSePolea);
    if (!b.activo) return apagado(b);
    if (!turnos_.conectada(b.idConexion)) return sinEnlace(b.idConexion);
    if (!b.habilitadoPorRespuestas) return enDescanso(b);
    return enSuTurno(b);
}

std::string PorQue::desdeCuandoSinEnlace(Indice conexion) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    const std::string quien = decir(dicho::kConexion, {direccionDe(c)});
    // The supervision has not looked at it since.
    if (c.estadoSupervision == 1)
        return decir(dicho::kAcabaDePerderse, {quien, hora(c.enlaceDesde.ms())});
    if (c.enlaceDesde.hay()) return decir(dicho::kCaida, {quien, hora(c.enlaceDesde.ms())});
    const bool huboAlguna = conexiones_.wsSocket(conexion).conexiones() > 0;
    return decir(huboAlguna ? dicho::kFugaz : dicho::kNuncaEstablecida, {quien});
}

std::string PorQue::sinEnlace(Indice conexion) const {
    const EstadoZocalo estado = conexiones_.wsSocket(conexion).estado();
    if (estado == EstadoZocalo::Conectado)
        return decir(dicho::kAcabaDeEstablecerse,
                     {decir(dicho::kConexion, {direccionDe(tablas_.conexiones[conexion])})});
    std::string texto = desdeCuandoSinEnlace(conexion);
    if (const std::string motivo = conexiones_.porQueNoHayEnlace(conexion); !motivo.empty())
        texto += ": " + motivoEn(idioma_, motivo);
    if (estado == EstadoZocalo::Conectando) return decir(dicho::kSeIntenta, {texto});
    return decir(dicho::kProximoIntento, {texto, dentroDe(conexiones_.proximoIntentoMs(conexion))});
}

std::string PorQue::intentos(const Fallidos& f) const {
    if (!f.desde.hay()) return decir(dicho::kNoHuboRespuesta);
    std::string como;
    const auto agregar = [&](FinDeIntento fin, const Frase& que) {
        const std::uint32_t cuantos = f.cuantas[static_cast<std::size_t>(fin)];
        if (cuantos == 0) return;
        como += (como.empty() ? "" : ", ") + decir(que, {std::to_string(cuantos)});
    };
    agregar(FinDeIntento::SinNada, dicho::kSinNada);
    agregar(FinDeIntento::Danada, dicho::kConOtraCosa);
    agregar(FinDeIntento::Dudosa, dicho::kDudosa);
    return decir(dicho::kSinRespuestaDesde, {hora(f.desde.ms())}) + " (" +
           contar(dicho::kUnIntento, dicho::kIntentos, f.total()) + ": " + como + ")";
}

Indice PorQue::quienSondea(const Estacion& e) const {
    const auto i = std::find_if(e.bloques.begin(), e.bloques.end(), [this](Indice k) {
        return tablas_.bloques[k].activo && bloques_.faltanMs(k) >= 0;
    });
    return i == e.bloques.end() ? kNinguno : *i;
}

std::string PorQue::enDescanso(const BloqueLectura& b) const {
    const Estacion& e = tablas_.estacionDe(b);
    if (!e.muda) {
        const std::int64_t faltan = bloques_.faltanMs(b.indice);
        return decir(dicho::kDescansa, {intentos(b.fallidos), hora(reloj_.monotonicoMs() + faltan),
                                        dentroDe(faltan)});
    }
    const std::string estacion =
        decir(dicho::kEstacionCallada, {nombreDeEstacion(tablas_, b.indice), intentos(e.fallidos)});
    const Indice quien = quienSondea(e);
    if (quien == kNinguno) return decir(dicho::kSePregunta, {estacion});
    const std::string cuando = dentroDe(bloques_.faltanMs(quien));
    if (quien == b.indice) return decir(dicho::kEsteBloqueSondea, {estacion, cuando});
    return decir(dicho::kOtroBloqueSondea, {estacion, tablas_.bloques[quien].clave, cuando});
}

/// What the connection does instead of asking for the block.
std::string PorQue::queOcupaLaLinea(const BloqueLectura& b) const {
    const ConexionIP& c = tablas_.conexiones[b.idConexion];
    if (c.retenida) return decir(dicho::kLineaRetenida);
    if (const Transaccion* enCurso = turnos_.enCurso(b.idConexion)) {
        const Indice leido = enCurso->bloqueQueLee(b.idConexion);
        if (leido == kNinguno) return decir(dicho::kDetrasDeEscritura);
        if (leido == b.indice) return decir(dicho::kSeLePregunta);
        const Estacion& otra = tablas_.estacionDe(tablas_.bloques[leido]);
        if (otra.fallidos.desde.hay())
            return decir(dicho::kDetrasDeEstacion,
                         {nombreDeEstacion(tablas_, leido), intentos(otra.fallidos)});
    }
    return contar(dicho::kEsperaSolo, dicho::kEspera, c.activos);
}

std::string PorQue::enSuTurno(const BloqueLectura& b) const {
    const std::string fallidos = b.fallidos.desde.hay() ? intentos(b.fallidos) + "; " : "";
    const std::int64_t faltan = bloques_.faltanMs(b.indice);
    if (b.pendiente) return fallidos + queOcupaLaLinea(b);
    if (faltan >= 0)
        return fallidos + decir(dicho::kCada, {enSegundos(b.scanMs), dentroDe(faltan)});
    return fallidos + decir(b.scanMs == 0 ? dicho::kScanCero : dicho::kNoLeToca);
}

std::string PorQue::porQueEstacion(Indice conexion, Indice estacion) const {
    const Estacion& e = tablas_.conexiones[conexion].estaciones[estacion];
    return "PLC " + std::to_string(e.numero) + ": " + causaDeEstacion(conexion, estacion) + ".";
}

std::string PorQue::causaDeEstacion(Indice conexion, Indice estacion) const {
    const Estacion& e = tablas_.conexiones[conexion].estaciones[estacion];
    if (e.retirada) return decir(dicho::kRetirado);
    if (!turnos_.conectada(conexion)) return sinEnlace(conexion);
    const Cuentas cuentas = contadores_.deEstacion(conexion, estacion);
    if (callada(e) || (e.fallidos.desde.hay() && cuentas.respuestas == 0)) {
        const Indice quien = e.muda ? quienSondea(e) : kNinguno;
        if (quien == kNinguno) return intentos(e.fallidos);
        return decir(dicho::kSondeaElBloque, {intentos(e.fallidos), tablas_.bloques[quien].clave,
                                              dentroDe(bloques_.faltanMs(quien))});
    }
    if (cuentas.respuestas == 0) {
        const bool alguno = std::any_of(e.bloques.begin(), e.bloques.end(), [this](Indice i) {
            return tablas_.bloques[i].activo && tablas_.bloques[i].tieneTrama;
        });
        return decir(alguno ? dicho::kSinPreguntar : dicho::kSinBloques);
    }
    const std::int64_t decimas = cuentas.ultimoUs / 100;
    return decir(dicho::kContesta,
                 {hace(cuentas.ultimaRespuestaMs), numero(static_cast<double>(decimas) / 10)});
}

std::string PorQue::porQueConexion(Indice conexion) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    if (c.retirada) return direccionDe(c) + ": " + decir(dicho::kRetirado) + ".";
    if (!turnos_.conectada(conexion)) {
        std::string texto = sinEnlace(conexion) + ".";
        texto[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(texto[0])));
        return texto;
    }
    std::string texto = decir(dicho::kConectada, {direccionDe(c), hora(c.enlaceDesde.ms())});
    for (const Indice k : c.estacionesEnUso()) {
        const Estacion& e = c.estaciones[k];
        if (callada(e))
            texto +=
                decir(dicho::kEstacionDeElla, {std::to_string(e.numero), intentos(e.fallidos)});
    }
    return texto + ".";
}

} // namespace kv
