#include "ui/view/caja_de_texto.h"

#include "ui/view/observador.h"

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
    : presupuesto_(presupuesto), nombre_(nombre), indice_(indice) {}

CajaDeTexto::~CajaDeTexto() {
    vaciar();
    presupuesto_.quitar(*this);
}

void CajaDeTexto::agregar(std::string_view texto) {
    const std::size_t antes = texto_.capacity();
    const std::size_t nuevos = contarCaracteres(texto);
    if (caracteres_ + nuevos > kMaximo) {
        texto_.clear();
        caracteres_ = 0;
    }
    if (nuevos <= kMaximo) {
        texto_ += texto;
        caracteres_ += nuevos;
    }
    ++version_;
    presupuesto_.alCambiar(*this, antes);
    if (presupuesto_.observador_ != nullptr)
        presupuesto_.observador_->alAgregar(nombre_, indice_, texto);
}

void CajaDeTexto::vaciar() {
    const std::size_t antes = texto_.capacity();
    std::string().swap(texto_);
    caracteres_ = 0;
    ++version_;
    presupuesto_.usado_ -= antes - texto_.capacity();
}

void PresupuestoDeCajas::alCambiar(CajaDeTexto& caja, std::size_t antes) {
    usado_ += caja.texto_.capacity() - antes;
    if (ultima_ != &caja) {
        quitar(caja);
        ponerAlFinal(caja);
    }
    while (usado_ > maximo_ && primera_ != &caja) {
        CajaDeTexto& olvidada = *primera_;
        quitar(olvidada);
        olvidada.vaciar();
    }
}

void PresupuestoDeCajas::quitar(CajaDeTexto& caja) {
    if (!caja.enLista_) return;
    (caja.anterior_ != nullptr ? caja.anterior_->siguiente_ : primera_) = caja.siguiente_;
    (caja.siguiente_ != nullptr ? caja.siguiente_->anterior_ : ultima_) = caja.anterior_;
    caja.anterior_ = caja.siguiente_ = nullptr;
    caja.enLista_ = false;
}

void PresupuestoDeCajas::ponerAlFinal(CajaDeTexto& caja) {
    caja.anterior_ = ultima_;
    (ultima_ != nullptr ? ultima_->siguiente_ : primera_) = &caja;
    ultima_ = &caja;
    caja.enLista_ = true;
}

} // namespace kv
