// SPDX-License-Identifier: Apache-2.0
#include "door/puerta_local.h"

#include "door/usuarios.h"
#include "events/rechazo.h"

#include <algorithm>
#include <charconv>
#include <exception>

namespace kv {
namespace {

// Of one tick, for all readers: about a millisecond's worth.
constexpr std::size_t kPasosPorTic = 1500;
// And for requests, some of which take as long as a thousand others.
constexpr std::int64_t kPedidosUs = 1000;
constexpr std::size_t kTrozo = std::size_t{64} << 10;
// A reader that has so much still to read gets nothing more for now, and after so long is closed.
constexpr std::size_t kColaLlena = std::size_t{256} << 10;
constexpr std::size_t kColaMaxima = std::size_t{2} << 20;
constexpr std::int64_t kPacienciaMs = 30'000;
constexpr std::size_t kEntradaMaxima = 4 * PuertaLocal::kRenglonMaximo;

constexpr std::int64_t kYaMs = 1;
constexpr std::int64_t kSeguidoMs = 5;
constexpr std::int64_t kNovedadesMs = 100;

std::span<const std::uint8_t> comoBytes(std::string_view t) {
    return {reinterpret_cast<const std::uint8_t*>(t.data()), t.size()}; // NOLINT
}

} // namespace

PuertaLocal::PuertaLocal(const Partes& partes, Formas formas)
    : p_(partes), formas_(std::move(formas)), log_(partes.log, partes.bucle.reloj()) {}

PuertaLocal::~PuertaLocal() { cerrar(); }

void PuertaLocal::abrir() {
    const auto leer = [this](const AjusteDeTexto& a) {
        return p_.ajustes.leerIni(p_.ajustes.archivoDeAjustes(), a.seccion, a.clave, a.porDefecto);
    };
    if (leer(kPuertaLocal) == "0") return;
    desde_ = p_.bucle.reloj().ahora();
    const std::string grupo = leer(kPuertaLocalGrupo);
    const auto numero = grupo.empty() ? std::nullopt : numeroDeGrupo(p_.archivos, grupo);
    if (!grupo.empty() && !numero)
        log_.escribir("Puerta local",
                      "no existe el grupo " + grupo + ": solo el usuario del driver");
    escucha_ = p_.bucle.crearZocalo(*this, 0);
    timer_ = p_.bucle.crearTemporizador([this] { tic(); });
    const std::string ruta = p_.ajustes.carpeta() + "/" + std::string(kArchivoDePuertaLocal);
    escucha_->escucharLocal(ruta, numero ? std::int64_t{*numero} : -1);
    if (!escucha_->motivo().empty()) log_.escribir("Puerta local", ruta, escucha_->motivo());
}

void PuertaLocal::cerrar() {
    for (Lector& l : lectores_)
        enviar(l); // how the last writes ended
    lectores_.clear();
    escucharLoNecesario();
    escucha_.reset();
    log_.terminar();
}

void PuertaLocal::alPedirConexion(std::size_t /*indice*/, std::string_view remoto) {
    if (lectores_.size() >= kLectores)
        return log_.escribir("Puerta local", "ya hay " + std::to_string(kLectores) +
                                                 " lectores: no entra el proceso " +
                                                 std::string(remoto));
    Lector& l = lectores_.emplace_back();
    l.numero = ++ultimo_;
    const std::string_view usuario = remoto.substr(0, remoto.find('/'));
    const auto leido = std::from_chars(usuario.data(), usuario.data() + usuario.size(), l.usuario);
    l.nombre = leido.ec == std::errc() ? nombreDeUsuario(p_.archivos, l.usuario) : "?";
    l.zocalo = escucha_->aceptarAparte(*this, l.numero);
    l.zocalo->limitarCola(kColaMaxima);
}

PuertaLocal::Lector* PuertaLocal::hallar(std::size_t numero) {
    const auto l = std::find_if(lectores_.begin(), lectores_.end(),
                                [numero](const Lector& x) { return x.numero == numero; });
    return l == lectores_.end() ? nullptr : &*l;
}

void PuertaLocal::alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) {
    Lector* l = hallar(indice);
    if (l == nullptr || l->ultimo) return;
    l->entrada.append(bytes.begin(), bytes.end());
    if (l->entrada.size() > kEntradaMaxima) {
        l->entrada.clear();
        despedir(*l, "pide mas rapido de lo que se le puede contestar");
    }
    despertar(kYaMs);
}

void PuertaLocal::alCortarse(std::size_t indice) {
    if (Lector* l = hallar(indice)) {
        l->ultimo = true;
        despertar(kYaMs);
    }
}

