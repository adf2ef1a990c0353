// SPDX-License-Identifier: Apache-2.0
#include "server/mensajes.h"
#include "text/texto.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

namespace kv {
namespace {

constexpr std::size_t kNinguna = std::string_view::npos;

/// Steps that the search for equal frames may take over a whole arrival: so many, and so many for
/// every byte. Frames that stand one after the other take two a byte; only ones that are nested in
/// hundreds come near the limit, and then equal ones are done as often as they came.
constexpr std::size_t kPasos = 1U << 20;
constexpr std::size_t kPasosPorByte = 16;

/// Frames carried out so far by their text: numbers, from 1 on, of the frames with that text.
class Hechas {
  public:
    [[nodiscard]] std::uint32_t cuantas() const { return cuantas_; }
    [[nodiscard]] std::size_t maximo() const { return maximo_; }

    void agregar(std::string_view trama) {
        auto& hecha = porHuella_[huella(trama)];
        if (hecha.texto != trama) hecha = {std::string(trama), {}};
        hecha.numeros.push_back(++cuantas_);
        maximo_ = std::max(maximo_, trama.size());
    }
    /// The first frame later than number `desde` with this text, 0 if no later one has it.
    [[nodiscard]] std::uint32_t despuesDe(std::uint32_t desde, std::uint64_t huellaDeTrama,
                                          std::string_view trama) const {
        const auto h = porHuella_.find(huellaDeTrama);
        if (h == porHuella_.end() || h->second.texto != trama) return 0;
        const auto& n = h->second.numeros;
        const auto i = std::upper_bound(n.begin(), n.end(), desde);
        return i == n.end() ? 0 : *i;
    }

    /// A hash that grows by one character at the front at a time.
    struct Huella {
        std::uint64_t suma = 0;
        std::uint64_t peso = 1;
        void anteponer(char c) {
            suma += peso * (static_cast<unsigned char>(c) + 1U);
            peso *= 0x9E3779B97F4A7C15U;
        }
    };

  private:
    struct Hecha {
        std::string texto;
        std::vector<std::uint32_t> numeros;
    };
    [[nodiscard]] static std::uint64_t huella(std::string_view trama) {
        Huella h;
        for (auto c = trama.rbegin(); c != trama.rend(); ++c)
            h.anteponer(*c);
        return h.suma;
    }

    std::unordered_map<std::uint64_t, Hecha> porHuella_;
    std::uint32_t cuantas_ = 0;
    std::size_t maximo_ = 0;
};

/// The arrival goes by once; `texto_` holds what has gone by and was not taken out. A frame that is
/// carried out takes its equals further on with it, but those are only looked for when they come
/// by: so a seam, where a frame was taken out, remembers after which frame it closed up, and a text
/// across it can only have gone with a frame later than that.
class Extractor {
  public:
    Extractor(const Marcas& marcas, std::size_t maximo)
        : maximo_(maximo), abre_(minusculas(marcas.abre)), cierra_(minusculas(marcas.cierra)),
          cola_(marcas.cierra.ends_with(marcas.abre) ? marcas.abre.size() : 0) {}

    Tramas extraer(std::string_view llegada) {
        const std::string minuscula = minusculas(llegada);
        tramas_.resto.reserve(llegada.size());
        texto_.reserve(llegada.size());
        pasos_ = kPasos + kPasosPorByte * llegada.size();
        for (std::size_t i = 0; i < minuscula.size();) {
            const auto fin = minuscula.find(cierra_.back(), i);
            const std::size_t largo = fin == kNinguna ? kNinguna : fin + 1 - i;
            texto_.append(minuscula, i, largo);
            tramas_.resto.append(llegada.substr(i, largo));
            if (fin == kNinguna) break;
            i = fin + 1;
            if (texto_.size() >= tramo_ + cierra_.size() && texto_.ends_with(cierra_)) cerrar();
        }
        return std::move(tramas_);
    }

  private:
    struct Costura {
        std::size_t lugar;
        std::uint32_t numero; ///< of the frame after which it closed up
    };

