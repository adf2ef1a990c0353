// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/lists/modelo_de_lista.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <vector>

class QLabel;
class QLineEdit;
class QMenu;
class QTableView;

namespace kv {

class AcomodoDeColumnas;

/// A list of the main window: the table, a box that filters it as one types, and how many rows it
/// shows. The table's name is the list's. Several rows may be chosen, copied and exported. Columns,
/// order and filter are remembered for the user.
class TablaDeLista final : public QWidget {
    Q_OBJECT
  public:
    TablaDeLista(Lista& lista, const FormaDeLista& forma, const QString& titulo, Anexos anexos,
                 QWidget* padre);

    /// Begins or ends to follow the list: a window that is not shown costs nothing.
    void seguir(bool seguir);
    /// Shows what changed since the last call.
    void refrescar();
    /// Selects a row of the list and brings it into sight, if need be by dropping the filter.
    void elegir(std::uint32_t fila);
    /// The chosen rows of the list, from the top of the table.
    [[nodiscard]] std::vector<std::uint32_t> elegidas() const;
    /// The row of the list in which the keyboard is; -1: in no row.
    [[nodiscard]] std::int64_t actual() const;
    void filtrar(const QString& texto);
    void enfocar();
    void enfocarFiltro();
    [[nodiscard]] bool tieneElFoco() const;
    [[nodiscard]] const ModeloDeLista& modelo() const { return *modelo_; }
    /// An entry of the menu of its rows.
    void agregarAccion(const char* nombre, const QString& texto, const std::function<void()>& que);
    /// The chosen rows with their headings into the clipboard, in the columns that are shown.
    void copiar();
    /// The chosen rows, or all that the filter lets through where only one is chosen, as a CSV into
    /// a file that is asked for.
    void exportar();
    /// By the column of the current cell: upwards, downwards, as the list has it.
    void ordenarPorLaActual();
    void ponerBase(Base base);
    /// Fills a menu with the columns, to be shown or not.
    void llenarMenuDeColumnas(QMenu& menu);
    /// Shows a column at a place, counted from the left.
    void ponerDelante(int columna, int lugar);
    /// Keeps columns, order and filter for the next start, and takes them over from the last one.
    void recordarse() const;
    void acordarse();

  signals:
    /// A row was double-clicked, or Return was pressed on it.
    void activada(quint32 fila);
    /// The same, on its state.
    void preguntada(quint32 fila);
    /// The keyboard, or the mouse, is in another row.
    void mirada(quint32 fila);
    void tildada(qint64 etiqueta, bool estado);
    /// The operator chose a file for a text.
    void guardar(const QString& ruta, const QString& texto);

  protected:
    bool eventFilter(QObject* objeto, QEvent* suceso) override;

  private:
    void armarTabla();
    [[nodiscard]] QList<int> enPixeles(QList<int> letras) const;
    void repintarLoQueCrece(int desde, int hasta);
    void contar();
    void activar(const QModelIndex& celda);
    bool alPulsar(int tecla);
    void guardarElegidas();
    void volverAElegir();
    [[nodiscard]] QList<int> filasElegidas() const;
    [[nodiscard]] QList<int> columnasALaVista() const;
    [[nodiscard]] QString clave(const char* que) const;

    ModeloDeLista* modelo_;
    QTableView* tabla_;
    AcomodoDeColumnas* acomodo_;
    QLineEdit* filtro_;
    QLabel* cuenta_;
    QString titulo_;
    bool conTildes_;
    int columnaDeEstado_;
    int columnaDeCifras_;
    bool conAnexos_;
    unsigned vueltas_ = 0;
    std::vector<EstadoDeFila> alaVista_;  ///< how the rows in sight stood when ages were painted
    std::vector<std::uint32_t> elegidas_; ///< rows of the list, while the table is filled anew
    std::int64_t actual_ = -1;            ///< the same
    int columnaActual_ = 0;
};

} // namespace kv
