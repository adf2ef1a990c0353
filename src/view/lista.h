// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kv {

/// Hears of single rows of a list as they change; in the midst of what changes them, so it must not
/// change any itself, nor let events run.
class OyenteDeFilas {
  public:
    virtual ~OyenteDeFilas() = default;
    virtual void alCambiarFila(std::uint32_t fila) = 0;
};

/// Knows what the rows of a list say, so that texts are made when they are read.
class Redactor {
  public:
    virtual ~Redactor() = default;
    /// What a column of a row says; nothing: what was put there.
    [[nodiscard]] virtual std::optional<std::string> texto(std::uint32_t fila,
                                                           std::size_t columna) const = 0;
};

/// A list of a window: rows of texts under columns, each row with a tag and a check box. Rows are
/// only ever added, so a row's number is its handle; one that is retired is shown and found no
/// more.
class Lista {
  public:
    /// Only a list that is made searchable pays for `buscar`.
    explicit Lista(std::string_view nombre, bool buscable = false)
        : nombre_(nombre), buscable_(buscable) {}

    void ponerColumnas(std::vector<std::string> columnas) { columnas_ = std::move(columnas); }
    [[nodiscard]] const std::vector<std::string>& columnas() const { return columnas_; }
    [[nodiscard]] std::string_view nombre() const { return nombre_; }

    /// It must outlive this or be taken off with null, and know a row's first column from the
    /// moment when the row is added.
    void redactarCon(const Redactor* redactor) { redactor_ = redactor; }
    /// A new row whose first column is `texto`; gives its number.
    std::uint32_t agregar(std::string_view texto, std::int64_t etiqueta = -1);
    [[nodiscard]] std::size_t filas() const { return filas_.size(); }
    [[nodiscard]] std::size_t filasEnUso() const { return filas_.size() - retiradas_; }
    /// Column 0 is the row's own text; 1 and up are its sub-items. Rows that do not exist are
    /// passed over: a list is a display and never a reason to fail.
    void poner(std::uint32_t fila, std::size_t columna, std::string_view texto);
    void agregarA(std::uint32_t fila, std::size_t columna, std::string_view texto);
    [[nodiscard]] std::string texto(std::uint32_t fila, std::size_t columna) const;
    /// What the redactor says of a row has changed.
    void cambio(std::uint32_t fila) {
        if (fila < filas_.size()) anotar(fila);
    }
    /// Number that the row carries for the program (a block's index), -1 without one.
    [[nodiscard]] std::int64_t etiqueta(std::uint32_t fila) const;
    void tildar(std::uint32_t fila, bool tildada);
    [[nodiscard]] bool tildada(std::uint32_t fila) const;
    void retirar(std::uint32_t fila);
    [[nodiscard]] bool retirada(std::uint32_t fila) const;
    /// First row whose text equals `texto`, or -1. Does not depend on how many other rows there
    /// are.
    [[nodiscard]] std::int64_t buscar(std::string_view texto) const;

    /// The rows that changed since the last call. A window asks at its own pace.
    [[nodiscard]] std::vector<std::uint32_t> cambiadas();
    /// Rows are noted for `cambiadas` only while they are wanted.
    void seguirCambios(bool seguir);
    /// For the few rows of which no change may be missed. The listener must outlive the list or be
    /// taken off; it hears of all rows that anybody watches.
    void avisarA(OyenteDeFilas* oyente) { oyentes_.push_back(oyente); }
    void dejarDeAvisarA(OyenteDeFilas* oyente) { std::erase(oyentes_, oyente); }
    void vigilar(std::uint32_t fila);

  private:
    /// All columns in one text, so that a row costs one allocation: there are two rows a block.
    struct Fila {
        std::string textos; ///< columns separated by NUL, which becomes a blank inside of them
        std::int32_t etiqueta = -1;
        bool tildada = false;
        bool anotada = false;
        bool retirada = false;
        bool vigilada = false;
    };
    void anotar(std::uint32_t fila);

    std::string_view nombre_;
    bool buscable_;
    const Redactor* redactor_ = nullptr;
    std::vector<std::string> columnas_;
    std::deque<Fila> filas_;
    std::size_t retiradas_ = 0;
    /// Hash of column 0 to the rows of that text: many may share one.
    std::unordered_multimap<std::size_t, std::uint32_t> porTexto_;
    bool sigue_ = false;
    std::vector<std::uint32_t> cambiadas_;
    std::vector<OyenteDeFilas*> oyentes_;
};

} // namespace kv
