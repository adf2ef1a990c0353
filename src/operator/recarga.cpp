// SPDX-License-Identifier: Apache-2.0
#include "operator/recarga.h"

#include "text/numeros.h"

#include <algorithm>
#include <exception>
#include <utility>
#include <vector>

namespace kv {
namespace {

// Some 2 ms at a stretch, and as long for everybody else as they need.
constexpr std::int64_t kPorcion = 20'000;
constexpr std::int64_t kEntrePorcionesMs = 1;
constexpr std::size_t kRetazoGrande = 4096;

std::string cuantos(std::size_t n) { return textoDeNumero(static_cast<double>(n)); }

} // namespace

Recarga::Recarga(const Partes& partes)
    : p_(partes), porciones_(kPorcion), traspaso_(partes.planta, porciones_),
      Timer_Porcion_(partes.bucle.crearTemporizador([this] { seguir(); })) {
    Timer_Porcion_->tocarUnaVez();
}

void Recarga::recargar() {
    otraVez_ = true;
    if (enCurso()) return;
    trabajo_.emplace(todas());
    seguir();
}

void Recarga::seguir() {
    const bool hecho = porciones_.hacer(*trabajo_);
    // The allocator joins the small pieces that it got back when it is asked for a large one: those
    // of one portion in no time, those of a hundred thousand records in 30 ms.
    retazo_ = std::vector<char>(kRetazoGrande);
    if (!hecho) return Timer_Porcion_->rearmar(kEntrePorcionesMs);
    trabajo_.reset();
    for (const Indice i : std::exchange(porOlvidar_, {}))
        olvidar(i);
    if (alTerminar_) alTerminar_();
}

Trabajo Recarga::todas() {
    while (std::exchange(otraVez_, false)) {
        try {
            co_await unaVez();
        } catch (const std::exception& falla) {
            rechazar(falla.what());
        }
    }
}

Trabajo Recarga::unaVez() {
    std::string mensaje;
    // Whoever asks has just written it: what was seen earlier in this turn, as at the start, is
    // old.
    p_.ajustes.vueltaNueva();
    const MensajeDeError anotar = [&mensaje](std::string_view texto) { mensaje = texto; };
    ConfiguracionLeida leida;
    co_await leerConfiguracionUbicada(p_.ajustes, leida, anotar, porciones_);
    Validacion validacion;
    co_await validar(leida.listas, leida.problemas, validacion, porciones_);
    if (mensaje.empty()) mensaje = queja(leida);
    if (mensaje.empty()) mensaje = porQueNoSeAdoptan(leida.listas, validacion);
    if (mensaje.empty())
        co_await adoptar(leida, validacion);
    else
        rechazar(mensaje);
    co_await soltar(leida);
}

Trabajo Recarga::adoptar(ConfiguracionLeida& leida, const Validacion& validacion) {
    Diferencia d;
    co_await comparar(p_.planta.tablas, leida.listas, validacion, d, porciones_);
    const std::string ignorado = ignoradoNuevo(leida.listas.ignoradas);
    conocidos_.conocer(leida.problemas, leida.listas.ignoradas);
    if (alAdoptar_) alAdoptar_(leida.ubicacion.rutaConfiguracion);
    p_.vista.lblProyecto.poner(leida.ubicacion.nombreProyecto);
    p_.guion.fijarRuta(rutaDelGuion(leida.ubicacion.rutaConfiguracion));
    std::swap(p_.descripciones, leida.listas.descripciones);
    Traspaso::Hecho hecho;
    co_await traspaso_.hacer(leida.listas, d, hecho);
    contar(hecho, ignorado);
    p_.planta.conexiones.estadoConexiones();
}

/// Gives back what was read, and the descriptions of before.
Trabajo Recarga::soltar(ConfiguracionLeida& leida) {
    constexpr std::int64_t kPorDescripcion = 3;
    while (leida.listas.descripciones.deshacer())
        co_await porciones_.gastar(kPorDescripcion);
}

/// The first few names that mean nothing and were not there before, with what may have been meant.
std::string Recarga::ignoradoNuevo(const Problemas& ignoradas) const {
    constexpr std::size_t kNombrados = 3;
    std::string texto;
    const std::vector<Problema> nuevos = conocidos_.nuevos(ignoradas);
    const std::size_t nombrados = std::min(nuevos.size(), kNombrados);
    for (std::size_t i = 0; i < nombrados; ++i)
        texto += "; " + textoDeProblema(nuevos[i]);
    if (nuevos.size() > nombrados) texto += "; y " + cuantos(nuevos.size() - nombrados) + " más";
    return texto;
}

void Recarga::contar(const Traspaso::Hecho& hecho, const std::string& ignorado) {
    const std::string que = "recargada: " + cuantos(hecho.nuevas) + " variables nuevas, " +
                            cuantos(hecho.retiradas) + " retiradas, " + cuantos(hecho.cambiadas) +
                            " cambiadas, " + cuantos(hecho.iguales) + " iguales" +
                            (hecho.puertos ? "; puertos cambiados" : "") + ignorado;
    p_.log.escribir({"DRIVER", "Configuracion", que, {}, Novedad::Recargada});
    if (!ignorado.empty())
        p_.vista.mostrarMensaje("La configuración está " + que, "Recargar configuración");
}

/// The first fault that is new, or nothing.
std::string Recarga::queja(const ConfiguracionLeida& leida) const {
    const auto nuevos = conocidos_.nuevos(leida.problemas);
    if (!nuevos.empty()) return textoDeProblema(nuevos.front());
    // Those beyond the limit were not kept, so whether one of them is new cannot be known.
    return leida.problemas.demas() > 0 ? leida.listas.archivo + ": demasiados problemas"
                                       : std::string();
}

void Recarga::olvidar(Indice bloque) {
    if (enCurso()) return porOlvidar_.push_back(bloque);
    const BloqueLectura& b = p_.planta.tablas.bloques[bloque];
    if (b.aPedido && !b.retirado) traspaso_.retirar(bloque);
}

void Recarga::rechazar(const std::string& porque) {
    p_.log.escribir({"DRIVER", "Configuracion", "no se recarga, todo sigue como estaba", porque,
                     Novedad::NoRecargada});
    p_.vista.mostrarMensaje("La configuración no se recarga y todo sigue como estaba.\r\n" + porque,
                            "Recargar configuración");
}

} // namespace kv
