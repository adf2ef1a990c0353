// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/lists/modelo_de_lista.h"

#include <QWidget>

#include <cstdint>

class QLabel;
class QLineEdit;
class QTableView;

namespace kv {

/// A list of the main window: the table, a box that filters it as one types, and how many rows it
/// shows. The table's name is the list's.
class TablaDeLista final : public QWidget {
    Q_OBJECT
  public:
    TablaDeLista(Lista& lista, const FormaDeLista& forma, const QString& titulo, QWidget* padre);

    /// Begins or ends to follow the list: a window that is not shown costs nothing.
    void seguir(bool seguir);
    /// Shows what changed since the last call.
    void refrescar();
    /// Selects a row of the list and brings it into sight, if need be by dropping the filter.
    void elegir(std::uint32_t fila);
    void enfocar();
    void enfocarFiltro();
    [[nodiscard]] const ModeloDeLista& modelo() const { return *modelo_; }

  signals:
    /// A row was double-clicked, or Return was pressed on it.
    void activada(quint32 fila);
    void tildada(qint64 etiqueta, bool estado);

  protected:
    bool eventFilter(QObject* objeto, QEvent* suceso) override;

  private:
    void armarTabla(const Lista& lista, const FormaDeLista& forma);
    void contar();
    void activar(int fila);
    bool alPulsar(int tecla);
    void copiar();

    ModeloDeLista* modelo_;
    QTableView* tabla_;
    QLineEdit* filtro_;
    QLabel* cuenta_;
    bool conTildes_;
    std::int64_t elegida_ = -1; ///< row of the list, while the table is filled anew
};

} // namespace kv
