// SPDX-License-Identifier: Apache-2.0
#include "mundo/reduccion.h"

#include <algorithm>

namespace kv::mundo {

std::vector<Episodio> reducir(std::vector<Episodio> historia,
                              const std::function<bool(const std::vector<Episodio>&)>& falla,
                              int pruebas) {
    for (std::size_t trozo = (historia.size() + 1) / 2; trozo > 0;) {
        bool quito = false;
        for (std::size_t i = 0; i < historia.size() && pruebas > 0; --pruebas) {
            std::vector<Episodio> resto = historia;
            const auto desde = resto.begin() + static_cast<std::ptrdiff_t>(i);
            resto.erase(desde,
                        desde + static_cast<std::ptrdiff_t>(std::min(trozo, resto.size() - i)));
            if (falla(resto)) {
                historia = std::move(resto);
                quito = true;
            } else {
                i += trozo;
            }
        }
        if (pruebas <= 0) break;
        // Single events are gone through again for as long as one of them can be left out.
        if (trozo == 1 && !quito) break;
        trozo = trozo == 1 ? 1 : (trozo + 1) / 2;
    }
    return historia;
}

} // namespace kv::mundo
