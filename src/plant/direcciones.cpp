// SPDX-License-Identifier: Apache-2.0
#include "plant/direcciones.h"

#include "plant/claves_de_bloque.h"
#include "plant/limites.h"
#include "plant/tablas.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

std::string lugar(double puerto, double plc) {
    return textoDeNumero(puerto) + "." + textoDeNumero(plc);
}

} // namespace

void DireccionesDePlanta::agregarEstacion(double puerto, double plc) {
    estaciones_.insert(lugar(puerto, plc));
}

void DireccionesDePlanta::agregarRegistro(double puerto, double plc, std::string_view registro) {
    const std::string clave = claveDeBloque(puerto, plc, registro);
    if (!claves_.insert(clave).second) return;
    if (const auto n = hexadecimal(recortar(registro)))
        registros_.insert(lugar(puerto, plc) + "." + std::to_string(*n));
    const std::string suyo = nombreDeScript(clave);
    for (const std::string& nombre : {suyo, suyo + std::string(kSufijoDeEstado)}) {
        if (publicados_.insert(minusculas(nombre)).second) nombres_.push_back(nombre);
    }
}

bool DireccionesDePlanta::sePuedePedir(double puerto, double plc, std::string_view registro) const {
    return byteDeRegistro(recortar(registro)) && estaciones_.contains(lugar(puerto, plc));
}

bool DireccionesDePlanta::hayRegistro(double puerto, double plc, std::string_view registro) const {
    const auto n = hexadecimal(recortar(registro));
    return n && registros_.contains(lugar(puerto, plc) + "." + std::to_string(*n));
}

bool DireccionesDePlanta::publica(std::string_view nombre) const {
    if (publicados_.contains(minusculas(nombre))) return true;
    const std::string n = minusculas(sinEstado(nombre));
    const auto corte = n.rfind('_');
    if (corte == std::string::npos) return false;
    if (bitDeTexto(std::string_view(n).substr(corte + 1)) == kNoEsBit) return false;
    return publicados_.contains(n.substr(0, corte));
}

DireccionesDePlanta direccionesDe(const Tablas& tablas) {
    DireccionesDePlanta planta;
    for (std::size_t c = 0; c < tablas.conexiones.limiteSuperior(); ++c) {
        const ConexionIP& conexion = tablas.conexiones[c];
        for (const Indice e : conexion.estacionesEnUso())
            planta.agregarEstacion(conexion.puerto, conexion.estaciones[e].numero);
    }
    for (std::size_t i = 0; i < tablas.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& b = tablas.bloques[i];
        if (b.retirado) continue;
        planta.agregarRegistro(b.puerto, b.plc, b.direccion());
    }
    return planta;
}

std::string claveDeConexion(std::string_view ip, std::string_view puertoTCP) {
    const auto numero = numeroDeTexto(puertoTCP);
    return minusculas(ip) + ":" + (numero ? textoDeNumero(*numero) : minusculas(puertoTCP));
}

bool partirDireccion(std::string_view texto, DireccionPartida& partes) {
    const auto trozos = partir(texto, '.');
    if (trozos.size() < 3 || trozos.size() > 4) return false;
    const auto puerto = numeroDeTexto(trozos[0]);
    const auto plc = numeroDeTexto(trozos[1]);
    if (!puerto || !plc) return false;
    partes = {*puerto, *plc, recortar(trozos[2])};
    if (trozos.size() == 3) return true;
    partes.bit = bitDeTexto(trozos[3]);
    return true;
}

int bitDeTexto(std::string_view texto) {
    const auto bit = numeroDeTexto(texto);
    const bool sirve = bit && *bit >= 0 && *bit < limite::kBits && *bit == std::floor(*bit);
    return sirve ? static_cast<int>(*bit) : kNoEsBit;
}

bool esDeBit(std::string_view direccion) { return std::ranges::count(direccion, '.') == 3; }

} // namespace kv
