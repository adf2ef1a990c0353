// SPDX-License-Identifier: Apache-2.0
#include "platform/simulated/red_simulada.h"

#include "platform/motivo_de_enlace.h"
#include "platform/simulated/zocalo_simulado.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kv {
namespace {

std::string comoTexto(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; // NOLINT
}

std::span<const std::uint8_t> comoBytes(const std::string& texto) {
    return {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()}; // NOLINT
}

} // namespace

std::string RedSimulada::clave(const std::string& ip, std::uint32_t puerto) {
    return ip + ":" + std::to_string(puerto);
}

void RedSimulada::atender(const std::string& ip, std::uint32_t puerto, ExtremoSimulado& extremo) {
    servicios_[clave(ip, puerto)] = {.extremo = &extremo};
}

void RedSimulada::rechazar(const std::string& ip, std::uint32_t puerto) {
    servicios_.erase(clave(ip, puerto));
}

void RedSimulada::enmudecer(const std::string& ip, std::uint32_t puerto) {
    servicios_[clave(ip, puerto)].mudo = true;
}

void RedSimulada::negar(const std::string& ip, std::uint32_t puerto, int error,
                        std::int64_t demoraUs) {
    servicios_[clave(ip, puerto)] = {.error = error, .demoraUs = demoraUs};
}

void RedSimulada::anotar(std::int64_t us, Tipo tipo, IdEnlace enlace, std::string bytes) {
    sucesos_.push({us, orden_++, tipo, enlace, std::move(bytes)});
}

void RedSimulada::enviar(IdEnlace enlace, std::span<const std::uint8_t> bytes,
                         std::int64_t demoraUs) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    auto& ultimo = e->second.ultimoAlZocalo;
    ultimo = std::max(ultimo, reloj_.monotonicoUs() + demoraUs + latenciaUs_);
    anotar(ultimo, Tipo::AlZocalo, enlace, comoTexto(bytes));
}

void RedSimulada::cortar(IdEnlace enlace, std::int64_t demoraUs) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    auto& ultimo = e->second.ultimoAlZocalo;
    ultimo = std::max(ultimo, reloj_.monotonicoUs() + demoraUs + latenciaUs_);
    anotar(ultimo, Tipo::CorteAlZocalo, enlace);
}

void RedSimulada::romper(IdEnlace enlace, int error, std::int64_t demoraUs) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    e->second.extremo = nullptr;
    e->second.error = error;
    auto& ultimo = e->second.ultimoAlZocalo;
    ultimo = std::max(ultimo, reloj_.monotonicoUs() + demoraUs + latenciaUs_);
    anotar(ultimo, Tipo::Rotura, enlace);
}

void RedSimulada::interrumpir(IdEnlace enlace) {
    if (const auto e = enlaces_.find(enlace); e != enlaces_.end()) e->second.interrumpido = true;
}

void RedSimulada::reanudar(IdEnlace enlace) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    Enlace& en = e->second;
    en.interrumpido = false;
    const std::int64_t llega = reloj_.monotonicoUs() + latenciaUs_;
    en.ultimoAlZocalo = std::max(en.ultimoAlZocalo, llega);
    en.ultimoAlExtremo = std::max(en.ultimoAlExtremo, llega);
    // What was kept stays in front of what may arrive before.
    if (!en.guardadoAlZocalo.empty()) anotar(llega, Tipo::AlZocalo, enlace);
    if (!en.guardadoAlExtremo.empty()) anotar(llega, Tipo::AlExtremo, enlace);
    if (en.corteGuardado) anotar(en.ultimoAlExtremo, Tipo::CorteAlExtremo, enlace);
}

void RedSimulada::fijarVentana(IdEnlace enlace, std::size_t bytes) {
    if (const auto e = enlaces_.find(enlace); e != enlaces_.end()) e->second.ventana = bytes;
}

std::size_t RedSimulada::ventana(IdEnlace enlace) const {
    const auto e = enlaces_.find(enlace);
    return e == enlaces_.end() ? 0 : e->second.ventana;
}

IdEnlace RedSimulada::conectarCliente(std::uint32_t puerto, ExtremoSimulado& extremo,
                                      const std::string& remoto) {
    const IdEnlace id = ++ultimoEnlace_;
    Enlace& e = enlaces_[id];
    e.extremo = &extremo;
    e.puerto = puerto;
    e.remoto = remoto;
    anotar(reloj_.monotonicoUs() + latenciaUs_, Tipo::Pedido, id);
    return id;
}

