// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTextBrowser>
#include <QWidget>

namespace kv {

/// The manual's text, with its pictures as wide as fits.
class TextoDelManual final : public QTextBrowser {
    Q_OBJECT
  public:
    explicit TextoDelManual(QWidget* padre);
    /// Scrolls to a heading by its words, or by the anchor that they make; to the top if no heading
    /// fits.
    void irA(const QString& titulo);

  protected:
    QVariant loadResource(int tipo, const QUrl& nombre) override;
};

/// The operator's manual, which is carried in the program: what an operator needs at night must not
/// depend on what is installed beside it.
class VentanaDeManual final : public QWidget {
    Q_OBJECT
  public:
    explicit VentanaDeManual(QWidget* padre);
    void mostrarEn(const QString& titulo);
    /// The heading under which a window, or the part of it that has the focus, is explained.
    [[nodiscard]] static QString tituloDe(const QWidget* ventana, const QWidget* foco);

  private:
    TextoDelManual* texto_;
};

} // namespace kv
