// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/trazas.h"

#include <QWidget>

#include <cstdint>
#include <functional>
#include <optional>

class QPlainTextEdit;
class QToolButton;

namespace kv {

/// A trace box on the screen: follows what happens with its caret at the end, unless it is paused
/// or its end is not in sight; its text can be copied and saved.
class CajaDeTraza final : public QWidget {
    Q_OBJECT
  public:
    /// Gives the trace to be shown, or nothing. Asked again at every refresh.
    using Fuente = std::function<std::optional<Traza>()>;
    CajaDeTraza(const char* nombre, const QString& titulo, Fuente fuente, QWidget* padre);
    /// Always the same, under its name.
    CajaDeTraza(const Traza& traza, const QString& titulo, QWidget* padre);

    /// Shows the lines of one connection or block only, under that name; kNinguno twice: all.
    void soloDe(Indice conexion, Indice bloque, const QString& nombre);
    /// Shows what has happened since. Costs next to nothing when that is nothing, or when the box
    /// cannot be seen.
    void refrescar();

  signals:
    /// The operator chose a file for the text.
    void guardar(const QString& ruta, const QString& texto);
    /// The operator wants to see all lines again.
    void quitarFiltro();

  protected:
    void showEvent(QShowEvent* suceso) override;

  private:
    QToolButton* boton(const char* nombre, const QString& texto, const QString& ayuda);
    void seguir();
    void agregar(const QString& lineas);
    [[nodiscard]] bool alFinal() const;
    void copiar();
    void guardarLoQueSeVe();

    Fuente fuente_;
    QPlainTextEdit* texto_;
    QToolButton* pausa_;
    QToolButton* solo_; ///< says what is filtered, and ends it
    Indice conexion_ = kNinguno;
    Indice bloque_ = kNinguno;
    QString nombre_;
    std::optional<Traza> traza_; ///< shown last
    std::uint64_t visto_ = 0;
};

} // namespace kv
