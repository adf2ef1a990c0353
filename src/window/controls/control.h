// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QString>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace kv {

// Texts are UTF-8 below the windows and Qt's in them; they cross the border here.
[[nodiscard]] inline QString enQt(std::string_view texto) {
    return QString::fromUtf8(texto.data(), static_cast<qsizetype>(texto.size()));
}
[[nodiscard]] inline std::string deQt(const QString& texto) { return texto.toStdString(); }

/// An object that Qt will own: its parent, or the layout or menu that it is put into, deletes it.
template <class T, class... Argumentos>
[[nodiscard]] T* hacer(Argumentos&&... argumentos) {
    return std::make_unique<T>(std::forward<Argumentos>(argumentos)...).release();
}

/// The same under the name by which tests, and tools that read the screen aloud, find it.
template <class T, class... Argumentos>
[[nodiscard]] T* control(const char* nombre, Argumentos&&... argumentos) {
    T* c = hacer<T>(std::forward<Argumentos>(argumentos)...);
    c->setObjectName(QString::fromUtf8(nombre));
    return c;
}

} // namespace kv