/// The next tick comes in so long, or earlier as it was to come.
void PuertaLocal::despertar(std::int64_t ms) {
    if (!timer_->habilitado() || timer_->intervalo() > ms) timer_->rearmar(ms);
}

/// Among the blocks that were built since: a reload that moves a station builds its blocks anew.
void PuertaLocal::buscarElegidos(Lector& l) const {
    const auto& bloques = p_.tablas.bloques;
    for (; l.conocidos < bloques.limiteSuperior(); ++l.conocidos) {
        const auto este = l.claves.find(bloques[l.conocidos].clave);
        if (este != l.claves.end())
            l.elegidos.insert_or_assign(static_cast<Indice>(l.conocidos), este->second);
    }
}

void PuertaLocal::alCambiar(Indice bloque) {
    for (Lector& l : lectores_) {
        if (!l.todos && bloque >= l.conocidos) buscarElegidos(l);
        if (!l.sigueValores || (!l.todos && !l.elegidos.contains(bloque))) continue;
        if (l.cambiados.siguiente(bloque) == bloque) ++l.saltados;
        l.cambiados.poner(bloque, true);
    }
    despertar(kNovedadesMs);
}

void PuertaLocal::alSuceder(const Suceso& s, std::string_view texto) {
    if (s.que != Que::EscrituraTerminada) {
        if (ordenaEscribir_) rechazo_ = TextoDeRechazo::partir(texto).motivo;
        return;
    }
    if (ordenaEscribir_) terminadas_.emplace_back(s.escritura, s.detalle);
    for (Lector& l : lectores_) {
        std::erase_if(l.escrituras, [&](const EscrituraEnCurso& e) {
            if (e.escritura != s.escritura) return false;
            contarResultado(l, e.id, s.detalle);
            return true;
        });
    }
    despertar(kYaMs);
}

/// Listens to values and ends of writes only while a reader waits for them, as listening costs
/// time.
void PuertaLocal::escucharLoNecesario() {
    const auto alguno = [this](auto que) {
        return std::any_of(lectores_.begin(), lectores_.end(), que);
    };
    p_.publicacion.avisarTambienA(alguno([](const Lector& l) { return l.sigueValores; }) ? this
                                                                                         : nullptr);
    const bool oir =
        ordenaEscribir_ || alguno([](const Lector& l) { return !l.escrituras.empty(); });
    if (oir == oyeSucesos_) return;
    oyeSucesos_ = oir;
    oir ? p_.sucesos.avisarA(this, {Que::EscrituraTerminada, Que::EscrituraRechazada})
        : p_.sucesos.dejarDeAvisarA(this);
}

bool PuertaLocal::hayTrabajo(const Lector& l) const {
    return !l.salida.empty() || !l.trabajos.empty() || l.entrada.find('\n') != std::string::npos ||
           (l.sigueValores && l.cambiados.siguiente(0) != ConjuntoDePosiciones::kNinguna) ||
           (l.sigueSucesos && l.visto < p_.sucesos.siguiente());
}

void PuertaLocal::tic() {
    if (enTic_) return;
    enTic_ = true;
    timer_->habilitar(false);
    ticUs_ = p_.bucle.reloj().monotonicoUs();
    // Who was first goes behind the others: the time may not be enough for all.
    if (!lectores_.empty()) lectores_.splice(lectores_.end(), lectores_, lectores_.begin());
    std::size_t pasos = kPasosPorTic;
    // Each has its part of the tick, whatever the others ask for.
    const std::size_t parte =
        std::max<std::size_t>(1, pasos / std::max<std::size_t>(1, lectores_.size()));
    bool trabajo = false;
    bool atento = false;
    for (Lector& l : lectores_) { // orders let events run, in which readers come but do not go
        std::size_t suyos = parte;
        try {
            atender(l, suyos);
        } catch (const std::exception& falla) {
            log_.escribir("Puerta local", l.nombre, falla.what());
            l.ultimo = true;
        }
        trabajo = trabajo || hayTrabajo(l);
        atento = atento || l.sigueSucesos || l.zocalo->enCola() > 0;
    }
    quitar();
    escucharLoNecesario();
    log_.alPasarElTiempo();
    enTic_ = false;
    if (trabajo) return despertar(kSeguidoMs);
    if (atento) despertar(kNovedadesMs);
}

void PuertaLocal::quitar() {
    lectores_.remove_if([](const Lector& l) {
        const bool conectado = l.zocalo->estado() == EstadoZocalo::Conectado;
        return !conectado || (l.ultimo && l.zocalo->enCola() == 0);
    });
}

