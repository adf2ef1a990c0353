// SPDX-License-Identifier: Apache-2.0
// A client's bytes in arrivals of any length: each byte is part of a request or reported as
// skipped, in order, less than a request stays behind, and the split changes nothing.

#include "SimuladorKV2200/solicitudes.h"

#include <cstdint>
#include <span>
#include <string>

namespace {

std::string leer(std::span<const std::uint8_t> bytes, std::size_t paso) {
    kv::simulador::Solicitudes s;
    std::string visto;
    for (std::size_t i = 0; i < bytes.size(); i += paso) {
        s.agregar(bytes.subspan(i, std::min(paso, bytes.size() - i)));
        while (const auto suceso = s.siguiente()) {
            if (suceso->solicitud)
                visto.append(suceso->solicitud->begin(), suceso->solicitud->end());
            visto += suceso->ignorados;
        }
    }
    return visto;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    if (largo == 0) return 0;
    const std::span<const std::uint8_t> bytes(datos + 1, largo - 1);
    const std::string entero = leer(bytes, bytes.size() + 1);
    const std::string todo(bytes.begin(), bytes.end());
    if (!todo.starts_with(entero) || todo.size() - entero.size() >= kv::kLargoSolicitud)
        __builtin_trap();
    if (leer(bytes, datos[0] % 16 + 1U) != entero) __builtin_trap();
    return 0;
}
