// SPDX-License-Identifier: Apache-2.0
#include "text/json.h"

namespace kv {

std::string enJson(std::string_view texto) {
    std::string json = "\"";
    for (const char c : texto) {
        if (c == '"' || c == '\\') json += '\\';
        if (static_cast<unsigned char>(c) >= 0x20) {
            json += c;
        } else {
            constexpr std::string_view kCifras = "0123456789abcdef";
            json += "\\u00";
            json += kCifras[static_cast<std::size_t>(c) >> 4];
            json += kCifras[static_cast<std::size_t>(c) & 15];
        }
    }
    return json + "\"";
}

} // namespace kv
