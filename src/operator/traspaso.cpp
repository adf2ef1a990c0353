// SPDX-License-Identifier: Apache-2.0
#include "operator/traspaso.h"

#include "plant/claves_de_bloque.h"

#include <utility>
#include <vector>

namespace kv {
namespace {

// What steps cost, as `Porciones` count.
constexpr std::int64_t kPorRetiro = 40;
constexpr std::int64_t kPorAlta = 80;
constexpr std::int64_t kPorCambio = 20;
constexpr std::int64_t kPorEstacion = 300;
constexpr std::int64_t kPorPedido = 500; // a request leaves, and others are let run
constexpr std::int64_t kPorOrden = 2;    // a block in the look-ups

std::int64_t costo(std::int64_t deUno, std::size_t cuantos) {
    return deUno * static_cast<std::int64_t>(cuantos);
}

} // namespace

Trabajo Traspaso::hacer(const ListasDeConfiguracion& listas, const Diferencia& d, Hecho& hecho) {
    hecho.iguales = d.iguales;
    co_await puertos(listas, hecho);
    co_await retirarBloques(d);
    co_await retirarEstaciones(d);
    hecho.retiradas = d.bloquesQueSobran.size();
    co_await levantar(listas, d, hecho);
    for (const auto& [bloque, configurado] : d.cambios) {
        cambiar(bloque, listas.bloques[configurado]);
        co_await siguiente(p_.tablas.bloques[bloque].idConexion, kPorCambio);
    }
    hecho.cambiadas += d.cambios.size();
    if (!d.bloquesQueSobran.empty() || !d.cambios.empty()) co_await ordenarNiveles();
    p_.modelo.terminarCambios();
    bits_.clear();
}

/// A port's place in the table is its number, so they follow the lists as they stand.
Trabajo Traspaso::puertos(const ListasDeConfiguracion& listas, Hecho& hecho) {
    std::vector<bool> cambiados(p_.tablas.puertos.limiteSuperior());
    std::size_t n = 0;
    for (const Puerto& p : listas.puertos) {
        if (p.numero <= 0) continue;
        const std::size_t cual = n++;
        if (cual >= cambiados.size()) {
            p_.modelo.levantarPuerto(p);
        } else if (p_.modelo.cambiarPuerto(static_cast<Indice>(cual), p)) {
            hecho.puertos = cambiados[cual] = true;
        }
    }
    for (Indice k = 0; hecho.puertos && k < p_.tablas.conexiones.limiteSuperior(); ++k) {
        const ConexionIP& c = p_.tablas.conexiones[k];
        const auto cual = static_cast<std::size_t>(c.puerto - 1);
        if (cual >= cambiados.size() || !cambiados[cual]) continue;
        p_.modelo.tomarTiempos(k);
        co_await porciones_.gastar(costo(kPorOrden, c.bloques.size()));
    }
}

Trabajo Traspaso::retirarBloques(const Diferencia& d) {
    const auto& sobran = d.bloquesQueSobran;
    const auto conexion = [&](std::size_t n) { return p_.tablas.bloques[sobran[n]].idConexion; };
    for (std::size_t n = 0; n < sobran.size(); ++n) {
        const Indice k = conexion(n);
        const ConexionIP& c = p_.tablas.conexiones[k];
        const std::size_t escrituras = c.escrituras.size();
        retirarBloque(sobran[n]);
        co_await porciones_.gastar(kPorRetiro + costo(1, escrituras));
        if (n + 1 < sobran.size() && conexion(n + 1) == k) continue;
        ordenar(k);
        co_await porciones_.gastar(costo(kPorOrden, c.bloques.size()));
    }
}

Trabajo Traspaso::retirarEstaciones(const Diferencia& d) {
    for (const auto& [k, e] : d.estacionesQueSobran) {
        // What was asked for since the comparison goes with its station.
        bool quedaban = false;
        for (const Indice i : std::vector(p_.tablas.conexiones[k].estaciones[e].bloques)) {
            if (p_.tablas.bloques[i].retirado) continue;
            retirarBloque(i);
            quedaban = true;
        }
        if (quedaban) ordenar(k);
        p_.modelo.retirarEstacion(k, e);
        const ConexionIP& c = p_.tablas.conexiones[k];
        co_await porciones_.gastar(kPorEstacion +
                                   (c.retirada ? costo(kPorOrden, c.bloques.size()) : 0));
    }
    if (d.estacionesQueSobran.empty()) co_return;
    p_.tablas.ordenarEstaciones();
    co_await porciones_.gastar(costo(kPorOrden, p_.tablas.conexiones.limiteSuperior()));
}

Trabajo Traspaso::ordenarNiveles() {
    std::vector<std::vector<Indice>> niveles(p_.tablas.bloquesPorNivel.size());
    for (Indice i = 0; i < p_.tablas.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& b = p_.tablas.bloques[i];
        const auto nivel = static_cast<std::size_t>(b.nivel);
        if (nivel >= niveles.size()) niveles.resize(nivel + 1);
        if (!b.retirado) niveles[nivel].push_back(i);
        co_await porciones_.gastar(kPorOrden);
    }
    p_.tablas.tomarNiveles(std::move(niveles));
}

Trabajo Traspaso::levantar(const ListasDeConfiguracion& listas, const Diferencia& d, Hecho& hecho) {
    for (const std::size_t i : d.estacionesNuevas) {
        p_.modelo.levantarEstacion(listas.estaciones[i]);
        co_await porciones_.gastar(kPorEstacion);
    }
    for (const Diferencia::Nuevo& n : d.nuevos) {
        const ConfiguracionDeBloque& b = listas.bloques[n.configurado];
        const auto [conexion, estacion] = p_.tablas.buscarEstacion(b.puerto, b.plc);
        if (conexion == kNinguno) continue;
        const double antes = p_.tablas.cantidadDePuntos; // bits that are expected cost as much
        if (p_.tablas.conexiones[conexion].estaciones[estacion].aPedido == 0 ||
            !adoptar(b, n, conexion, d.hasta, hecho))
            levantarBloque(b, n.registro, n.cantidad, hecho);
        const auto nuevos = static_cast<std::size_t>(p_.tablas.cantidadDePuntos - antes);
        co_await siguiente(conexion, costo(kPorAlta, nuevos + 1));
    }
}

/// A register may have been asked for since the comparison: then its block is the configured one
/// from now on, and the others are raised one by one. False: no register of it was.
bool Traspaso::adoptar(const ConfiguracionDeBloque& pedido, const Diferencia::Nuevo& n,
                       Indice conexion, Indice desde, Hecho& hecho) {
    std::vector<std::string> faltan;
    const std::size_t antes = hecho.cambiadas;
    for (std::string& registro : registrosDeBloque(n.registro, n.cantidad)) {
        const Indice i = p_.tablas.buscarPorRegistro(conexion, pedido.plc, registro);
        if (i != kNinguno && i >= desde && p_.tablas.bloques[i].aPedido &&
            p_.tablas.bloques[i].clave == claveDeBloque(pedido.puerto, pedido.plc, registro)) {
            cambiar(i, pedido);
            ++hecho.cambiadas;
        } else {
            faltan.push_back(std::move(registro));
        }
    }
    if (hecho.cambiadas == antes) return false;
    for (const std::string& registro : faltan)
        levantarBloque(pedido, registro, 1, hecho);
    return true;
}

void Traspaso::levantarBloque(const ConfiguracionDeBloque& b, const std::string& registro,
                              double cantidad, Hecho& hecho) {
    const auto desde = static_cast<Indice>(p_.tablas.bloques.limiteSuperior());
    p_.modelo.levantarBloquePoleo(b.puerto, b.plc, registro, cantidad, b.scanSegundos,
                                  b.activoPorDefecto, b.nivel);
    const auto hasta = static_cast<Indice>(p_.tablas.bloques.limiteSuperior());
    for (Indice i = desde; i < hasta; ++i) {
        const auto suyos = bits_.find(p_.tablas.bloques[i].clave);
        for (std::size_t bit = 0; suyos != bits_.end() && bit < suyos->second.size(); ++bit) {
            if (suyos->second[bit]) p_.modelo.levantarBitDeDireccion(i, bit);
        }
        p_.publicacion.presentar(i);
        if (!p_.turnos.conectada(p_.tablas.bloques[i].idConexion)) continue;
        p_.reloj.empezar(i);
        p_.mudas.alCambiarActivo(i);
    }
    hecho.nuevas += hasta - desde;
}

/// What has become due is asked for as soon as its line is free.
Porciones::Paso Traspaso::siguiente(Indice conexion, std::int64_t costo) {
    const bool libre = p_.turnos.libre(conexion);
    if (libre) p_.poleo.buscoSiguienteAPolear(conexion);
    return porciones_.gastar(costo + (libre ? kPorPedido : 0));
}

void Traspaso::retirar(Indice bloque) {
    const Indice k = p_.tablas.bloques[bloque].idConexion;
    retirarBloque(bloque);
    ordenar(k);
    p_.modelo.terminarCambios();
    bits_.erase(p_.tablas.bloques[bloque].clave); // nothing takes its place
}

void Traspaso::retirarBloque(Indice bloque) {
    const BloqueLectura& b = p_.tablas.bloques[bloque];
    if (b.bits) bits_[b.clave] = b.bits->bitDefinido;
    p_.ejecucion.alRetirar(bloque);
    p_.modelo.retirarBloque(bloque);
}

void Traspaso::ordenar(Indice conexion) {
    const auto& estaciones = p_.tablas.conexiones[conexion].estaciones;
    std::vector<std::pair<Indice, std::size_t>> mudas;
    for (Indice e = 0; e < estaciones.limiteSuperior(); ++e) {
        if (estaciones[e].muda) mudas.emplace_back(e, estaciones[e].bloques.size());
    }
    p_.tablas.ordenar(conexion);
    // Whoever asked for a silent station may have gone.
    for (const auto& [e, antes] : mudas) {
        const auto& quedan = estaciones[e].bloques;
        if (!quedan.empty() && quedan.size() < antes) p_.mudas.alCambiarActivo(quedan.front());
    }
}

void Traspaso::cambiar(Indice bloque, const ConfiguracionDeBloque& pedido) {
    BloqueLectura& b = p_.tablas.bloques[bloque];
    p_.modelo.cambiarNivel(bloque, pedido.nivel);
    if (std::exchange(b.aPedido, false)) --p_.tablas.estacionDe(b).aPedido;
    if (std::exchange(b.scanConfigurado, pedido.scanSegundos) != pedido.scanSegundos) {
        p_.reloj.cambiarScan(bloque, pedido.scanSegundos);
        if (b.activo && p_.turnos.conectada(b.idConexion)) p_.reloj.pedir(bloque);
    }
    if (std::exchange(b.activoPorDefecto, pedido.activoPorDefecto) != pedido.activoPorDefecto &&
        b.activo != pedido.activoPorDefecto)
        p_.forzado.Activar_Desactivar_Bloque_Por_Solicitud(bloque, pedido.activoPorDefecto,
                                                           p_.tablas.ordenantes[0]);
}

} // namespace kv
