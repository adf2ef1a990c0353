// SPDX-License-Identifier: Apache-2.0
#include "plant/tablas.h"

#include "plant/direcciones.h"
#include "text/numeros.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

std::uint64_t claveDeEstacion(double puerto, double plc) {
    const auto mitad = [](double n) {
        return std::uint64_t{static_cast<std::uint32_t>(entero(n).value_or(-1))};
    };
    return mitad(puerto) << 32 | mitad(plc);
}

} // namespace

void Tablas::actualizarPorPolear(const BloqueLectura& b) {
    if (b.idConexion == kNinguno) return;
    conexiones[b.idConexion].porPolear.poner(b.posicionEnConexion, b.pendiente && b.sePuedePedir());
}

void Tablas::ponerPendiente(Indice bloque, bool pendiente) {
    bloques[bloque].pendiente = pendiente;
    actualizarPorPolear(bloques[bloque]);
}

void Tablas::ponerActivo(Indice bloque, bool activo) {
    BloqueLectura& b = bloques[bloque];
    if (b.activo != activo && b.tieneTrama && b.idConexion != kNinguno)
        conexiones[b.idConexion].activos += activo ? 1U : -1U;
    b.activo = activo;
    actualizarPorPolear(b);
}

std::uint8_t Tablas::ordenante(std::string_view quien) {
    constexpr std::size_t kMaximo = 255;
    constexpr std::size_t kLargo = 64;
    quien = quien.substr(0, kLargo);
    auto i = std::find(ordenantes.begin(), ordenantes.end(), quien);
    if (i == ordenantes.end() && ordenantes.size() <= kMaximo)
        i = ordenantes.emplace(i, ordenantes.size() < kMaximo ? std::string(quien)
                                                              : nombreDe(Ordenante::Otros));
    if (i == ordenantes.end()) --i;
    return static_cast<std::uint8_t>(i - ordenantes.begin());
}

void Tablas::habilitar(Indice bloque, bool habilitado) {
    bloques[bloque].habilitadoPorRespuestas = habilitado;
    actualizarPorPolear(bloques[bloque]);
}

std::size_t Tablas::siguientePorPolear(Indice conexion) const {
    const ConexionIP& c = conexiones[conexion];
    return c.cursorBloques == kNinguno ? c.porPolear.siguiente(0)
                                       : c.porPolear.siguienteEnRonda(c.cursorBloques);
}

Indice Tablas::buscarPorRegistro(Indice conexion, double plc, std::string_view registro) const {
    const auto numero = hexadecimal(registro);
    if (!numero) return kNinguno;
    const ConexionIP& c = conexiones[conexion];
    const auto i = c.porRegistro.find(claveDeEstacion(plc, 0) | *numero);
    if (i != c.porRegistro.end()) return i->second;
    if (!c.porOrdenar) return kNinguno;
    // Behind one that was retired another may ask for the same.
    const auto otro = std::find_if(c.bloques.begin(), c.bloques.end(), [&](Indice k) {
        const BloqueLectura& b = bloques[k];
        return !b.retirado && b.plc == plc && hexadecimal(b.direccion()) == numero;
    });
    return otro != c.bloques.end() ? *otro : kNinguno;
}

void Tablas::anotarRegistro(Indice bloque) {
    const BloqueLectura& b = bloques[bloque];
    if (const auto numero = hexadecimal(b.direccion()))
        conexiones[b.idConexion].porRegistro.try_emplace(claveDeEstacion(b.plc, 0) | *numero,
                                                         bloque);
}

Indice Tablas::buscarConexion(const std::string& ip, const std::string& puertoTCP) const {
    const auto i = porDireccion_.find(claveDeConexion(ip, puertoTCP));
    return i == porDireccion_.end() ? kNinguno : i->second;
}

void Tablas::anotarConexion(Indice conexion) {
    const ConexionIP& c = conexiones[conexion];
    porDireccion_.try_emplace(claveDeConexion(c.ip, c.puertoTCP), conexion);
}

Tablas::LugarDeEstacion Tablas::buscarEstacion(double puerto, double plc) const {
    const auto es = [&](Indice k, Indice e) {
        const ConexionIP& c = conexiones[k];
        return puerto == c.puerto && plc == c.estaciones[e].numero && !c.estaciones[e].retirada;
    };
    if (const auto i = porNumero_.find(claveDeEstacion(puerto, plc)); i != porNumero_.end())
        return es(i->second.conexion, i->second.estacion) ? i->second : LugarDeEstacion{};
    for (Indice k = 0; estacionesPorOrdenar_ && k < conexiones.limiteSuperior(); ++k) {
        for (Indice e = 0; e < conexiones[k].estaciones.limiteSuperior(); ++e) {
            if (es(k, e)) return {k, e};
        }
    }
    return {};
}

