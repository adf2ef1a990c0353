// SPDX-License-Identifier: Apache-2.0
#include "events/trazas.h"

#include "text/utf8.h"

#include <algorithm>
#include <vector>

namespace kv {
namespace {

/// The steps of writes have a box of their own besides: what of theirs is in another.
Caja deOtra(const Suceso& s) {
    const bool paso = kv::apartadoDe(s.que) == Apartado::PasosDeEscritura;
    return paso ? cajasDe(s).primera : Caja::Ninguna;
}

bool esDe(Caja caja, const Suceso& s) {
    if (caja == Caja::txtTimerEscritura) return deOtra(s) != Caja::Ninguna;
    const SusCajas cajas = cajasDe(s);
    return cajas.primera == caja || cajas.segunda == caja;
}

/// As a box shows them: an end of a line is one.
std::size_t caracteresDe(std::string_view utf8) {
    return static_cast<std::size_t>(
        std::ranges::count_if(utf8, [](char c) { return c != '\r' && !esContinuacion(c); }));
}

Apartado apartadoDe(Caja caja) {
    switch (caja) {
    case Caja::txtTramasDescartadas:
        return Apartado::Descartes;
    case Caja::txtDemandaLecturaEscritura:
        return Apartado::Ordenes;
    case Caja::txtTimerEscritura:
        return Apartado::PasosDeEscritura;
    case Caja::Text1:
        return Apartado::AlCliente;
    case Caja::Text2:
        return Apartado::DelCliente;
    default:
        return Apartado::Ninguno;
    }
}

} // namespace

/// The last lines of a text. It is made from its end: where there is much, most is never looked at.
class Traza::Final {
  public:
    explicit Final(const Traza& traza) : traza_(traza) {}
    void tomar(const Suceso& s) {
        if (!traza_.tiene(s)) return;
        traza_.agregar(s, lineas_.emplace_back());
        caracteres_ += caracteresDe(lineas_.back());
    }
    [[nodiscard]] bool basta() const { return caracteres_ >= kMaximo; }
    void volcar(std::string& texto) const {
        std::for_each(lineas_.rbegin(), lineas_.rend(), [&](const auto& una) { texto += una; });
    }

  private:
    const Traza& traza_;
    std::vector<std::string> lineas_; ///< latest first
    std::size_t caracteres_ = 0;
};

Traza::Traza(const Redaccion& redaccion, Caja caja, std::int64_t indice)
    : redaccion_(&redaccion), caja_(caja), indice_(indice),
      ques_(quesCon([caja](Que que) { return esDe(caja, {.que = que}); })) {}

Traza Traza::soloDe(Indice conexion, Indice bloque) const {
    Traza t = *this;
    t.conexion_ = conexion;
    t.bloque_ = bloque;
    return t;
}

bool Traza::tiene(const Suceso& s) const {
    if ((conexion_ != kNinguno && s.conexion != conexion_) ||
        (bloque_ != kNinguno && s.bloque != bloque_))
        return false;
    return esDe(caja_, s) && (indice_ < 0 || Redaccion::indiceEn(s, caja_) == indice_);
}

void Traza::agregar(const Suceso& s, std::string& texto) const {
    redaccion_->redactar(s, caja_ == Caja::txtTimerEscritura ? deOtra(s) : caja_, texto);
    // Many an order's message has no end of line, and the client's have none on their wire: the
    // next one begins a line all the same.
    const bool sueltas = caja_ == Caja::txtDemandaLecturaEscritura || caja_ == Caja::Text1;
    if (sueltas && !texto.ends_with('\n')) texto += "\r\n";
}

std::string Traza::texto() const {
    std::string texto;
    (void)desde(0, texto);
    return texto;
}

bool Traza::seguir(std::uint64_t& visto, std::string& texto) const {
    const bool todo = desde(visto, texto);
    visto = hasta();
    return todo;
}

bool Traza::desde(std::uint64_t primero, std::string& texto) const {
    Final lineas(*this);
    bool todo = desdeElAnillo(primero, lineas);
    if (todo && primero < redaccion_->sucesos().primero()) todo = desdeLoApartado(primero, lineas);
    lineas.volcar(texto);
    return todo;
}

bool Traza::desdeElAnillo(std::uint64_t primero, Final& lineas) const {
    const Sucesos& sucesos = redaccion_->sucesos();
    const std::uint64_t fin = std::max(primero, sucesos.primero());
    std::uint64_t n = sucesos.siguiente();
    while (n > fin && !lineas.basta()) {
        const Sucesos::DeUnTrozo trozo = sucesos.trozoDe(n - 1);
        const std::uint64_t hasta = std::max(fin, trozo.primero);
        if ((trozo.ques & ques_) == 0) n = hasta;
        for (; n > hasta && !lineas.basta(); --n)
            lineas.tomar(sucesos[n - 1]);
    }
    return n <= fin;
}

bool Traza::desdeLoApartado(std::uint64_t primero, Final& lineas) const {
    const Apartado deEstos = apartadoDe(caja_);
    if (deEstos == Apartado::Ninguno) return false;
    const Apartados& viejos = redaccion_->sucesos().masViejos(deEstos);
    const auto& todos = viejos.todos();
    auto i = todos.rbegin();
    for (; i != todos.rend() && i->numero >= primero && !lineas.basta(); ++i)
        lineas.tomar(i->suceso);
    return i == todos.rend() ? viejos.completosDesde() <= primero : i->numero < primero;
}

TrazaAlMomento::TrazaAlMomento(Sucesos& sucesos, const Tablas& tablas, LectorDeTrazas& destino)
    : sucesos_(sucesos), redaccion_(sucesos, tablas), destino_(destino) {
    sucesos_.avisarA(this);
}

TrazaAlMomento::~TrazaAlMomento() { sucesos_.dejarDeAvisarA(this); }

void TrazaAlMomento::alSuceder(const Suceso& suceso, std::string_view /*texto*/) {
    const SusCajas cajas = cajasDe(suceso);
    for (const Caja caja : {cajas.primera, cajas.segunda}) {
        if (caja == Caja::Ninguna) return;
        linea_.clear();
        redaccion_.redactar(suceso, caja, linea_);
        destino_.alAgregar(nombreDe(caja), Redaccion::indiceEn(suceso, caja), linea_);
    }
}

} // namespace kv
