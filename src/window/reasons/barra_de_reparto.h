// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/contadores.h"

#include <QWidget>

namespace kv {

/// What a line was busy with, as one bar with its shares and their figures below.
class BarraDeReparto final : public QWidget {
    Q_OBJECT
  public:
    explicit BarraDeReparto(QWidget* padre);
    void poner(const RepartoDeLinea& reparto);
    /// "respuestas 40 %, silencio 10 %, pausas 50 %, libre 0 %"; empty while nothing is known.
    [[nodiscard]] QString enPalabras() const;
    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* suceso) override;

  private:
    RepartoDeLinea reparto_;
};

} // namespace kv
