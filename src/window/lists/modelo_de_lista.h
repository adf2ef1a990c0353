// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "view/lista.h"
#include "window/lists/anexos.h"
#include "window/lists/estado_de_fila.h"
#include "window/lists/texto_de_filas.h"

#include <QAbstractTableModel>

#include <array>
#include <cstdint>
#include <vector>

namespace kv {

/// A list of the view as a table: all rows or those that a filter lets through, in the list's order
/// or sorted by a column. Texts are read from the list when they are painted; what is kept of a row
/// is its place and how it stands. An order holds until the next click on a header: rows do not
/// move because their values change. New rows come at the end.
class ModeloDeLista final : public QAbstractTableModel {
    Q_OBJECT
  public:
    /// `lista` and `forma` must outlive the model.
    ModeloDeLista(Lista& lista, const FormaDeLista& forma, Anexos anexos, QObject* padre);

    [[nodiscard]] int rowCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& celda, int papel) const override;
    [[nodiscard]] QVariant headerData(int columna, Qt::Orientation orientacion,
                                      int papel) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& celda) const override;
    bool setData(const QModelIndex& celda, const QVariant& valor, int papel) override;
    /// Column -1: the list's own order.
    void sort(int columna, Qt::SortOrder orden) override;

    /// Column -1: in the list's own order.
    [[nodiscard]] int columnaDeOrden() const { return columna_; }
    [[nodiscard]] Qt::SortOrder sentido() const { return sentido_; }
    /// How registers are shown; bits are 0 and 1 in any base.
    void ponerBase(Base base);
    [[nodiscard]] Base base() const { return base_; }

    /// Shows only rows that hold every word of the text, or begin with it where it follows a "^";
    /// an empty text shows all.
    void filtrar(const QString& texto);
    /// While it does not follow, the list notes nothing; when it begins, everything is looked at.
    void seguir(bool seguir);
    /// Takes over what changed since the last call. Only rows from `desde` to `hasta`, those on the
    /// screen, are announced.
    void actualizar(int desde, int hasta);

    /// The list's row that stands in a row of the table, and the other way round (-1: filtered
    /// out).
    [[nodiscard]] std::uint32_t filaDeLista(int fila) const { return visibles_[fila]; }
    [[nodiscard]] int lugarDe(std::int64_t filaDeLista) const;
    /// How a row of the table stands, as it is painted.
    [[nodiscard]] EstadoDeFila estadoEn(int fila) const { return estadoDe(filaDeLista(fila)); }
    /// Columns whose texts become others although no row changes.
    [[nodiscard]] std::vector<int> columnasQueCrecen() const;
    [[nodiscard]] std::size_t cuantas(EstadoDeFila estado) const {
        return cuantas_[static_cast<std::size_t>(estado)];
    }
    [[nodiscard]] std::size_t total() const { return filas_.size() - retiradas_; }

  signals:
    /// A check box was clicked; the list follows when the command has been carried out.
    void tildada(qint64 etiqueta, bool estado);

  private:
    struct Fila {
        std::int32_t lugar = -1;
        EstadoDeFila estado = EstadoDeFila::Ninguno;
        bool pasa = false;
        bool retirada = false;
    };
    void mirar(std::uint32_t fila, bool& entraOSale);
    [[nodiscard]] std::optional<Reparo> reparoDe(std::uint32_t fila) const;
    [[nodiscard]] EstadoDeFila estadoDe(std::uint32_t fila) const;
    [[nodiscard]] std::string textoDe(std::uint32_t fila, std::size_t columna) const;
    /// Null for a column of the list.
    [[nodiscard]] const ColumnaPropia* propia(std::size_t columna) const;
    [[nodiscard]] bool pasaElFiltro(std::uint32_t fila) const;
    template <class Clave>
    void ordenarPor(Clave clave);
    void ordenar();
    void rehacer();

    Lista& lista_;
    const FormaDeLista& forma_;
    const Anexos anexos_;
    std::vector<Fila> filas_;              ///< by row of the list
    std::vector<std::uint32_t> ordenadas_; ///< all rows of the list
    std::vector<std::uint32_t> visibles_;  ///< those that pass, by row of the table
    std::array<std::size_t, kEstadosDeFila> cuantas_{};
    std::size_t retiradas_ = 0;
    std::vector<std::string> palabras_;
    Base base_ = Base::Decimal;
    int columna_ = -1;
    Qt::SortOrder sentido_ = Qt::AscendingOrder;
};

} // namespace kv
