// SPDX-License-Identifier: Apache-2.0
#include "write/forzado.h"

#include "plant/direcciones.h"
#include "plant/limites.h"
#include "text/numeros.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace kv {
Forzado::Forzado(Tablas& tablas, Turnos& turnos, Publicacion& publicacion, Poleo& poleo,
                 EstacionesMudas& mudas, RelojDeBloques& reloj, Modelo& modelo, Sucesos& sucesos)
    : tablas_(tablas), turnos_(turnos), publicacion_(publicacion), poleo_(poleo), mudas_(mudas),
      reloj_(reloj), modelo_(modelo), sucesos_(sucesos) {}

Que Forzado::decir(Que que, std::string_view dado, double numero) {
    sucesos_.decir({.que = que, .numero = numero}, dado);
    return que;
}

void Forzado::forzarBloque_porID(Indice bloque, std::string_view quien) {
    if (!tablas_.bloques[bloque].activo) conmutar(bloque, true, quien);
    leerYa(bloque);
}

void Forzado::leerYa(Indice bloque) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    publicacion_.ponerActivo(bloque, true);
    mudas_.alCambiarActivo(bloque);
    reloj_.pedir(bloque);
    // One that rests is read when its rest is over.
    if (b.habilitadoPorRespuestas) poleo_.buscoSiguienteAPolear(b.idConexion);
}

Que Forzado::forzarPoleo(const std::string& direccion, std::string_view quien) {
    const std::string corta = direccion.substr(0, limite::kDireccionEnMensaje);
    DireccionPartida pedida;
    const bool hayPuerto = partirDireccion(direccion, pedida) && pedida.bit != kNoEsBit &&
                           tablas_.puertos.vive(pedida.puerto - 1);
    const auto lugar =
        hayPuerto ? tablas_.buscarEstacion(pedida.puerto, pedida.plc) : Tablas::LugarDeEstacion{};
    if (lugar.conexion == kNinguno) return decir(Que::SinPuertoNiPlc, corta);
    const Indice conocido = tablas_.buscarPorRegistro(lugar.conexion, pedida.plc, pedida.registro);
    if (conocido != kNinguno) return forzarConocido(conocido, corta, pedida.bit, quien);
    return darDeAlta(lugar, tablas_.puertos[static_cast<std::size_t>(pedida.puerto) - 1],
                     pedida.plc, std::string(pedida.registro), corta, pedida.bit);
}

/// `quien` is empty for a block that has just been made.
Que Forzado::forzarConocido(Indice bloque, const std::string& direccion, int bit,
                            std::string_view quien) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    if (bit >= 0) modelo_.levantarBitDeDireccion(bloque, static_cast<std::size_t>(bit));
    const auto imposible = [&](Que que) {
        sucesos_.decir({.que = que,
                        .detalle = static_cast<std::int16_t>(quien.empty() ? 1 : 0),
                        .conexion = b.idConexion,
                        .bloque = bloque});
        return que;
    };
    if (!b.tieneTrama) return imposible(Que::ForzarSinTrama);
    if (!turnos_.conectada(b.idConexion)) return imposible(Que::ForzarSinConexion);
    if (!b.habilitadoPorRespuestas) return imposible(Que::ForzarEnDescanso);
    forzarBloque_porID(bloque, quien);
    sucesos_.decir({.que = Que::Forzado, .conexion = b.idConexion, .bloque = bloque}, direccion);
    return Que::Forzado;
}

Que Forzado::darDeAlta(const Tablas::LugarDeEstacion& lugar, const Puerto& puerto, double plc,
                       const std::string& registro, const std::string& direccion, int bit) {
    Estacion& estacion = tablas_.conexiones[lugar.conexion].estaciones[lugar.estacion];
    // Anybody may ask for any address: only what a station can be asked for becomes a block, and it
    // stays.
    if (!armarTramaLectura(registro, textoDeNumero(estacion.indice)))
        return decir(Que::AltaFueraDeTrama, direccion);
    if (estacion.aPedido >= aPedidoMaximo_)
        return decir(Que::AltaSinLugar, direccion, aPedidoMaximo_);
    const double nuevo = modelo_.levantarBloquePoleo(puerto.numero, plc, registro, 1,
                                                     puerto.scanPorDefecto, true, 0);
    if (nuevo < 0) return decir(Que::AltaSinPuerto, direccion);
    ++estacion.aPedido;
    tablas_.bloques[static_cast<Indice>(nuevo)].aPedido = true;
    const auto bloque = static_cast<Indice>(nuevo);
    sucesos_.decir({.que = Que::BloqueDadoDeAlta,
                    .conexion = lugar.conexion,
                    .bloque = bloque,
                    .numero = puerto.scanPorDefecto},
                   direccion);
    return forzarConocido(bloque, direccion, bit, {});
}

