#include "ui/qt/avisar.h"

#include "ui/qt/crear.h"

#include <QMessageBox>

namespace kv {

void avisar(QWidget* padre, const QString& texto) {
    auto* caja = crear<QMessageBox>(QMessageBox::Warning, padre->window()->windowTitle(), texto,
                                    QMessageBox::Ok, padre);
    caja->setAttribute(Qt::WA_DeleteOnClose);
    caja->open();
}

} // namespace kv
