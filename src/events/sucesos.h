// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/apartados.h"
#include "events/suceso.h"
#include "events/textos.h"
#include "platform/reloj.h"

#include <array>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

namespace kv {

/// Hears of everything as it happens. It must not say anything itself, nor let events run.
class OyenteDeSucesos {
  public:
    virtual ~OyenteDeSucesos() = default;
    /// `texto` is the event's own text, valid during the call, empty where it has no text.
    virtual void alSuceder(const Suceso& suceso, std::string_view texto) = 0;
};

/// All that happened, said once and kept for a while: a day of a quiet plant, minutes of a busy
/// one, and for longer what has a box of its own. Whatever shows, counts or records events
/// reads them here.
class Sucesos {
  public:
    static constexpr std::size_t kMaximo = std::size_t{1} << 20; ///< events, 48 bytes each

    /// The clock must outlive this. `maximo` is rounded up to thousands.
    explicit Sucesos(const Reloj& reloj, std::size_t maximo = kMaximo);

    void decir(Suceso suceso) { guardar(suceso, {}); }
    /// With a text, of which as much is kept as its kind may take up.
    void decir(Suceso suceso, std::string_view texto);

    /// Events have numbers, which only grow: [primero(), siguiente()) can be read.
    [[nodiscard]] std::uint64_t primero() const { return primero_; }
    [[nodiscard]] std::uint64_t siguiente() const { return siguiente_; }
    [[nodiscard]] const Suceso& operator[](std::uint64_t numero) const {
        const std::uint64_t k = numero - primero_;
        return trozos_[k / kTrozo]->sucesos[k % kTrozo];
    }
    /// Of the piece of the ring in which an event lies: the kinds that it holds, and the number of
    /// its first. Whoever looks for few kinds passes over most pieces.
    struct DeUnTrozo {
        std::uint64_t primero;
        std::uint64_t ques; ///< see bitDe
    };
    [[nodiscard]] DeUnTrozo trozoDe(std::uint64_t numero) const {
        return {numero - numero % kTrozo, trozos_[(numero - primero_) / kTrozo]->ques};
    }
    /// What of a sort is older than the ring.
    [[nodiscard]] const Apartados& masViejos(Apartado deEstos) const {
        return apartados_[static_cast<std::size_t>(deEstos)];
    }
    /// Empty when it has no text, or when the text has been given up for later ones.
    [[nodiscard]] std::string_view textoDe(const Suceso& suceso) const;

    /// Of these kinds (see bitDe), or of all. It must outlive this or be taken off.
    void avisarA(OyenteDeSucesos* oyente, std::uint64_t deEstos = ~std::uint64_t{0}) {
        oyentes_.push_back({oyente, deEstos});
    }
    void avisarA(OyenteDeSucesos* oyente, std::initializer_list<Que> deEstos) {
        avisarA(oyente, bitsDe(deEstos));
    }
    void dejarDeAvisarA(const OyenteDeSucesos* oyente) {
        std::erase_if(oyentes_, [oyente](const Oyente& o) { return o.quien == oyente; });
    }

  private:
    static constexpr std::size_t kTrozo = 1024;
    struct Trozo {
        std::int64_t desdeMs = 0; ///< when the first was said, on the clock that never goes back
        std::uint64_t ques = 0;   ///< the kinds of its events, see bitDe
        std::array<Suceso, kTrozo> sucesos;
    };

    struct Oyente {
        OyenteDeSucesos* quien;
        std::uint64_t de; ///< a bit for each kind that it hears of
    };

    void guardar(Suceso& suceso, std::string_view texto);
    void hacerLugar();
    void apartar(const Trozo& elMasViejo);

    const Reloj& reloj_;
    std::size_t trozosMaximo_;
    std::deque<std::unique_ptr<Trozo>> trozos_; ///< full but for the last
    std::uint64_t primero_ = 0;
    std::uint64_t siguiente_ = 0;
    std::array<TextosDeSucesos, kAlmacenes> textos_;
    std::array<Apartados, kApartados> apartados_;
    std::vector<Oyente> oyentes_;
};

} // namespace kv
