#include "view/caja_de_texto.h"

#include "view/observador.h"

#include <algorithm>

namespace kv {
namespace {

std::size_t contarCaracteres(std::string_view texto) {
    return static_cast<std::size_t>(std::count_if(texto.begin(), texto.end(), [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    }));
}

} // namespace

CajaDeTexto::CajaDeTexto(PresupuestoDeCajas& presupuesto, std::string_view nombre,
                         std::int64_t indice)
    : presupuesto_(presupuesto), nombre_(nombre), indice_(indice) {
    presupuesto_.contar(1);
}

CajaDeTexto::~CajaDeTexto() { presupuesto_.contar(-1); }

void CajaDeTexto::agregar(std::string_view texto) {
    // Boxes that are not numbered are the few that operators look at: they keep their full size.
    const std::size_t limite = indice_ < 0 ? kMaximo : presupuesto_.limite();
    const std::size_t nuevos = contarCaracteres(texto);
    if (caracteres_ + nuevos > limite) {
        texto_.clear();
        caracteres_ = 0;
    }
    if (nuevos <= limite) {
        texto_ += texto;
        caracteres_ += nuevos;
    }
    version_ = ++presupuesto_.cambios_;
    if (presupuesto_.observador_ != nullptr)
        presupuesto_.observador_->alAgregar(nombre_, indice_, texto);
}

void CajaDeTexto::agregarEnOtraLinea(std::string_view texto) {
    if (!texto_.empty() && texto_.back() != '\n') {
        texto_ += "\r\n";
        caracteres_ += 2;
    }
    agregar(texto);
}

void CajaDeTexto::vaciar() {
    std::string().swap(texto_);
    caracteres_ = 0;
    version_ = ++presupuesto_.cambios_;
}

void PresupuestoDeCajas::contar(std::ptrdiff_t cajas) {
    constexpr std::size_t kMinimo = 256; // the last few lines, however many boxes there are
    cajas_ += cajas;
    limite_ = std::clamp(maximo_ / static_cast<std::size_t>(std::max<std::ptrdiff_t>(cajas_, 1)),
                         kMinimo, CajaDeTexto::kMaximo);
}

} // namespace kv
