// SPDX-License-Identifier: Apache-2.0
// Any bytes before the login: what is deciphered is either an error or no longer than its input
// allows, and any text that is enciphered comes back.

#include "server/cifrado.h"

#include <cstdint>
#include <cstdlib>

namespace {

void exigir(bool cierto) {
    if (!cierto) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string texto(reinterpret_cast<const char*>(datos), largo);
    const std::string claro = kv::descifrar(texto);
    if (!claro.starts_with(kv::kErrorDeCifrado)) {
        exigir(texto.size() >= 22 && claro.size() <= texto.size() / 3);
        exigir(texto.substr(0, 21).find_first_not_of("0123456789") == std::string::npos);
    }
    std::size_t i = 0;
    const auto azar = [&] { return largo == 0 ? 0.5 : datos[i++ % largo] / 256.0; };
    exigir(kv::descifrar(kv::cifrar(texto, azar)) == texto);
    return 0;
}
