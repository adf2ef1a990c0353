// SPDX-License-Identifier: Apache-2.0
#include "window/trends/ventana_de_tendencias.h"

#include "window/controls/control.h"
#include "window/controls/elegir_archivo.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"
#include "window/trends/exportacion.h"

#include <QBuffer>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

namespace kv {
namespace {

constexpr const char* kClaveDeLargo = "tendencias/minutos";

} // namespace

VentanaDeTendencias::VentanaDeTendencias(RegistroDeTendencias& registro, Operador& operador,
                                         QWidget* padre)
    : VentanaAlDia("FrmTendencias", kDeCercaMs, padre), registro_(registro), operador_(operador),
      lienzo_(control<LienzoDeTendencias>("lienzo", registro, this)),
      largo_(control<QComboBox>("cmbLargo", this)),
      pausa_(control<QPushButton>("BtnPausaDeTendencias", tr("&Pausa"), this)),
      quitar_(control<QMenu>("MnuQuitar", this)) {
    setWindowTitle(tr("Tendencias"));
    lienzo_->setAccessibleName(tr("Tendencias"));
    auto* todo = hacer<QVBoxLayout>(this);
    todo->addWidget(armarBarra());
    todo->addWidget(lienzo_, 1);
    acomodar(*this, {980, 560});
    volverAlLugar(*this);
    prepararVentana(*this);
}

QWidget* VentanaDeTendencias::armarBarra() {
    auto* barra = hacer<QWidget>(this);
    auto* fila = hacer<QHBoxLayout>(barra);
    fila->setContentsMargins(0, 0, 0, 0);
    auto* rotulo = hacer<QLabel>(tr("&Últimos:"), this);
    rotulo->setBuddy(largo_);
    for (const int m : kMinutosDeTendencias)
        largo_->addItem(m < 60 ? tr("%1 min").arg(m) : tr("%1 h").arg(m / 60), m);
    largo_->setCurrentIndex(std::max(0, largo_->findData(recordado(kClaveDeLargo, 15).toInt())));
    connect(largo_, &QComboBox::currentIndexChanged, this, [this] {
        recordar(kClaveDeLargo, largo_->currentData());
        lienzo_->ver(lienzo_->hasta(), largo_->currentData().toLongLong() * 60'000, hora_);
        refrescar();
    });
    pausa_->setCheckable(true);
    connect(pausa_, &QPushButton::toggled, this, &VentanaDeTendencias::refrescar);
    auto* quitar = control<QPushButton>("BtnQuitarTendencia", tr("&Quitar"), this);
    quitar->setMenu(quitar_);
    connect(quitar_, &QMenu::aboutToShow, this, &VentanaDeTendencias::llenarQuitar);
    fila->addWidget(rotulo);
    fila->addWidget(largo_);
    fila->addWidget(pausa_);
    fila->addWidget(quitar);
    fila->addStretch();
    const auto boton = [&](const char* nombre, const QString& texto, auto que) {
        auto* b = control<QPushButton>(nombre, texto, this);
        connect(b, &QPushButton::clicked, this, que);
        fila->addWidget(b);
    };
    boton("BtnGuardarImagen", tr("Guardar &imagen…"), [this] { guardarImagen(); });
    boton("BtnGuardarTabla", tr("Guardar &CSV…"), [this] { guardarTabla(); });
    return barra;
}

void VentanaDeTendencias::llenarQuitar() {
    quitar_->clear();
    for (std::size_t i = 0; i < registro_.series().size(); ++i)
        quitar_->addAction(enQt(registro_.series()[i].direccion), this, [this, i] {
            registro_.quitar(i);
            lienzo_->update();
            emit cambiaron();
        });
}

void VentanaDeTendencias::refrescar() {
    if (pausa_->isChecked()) return;
    hora_ = operador_.ahora();
    lienzo_->ver(operador_.cifras().ms, largo_->currentData().toLongLong() * 60'000, hora_);
}

void VentanaDeTendencias::guardarImagen() {
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    lienzo_->grab().save(&buffer, "PNG");
    elegirArchivo(this, tr("Guardar la imagen"), "tendencias.png",
                  [this, png](const QString& ruta) {
                      emit avisar(operador_.guardarBytes(
                          deQt(ruta), {png.constData(), static_cast<std::size_t>(png.size())}));
                  });
}

void VentanaDeTendencias::guardarTabla() {
    const QString csv =
        csvDe(registro_, lienzo_->hasta() - lienzo_->largo(), lienzo_->hasta(), hora_);
    elegirArchivo(this, tr("Guardar los valores"), "tendencias.csv",
                  [this, csv](const QString& ruta) {
                      emit avisar(operador_.guardar(deQt(ruta), deQt(csv)));
                  });
}

} // namespace kv
