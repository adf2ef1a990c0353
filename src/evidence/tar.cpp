// SPDX-License-Identifier: Apache-2.0
#include "evidence/tar.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::size_t kBloque = 512;
constexpr std::size_t kTrozo = std::size_t{64} << 10;

[[noreturn]] void fallar(const std::string& ruta) {
    throw std::system_error(errno, std::generic_category(), "no se puede escribir " + ruta);
}

} // namespace

Tar::Tar(std::string ruta, std::int64_t ahora)
    : ruta_(std::move(ruta)), ahora_(ahora), mientras_(ruta_ + ".XXXXXX"),
      d_(mkostemp(mientras_.data(), O_CLOEXEC)) {
    if (d_ < 0) fallar(ruta_);
}

Tar::~Tar() {
    if (d_ < 0) return;
    close(d_);
    unlink(mientras_.c_str());
}

void Tar::escribir(std::string_view bytes) const {
    while (!bytes.empty()) {
        const ssize_t n = write(d_, bytes.data(), bytes.size());
        if (n < 0 && errno != EINTR) fallar(ruta_);
        bytes.remove_prefix(n > 0 ? static_cast<std::size_t>(n) : 0);
    }
}

void Tar::cabecera(const std::string& nombre, std::uint64_t largo, std::int64_t modificado) {
    constexpr std::size_t kLugarDeSuma = 148;
    constexpr std::size_t kLargoDeSuma = 8;
    std::array<char, kBloque> c{};
    const auto poner = [&c](std::size_t donde, std::string_view que) {
        std::copy(que.begin(), que.end(), c.begin() + static_cast<std::ptrdiff_t>(donde));
    };
    const auto octal = [&](std::size_t donde, int cifras, unsigned long long n) {
        std::array<char, 32> texto{};
        std::snprintf(texto.data(), texto.size(), "%0*llo", cifras, n); // NOLINT
        poner(donde, texto.data());
    };
    poner(0, std::string_view(nombre).substr(0, 100));
    octal(100, 7, 0600);
    octal(108, 7, 0);
    octal(116, 7, 0);
    octal(124, 11, largo);
    octal(136, 11, static_cast<unsigned long long>(std::max<std::int64_t>(0, modificado)));
    poner(kLugarDeSuma, std::string(kLargoDeSuma, ' '));
    poner(156, "0");
    poner(257, std::string_view("ustar\0"
                                "00",
                                8));
    unsigned suma = 0;
    for (const char b : c)
        suma += static_cast<unsigned char>(b);
    octal(kLugarDeSuma, 6, suma);
    c[kLugarDeSuma + 6] = '\0';
    escribir({c.data(), c.size()});
}

void Tar::rellenar(std::uint64_t largo) const {
    escribir(std::string((kBloque - largo % kBloque) % kBloque, '\0'));
}

void Tar::agregar(const std::string& nombre, std::string_view contenido) {
    cabecera(nombre, contenido.size(), ahora_);
    escribir(contenido);
    rellenar(contenido.size());
}

std::int64_t Tar::agregarArchivo(const std::string& nombre, const std::string& ruta,
                                 std::uint64_t maximo) {
    const int de = open(ruta.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat que {};
    if (de < 0 || fstat(de, &que) != 0 || !S_ISREG(que.st_mode)) {
        if (de >= 0) close(de);
        return -1;
    }
    const auto todo = static_cast<std::uint64_t>(que.st_size);
    const std::uint64_t largo = std::min(todo, maximo);
    cabecera(nombre, largo, que.st_mtime);
    std::string trozo(kTrozo, '\0');
    for (std::uint64_t n = 0; n < largo;) {
        const auto pide = static_cast<std::size_t>(std::min<std::uint64_t>(kTrozo, largo - n));
        const ssize_t k = pread(de, trozo.data(), pide, static_cast<off_t>(todo - largo + n));
        // What was cut off meanwhile is zeros: its header has promised so many bytes.
        if (k <= 0) std::fill_n(trozo.begin(), pide, '\0');
        const auto hay = k > 0 ? static_cast<std::size_t>(k) : pide;
        escribir({trozo.data(), hay});
        n += hay;
    }
    close(de);
    rellenar(largo);
    return static_cast<std::int64_t>(largo);
}

void Tar::terminar() {
    escribir(std::string(2 * kBloque, '\0'));
    if (fsync(d_) != 0 || rename(mientras_.c_str(), ruta_.c_str()) != 0) fallar(ruta_);
    close(d_);
    d_ = -1;
}

} // namespace kv
