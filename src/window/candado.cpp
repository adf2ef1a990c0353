// SPDX-License-Identifier: Apache-2.0
#include "window/candado.h"

#include "operator/operador.h"
#include "window/mensajero.h"

#include <QCoreApplication>

namespace kv {

void Candado::pedir(const QString& que, std::function<void()> hacer) {
    if (!operador_.hayCandado()) return hacer();
    mensajero_.preguntar(
        "msgOrden", QCoreApplication::translate("kv::Candado", "Orden a la planta"),
        QCoreApplication::translate("kv::Candado", "¿%1?").arg(que), std::move(hacer));
}

} // namespace kv
