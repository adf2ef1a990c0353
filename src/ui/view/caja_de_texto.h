#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

class Observador;
class PresupuestoDeCajas;

/// A trace box: text that grows at its end. When it would hold more than `kMaximo` characters it is
/// emptied first, so no box grows without bound; and when all boxes together hold more than their
/// common budget, the ones that nobody has written to for longest are emptied.
class CajaDeTexto {
  public:
    static constexpr std::size_t kMaximo = 40000; ///< characters

    /// `nombre` must outlive the box; `indice` is -1 where boxes are not numbered.
    CajaDeTexto(PresupuestoDeCajas& presupuesto, std::string_view nombre, std::int64_t indice);
    ~CajaDeTexto();
    CajaDeTexto(const CajaDeTexto&) = delete;
    CajaDeTexto& operator=(const CajaDeTexto&) = delete;

    void agregar(std::string_view texto);
    void vaciar();
    [[nodiscard]] const std::string& texto() const { return texto_; }
    [[nodiscard]] std::string_view nombre() const { return nombre_; }
    [[nodiscard]] std::int64_t indice() const { return indice_; }
    /// Changes with every change of the text.
    [[nodiscard]] std::uint64_t version() const { return version_; }

  private:
    friend class PresupuestoDeCajas;
    PresupuestoDeCajas& presupuesto_;
    std::string_view nombre_;
    std::int64_t indice_;
    std::string texto_;
    std::size_t caracteres_ = 0;
    std::uint64_t version_ = 0;
    CajaDeTexto* anterior_ = nullptr; ///< in the budget's list, by the last time of writing
    CajaDeTexto* siguiente_ = nullptr;
    bool enLista_ = false;
};

/// The memory that all trace boxes share. A box for each of 100,000 blocks must not cost gigabytes.
class PresupuestoDeCajas {
  public:
    explicit PresupuestoDeCajas(std::size_t maximo = 32U << 20) : maximo_(maximo) {}
    [[nodiscard]] std::size_t usado() const { return usado_; }
    void observar(Observador* observador) { observador_ = observador; }

  private:
    friend class CajaDeTexto;
    void alCambiar(CajaDeTexto& caja, std::size_t antes);
    void quitar(CajaDeTexto& caja);
    void ponerAlFinal(CajaDeTexto& caja);

    std::size_t maximo_;
    std::size_t usado_ = 0;
    Observador* observador_ = nullptr;
    CajaDeTexto* primera_ = nullptr; ///< the box longest without news
    CajaDeTexto* ultima_ = nullptr;
};

} // namespace kv
