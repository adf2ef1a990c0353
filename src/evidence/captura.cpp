// SPDX-License-Identifier: Apache-2.0
#include "evidence/captura.h"

#include "events/nombres.h"
#include "evidence/hora.h"
#include "text/numeros.h"
#include "wire/ensamblado.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace kv {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kIpDelDriver = 0xC0000201; // 192.0.2.1, which belongs to no machine
constexpr std::uint32_t kIpDeNombres = 0xC6120000; // 198.18.0.0/15, as little
constexpr std::uint16_t kPrimerPuerto = 40000;
constexpr std::uint16_t kPuertos = 20000;
constexpr std::size_t kLargoIp = 20;
constexpr std::size_t kLargoTcp = 20;

void alReves(std::string& a, std::uint32_t n, int bytes) {
    for (int i = 0; i < bytes; ++i)
        a += static_cast<char>(n >> (8 * i) & 0xFFU);
}

void poner(Bytes& a, std::uint32_t n, int bytes) {
    for (int i = bytes - 1; i >= 0; --i)
        a.push_back(static_cast<std::uint8_t>(n >> (8 * i)));
}

std::uint32_t sumar(std::span<const std::uint8_t> bytes) {
    std::uint32_t suma = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i)
        suma += std::uint32_t{bytes[i]} << (i % 2 == 0 ? 8 : 0);
    return suma;
}

void ponerSuma(Bytes& a, std::size_t donde, std::uint32_t suma) {
    while (suma > 0xFFFF)
        suma = (suma & 0xFFFF) + (suma >> 16);
    suma = ~suma;
    a[donde] = static_cast<std::uint8_t>(suma >> 8);
    a[donde + 1] = static_cast<std::uint8_t>(suma);
}

Bytes deHexadecimales(std::string_view texto) {
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < texto.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(hexadecimal(texto.substr(i, 2)).value_or(0)));
    return bytes;
}

std::optional<std::uint32_t> ipv4(const std::string& texto) {
    unsigned a = 0, b = 0, c = 0, d = 0;
    char mas = 0;
    if (std::sscanf(texto.c_str(), "%3u.%3u.%3u.%3u%c", &a, &b, &c, &d, &mas) != 4 || // NOLINT
        std::max({a, b, c, d}) > 255)
        return std::nullopt;
    return a << 24 | b << 16 | c << 8 | d;
}

/// Microseconds since 1970 of a local time as the door writes it.
std::int64_t instante(const std::string& hora) {
    FechaHora f;
    if (std::sscanf(hora.c_str(), "%4d-%2d-%2dT%2d:%2d:%2d.%3d", &f.anio, &f.mes, // NOLINT
                    &f.dia, &f.hora, &f.minuto, &f.segundo, &f.milisegundo) != 7)
        return 0;
    return segundosUniversales(f) * 1'000'000 + std::int64_t{f.milisegundo} * 1000;
}

std::string textoEn(const Json& j, std::string_view nombre) {
    const Json* m = j.miembro(nombre);
    return m != nullptr && m->texto() != nullptr ? *m->texto() : std::string();
}

/// Of the bytes that an arrival is listed with, those that it brought. A long list says how many
/// were held before; a short one begins with what was held, unless that has been given up.
std::span<const std::uint8_t> nuevos(const Json& suceso, const Bytes& bytes, Bytes& tenidos) {
    std::size_t antes = 0;
    if (const Json* n = suceso.miembro("tenidos")) {
        antes = std::min(bytes.size(), static_cast<std::size_t>(n->numero().value_or(0)));
        tenidos.assign(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(antes));
    } else if (bytes.size() > tenidos.size() &&
               std::equal(tenidos.begin(), tenidos.end(), bytes.begin())) {
        antes = tenidos.size();
    } else {
        tenidos.clear();
    }
    return std::span(bytes).subspan(antes);
}

} // namespace

Captura::Captura() {
    constexpr std::uint32_t kMarca = 0xA1B2C3D4;
    constexpr std::uint32_t kIpSola = 101;
    alReves(pcap_, kMarca, 4);
    alReves(pcap_, 2, 2);
    alReves(pcap_, 4, 2);
    alReves(pcap_, 0, 4);
    alReves(pcap_, 0, 4);
    alReves(pcap_, 65535, 4);
    alReves(pcap_, kIpSola, 4);
}

