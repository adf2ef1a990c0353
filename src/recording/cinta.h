// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>

namespace kv {

/// What a recording holds. Everything that comes in is either a call from outside, in its order, or
/// an answer that the driver did not have to expect; only the latter are written down, with the
/// number of questions since the entry before, so that each is given again to the same question.
enum class Entrada : std::uint8_t {
    Fin = 0,
    // Calls from outside: microseconds since the entry before that had any, then
    Tic,         ///< the timer's number
    Conectado,   ///< the socket's number
    Datos,       ///< the socket's number, bytes
    Cortado,     ///< the socket's number, state, why
    Pedido,      ///< the socket's number, who
    Orden,       ///< what the operator asked for
    FinDeVuelta, ///< nothing, not even the time
    // Answers: questions since the entry before, then
    Pendientes,    ///< letting events run brought the calls that follow
    FinPendientes, ///< and no more (no number of questions)
    Avance,        ///< microseconds by which the clock had moved on
    Calendario,    ///< the calendar's lead over the clock in microseconds
    Estado,        ///< the socket's number, state, why: not what the call should have led to
    Existe,        ///< path, 0 or 1
    Huella,        ///< path, mark
    Contenido,     ///< path, greatest length, 0 or 1, bytes
    NoEscrito,     ///< a write failed
    PuertoLocal,   ///< the port
    Disco,         ///< what a script asked of its files; fault, kind, size, bytes
    SinConfirmar,  ///< the socket's number, bytes that the peer had not acknowledged
    EnCola,        ///< the socket's number, bytes that waited to be sent
};
inline constexpr Entrada kUltimaEntrada = Entrada::EnCola;

[[nodiscard]] constexpr bool esRespuesta(Entrada e) {
    return e >= Entrada::Pendientes && e != Entrada::FinPendientes;
}

/// The writing end. Entries are gathered, and go to the file some at a time once it is open; a file
/// that was cut off anywhere can be read up to there.
class CintaEscrita {
  public:
    /// Nothing is written beyond `maximo` bytes.
    explicit CintaEscrita(std::uint64_t maximo);
    /// Replaces the file, which only its owner may read: what clients log in with is in it. False:
    /// it cannot be created, or what has the name is no file.
    [[nodiscard]] bool abrir(const std::string& ruta);
    /// Nothing more is kept: `maximo` was reached, or the disk takes no more.
    [[nodiscard]] bool llena() const { return llena_; }
    /// Nothing is kept because the disk does not take it, so that another file would not help.
    [[nodiscard]] bool sinDisco() const { return sinDisco_; }
    /// There is no place for it: nothing is kept.
    void abandonar() { llena_ = sinDisco_ = true; }

    CintaEscrita& entrada(Entrada e);
    CintaEscrita& numero(std::uint64_t n);
    CintaEscrita& conSigno(std::int64_t n);
    CintaEscrita& texto(std::string_view t);
    /// To be called after every entry's last part.
    void cerrarEntrada();
    /// Writes what waits; only between two entries.
    void volcar();

  private:
    std::ofstream archivo_;
    std::uint64_t maximo_;
    std::uint64_t escritos_ = 0;
    std::string pendiente_;
    std::size_t cerradas_ = 0; ///< of those bytes, in whole entries
    bool llena_ = false;
    bool sinDisco_ = false;
};

/// A recording that cannot be what this program has written or would do. Not one of the standard
/// exceptions, which the driver's handlers take as failures of their own work and survive.
struct CintaMala {
    std::string que;
};
/// It ends in the middle of an entry.
struct CintaCortada : CintaMala {};

/// The reading end, over a whole recording in memory. Every read throws CintaMala where the bytes
/// make no sense, CintaCortada where they end in the midst of an entry; at the end `entrada` gives
/// Fin.
class CintaLeida {
  public:
    explicit CintaLeida(std::string contenido);
    /// The next entry's kind without taking it.
    [[nodiscard]] Entrada mirar() const;
    /// The number that stands first in the next entry.
    [[nodiscard]] std::uint64_t mirarNumero() const;
    Entrada entrada();
    std::uint64_t numero();
    std::int64_t conSigno();
    std::string_view texto();
    [[nodiscard]] std::size_t lugar() const { return lugar_; }
    [[nodiscard]] const std::string& programa() const { return programa_; }

  private:
    std::uint64_t numeroDesde(std::size_t& lugar) const;
    [[noreturn]] void fallar(const char* que) const;

    std::string contenido_;
    std::size_t lugar_ = 0;
    std::string programa_;
};

/// What a recording begins with; the program that made it and its version follow as a text.
inline constexpr std::string_view kMarcaDeCinta = "KVGRAB1\n";

} // namespace kv
