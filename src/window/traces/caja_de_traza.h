#pragma once

#include "view/caja_de_texto.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <string>

class QPlainTextEdit;
class QToolButton;

namespace kv {

/// A trace box on the screen: follows a box of the view with its caret at the end, unless it is
/// paused; its text can be copied and saved.
class CajaDeTraza final : public QWidget {
    Q_OBJECT
  public:
    /// Gives the box to be shown; null for none. Asked again at every refresh.
    using Fuente = std::function<const CajaDeTexto*()>;
    CajaDeTraza(const char* nombre, const QString& titulo, Fuente fuente, QWidget* padre);
    /// Always the same box, under its name; it must outlive this one.
    CajaDeTraza(const CajaDeTexto& caja, const QString& titulo, QWidget* padre);

    /// Shows what the box holds now. Costs next to nothing when that is the same, or when the box
    /// cannot be seen.
    void refrescar();

  signals:
    /// The operator chose a file for the text.
    void guardar(const QString& ruta, const QString& texto);

  protected:
    void showEvent(QShowEvent* suceso) override;

  private:
    QToolButton* boton(const char* nombre, const QString& texto, const QString& ayuda);
    void mostrar(const std::string& texto);
    void copiar();
    void elegirArchivo();

    Fuente fuente_;
    QPlainTextEdit* texto_;
    QToolButton* pausa_;
    const CajaDeTexto* caja_ = nullptr; ///< shown last; only compared
    std::uint64_t version_ = 0;
    std::string mostrado_;
};

} // namespace kv
