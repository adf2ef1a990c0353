// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/history/libro_de_sucesos.h"

#include <QByteArray>

namespace kv {

/// The latest lines of the history as the next start will want them: when, how grave, how often,
/// seen or not, where and what, in the words of this start's language. At most `kDeAntes` lines.
[[nodiscard]] QByteArray comoRecuerdo(const LibroDeSucesos& libro, const Tablas& tablas);
/// Puts them before whatever the book has. A malformed line is passed over.
void volverAPoner(LibroDeSucesos& libro, const QByteArray& recuerdo);

} // namespace kv
