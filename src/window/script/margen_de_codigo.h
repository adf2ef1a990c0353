// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

namespace kv {

class CajaDeCodigo;

/// The strip beside a code box: line numbers, and a symbol on lines that are marked.
class MargenDeCodigo final : public QWidget {
  public:
    explicit MargenDeCodigo(CajaDeCodigo& caja);
    [[nodiscard]] int ancho() const;

  protected:
    void paintEvent(QPaintEvent* evento) override;
    bool event(QEvent* evento) override;

  private:
    /// Calls `f(line, top, height)` for each line in sight, lines from 1.
    template <class F>
    void cadaLinea(F f) const;
    CajaDeCodigo& caja_;
};

} // namespace kv
