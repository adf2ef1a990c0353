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
    // Left alone, the list of places is as wide as its longest name, which may be just "/".
    constexpr int kLetras = 14;
    if (auto* lugares = dialogo->findChild<QListView*>("sidebar"))
        lugares->setMinimumWidth(kLetras * lugares->fontMetrics().averageCharWidth());
    QObject::connect(dialogo, &QFileDialog::fileSelected, padre, std::move(elegido));
    dialogo->open();
}

} // namespace kv
