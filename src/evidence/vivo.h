// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "evidence/captura.h"
#include "text/json_leido.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// What a driver that runs says of itself by its local door.
struct Vivo {
    std::string falla; ///< why it says nothing, or not all; empty: it said all
    std::map<std::string, std::string> renglones; ///< of each request its answer, as it came
    Json estado;
    std::vector<std::string> caidas;   ///< why, of each connection that is down
    std::vector<std::string> calladas; ///< why, of the silent stations; the first few
    std::size_t cuantasCalladas = 0;
    Captura captura;
};

/// Asks the driver of this folder, of its events the latest 200,000. Waits for it, and never throws
/// for what it does.
void preguntar(const std::string& carpeta, Vivo& vivo);

/// A member as a text: one that is a text, a number as it was written, or "".
[[nodiscard]] std::string campo(const Json& j, std::string_view nombre);

} // namespace kv
