// SPDX-License-Identifier: Apache-2.0
#include "window/controls/elegir_archivo.h"

#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QListView>
#include <QTreeView>

namespace kv {

void elegirArchivo(QWidget* padre, const QString& titulo, const QString& nombre,
                   std::function<void(const QString& ruta)> elegido) {
    auto* dialogo = control<QFileDialog>("dlgGuardar", padre, titulo);
    dialogo->setAcceptMode(QFileDialog::AcceptSave);
    dialogo->setOption(QFileDialog::DontUseNativeDialog);
    dialogo->setDefaultSuffix(QFileInfo(nombre).suffix());
    dialogo->selectFile(nombre);
    dialogo->setAttribute(Qt::WA_DeleteOnClose);
    acomodar(*dialogo, {820, 480});
    if (auto* archivos = dialogo->findChild<QTreeView*>())
        archivos->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    // Beside the files it gets what its places' names take, which may be less than it can be drawn
    // in.
    if (auto* lugares = dialogo->findChild<QListView*>("sidebar"))
        lugares->setMinimumWidth(lugares->minimumSizeHint().width());
    QObject::connect(dialogo, &QFileDialog::fileSelected, padre, std::move(elegido));
    dialogo->open();
}

} // namespace kv
