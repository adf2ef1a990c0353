// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/historia.h"

#include <functional>

namespace kv::mundo {

/// The shortest part of a history that still fails that can be found by leaving out halves,
/// quarters and so on down to single events, each tried in a world of its own. `falla` says
/// whether a part fails; at most `pruebas` parts are tried.
[[nodiscard]] std::vector<Episodio>
reducir(std::vector<Episodio> historia,
        const std::function<bool(const std::vector<Episodio>&)>& falla, int pruebas = 400);

} // namespace kv::mundo
