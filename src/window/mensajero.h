// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/operador.h"
#include "view/observador.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <functional>

class QMessageBox;

namespace kv {

/// Shows messages and questions in boxes that nobody waits for: polling goes on behind them. At
/// most eight are open at a time, and no message twice: a script may have a lot to say. As the
/// view's observer it passes on all that it hears.
class Mensajero final : public QObject, public Observador {
    Q_OBJECT
  public:
    /// `siguiente` must outlive the messenger.
    explicit Mensajero(Observador& siguiente) : siguiente_(siguiente) {}
    ~Mensajero() override;
    /// Boxes belong to this window from now on.
    void delante(QWidget* ventana) { ventana_ = ventana; }

    void avisar(const Aviso& aviso);
    /// A question with Yes and No; `si` is called on Yes.
    void preguntar(const char* nombre, const QString& titulo, const QString& texto,
                   std::function<void()> si);
    /// A question answered with a text; `respuesta` is not called on cancel.
    void preguntarTexto(const Pregunta& pregunta, std::function<void(const QString&)> respuesta);
    /// `tarea` is called whenever the last box was closed.
    void alCerrarTodos(std::function<void()> tarea) {
        connect(this, &Mensajero::todosCerrados, this, std::move(tarea));
    }
    [[nodiscard]] int abiertos() const { return abiertos_; }

    void alCambiarEtiqueta(std::string_view etiqueta, std::string_view texto) override {
        siguiente_.alCambiarEtiqueta(etiqueta, texto);
    }
    void alCambiarColor(std::string_view etiqueta, Color color) override {
        siguiente_.alCambiarColor(etiqueta, color);
    }
    void alVestirEtiqueta(std::string_view etiqueta, const AspectoDeEtiqueta& aspecto) override {
        siguiente_.alVestirEtiqueta(etiqueta, aspecto);
    }
    void alMostrarMensaje(std::string_view titulo, std::string_view texto) override;

  signals:
    /// The last box was closed.
    void todosCerrados();

  private:
    [[nodiscard]] QMessageBox* caja(const QString& titulo, const QString& texto);
    [[nodiscard]] bool seMuestra(const QString& texto) const;

    Observador& siguiente_;
    QPointer<QWidget> ventana_;
    QList<QPointer<QMessageBox>> avisos_;
    int abiertos_ = 0;
};

} // namespace kv