template <class Accion>
bool Forzado::enNivel(double nivel, const Accion& accion) {
    // A copy: a forced read lets events run, and they may add blocks to the level.
    std::vector<Indice> deNivel;
    const auto suyo = [&](Indice i) {
        return !tablas_.bloques[i].retirado && tablas_.bloques[i].nivel == nivel;
    };
    if (nivel >= 0 && nivel < static_cast<double>(tablas_.bloquesPorNivel.size()))
        std::ranges::copy_if(tablas_.bloquesPorNivel[static_cast<std::size_t>(nivel)],
                             std::back_inserter(deNivel), suyo);
    if (deNivel.empty()) decir(Que::NivelSinBloques, {}, nivel);
    for (const Indice i : deNivel) {
        if (suyo(i)) accion(i);
    }
    return !deNivel.empty();
}

void Forzado::forzarBloque_porNivel(double nivel) {
    enNivel(nivel, [this](Indice i) { forzarVeces(i, 1, "FORZANDO POR NIVEL"); });
}

bool Forzado::forzarBloque_porNivel_NVeces(double nivel, double veces, std::string_view quien) {
    return enNivel(nivel, [this, veces, quien](Indice i) {
        if (veces > 0)
            forzarVeces(i, veces,
                        "FORZANDO POR NIVEL, Cantidad de veces a leer : " + textoDeNumero(veces));
        if (veces == 0) Activar_Desactivar_Bloque_Por_Solicitud(i, true, quien);
        if (veces == -1) Activar_Desactivar_Bloque_Por_Solicitud(i, false, quien);
    });
}

void Forzado::forzarVeces(Indice bloque, double veces, std::string_view nota) {
    if (!tablas_.bloques[bloque].tieneTrama)
        return sucesos_.decir({.que = Que::ForzarSinTrama,
                               .conexion = tablas_.bloques[bloque].idConexion,
                               .bloque = bloque});
    reloj_.forzar(bloque, veces, nota);
    leerYa(bloque);
}

void Forzado::conmutar(Indice bloque, bool activo, std::string_view quien) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    // A forced read keeps a block on for as long as it lasts: what it was before is what changes.
    const bool cambia = (b.forzado ? b.activoSinForzar : b.activo) != activo;
    reloj_.encender(bloque, activo, tablas_.ordenante(quien));
    if (cambia)
        sucesos_.decir({.que = Que::BloqueConmutado,
                        .detalle = static_cast<std::int16_t>(activo ? 1 : 0),
                        .conexion = b.idConexion,
                        .bloque = bloque});
}

void Forzado::Activar_Desactivar_Bloque_Por_Solicitud(Indice bloque, bool estado,
                                                      std::string_view quien) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    conmutar(bloque, estado, quien);
    mudas_.alCambiarActivo(bloque);
    if (!estado || !turnos_.conectada(b.idConexion)) return;
    if (!b.pendiente) return leerYa(bloque);
    // It waited for its turn when it was switched off, and waits again.
    poleo_.buscoSiguienteAPolear(b.idConexion);
}

void Forzado::Activar_Dir(std::string_view clave, bool estado, std::string_view quien) {
    for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior(); ++i) {
        if (tablas_.bloques[i].retirado || tablas_.bloques[i].clave != clave) continue;
        return Activar_Desactivar_Bloque_Por_Solicitud(static_cast<Indice>(i), estado, quien);
    }
}

void Forzado::ModificarScanDeBloque(double bloque, double segundos, std::string_view quien) {
    if (!tablas_.bloques.vive(bloque) || !esScan(segundos)) return;
    const auto i = static_cast<Indice>(bloque);
    reloj_.cambiarScan(i, segundos);
    forzarBloque_porID(i, quien);
}

} // namespace kv
