// SPDX-License-Identifier: Apache-2.0
#include "window/reasons/ventana_por_que.h"

#include "window/controls/control.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"

#include <QClipboard>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace kv {

VentanaPorQue::VentanaPorQue(const Tablas& tablas, const PorQue& porQue, QWidget* padre)
    : VentanaAlDia("FrmPorQue", kDeLejosMs, padre), tablas_(tablas), porQue_(porQue),
      titulo_(rotulo("lblPorQue", this)) {
    setWindowTitle(tr("Por qué"));
    QFont grande = font();
    grande.setBold(true);
    grande.setPointSizeF(grande.pointSizeF() * 1.3);
    titulo_->setFont(grande);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->addWidget(titulo_);
    auto* renglones = hacer<QGridLayout>();
    renglones->setColumnStretch(1, 1);
    frases_ = {renglon("lblPorQueVariable", tr("La variable"), *renglones),
               renglon("lblPorQueBloque", tr("Su bloque"), *renglones),
               renglon("lblPorQueEstacion", tr("Su estación"), *renglones),
               renglon("lblPorQueConexion", tr("Su conexión"), *renglones)};
    todo->addLayout(renglones);
    todo->addStretch(1);
    auto* botones = hacer<QHBoxLayout>();
    const auto boton = [&](const char* nombre, const QString& texto, auto que) {
        auto* b = control<QPushButton>(nombre, texto, this);
        connect(b, &QPushButton::clicked, this, que);
        botones->addWidget(b);
    };
    boton("BtnVerConexion", tr("Ver la &conexión"), [this] {
        if (bloque_ != kNinguno) emit verConexion(tablas_.bloques[bloque_].idConexion);
    });
    boton("BtnCopiarPorQue", tr("C&opiar"), [this] { copiar(); });
    botones->addStretch();
    boton("BtnCerrarPorQue", tr("Cerrar"), [this] { close(); });
    todo->addLayout(botones);
    acomodar(*this, {640, 300});
    volverAlLugar(*this);
    prepararVentana(*this);
}

QLabel* VentanaPorQue::renglon(const char* nombre, const QString& titulo, QGridLayout& donde) {
    const int fila = donde.rowCount();
    auto* izquierda = hacer<QLabel>(titulo, this);
    izquierda->setAlignment(Qt::AlignTop | Qt::AlignRight);
    QLabel* frase = rotulo(nombre, this);
    frase->setWordWrap(true);
    frase->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    frase->setTextInteractionFlags(Qt::TextSelectableByMouse);
    frase->setAccessibleDescription(titulo);
    donde.addWidget(izquierda, fila, 0);
    donde.addWidget(frase, fila, 1);
    return frase;
}

void VentanaPorQue::mostrarPara(Indice bloque) {
    bloque_ = bloque;
    refrescar();
}

void VentanaPorQue::refrescar() {
    if (bloque_ == kNinguno || !tablas_.bloques.vive(bloque_)) {
        titulo_->setText(tr("Elija una fila en las listas de variables o de bloques"));
        return;
    }
    const BloqueLectura& b = tablas_.bloques[bloque_];
    titulo_->setText(enQt(b.clave));
    const std::array<std::string, 4> frases{
        porQue_.porQueVariable(bloque_), porQue_.porQueBloque(bloque_),
        porQue_.porQueEstacion(b.idConexion, b.idEstacion), porQue_.porQueConexion(b.idConexion)};
    for (std::size_t i = 0; i < frases.size(); ++i) {
        // A text that is being marked stays while nothing new is to be said.
        const QString texto = enQt(frases.at(i));
        if (frases_.at(i)->text() != texto) frases_.at(i)->setText(texto);
    }
}

void VentanaPorQue::copiar() {
    QStringList lineas{titulo_->text()};
    for (const QLabel* frase : frases_)
        lineas << frase->text();
    QGuiApplication::clipboard()->setText(lineas.join('\n') + '\n');
}

} // namespace kv