void PuertaLocal::atender(Lector& l, std::size_t& pasos) {
    vigilarQueLea(l);
    if (l.zocalo->enCola() < kColaLlena && !l.ultimo) {
        tomarRenglones(l, pasos);
        while (!l.trabajos.empty() && pasos > 0 && l.salida.size() < kTrozo) {
            if (l.trabajos.front()(l.salida, pasos)) l.trabajos.pop_front();
        }
        contarNovedades(l, pasos);
        contarSucesos(l, pasos);
    }
    enviar(l);
}

/// While its answers wait, so do its requests.
void PuertaLocal::tomarRenglones(Lector& l, std::size_t& pasos) {
    std::size_t tomados = 0;
    const auto hayTiempo = [this] { return p_.bucle.reloj().monotonicoUs() - ticUs_ < kPedidosUs; };
    while (pasos > 0 && l.salida.size() < kTrozo && l.trabajos.size() < kTrabajos && !l.ultimo &&
           hayTiempo()) {
        const std::size_t fin = l.entrada.find('\n', tomados);
        const std::size_t largo = (fin == std::string::npos ? l.entrada.size() : fin) - tomados;
        if (largo > kRenglonMaximo) {
            l.entrada.clear();
            return despedir(l, "un pedido tiene mas de 64 KiB");
        }
        if (fin == std::string::npos) break;
        const std::string renglon = l.entrada.substr(tomados, largo);
        tomados = fin + 1;
        pasos -= std::min(pasos, 10 + largo / 64);
        pedir(l, renglon);
    }
    l.entrada.erase(0, tomados);
}

void PuertaLocal::contarNovedades(Lector& l, std::size_t& pasos) {
    if (!l.sigueValores) return;
    std::size_t i = l.cambiados.siguiente(0);
    if (i != ConjuntoDePosiciones::kNinguna && l.saltados > 0) {
        ObjetoJson o(l.salida);
        o.numero("saltados", static_cast<double>(std::exchange(l.saltados, 0))).fin();
        l.salida += '\n';
    }
    for (; i != ConjuntoDePosiciones::kNinguna && pasos > 0 && l.salida.size() < kTrozo;
         i = l.cambiados.siguiente(i + 1)) {
        --pasos;
        l.cambiados.poner(i, false);
        static const std::set<int> kRegistro{-1};
        const auto bloque = static_cast<Indice>(i);
        for (const int bit : l.todos ? kRegistro : l.elegidos.at(bloque)) {
            ObjetoJson o(l.salida);
            formas_.variable(bloque, bit, o);
            o.fin();
            l.salida += '\n';
        }
    }
}

void PuertaLocal::contarSucesos(Lector& l, std::size_t& pasos) {
    if (!l.sigueSucesos) return;
    if (l.visto < p_.sucesos.primero()) {
        ObjetoJson o(l.salida);
        o.numero("perdidos", static_cast<double>(p_.sucesos.primero() - l.visto)).fin();
        l.salida += '\n';
        l.visto = p_.sucesos.primero();
    }
    for (; l.visto < p_.sucesos.siguiente() && pasos > 0 && l.salida.size() < kTrozo; ++l.visto) {
        --pasos;
        if (!l.clases.empty() && !l.clases.contains(p_.sucesos[l.visto].que)) continue;
        ObjetoJson o(l.salida);
        formas_.suceso(l.visto, o);
        o.fin();
        l.salida += '\n';
    }
}

void PuertaLocal::enviar(Lector& l) {
    if (l.salida.empty()) return;
    l.zocalo->enviar(comoBytes(l.salida));
    l.salida.clear();
}

void PuertaLocal::vigilarQueLea(Lector& l) {
    const std::int64_t ahora = p_.bucle.reloj().monotonicoMs();
    if (l.zocalo->enCola() < (l.ultimo ? 1 : kColaLlena)) {
        l.noLeeDesdeMs = -1;
    } else if (l.noLeeDesdeMs < 0) {
        l.noLeeDesdeMs = ahora;
    } else if (ahora - l.noLeeDesdeMs > kPacienciaMs) {
        log_.escribir("Puerta local", l.nombre + " no lee lo que se le dice: se cierra");
        l.zocalo->abortar();
    }
}

/// A last line for the reader, which is closed when it has left.
void PuertaLocal::despedir(Lector& l, std::string_view porque) {
    fallar(l, {}, porque);
    log_.escribir("Puerta local", l.nombre + ": " + std::string(porque) + ", se cierra");
    l.ultimo = true;
}

} // namespace kv