IdEnlace RedSimulada::pedirConexion(ZocaloSimulado& zocalo, const std::string& ip,
                                    std::uint32_t puerto) {
    const IdEnlace id = ++ultimoEnlace_;
    Enlace& e = enlaces_[id];
    e.zocalo = &zocalo;
    e.puerto = puerto;
    if (!nombres_.contains(ip)) {
        const auto s = servicios_.find(clave(ip, puerto));
        if (s != servicios_.end() && s->second.error != 0 && s->second.demoraUs == 0) {
            enlaces_.erase(id);
            zocalo.noConectar(motivoDeEnlace(s->second.error, FaseDeEnlace::AlConectar));
            return 0;
        }
        llamar(id, e, ip);
    } else if (nombresUs_ >= 0) {
        anotar(reloj_.monotonicoUs() + nombresUs_, Tipo::Nombre, id, ip);
    }
    return id;
}

void RedSimulada::llamar(IdEnlace id, Enlace& e, const std::string& ip) {
    const auto s = servicios_.find(clave(ip, e.puerto));
    const bool hay = s != servicios_.end();
    if (hay && s->second.mudo) return;
    e.extremo = hay ? s->second.extremo : nullptr;
    e.error = hay ? s->second.error : ECONNREFUSED;
    const std::int64_t demora = hay && e.error != 0 ? s->second.demoraUs : 2 * latenciaUs_;
    anotar(reloj_.monotonicoUs() + demora, Tipo::Conexion, id);
}

void RedSimulada::desdeZocalo(IdEnlace enlace, std::span<const std::uint8_t> bytes) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    Enlace& en = e->second;
    if (en.ventana != static_cast<std::size_t>(-1))
        en.ventana -= std::min(en.ventana, bytes.size());
    en.ultimoAlExtremo = std::max(en.ultimoAlExtremo, reloj_.monotonicoUs() + latenciaUs_);
    anotar(en.ultimoAlExtremo, Tipo::AlExtremo, enlace, comoTexto(bytes));
    if (en.sinConfirmar == 0) en.sinConfirmarUs = reloj_.monotonicoUs();
    en.sinConfirmar += bytes.size();
    esperarConfirmacion(enlace, en);
}

std::size_t RedSimulada::sinConfirmar(IdEnlace enlace) const {
    const auto e = enlaces_.find(enlace);
    return e == enlaces_.end() ? 0 : e->second.sinConfirmar;
}

void RedSimulada::fijarPaciencia(IdEnlace enlace, std::int64_t us) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    e->second.pacienciaUs = us;
    esperarConfirmacion(enlace, e->second);
}

/// Each link has at most one event for its patience, which looks again at what has been
/// acknowledged.
void RedSimulada::esperarConfirmacion(IdEnlace id, Enlace& e) {
    if (e.pacienciaUs == 0 || e.sinConfirmar == 0 || std::exchange(e.seImpacienta, true)) return;
    anotar(std::max(e.sinConfirmarUs + e.pacienciaUs, reloj_.monotonicoUs()), Tipo::Impaciencia,
           id);
}

void RedSimulada::impacientar(IdEnlace id, Enlace& e) {
    e.seImpacienta = false;
    if (e.pacienciaUs == 0 || e.sinConfirmar == 0 ||
        reloj_.monotonicoUs() < e.sinConfirmarUs + e.pacienciaUs)
        return esperarConfirmacion(id, e);
    ZocaloSimulado* const zocalo = e.zocalo;
    enlaces_.erase(id);
    if (zocalo != nullptr)
        zocalo->entregarFalla(motivoDeEnlace(ETIMEDOUT, FaseDeEnlace::Establecido));
}

void RedSimulada::cerrarDesdeZocalo(IdEnlace enlace) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    e->second.zocalo = nullptr;
    if (!e->second.conectado) {
        enlaces_.erase(e);
        return;
    }
    anotar(std::max(e->second.ultimoAlExtremo, reloj_.monotonicoUs() + latenciaUs_),
           Tipo::CorteAlExtremo, enlace);
}

/// What is on its way arrives, and then the reset, unless the cable is out.
void RedSimulada::abortarDesdeZocalo(IdEnlace enlace) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    e->second.abortado = true;
    if (e->second.interrumpido) {
        enlaces_.erase(e);
    } else {
        cerrarDesdeZocalo(enlace);
    }
}

std::uint32_t RedSimulada::puertoDeRuta(const std::string& ruta) {
    constexpr std::uint32_t kTrasLosPuertos = 65536;
    return rutas_.try_emplace(ruta, kTrasLosPuertos + static_cast<std::uint32_t>(rutas_.size()))
        .first->second;
}

bool RedSimulada::escuchar(std::uint32_t puerto, ZocaloSimulado& zocalo) {
    return escuchas_.try_emplace(puerto, &zocalo).second;
}

void RedSimulada::dejarDeEscuchar(std::uint32_t puerto, const ZocaloSimulado& zocalo) {
    const auto e = escuchas_.find(puerto);
    if (e != escuchas_.end() && e->second == &zocalo) escuchas_.erase(e);
}

