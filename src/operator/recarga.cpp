// SPDX-License-Identifier: Apache-2.0
#include "operator/recarga.h"

#include "config/proyecto.h"
#include "text/numeros.h"

#include <exception>
#include <utility>

namespace kv {
namespace {

/// A fault without its line: those of a file move when something is put before them.
std::string sinLinea(const Problema& p) { return p.archivo + ": " + p.que; }

std::string cuantos(std::size_t n) { return textoDeNumero(static_cast<double>(n)); }

} // namespace

void Recarga::conocer(const Problemas& problemas) {
    conocidos_.clear();
    for (const Problema& p : problemas.lista())
        conocidos_.insert(sinLinea(p));
}

void Recarga::recargar() {
    otraVez_ = true;
    if (recargando_) return;
    recargando_ = true;
    try {
        while (std::exchange(otraVez_, false))
            unaVez();
    } catch (const std::exception& falla) {
        rechazar(falla.what());
    }
    recargando_ = false;
}

void Recarga::unaVez() {
    std::string mensaje;
    // Whoever asks has just written it: what was seen earlier in this turn, as at the start, is
    // old.
    p_.ajustes.vueltaNueva();
    ConfiguracionLeida leida = leerConfiguracionUbicada(
        p_.ajustes, [&mensaje](std::string_view texto) { mensaje = texto; });
    const Validacion validacion = validar(leida.listas, leida.problemas);
    if (mensaje.empty()) mensaje = queja(leida.listas, leida.problemas);
    if (mensaje.empty() && validacion.bloquesConstruidos == 0)
        mensaje = leida.listas.archivo + ": no queda ningún bloque";
    if (!mensaje.empty()) return rechazar(mensaje);
    conocer(leida.problemas);
    if (alAdoptar_) alAdoptar_(leida.ubicacion.rutaConfiguracion);
    p_.vista.lblProyecto.poner(leida.ubicacion.nombreProyecto);
    p_.guion.fijarRuta(rutaDelGuion(leida.ubicacion.rutaConfiguracion));
    p_.descripciones = std::move(leida.listas.descripciones);
    aplicar(leida.listas, comparar(p_.tablas, leida.listas, validacion));
}

/// The first fault that is new, or nothing.
std::string Recarga::queja(const ListasDeConfiguracion& listas, const Problemas& problemas) const {
    for (const Problema& p : problemas.lista()) {
        if (!conocidos_.contains(sinLinea(p))) return textoDeProblema(p);
    }
    // Of those that were not kept none can be told from the others.
    return problemas.demas() > 0 ? listas.archivo + ": demasiados problemas" : std::string();
}

void Recarga::olvidar(Indice bloque) {
    const BloqueLectura& b = p_.tablas.bloques[bloque];
    if (recargando_ || !b.aPedido || b.retirado) return;
    Diferencia suyo;
    suyo.bloquesQueSobran.push_back(bloque);
    retirar(suyo);
}

void Recarga::rechazar(const std::string& porque) {
    p_.log.escribir({"DRIVER", "Configuracion", "no se recarga, todo sigue como estaba", porque,
                     Novedad::NoRecargada});
    p_.vista.mostrarMensaje("La configuración no se recarga y todo sigue como estaba.\r\n" + porque,
                            "Recargar configuración");
}

void Recarga::aplicar(const ListasDeConfiguracion& listas, const Diferencia& d) {
    const bool otrosPuertos = puertos(listas);
    retirar(d);
    const auto desde = static_cast<Indice>(p_.tablas.bloques.limiteSuperior());
    levantar(listas, d);
    const auto hasta = static_cast<Indice>(p_.tablas.bloques.limiteSuperior());
    for (const auto& [bloque, configurado] : d.cambios)
        p_.modelo.cambiarNivel(bloque, listas.bloques[configurado].nivel);
    p_.modelo.terminarCambios();
    const std::string que = "recargada: " + cuantos(hasta - desde) + " variables nuevas, " +
                            cuantos(d.bloquesQueSobran.size()) + " retiradas, " +
                            cuantos(d.cambios.size()) + " cambiadas, " + cuantos(d.iguales) +
                            " iguales" + (otrosPuertos ? "; puertos cambiados" : "");
    p_.log.escribir({"DRIVER", "Configuracion", que, {}, Novedad::Recargada});
    // All tables are true from here on, and events may run.
    for (Indice i = desde; i < hasta; ++i)
        empezar(i);
    for (const auto& [bloque, configurado] : d.cambios)
        cambiar(bloque, listas.bloques[configurado]);
    for (Indice k = 0; k < p_.tablas.conexiones.limiteSuperior(); ++k)
        p_.poleo.buscoSiguienteAPolear(k);
    p_.conexiones.estadoConexiones();
}

/// A port's place in the table is its number, so they follow the lists as they stand. Whether
/// anything is another.
bool Recarga::puertos(const ListasDeConfiguracion& listas) {
    bool cambio = false;
    std::size_t n = 0;
    for (const Puerto& p : listas.puertos) {
        if (p.numero <= 0) continue;
        const std::size_t cual = n++;
        if (cual >= p_.tablas.puertos.limiteSuperior()) {
            p_.modelo.levantarPuerto(p.numero, p.tiempoFuera, p.scanPorDefecto, p.reintentosMax,
                                     p.segReconeccion, p.tipoPlcPorDefecto,
                                     p.leerDespuesDeEscribir);
        } else if (p_.modelo.cambiarPuerto(static_cast<Indice>(cual), p)) {
            cambio = true;
        }
    }
    return cambio;
}

void Recarga::retirar(const Diferencia& d) {
    if (d.bloquesQueSobran.empty() && d.estacionesQueSobran.empty()) return;
    for (const Indice i : d.bloquesQueSobran) {
        p_.ejecucion.alRetirar(i);
        p_.modelo.retirarBloque(i);
    }
    for (const auto& [conexion, estacion] : d.estacionesQueSobran)
        p_.modelo.retirarEstacion(conexion, estacion);
    p_.modelo.terminarCambios();
    // Whoever asked for a silent station may have gone.
    for (const Indice i : d.bloquesQueSobran) {
        const Estacion& e = p_.tablas.estacionDe(p_.tablas.bloques[i]);
        if (!e.retirada && e.muda && !e.bloques.empty())
            p_.mudas.alCambiarActivo(e.bloques.front());
    }
}

void Recarga::levantar(const ListasDeConfiguracion& listas, const Diferencia& d) {
    for (const std::size_t i : d.estacionesNuevas) {
        const Estacion& e = listas.estaciones[i];
        p_.modelo.levantarEstacion(e.puerto, e.ip, e.puertoTCP, e.numero, e.digitos, e.indice);
    }
    for (const auto& [configurado, registro, cantidad] : d.nuevos) {
        const ConfiguracionDeBloque& b = listas.bloques[configurado];
        p_.modelo.levantarBloquePoleo(b.puerto, b.plc, registro, cantidad, b.scanSegundos,
                                      b.activoPorDefecto, b.nivel);
    }
}

void Recarga::empezar(Indice bloque) {
    p_.publicacion.presentar(bloque);
    if (!p_.turnos.conectada(p_.tablas.bloques[bloque].idConexion)) return;
    p_.reloj.empezar(bloque);
    p_.mudas.alCambiarActivo(bloque);
}

void Recarga::cambiar(Indice bloque, const ConfiguracionDeBloque& pedido) {
    BloqueLectura& b = p_.tablas.bloques[bloque];
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