/// A link that comes up anew is another conversation.
void Captura::reanudar(Enlace& e) {
    e.puertoDelDriver = static_cast<std::uint16_t>(kPrimerPuerto + siguientePuerto_++ % kPuertos);
    e.enviados = e.recibidos = 1;
    e.tenidos.clear();
}

Captura::Enlace& Captura::enlaceDe(const std::string& direccion) {
    const auto [lugar, nuevo] = enlaces_.try_emplace(direccion);
    Enlace& e = lugar->second;
    if (!nuevo) return e;
    const std::size_t dos = direccion.rfind(':');
    const auto propia = ipv4(direccion.substr(0, dos));
    e.ip = propia.value_or(kIpDeNombres + static_cast<std::uint32_t>(enlaces_.size()));
    if (dos != std::string::npos)
        e.puerto = static_cast<std::uint16_t>(numeroDeTexto(direccion.substr(dos + 1)).value_or(0));
    puertos_.insert(e.puerto);
    reanudar(e);
    return e;
}

void Captura::agregar(const Json& suceso) {
    const Que que = queDeNombre(textoEn(suceso, "suceso")).value_or(Que::Ultimo);
    const std::string conexion = textoEn(suceso, "conexion");
    if (conexion.empty()) return;
    Enlace& e = enlaceDe(conexion);
    if (que == Que::EnlaceArriba) reanudar(e);
    if (que == Que::Recepcion) e.tenidos.clear();
    const bool pedido = contiene(kSalidas, que);
    if (!pedido && que != Que::LlegaronBytes) return;
    const std::string hora = textoEn(suceso, "hora");
    const Bytes bytes = deHexadecimales(textoEn(suceso, "bytes"));
    if (bytes.empty()) return;
    if (pedido) {
        e.tenidos.clear();
        return segmento(e, true, hora, bytes);
    }
    const auto suyos = nuevos(suceso, bytes, e.tenidos);
    segmento(e, false, hora, suyos);
    Ensamblado nada;
    ensamblar(e.tenidos, suyos, nada);
}

void Captura::segmento(Enlace& e, bool delDriver, const std::string& hora,
                       std::span<const std::uint8_t> datos) {
    constexpr std::uint32_t kTcp = 6;
    Bytes p;
    poner(p, 0x4500, 2);
    poner(p, static_cast<std::uint32_t>(kLargoIp + kLargoTcp + datos.size()), 2);
    poner(p, ++identidad_, 2);
    poner(p, 0x4000, 2); // not to be cut
    poner(p, 64, 1);
    poner(p, kTcp, 1);
    poner(p, 0, 2);
    poner(p, delDriver ? kIpDelDriver : e.ip, 4);
    poner(p, delDriver ? e.ip : kIpDelDriver, 4);
    ponerSuma(p, 10, sumar(p));
    poner(p, delDriver ? e.puertoDelDriver : e.puerto, 2);
    poner(p, delDriver ? e.puerto : e.puertoDelDriver, 2);
    poner(p, delDriver ? e.enviados : e.recibidos, 4);
    poner(p, delDriver ? e.recibidos : e.enviados, 4);
    poner(p, 0x5018, 2); // a header of five words; data to be handed on, and an acknowledgement
    poner(p, 0xFFFF, 2);
    poner(p, 0, 4);
    p.insert(p.end(), datos.begin(), datos.end());
    const auto direcciones = std::span(p).subspan(12, 8);
    const auto tcp = std::span(p).subspan(kLargoIp);
    ponerSuma(p, kLargoIp + 16,
              sumar(direcciones) + kTcp + static_cast<std::uint32_t>(tcp.size()) + sumar(tcp));
    (delDriver ? e.enviados : e.recibidos) += static_cast<std::uint32_t>(datos.size());

    const std::int64_t us = instante(hora);
    alReves(pcap_, static_cast<std::uint32_t>(us / 1'000'000), 4);
    alReves(pcap_, static_cast<std::uint32_t>(us % 1'000'000), 4);
    alReves(pcap_, static_cast<std::uint32_t>(p.size()), 4);
    alReves(pcap_, static_cast<std::uint32_t>(p.size()), 4);
    pcap_.append(p.begin(), p.end());
    ++tramas_;
    if (primera_.empty()) primera_ = hora;
    ultima_ = hora;
}

} // namespace kv
