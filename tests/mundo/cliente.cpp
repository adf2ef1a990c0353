// SPDX-License-Identifier: Apache-2.0
#include "mundo/cliente.h"

#include "mundo/azar.h"
#include "server/cifrado.h"
#include "text/fecha.h"
#include "text/numeros.h"

namespace kv::mundo {
namespace {

constexpr std::uint32_t kPuerto = 1334;
constexpr std::int64_t kEntreIntentosUs = 4'000'000;
constexpr std::int64_t kTrasColaUs = 3'000'000; // what waited for long comes in its time
constexpr std::int64_t kEnCaminoUs = 2000;      // what was said so short ago may not have come yet

} // namespace

void Cliente::entrar() {
    quiere_ = true;
    proximoIntentoUs_ = 0;
    paso();
}

void Cliente::salir() {
    quiere_ = false;
    c_.bucle.red().cortar(enlace_);
    conectado_ = logueado_ = sincronizado_ = desaparecido_ = false;
    enlace_ = 0;
}

void Cliente::leerNada() {
    if (!logueado_ || desaparecido_) return;
    if (ecoDesdeUs_ < 0) ecoDesdeUs_ = c_.ahoraUs();
    enviar("Read;FinRead;[KEEP_DESDE_SERVIDOR]");
}

void Cliente::tocar() {
    if (enlace_ == 0) enlace_ = c_.bucle.red().conectarCliente(kPuerto, *this, remoto_);
}

void Cliente::desaparecer() {
    if (enlace_ == 0) return;
    c_.bucle.red().interrumpir(enlace_);
    desaparecido_ = true;
}

void Cliente::noLeer(std::size_t bytes, std::int64_t hastaUs) {
    c_.bucle.red().fijarVentana(enlace_, bytes);
    noLeeHastaUs_ = hastaUs;
    leeTodo_ = false;
}

void Cliente::sanar() {
    ignoraHastaUs_ = 0;
    if (noLeeHastaUs_ > 0 || desaparecido_) salir(); // and comes back as another
    noLeeHastaUs_ = 0;
    entrar();
}

void Cliente::paso() {
    const std::int64_t ahora = c_.ahoraUs();
    if (noLeeHastaUs_ > 0 && ahora >= noLeeHastaUs_) {
        noLeeHastaUs_ = 0;
        c_.bucle.red().fijarVentana(enlace_, static_cast<std::size_t>(-1));
    }
    if (!quiere_ || ahora < proximoIntentoUs_) return;
    proximoIntentoUs_ = ahora + kEntreIntentosUs;
    if (enlace_ != 0 && !c_.bucle.red().vivo(enlace_)) enlace_ = 0, conectado_ = false;
    if (enlace_ == 0) {
        logueado_ = sincronizado_ = desaparecido_ = false;
        leeTodo_ = true;
        ecoDesdeUs_ = -1;
        bloquesAlEntrar_ = c_.motor.tablas.bloques.limiteSuperior();
        avisosDeVida_ = 0;
        lector_ = cliente::Lector({});
        tabla_.clear();
        enlace_ = c_.bucle.red().conectarCliente(kPuerto, *this, remoto_);
    } else if (conectado_ && !logueado_) {
        identificarse();
    }
}

void Cliente::identificarse() {
    const auto hora = fechaDesdeSegundos(c_.bucle.relojSimulado().segundos());
    double u = 0;
    enviar(
        cifrar(textoDeClave(formatoDeHora(hora)), [&u] { return u = u > 0.9 ? 0.0 : u + 0.07; }));
}

void Cliente::enviar(std::string_view bytes) {
    c_.bucle.red().enviar(
        enlace_, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}); // NOLINT
}

void Cliente::alConectar(IdEnlace enlace) {
    if (enlace != enlace_) return;
    conectado_ = true;
    if (quiere_) identificarse();
}

void Cliente::alCortarse(IdEnlace enlace) {
    if (enlace != enlace_) return;
    // Twice unanswered is never enough, and it reads and answers: nobody else's silence is its own.
    if (logueado_ && leeTodo_) c_.exigir(avisosDeVida_ >= 3, "a client that answers is kept", 0);
    conectado_ = logueado_ = sincronizado_ = false;
    enlace_ = 0;
}

void Cliente::alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) {
    if (enlace != enlace_) return;
    const std::string_view texto(reinterpret_cast<const char*>(bytes.data()), // NOLINT
                                 bytes.size());
    for (const cliente::Mensaje& m : lector_.agregar(texto))
        atender(m);
}

