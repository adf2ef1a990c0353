// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QObject>

class QTableView;
class QWidget;

namespace kv {

/// Keeps the columns of a table within its width, so that nobody has to scroll sideways: one gives
/// way, the others a little, and those at the right that have no room even so are left out until
/// there is. Titles that are wider than what stands below them take two lines where that lets more
/// columns in (their model lets them be wrapped). Once the operator has arranged the columns by
/// hand they stay as they are.
class AcomodoDeColumnas final : public QObject {
    Q_OBJECT
  public:
    /// `anchos`: what each column wants, in pixels; `laQueMasDice` is the column of long texts: it
    /// gives way most, and gets first what is left over. The table will own it.
    AcomodoDeColumnas(QTableView& tabla, QList<int> anchos, int laQueMasDice);

    /// The column wants that much, at least.
    void pedir(int columna, int ancho);
    void acomodar();
    /// Whether they are as the operator wants them.
    [[nodiscard]] bool arregladas() const { return arregladas_; }
    void ponerArregladas(bool arregladas);

    bool eventFilter(QObject* objeto, QEvent* suceso) override;

  private:
    enum class Titulos { EnUnaLinea, EnDos };
    /// The narrowest that a column may become: part of what it wants, and never less than its
    /// title.
    [[nodiscard]] int minimo(int columna, Titulos titulos) const;
    /// Those that have room, from the left.
    [[nodiscard]] QList<int> lasQueEntran(Titulos titulos) const;
    void ponerTitulos(Titulos titulos);
    [[nodiscard]] QList<int> disposicion() const;

    QTableView& tabla_;
    QWidget* titulos_; ///< where they are drawn
    QList<int> anchos_;
    int laQueMasDice_;
    bool arregladas_ = false;
    QList<int> alApretar_; ///< how they were when the mouse went down on the titles
};

} // namespace kv
