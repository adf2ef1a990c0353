// SPDX-License-Identifier: Apache-2.0
#include "main/salida_de_traza.h"

#include "text/nombre_del_programa.h"
#include "text/numeros.h"

#include <cerrno>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace kv {
namespace {

constexpr std::size_t kMaximoPendiente = 64U << 20;
constexpr std::size_t kTrozo = 4096; // a pipe that takes anything takes this much without waiting
constexpr std::size_t kMensaje = kTrozo - 256; // and its title
constexpr int kEsperaAlFinalMs = 2000;

} // namespace

SalidaDeTraza::~SalidaDeTraza() { volcarTodo(); }

void SalidaDeTraza::volcarTodo() {
    while (!pendiente_.empty() && escribir(kEsperaAlFinalMs)) {
    }
}

void SalidaDeTraza::linea(std::string_view nombre, std::int64_t indice, std::string_view texto) {
    if (pendiente_.size() - escritos_ > kMaximoPendiente) {
        ++perdidas_;
        fallo_ = true;
        return;
    }
    if (perdidas_ > 0) {
        pendiente_ += "(" + std::to_string(perdidas_) + " lineas perdidas)\n";
        perdidas_ = 0;
    }
    pendiente_ += nombre;
    if (indice >= 0) pendiente_ += "(" + std::to_string(indice) + ")";
    pendiente_ += ": ";
    pendiente_ += texto;
    pendiente_ += '\n';
}

void SalidaDeTraza::alAgregar(std::string_view caja, std::int64_t indice, std::string_view texto) {
    while (!texto.empty()) {
        const auto fin = texto.find("\r\n");
        linea(caja, indice, texto.substr(0, fin));
        texto = fin == std::string_view::npos ? std::string_view{} : texto.substr(fin + 2);
    }
}

void SalidaDeTraza::alCambiarEtiqueta(std::string_view etiqueta, std::string_view texto) {
    if (!traza_) return;
    std::string enUna;
    for (std::size_t i = 0; i < texto.size(); ++i) {
        if (texto[i] == '\r' && i + 1 < texto.size() && texto[i + 1] == '\n') ++i;
        if (texto[i] == '\r' || texto[i] == '\n') {
            enUna += " | ";
        } else {
            enUna += texto[i];
        }
    }
    linea(etiqueta, -1, enUna);
}

void SalidaDeTraza::alCambiarColor(std::string_view etiqueta, Color color) {
    if (!traza_ || color == Color::Ninguno) return;
    linea(etiqueta, -1, color == Color::Rojo ? "[rojo]" : "[verde]");
}

/// "[fondo #FFFF00, letra #000000, oculta]", colours as red, green and blue.
void SalidaDeTraza::alVestirEtiqueta(std::string_view etiqueta, const AspectoDeEtiqueta& aspecto) {
    if (!traza_) return;
    std::string que;
    const auto parte = [&que](std::string_view nombre, std::int32_t color) {
        if (!AspectoDeEtiqueta::esPropio(color)) return;
        que += (que.empty() ? "" : ", ") + std::string(nombre) + " #";
        for (const int i : {0, 8, 16}) // the lowest byte is red
            agregarDosCifras(que, static_cast<std::uint8_t>(color >> i));
    };
    parte("fondo", aspecto.fondo);
    parte("letra", aspecto.tinta);
    if (!aspecto.visible) que += que.empty() ? "oculta" : ", oculta";
    linea(etiqueta, -1, "[" + (que.empty() ? "como la ventana" : que) + "]");
}

/// A reader that takes nothing loses the message: the driver waits for nobody.
void SalidaDeTraza::alMostrarMensaje(std::string_view titulo, std::string_view texto) {
    std::string renglon(titulo.empty() ? kNombreDelPrograma : titulo);
    renglon.append(": ").append(texto.substr(0, kMensaje)).append("\n");
    // The journal's end is a socket, of which room for one byte promises none for the others.
    if (send(STDERR_FILENO, renglon.data(), renglon.size(), MSG_DONTWAIT | MSG_NOSIGNAL) >= 0 ||
        errno != ENOTSOCK)
        return;
    pollfd salida{STDERR_FILENO, POLLOUT, 0};
    if (poll(&salida, 1, 0) != 1) return;
    [[maybe_unused]] const auto n = write(STDERR_FILENO, renglon.data(), renglon.size());
}

void SalidaDeTraza::volcar() {
    while (!pendiente_.empty() && escribir(0)) {
    }
}

/// Writes one piece; false when the reader takes no more within the time.
bool SalidaDeTraza::escribir(int esperaMs) {
    pollfd salida{STDOUT_FILENO, POLLOUT, 0};
    if (poll(&salida, 1, esperaMs) != 1) return false;
    const std::string_view resto = std::string_view(pendiente_).substr(escritos_, kTrozo);
    const ssize_t n = write(STDOUT_FILENO, resto.data(), resto.size());
    if (n > 0) escritos_ += static_cast<std::size_t>(n);
    if (n < 0 && errno != EINTR && errno != EAGAIN) {
        escritos_ = pendiente_.size(); // nobody reads
        fallo_ = true;
    }
    // What is left moves up seldom enough for a reader that has far to catch up.
    if (escritos_ > pendiente_.size() / 2) {
        pendiente_.erase(0, escritos_);
        escritos_ = 0;
    }
    return n > 0;
}

} // namespace kv
