#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace kv {

/// Text is UTF-8 everywhere but inside the toolkit; here it crosses.
[[nodiscard]] inline QString aQt(std::string_view texto) {
    return QString::fromUtf8(texto.data(), static_cast<qsizetype>(texto.size()));
}
[[nodiscard]] inline std::string deQt(const QString& texto) { return texto.toStdString(); }

} // namespace kv
