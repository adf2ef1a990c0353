// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kv {

/// Finds and replaces in a text box, from the cursor on and around the end. Letter case does not
/// matter unless asked for. Hidden until `abrir`; Escape hides it again.
class BarraDeBusqueda final : public QWidget {
    Q_OBJECT
  public:
    /// `caja` must outlive the bar.
    BarraDeBusqueda(QPlainTextEdit& caja, QWidget* padre);

    /// Shows the bar with what is selected in the box, if that is within one line.
    void abrir(bool paraReemplazar);
    void siguiente() { buscar(false, true); }
    void anterior() { buscar(true, true); }

  protected:
    void keyPressEvent(QKeyEvent* tecla) override;

  private:
    void armar();
    [[nodiscard]] QPushButton* boton(const char* nombre, const QString& rotulo,
                                     void (BarraDeBusqueda::*accion)());
    [[nodiscard]] Qt::CaseSensitivity caja() const;
    [[nodiscard]] QString texto() const;
    /// `avanzar`: what is selected now does not count.
    void buscar(bool atras, bool avanzar);
    void contar(const QString& texto, qsizetype encontrado);
    void cerrar();
    void reemplazar();
    void reemplazarTodo();

    QPlainTextEdit& caja_;
    QLineEdit* buscado_;
    QLineEdit* nuevo_;
    QCheckBox* mayusculas_;
    QLabel* cuenta_;
    QWidget* filaDeReemplazo_;
};

} // namespace kv
