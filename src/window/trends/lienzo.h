// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/fecha.h"
#include "window/trends/registro.h"

#include <QWidget>

namespace kv {

/// The past of the chosen variables, drawn: a lane for each with a scale of its own, time to the
/// right. What was not OK is hatched, and its line is broken.
class LienzoDeTendencias final : public QWidget {
    Q_OBJECT
  public:
    LienzoDeTendencias(const RegistroDeTendencias& registro, QWidget* padre);

    /// Up to which instant, and how much before it. `hora` is the calendar's at that instant.
    void ver(std::int64_t hastaMs, std::int64_t largoMs, const FechaHora& hora);
    [[nodiscard]] std::int64_t hasta() const { return hastaMs_; }
    [[nodiscard]] std::int64_t largo() const { return largoMs_; }
    /// What the lanes say where the pointer is; empty beside them.
    [[nodiscard]] QString valoresEn(const QPoint& lugar) const;
    [[nodiscard]] static QColor color(std::size_t serie, const QPalette& paleta);

  protected:
    void paintEvent(QPaintEvent* suceso) override;
    bool event(QEvent* suceso) override;

  private:
    [[nodiscard]] QRect carril(std::size_t serie) const;
    [[nodiscard]] int xDe(std::int64_t ms, const QRect& donde) const;
    void pintarCarril(QPainter& p, std::size_t serie) const;
    void pintarLinea(QPainter& p, const Serie& s, const QRect& donde, double piso,
                     double techo) const;
    void pintarHoras(QPainter& p) const;
    [[nodiscard]] QString horaDe(std::int64_t ms) const;

    const RegistroDeTendencias& registro_;
    std::int64_t hastaMs_ = 0;
    std::int64_t largoMs_ = 1;
    std::int64_t segundosDelDia_ = 0; ///< at `hastaMs_`
};

} // namespace kv