void Tablas::anotarEstacion(Indice conexion, Indice estacion) {
    const ConexionIP& c = conexiones[conexion];
    // The first in table order wins: connection by connection, station by station.
    const LugarDeEstacion lugar{conexion, estacion};
    const auto [i, nueva] =
        porNumero_.try_emplace(claveDeEstacion(c.puerto, c.estaciones[estacion].numero), lugar);
    if (!nueva && conexion < i->second.conexion) i->second = lugar;
}

void Tablas::olvidarBloque(Indice bloque) {
    const BloqueLectura& b = bloques[bloque];
    ConexionIP& c = conexiones[b.idConexion];
    c.porOrdenar = true;
    const auto numero = hexadecimal(b.direccion());
    if (!numero) return;
    const auto i = c.porRegistro.find(claveDeEstacion(b.plc, 0) | *numero);
    if (i != c.porRegistro.end() && i->second == bloque) c.porRegistro.erase(i);
}

void Tablas::olvidarEstacion(Indice conexion, Indice estacion) {
    const ConexionIP& c = conexiones[conexion];
    estacionesPorOrdenar_ = true;
    const auto i = porNumero_.find(claveDeEstacion(c.puerto, c.estaciones[estacion].numero));
    if (i != porNumero_.end() && i->second.conexion == conexion && i->second.estacion == estacion)
        porNumero_.erase(i);
}

void Tablas::olvidarConexion(Indice conexion) {
    const ConexionIP& c = conexiones[conexion];
    const auto i = porDireccion_.find(claveDeConexion(c.ip, c.puertoTCP));
    if (i != porDireccion_.end() && i->second == conexion) porDireccion_.erase(i);
}

std::vector<Indice> ConexionIP::estacionesEnUso() const {
    std::vector<Indice> suyas;
    for (Indice e = 0; e < estaciones.limiteSuperior(); ++e) {
        if (!estaciones[e].retirada) suyas.push_back(e);
    }
    return suyas;
}

void Tablas::ordenar(Indice conexion) {
    ++edicion_;
    ConexionIP& c = conexiones[conexion];
    for (Indice e = 0; e < c.estaciones.limiteSuperior(); ++e) {
        Estacion& estacion = c.estaciones[e];
        if (std::erase_if(estacion.bloques, [this](Indice i) { return bloques[i].retirado; }) > 0)
            estacion.sondea = 0;
    }
    c.porRegistro.clear();
    for (const Indice i : c.bloques) {
        if (!bloques[i].retirado) anotarRegistro(i);
    }
    c.porOrdenar = false;
}

void Tablas::ordenarEstaciones() {
    ++edicion_;
    porNumero_.clear();
    for (Indice k = 0; k < conexiones.limiteSuperior(); ++k) {
        for (const Indice e : conexiones[k].estacionesEnUso())
            anotarEstacion(k, e);
    }
    estacionesPorOrdenar_ = false;
}

void Tablas::tomarNiveles(std::vector<std::vector<Indice>> niveles) {
    ++edicion_;
    bloquesPorNivel = std::move(niveles);
}

void Tablas::anotarNivel(Indice bloque) {
    const auto nivel = static_cast<std::size_t>(bloques[bloque].nivel);
    if (nivel >= bloquesPorNivel.size()) bloquesPorNivel.resize(nivel + 1);
    bloquesPorNivel[nivel].push_back(bloque);
}

std::string nombreDeEstacion(const Tablas& tablas, Indice bloque) {
    const BloqueLectura& b = tablas.bloques[bloque];
    const ConexionIP& c = tablas.conexiones[b.idConexion];
    const Estacion& e = tablas.estacionDe(b);
    return "[PLC " + textoDeNumero(e.numero) + " - Indice " + textoDeNumero(e.indice) + "] " +
           direccionDe(c);
}

std::string direccionDeEstacion(const Tablas& tablas, Indice conexion, Indice estacion) {
    const ConexionIP& c = tablas.conexiones[conexion];
    const Estacion& e = c.estaciones[estacion];
    // Stations of two ports may share a connection: a block knows which one is its own.
    if (!e.bloques.empty()) {
        const std::string& clave = tablas.bloques[e.bloques.front()].clave;
        return clave.substr(0, clave.rfind('.'));
    }
    return textoDeNumero(c.puerto) + "." + textoDeNumero(e.numero);
}

} // namespace kv
