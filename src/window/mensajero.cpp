// SPDX-License-Identifier: Apache-2.0
#include "window/mensajero.h"

#include "text/nombre_del_programa.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QInputDialog>
#include <QMessageBox>
#include <QPushButton>

#include <algorithm>

namespace kv {
namespace {

constexpr int kAbiertosMaximo = 8;
constexpr qsizetype kLargoMaximo = 2000; // characters; more would not fit a screen
constexpr int kLineasMaximas = 20;       // neither would these

QString loQueEntra(const QString& texto) {
    QStringList lineas = texto.left(kLargoMaximo).split('\n');
    if (lineas.size() > kLineasMaximas) lineas = lineas.mid(0, kLineasMaximas) << "…";
    return lineas.join('\n');
}

} // namespace

Mensajero::~Mensajero() {
    for (const auto& aviso : avisos_)
        std::unique_ptr<QMessageBox>(aviso.data()).reset();
}

QMessageBox* Mensajero::caja(const QString& titulo, const QString& texto) {
    QWidget* sobre = ventana_ != nullptr && ventana_->isVisible() ? ventana_.data() : nullptr;
    auto* m = control<QMessageBox>("msgAviso", sobre);
    m->setAttribute(Qt::WA_DeleteOnClose);
    m->setWindowTitle(titulo.isEmpty() ? enQt(kNombreDelPrograma) : titulo);
    m->setTextFormat(Qt::PlainText); // what it says may come from a file or from the wire
    m->setText(texto);
    prepararVentana(*m);
    return m;
}

bool Mensajero::seMuestra(const QString& texto) const {
    return std::any_of(avisos_.begin(), avisos_.end(),
                       [&](const auto& m) { return m != nullptr && m->text() == texto; });
}

void Mensajero::avisar(const Aviso& aviso) {
    const QString texto = loQueEntra(enQt(aviso.texto));
    avisos_.removeIf([](const auto& m) { return m == nullptr; });
    if (aviso.vacio() || abiertos_ >= kAbiertosMaximo || seMuestra(texto)) return;
    QMessageBox* m = caja(enQt(aviso.titulo), texto);
    m->setIcon(aviso.critico ? QMessageBox::Critical : QMessageBox::Information);
    m->setStandardButtons(QMessageBox::Ok);
    m->button(QMessageBox::Ok)->setText(tr("Aceptar"));
    avisos_.append(m);
    ++abiertos_;
    connect(m, &QObject::destroyed, this, [this] {
        if (--abiertos_ == 0) emit todosCerrados();
    });
    m->setWindowModality(Qt::NonModal);
    m->show();
}

void Mensajero::preguntar(const char* nombre, const QString& titulo, const QString& texto,
                          std::function<void()> si) {
    QMessageBox* m = caja(titulo, texto);
    m->setObjectName(nombre);
    m->setIcon(QMessageBox::Question);
    m->setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    m->button(QMessageBox::Yes)->setText(tr("&Sí"));
    m->button(QMessageBox::No)->setText(tr("&No"));
    m->setDefaultButton(QMessageBox::No);
    connect(m, &QDialog::finished, this, [si = std::move(si)](int cual) {
        if (cual == QMessageBox::Yes) si();
    });
    m->open();
}

void Mensajero::preguntarTexto(const Pregunta& pregunta,
                               std::function<void(const QString&)> respuesta) {
    auto* d = control<QInputDialog>("dlgPregunta", ventana_.data());
    d->setAttribute(Qt::WA_DeleteOnClose);
    d->setWindowTitle(enQt(pregunta.titulo));
    d->setLabelText(enQt(pregunta.texto));
    d->setTextValue(enQt(pregunta.propuesta));
    d->setOkButtonText(tr("Aceptar"));
    d->setCancelButtonText(tr("Cancelar"));
    prepararVentana(*d);
    connect(d, &QInputDialog::textValueSelected, this, std::move(respuesta));
    d->open();
}

void Mensajero::alMostrarMensaje(std::string_view titulo, std::string_view texto) {
    siguiente_.alMostrarMensaje(titulo, texto);
    avisar({std::string(texto), std::string(titulo)});
}

} // namespace kv
