#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

class Observador;
class PresupuestoDeCajas;

/// A trace box: text that grows at its end. When it would hold more than its limit it is emptied
/// first, so no box grows without bound. The limit is `kMaximo` characters, or less where there are
/// so many boxes that all of them together would hold more than their common budget.
class CajaDeTexto {
  public:
    static constexpr std::size_t kMaximo = 40000; ///< characters

    /// `nombre` must outlive the box; `indice` is -1 where boxes are not numbered.
    CajaDeTexto(PresupuestoDeCajas& presupuesto, std::string_view nombre, std::int64_t indice);
    ~CajaDeTexto();
    CajaDeTexto(const CajaDeTexto&) = delete;
    CajaDeTexto& operator=(const CajaDeTexto&) = delete;

    void agregar(std::string_view texto);
    /// The same on a line of its own: many a message has no end of line.
    void agregarEnOtraLinea(std::string_view texto);
    void vaciar();
    [[nodiscard]] const std::string& texto() const { return texto_; }
    [[nodiscard]] std::string_view nombre() const { return nombre_; }
    [[nodiscard]] std::int64_t indice() const { return indice_; }
    /// Changes with every change of the text, and is the same as another box's only while both are
    /// new: a box may stand where an older one stood.
    [[nodiscard]] std::uint64_t version() const { return version_; }

  private:
    PresupuestoDeCajas& presupuesto_;
    std::string_view nombre_;
    std::int64_t indice_;
    std::string texto_;
    std::size_t caracteres_ = 0;
    std::uint64_t version_ = 0;
};

/// The memory that all trace boxes share evenly: a box for each of 100,000 blocks must not cost
/// gigabytes.
class PresupuestoDeCajas {
  public:
    explicit PresupuestoDeCajas(std::size_t maximo = 64U << 20) : maximo_(maximo) {}
    /// Characters that one box may hold now.
    [[nodiscard]] std::size_t limite() const { return limite_; }
    void observar(Observador* observador) { observador_ = observador; }

  private:
    friend class CajaDeTexto;
    void contar(std::ptrdiff_t cajas);

    std::size_t maximo_;
    std::size_t limite_ = 0;
    std::ptrdiff_t cajas_ = 0;
    std::uint64_t cambios_ = 0; ///< of all boxes
    Observador* observador_ = nullptr;
};

} // namespace kv