void RedSimulada::adoptar(IdEnlace enlace, ZocaloSimulado& zocalo) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    e->second.zocalo = &zocalo;
    e->second.conectado = true;
}

bool RedSimulada::entregar() {
    if (sucesos_.empty() || sucesos_.top().us > reloj_.monotonicoUs()) return false;
    const Suceso s = sucesos_.top();
    sucesos_.pop();
    const auto e = enlaces_.find(s.enlace);
    if (e != enlaces_.end()) aplicar(s, e->second);
    return true;
}

void RedSimulada::frenar(IdEnlace enlace, bool freno) {
    const auto e = enlaces_.find(enlace);
    if (e == enlaces_.end()) return;
    e->second.freno = freno;
    if (freno) return;
    for (Suceso& s : e->second.retenidos)
        sucesos_.push(std::move(s)); // older than all that is still to come
    e->second.retenidos.clear();
}

void RedSimulada::aplicar(const Suceso& s, Enlace& e) {
    if (e.freno &&
        (s.tipo == Tipo::AlZocalo || s.tipo == Tipo::CorteAlZocalo || s.tipo == Tipo::Rotura))
        return e.retenidos.push_back(s);
    // Calls may end the link: nothing of `e` is used after one.
    ZocaloSimulado* const zocalo = e.zocalo;
    switch (s.tipo) {
    case Tipo::Pedido:
        aplicarPedido(s.enlace, e);
        return;
    case Tipo::Conexion:
        return aplicarConexion(s.enlace, e);
    case Tipo::AlZocalo: {
        e.guardadoAlZocalo += s.bytes;
        if (e.interrumpido || e.guardadoAlZocalo.empty()) return;
        const std::string bytes = std::exchange(e.guardadoAlZocalo, {});
        if (zocalo != nullptr && e.conectado) zocalo->entregarDatos(comoBytes(bytes));
        return;
    }
    case Tipo::AlExtremo:
        return entregarAlExtremo(s, e);
    case Tipo::Nombre: {
        const std::string& ip = nombres_[s.bytes];
        if (!ip.empty()) return llamar(s.enlace, e, ip);
        enlaces_.erase(s.enlace);
        return zocalo->entregarRechazo(enPalabras(Motivo::NombreDesconocido, s.bytes));
    }
    case Tipo::Impaciencia:
        return impacientar(s.enlace, e);
    case Tipo::CorteAlZocalo:
        enlaces_.erase(s.enlace);
        if (zocalo != nullptr) zocalo->entregarCorte();
        return;
    case Tipo::Rotura: {
        const int error = e.error;
        enlaces_.erase(s.enlace);
        if (zocalo != nullptr)
            zocalo->entregarFalla(motivoDeEnlace(error, FaseDeEnlace::Establecido));
        return;
    }
    case Tipo::CorteAlExtremo:
        return cortarAlExtremo(s.enlace, e);
    }
}

void RedSimulada::aplicarConexion(IdEnlace id, Enlace& e) {
    ZocaloSimulado* const zocalo = e.zocalo;
    if (zocalo == nullptr) return;
    if (const int error = e.error; error != 0) {
        enlaces_.erase(id);
        return zocalo->entregarRechazo(motivoDeEnlace(error, FaseDeEnlace::AlConectar));
    }
    e.conectado = true;
    e.extremo->alConectar(id);
    zocalo->entregarConexion(id);
}

void RedSimulada::entregarAlExtremo(const Suceso& s, Enlace& e) {
    e.guardadoAlExtremo += s.bytes;
    if (e.interrumpido || e.guardadoAlExtremo.empty()) return;
    const std::string bytes = std::exchange(e.guardadoAlExtremo, {});
    e.sinConfirmar -= bytes.size();
    e.sinConfirmarUs = reloj_.monotonicoUs();
    if (e.extremo != nullptr) e.extremo->alRecibir(s.enlace, comoBytes(bytes));
}

void RedSimulada::cortarAlExtremo(IdEnlace id, Enlace& e) {
    if (e.interrumpido && !e.abortado) {
        e.corteGuardado = true;
        return;
    }
    ExtremoSimulado* const extremo = e.interrumpido ? nullptr : e.extremo;
    enlaces_.erase(id);
    if (extremo != nullptr) extremo->alCortarse(id);
}

void RedSimulada::aplicarPedido(IdEnlace id, Enlace& e) {
    ExtremoSimulado* const extremo = e.extremo;
    const auto escucha = escuchas_.find(e.puerto);
    const bool aceptado =
        escucha != escuchas_.end() && escucha->second->entregarPedido(id, std::string(e.remoto));
    if (aceptado) {
        extremo->alConectar(id);
    } else {
        enlaces_.erase(id);
        extremo->alCortarse(id);
    }
}

} // namespace kv
