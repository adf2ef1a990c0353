// SPDX-License-Identifier: Apache-2.0
#include "window/controls/avisar.h"

#include "window/controls/control.h"

#include <QMessageBox>

namespace kv {

void avisar(QWidget* padre, const QString& texto) {
    auto* caja = hacer<QMessageBox>(QMessageBox::Warning, padre->window()->windowTitle(), texto,
                                    QMessageBox::Ok, padre);
    caja->setAttribute(Qt::WA_DeleteOnClose);
    caja->open();
}

} // namespace kv
