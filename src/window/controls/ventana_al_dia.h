// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class QTimer;

namespace kv {

/// A window of its own that shows what changes by itself: brought up to date when it appears and,
/// as long as it can be seen, at its pace. Where it stood is remembered.
class VentanaAlDia : public QWidget {
    Q_OBJECT
  public:
    virtual void refrescar() = 0;

  protected:
    /// Paces: what one watches as it moves, and what one looks up.
    static constexpr int kDeCercaMs = 500;
    static constexpr int kDeLejosMs = 1000;
    /// `ritmoMs` above 0.
    VentanaAlDia(const char* nombre, int ritmoMs, QWidget* padre);
    void showEvent(QShowEvent* suceso) override;
    void hideEvent(QHideEvent* suceso) override;

  private:
    QTimer* ritmo_;
};

} // namespace kv
