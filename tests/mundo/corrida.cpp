#include "mundo/corrida.h"

#include "core/start/arranque.h"
#include "mundo/contexto.h"
#include "mundo/mundo.h"

namespace kv::mundo {

Resultado vivir(const Plan& plan, const std::vector<Suceso>& historia) {
    Mundo mundo(plan);
    return mundo.vivir(historia);
}

} // namespace kv::mundo
