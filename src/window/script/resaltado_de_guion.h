// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/tramos_de_guion.h"

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

#include <array>

class QPalette;

namespace kv {

/// Colours a script, line by line.
class ResaltadoDeGuion final : public QSyntaxHighlighter {
  public:
    ResaltadoDeGuion(QTextDocument* documento, const QPalette& paleta);
    /// Colours that can be read on the palette's paper, light or dark.
    void elegirColores(const QPalette& paleta);

  protected:
    void highlightBlock(const QString& linea) override;

  private:
    [[nodiscard]] QTextCharFormat& formato(ClaseDeTramo clase) {
        return formatos_.at(static_cast<std::size_t>(clase));
    }
    std::array<QTextCharFormat, 5> formatos_;
};

} // namespace kv