void Cliente::atender(const cliente::Mensaje& m) {
    using Tipo = cliente::Mensaje::Clase;
    switch (m.clase) {
    case Tipo::Aceptada:
        logueado_ = true;
        enviar(kSincronizar);
        break;
    case Tipo::KeepAlive:
        ++avisosDeVida_;
        c_.exigir(logueado_ || !c_.plan.exigeLogin || c_.ajustesPerdidos,
                  "who has not logged in is told nothing", 0);
        if (c_.ahoraUs() >= ignoraHastaUs_) enviar(kKeepAliveDelDriver);
        break;
    case Tipo::Eco:
        ecoDesdeUs_ = -1;
        break;
    case Tipo::FinDeSincronismo:
        sincronizado_ = true;
        break;
    case Tipo::Datos:
        for (const cliente::Variable& v : m.variables) {
            const Indice i = valores_.bloqueDe(v.direccion);
            if (i == kNinguno) continue;
            if (tabla_.size() <= i) tabla_.resize(i + 1);
            tabla_[i] = {v.valor, v.estado};
        }
        break;
    default:
        break;
    }
}

void Cliente::comparar() {
    const Zocalo& zocalo = c_.motor.servidor.zocalo();
    if (zocalo.enCola() > 0) ultimaColaUs_ = c_.ahoraUs();
    if (!sincronizado_ || !conectado_ || noLeeHastaUs_ > 0 ||
        c_.ahoraUs() - ultimaColaUs_ < kTrasColaUs || zocalo.estado() != EstadoZocalo::Conectado ||
        !c_.bucle.red().vivo(enlace_) || zocalo.bytesSinConfirmar() > 0 ||
        c_.ahoraUs() - valores_.ultimoAvisoUs() < kEnCaminoUs || desaparecido_)
        return;
    c_.exigir(ecoDesdeUs_ < 0 || c_.ahoraUs() - ecoDesdeUs_ < kTrasColaUs,
              "what follows an empty read is handled", 0);
    const Tablas& t = c_.motor.tablas;
    tabla_.resize(std::max(tabla_.size(), bloquesAlEntrar_));
    for (std::size_t i = 0; i < std::min(tabla_.size(), t.bloques.limiteSuperior()); ++i) {
        const BloqueLectura& b = t.bloques[i];
        if (!valores_.unico(i) || b.retirado) continue;
        // Only a block that was made since may be unknown to a client that synchronised.
        if (tabla_[i].estado.empty() && i >= bloquesAlEntrar_) continue;
        c_.exigir(tabla_[i].valor == textoDeNumero(b.valor) &&
                      tabla_[i].estado == textoDeNumero(b.estado),
                  "what the client was told is what the table says", i);
    }
}

std::string groseria(std::uint32_t cual, std::uint32_t semilla) {
    Azar azar(semilla);
    std::string s;
    switch (cual % 12) {
    case 0:
        return "[Write]1.1.FFF;abc[/Write]SINCRONIZAR";
    case 1:
        return "[Write]9.9.9;1[/Write][Write]9.9.9;1[/Write][/Write][Write]";
    case 2:
        return "Read;FinRead;Read;;FinRead;Read;1.1;FinRead;FinRead;Read;";
    case 3:
        return "[FORZNIV]9999;1[/FORZNIV][FORZNIV]-1;1[/FORZNIV][FORZNIV]1;-7[/FORZNIV]";
    case 4:
        return "[Write]1.1.FFF;1e308[/Write]";
    case 5:
        return std::string(static_cast<std::size_t>(azar.entre(1, 60'000)), 'A');
    case 6:
        return "[Write]1.1.";
    case 7:
        return "[KEEP_DESDE_SERVIDOR][KEEP_DESDE_SERVIDOR]sincronizarSINCRONIZAR";
    case 8: // a password whose units have no length
        return std::string(20, '5').append("131111").append(40, '0');
    case 9:
        for (std::int64_t n = azar.entre(1, 300); n > 0; --n)
            s += static_cast<char>('0' + azar.entre(0, 9));
        return s;
    case 10:
        for (std::int64_t n = azar.entre(1, 2000); n > 0; --n)
            s += static_cast<char>(azar.entre(0, 255));
        return s;
    default:
        for (int n = 0; n < 200; ++n)
            s += "Read;1.1." + std::to_string(n) + "X;FinRead;";
        return s;
    }
}

} // namespace kv::mundo
