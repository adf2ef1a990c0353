// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/linea_de_orden.h"

#include "config/driver.h"
#include "plant/direcciones.h"
#include "platform/epoll/sistema.h"
#include "text/direccion_de_red.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <map>
#include <ostream>

namespace kv::simulador {
namespace {

std::optional<std::uint8_t> estacionDeTexto(std::string_view texto) {
    const bool cifras = !texto.empty() && texto.size() <= 2 &&
                        texto.find_first_not_of("0123456789") == std::string_view::npos;
    return cifras ? byteDeEstacion(*numeroDeTexto(texto)) : std::nullopt;
}

/// "IP:PORT", "IP:PORT/STATION" or "STATION"; "*" stands for every station.
std::optional<Lugar> lugarDeTexto(std::string_view texto) {
    Lugar lugar;
    std::string_view estacion = texto;
    if (texto.find(':') != std::string_view::npos) {
        const auto barra = texto.find('/');
        const auto escuchada = escuchadaDeTexto(texto.substr(0, barra));
        if (!escuchada) return std::nullopt;
        lugar.direccion = claveDeConexion(escuchada->ip, std::to_string(escuchada->puerto));
        if (barra == std::string_view::npos) return lugar;
        estacion = texto.substr(barra + 1);
    }
    if (estacion == "*") return lugar;
    lugar.estacion = estacionDeTexto(estacion);
    return lugar.estacion ? std::optional(lugar) : std::nullopt;
}

} // namespace

std::optional<Escuchada> escuchadaDeTexto(std::string_view texto) {
    const auto dos = texto.rfind(':');
    if (dos == std::string_view::npos) return std::nullopt;
    Escuchada e;
    e.ip = texto.substr(0, dos);
    const std::string_view puerto = texto.substr(dos + 1);
    const auto numero = puertoTcpDeTexto(puerto);
    if (!esIPv4(e.ip) || (!numero && puerto != "0")) return std::nullopt;
    e.puerto = numero.value_or(0);
    return e;
}

DefinicionDeRegistro registroDeTexto(std::string_view texto, std::string& error) {
    DefinicionDeRegistro d;
    const auto igual = texto.find('=');
    const std::string_view izquierda = texto.substr(0, igual);
    const auto punto = izquierda.rfind('.');
    error = "se escribe [IP:PUERTO/]ESTACION.REGISTRO=VALOR";
    if (igual == std::string_view::npos || punto == std::string_view::npos) return d;
    const auto lugar = lugarDeTexto(izquierda.substr(0, punto));
    const std::string_view registro = izquierda.substr(punto + 1);
    const auto senal = senalDeTexto(texto.substr(igual + 1));
    const auto byte = byteDeRegistro(registro);
    if (!lugar) {
        error = "la estación son dos cifras, o *";
    } else if (registro != "*" && !byte) {
        error = "el registro es hexadecimal de 0 a FF, o *";
    } else if (!senal) {
        error = "el valor es un entero de -32768 a 65535, rampa, seno o azar";
    } else {
        error.clear();
        d = {*lugar, std::nullopt, *senal};
        if (registro != "*") d.registro = byte;
    }
    return d;
}

DefinicionDeFallas fallasDeTexto(std::string_view texto, std::string& error) {
    DefinicionDeFallas d;
    const auto partes = partir(texto, ',');
    const auto lugar = lugarDeTexto(partes.front());
    error = "se escribe IP:PUERTO[/ESTACION],opcion=valor,... o ESTACION,opcion=valor,...";
    if (!lugar || partes.size() < 2) return d;
    d.lugar = *lugar;
    Fallas prueba;
    for (std::size_t i = 1; i < partes.size(); ++i) {
        const auto igual = partes[i].find('=');
        const std::string nombre(partes[i].substr(0, igual));
        // An option without a value is switched on.
        const std::string valor(igual == std::string_view::npos ? "1"
                                                                : partes[i].substr(igual + 1));
        error = fijarFalla(prueba, nombre, valor);
        if (error.empty() && nombre.starts_with("cortar-") && lugar->estacion)
            error = "es de la dirección entera, no de una estación";
        if (!error.empty()) {
            error.insert(0, nombre + ": ");
            return d;
        }
        d.opciones.emplace_back(nombre, valor);
    }
    return d;
}

std::vector<Escuchada> escuchadasDeConfig(const std::string& ruta, std::ostream& errores) {
    ArchivosReales archivos;
    ListasDeConfiguracion listas;
    Problemas problemas;
    leerConfiguracionDeDriver(archivos, ruta, listas, problemas);
    std::vector<Escuchada> escuchadas;
    std::map<std::string, std::size_t> porClave;
    for (std::size_t i = 0; i < listas.estaciones.size(); ++i) {
        const Estacion& e = listas.estaciones[i];
        const auto puerto = puertoTcpDeTexto(e.puertoTCP);
        const auto byte = byteDeEstacion(e.indice);
        if (!esIPv4(e.ip) || !puerto || !byte) {
            problemas.agregar(ruta, listas.lineasDeEstaciones[i],
                              "la estación PLC " + std::to_string(e.numero) +
                                  " no tiene una dirección que se pueda servir",
                              "no se simula");
            continue;
        }
        const auto [lugar, nueva] =
            porClave.try_emplace(claveDeConexion(e.ip, e.puertoTCP), escuchadas.size());
        if (nueva) escuchadas.push_back({e.ip, *puerto, {}});
        escuchadas[lugar->second].estaciones.insert(*byte);
    }
    for (const Problema& p : problemas.lista())
        errores << textoDeProblema(p) << '\n';
    return escuchadas;
}

} // namespace kv::simulador