    /// A closing mark has come by.
    void cerrar() {
        const std::size_t cierre = texto_.size() - cierra_.size();
        const auto [igual, numero] = buscarHecha(cierre);
        if (igual != kNinguna) {
            ++tramas_.repetidas;
            return cortar(igual, numero);
        }
        const bool basta = tramas_.contenidos.size() == maximo_;
        const std::size_t inicio = basta ? kNinguna : primeraAbierta(cierre);
        if (inicio == kNinguna) {
            tramo_ = texto_.size();
            inicio_ = buscado_ = tramo_ - cola_;
            costuras_.clear();
            return;
        }
        const std::size_t desde = inicio + abre_.size();
        tramas_.contenidos.push_back(tramas_.resto.substr(desde, cierre - desde));
        hechas_.agregar(std::string_view(texto_).substr(inicio));
        cortar(inicio, hechas_.cuantas());
    }

    /// The first opening mark of the stretch that ends before `cierre`.
    std::size_t primeraAbierta(std::size_t cierre) {
        if (abierta_ == kNinguna) {
            abierta_ = texto_.find(abre_, buscado_);
            if (abierta_ == kNinguna) buscado_ = std::max(buscado_, antesDe(texto_.size()));
        }
        return abierta_ != kNinguna && abierta_ + abre_.size() <= cierre ? abierta_ : kNinguna;
    }

    /// Where the stretch ends in the text of a frame carried out before, and with the number of
    /// which it went; the earliest one, if there are several.
    std::pair<std::size_t, std::uint32_t> buscarHecha(std::size_t cierre) {
        std::pair<std::size_t, std::uint32_t> hallada{kNinguna, 0};
        Hechas::Huella huella;
        auto costura = costuras_.rbegin();
        std::uint32_t desde = 0;
        const std::string_view todo(texto_);
        const std::size_t minimo =
            std::max(inicio_, todo.size() - std::min(todo.size(), hechas_.maximo()));
        for (std::size_t i = todo.size(); i > minimo;) {
            for (; costura != costuras_.rend() && costura->lugar >= i; ++costura)
                desde = std::max(desde, costura->numero);
            if (desde >= hechas_.cuantas() || (hallada.second != 0 && hallada.second <= desde + 1))
                break;
            if (pasos_ == 0) return {kNinguna, 0};
            --pasos_;
            huella.anteponer(todo[--i]);
            if (todo[i] != abre_[0] || i + abre_.size() > cierre ||
                todo.substr(i, abre_.size()) != abre_)
                continue;
            const std::uint32_t n = hechas_.despuesDe(desde, huella.suma, todo.substr(i));
            if (n != 0 && (hallada.second == 0 || n < hallada.second)) hallada = {i, n};
        }
        return hallada;
    }

    /// Takes out everything from `lugar` on.
    void cortar(std::size_t lugar, std::uint32_t numero) {
        texto_.resize(lugar);
        tramas_.resto.resize(lugar);
        while (!costuras_.empty() && costuras_.back().lugar >= lugar) {
            numero = std::max(numero, costuras_.back().numero);
            costuras_.pop_back();
        }
        costuras_.push_back({lugar, numero});
        if (abierta_ != kNinguna && abierta_ >= lugar) abierta_ = kNinguna;
        tramo_ = std::min(tramo_, lugar);
        inicio_ = std::min(inicio_, lugar);
        buscado_ = std::min(buscado_, std::max(inicio_, antesDe(lugar)));
    }

    /// Where an opening mark may begin that is cut off at `lugar`.
    [[nodiscard]] std::size_t antesDe(std::size_t lugar) const {
        return lugar - std::min(lugar, abre_.size() - 1);
    }

    std::size_t maximo_; ///< frames to take
    std::string abre_;
    std::string cierra_;
    std::size_t
        cola_; ///< length of the opening mark that the closing one ends with, 0 if it does not
    Hechas hechas_;
    Tramas tramas_;
    std::string texto_;       ///< like `resto`, in lower case
    std::size_t tramo_ = 0;   ///< where the present stretch begins: after a closing mark left
    std::size_t inicio_ = 0;  ///< where its opening marks may begin
    std::size_t buscado_ = 0; ///< no opening mark of the stretch begins before
    std::size_t abierta_ = kNinguna; ///< the first opening mark of the stretch, once found
    std::vector<Costura> costuras_;  ///< of the stretch, in order of place
    std::size_t pasos_ = 0;          ///< that the search for equal frames may still take
};

} // namespace

Tramas extraerTramas(std::string_view llegada, const Marcas& marcas, std::size_t maximo) {
    return Extractor(marcas, maximo).extraer(llegada);
}

} // namespace kv
