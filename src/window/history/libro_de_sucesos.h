// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"

#include <QString>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <unordered_map>

namespace kv {

class Tablas;

/// How much an operator has to care.
enum class Gravedad : std::uint8_t { Nota, Aviso, Alarma };

/// What is left of a line of an earlier start, whose connections and blocks have other numbers now.
struct DeAntes {
    std::string donde;
    std::string que;
};

/// One line of the history: an event that happened, once or many times within a while.
struct Anotacion {
    Suceso suceso;            ///< the latest
    std::int64_t primero = 0; ///< when it happened first: local calendar time, see empaquetar
    std::uint32_t veces = 1;
    Gravedad gravedad = Gravedad::Nota;
    bool reconocida = false;
    std::string texto; ///< the event's own, of the latest; cut
    std::optional<DeAntes> deAntes = {};
};

/// What of all that happens an operator wants to find in the morning: the ring of events holds a
/// busy plant's traffic for minutes, this holds what is no traffic for months. What happens again
/// and again is one line with its number of times. Bounded.
class LibroDeSucesos final : public OyenteDeSucesos {
  public:
    static constexpr std::size_t kMaximo = 20'000;
    static constexpr std::size_t kDeAntes = 2'000;       ///< of those, from earlier starts
    static constexpr std::size_t kTextoMaximo = 300;     ///< bytes
    static constexpr std::int64_t kSeJuntanMs = 600'000; ///< since the first of them

    /// The events must outlive this.
    explicit LibroDeSucesos(Sucesos& sucesos);
    ~LibroDeSucesos() override;
    LibroDeSucesos(const LibroDeSucesos&) = delete;
    LibroDeSucesos& operator=(const LibroDeSucesos&) = delete;

    void alSuceder(const Suceso& suceso, std::string_view texto) override;

    /// Lines have numbers, which only grow: [primera(), siguiente()) can be read.
    [[nodiscard]] std::uint64_t primera() const { return primera_; }
    [[nodiscard]] std::uint64_t siguiente() const { return primera_ + lineas_.size(); }
    [[nodiscard]] const Anotacion& operator[](std::uint64_t numero) const {
        return lineas_[numero - primera_];
    }
    /// Grows with every change, whatever it is.
    [[nodiscard]] std::uint64_t version() const { return version_; }

    /// A line from an earlier start, before the first one; false when there are enough of them.
    bool anteponer(Anotacion linea);
    /// The operator has seen it.
    void reconocer(std::uint64_t numero);
    void reconocerTodo();
    /// Lines that want to be seen: no notes.
    [[nodiscard]] std::size_t sinReconocer() const { return sinReconocer_; }

  private:
    void olvidarLaPrimera();

    Sucesos& sucesos_;
    std::deque<Anotacion> lineas_;
    std::uint64_t primera_ = kDeAntes; ///< earlier lines have the numbers below
    std::uint64_t version_ = 0;
    std::size_t sinReconocer_ = 0;
    /// What happened to whom, to the number of its latest line.
    std::unordered_map<std::uint64_t, std::uint64_t> ultimas_;
};

/// The words for a line, in the language of the windows; reasons that the driver gave are Spanish.
[[nodiscard]] QString fraseDe(const Anotacion& anotacion, const Tablas& tablas);
/// Where it happened: a connection, a station, a register; empty where it has no place.
[[nodiscard]] std::string lugarDe(const Anotacion& anotacion, const Tablas& tablas);
/// "07:05:10 16-11-2025".
[[nodiscard]] std::string horaDe(std::int64_t instante);

} // namespace kv
