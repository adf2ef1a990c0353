// SPDX-License-Identifier: Apache-2.0
#include "recording/cinta.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::size_t kVolcarDesde = 64U << 10;
constexpr unsigned kBitsPorByte = 7;

} // namespace

CintaEscrita::CintaEscrita(std::uint64_t maximo) : maximo_(maximo), pendiente_(kMarcaDeCinta) {}

bool CintaEscrita::abrir(const std::string& ruta) {
    // A pipe of that name, or a device, must not be waited for.
    const int d =
        open(ruta.c_str(), O_WRONLY | O_CREAT | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (d < 0) return false;
    struct stat s {};
    const bool suyo = fstat(d, &s) == 0 && S_ISREG(s.st_mode) && fchmod(d, S_IRUSR | S_IWUSR) == 0;
    close(d);
    if (suyo) archivo_.open(ruta, std::ios::binary | std::ios::trunc);
    return suyo && archivo_.is_open();
}

CintaEscrita& CintaEscrita::entrada(Entrada e) {
    pendiente_ += static_cast<char>(e);
    return *this;
}

CintaEscrita& CintaEscrita::numero(std::uint64_t n) {
    for (; n >= 0x80; n >>= kBitsPorByte)
        pendiente_ += static_cast<char>(n | 0x80);
    pendiente_ += static_cast<char>(n);
    return *this;
}

CintaEscrita& CintaEscrita::conSigno(std::int64_t n) {
    return numero(static_cast<std::uint64_t>(n) << 1 ^ static_cast<std::uint64_t>(n >> 63));
}

CintaEscrita& CintaEscrita::texto(std::string_view t) {
    numero(t.size());
    pendiente_ += t;
    return *this;
}

void CintaEscrita::cerrarEntrada() {
    if (llena_ || escritos_ + pendiente_.size() > maximo_) {
        pendiente_.resize(cerradas_);
        llena_ = true;
        return volcar();
    }
    cerradas_ = pendiente_.size();
    if (pendiente_.size() >= kVolcarDesde) volcar();
}

void CintaEscrita::volcar() {
    if (pendiente_.empty() || !archivo_.is_open()) return;
    archivo_.write(pendiente_.data(), static_cast<std::streamsize>(pendiente_.size()));
    archivo_.flush();
    if (!archivo_) abandonar();
    escritos_ += pendiente_.size();
    pendiente_.clear();
    cerradas_ = 0;
}

CintaLeida::CintaLeida(std::string contenido) : contenido_(std::move(contenido)) {
    if (!contenido_.starts_with(kMarcaDeCinta)) fallar("no es una grabacion");
    lugar_ = kMarcaDeCinta.size();
    programa_ = texto();
}

void CintaLeida::fallar(const char* que) const {
    throw CintaMala{"byte " + std::to_string(lugar_) + ": " + que};
}

Entrada CintaLeida::mirar() const {
    if (lugar_ >= contenido_.size()) return Entrada::Fin;
    const auto e = static_cast<std::uint8_t>(contenido_[lugar_]);
    if (e > static_cast<std::uint8_t>(kUltimaEntrada)) fallar("no es una entrada");
    return static_cast<Entrada>(e);
}

Entrada CintaLeida::entrada() {
    const Entrada e = mirar();
    if (e != Entrada::Fin) ++lugar_;
    return e;
}

std::uint64_t CintaLeida::numeroDesde(std::size_t& lugar) const {
    std::uint64_t n = 0;
    for (unsigned bits = 0; bits < 64; bits += kBitsPorByte) {
        if (lugar >= contenido_.size()) throw CintaCortada{};
        const auto b = static_cast<std::uint8_t>(contenido_[lugar++]);
        n |= std::uint64_t{b & 0x7FU} << bits;
        if (b < 0x80) return n;
    }
    fallar("no es un numero");
}

std::uint64_t CintaLeida::numero() { return numeroDesde(lugar_); }

std::uint64_t CintaLeida::mirarNumero() const {
    std::size_t lugar = lugar_ + 1;
    return numeroDesde(lugar);
}

std::int64_t CintaLeida::conSigno() {
    const std::uint64_t n = numero();
    return static_cast<std::int64_t>(n >> 1) ^ -static_cast<std::int64_t>(n & 1);
}

std::string_view CintaLeida::texto() {
    const std::uint64_t largo = numero();
    if (largo > contenido_.size() - lugar_) throw CintaCortada{};
    const std::string_view t = std::string_view(contenido_).substr(lugar_, largo);
    lugar_ += largo;
    return t;
}

} // namespace kv
