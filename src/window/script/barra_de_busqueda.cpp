// SPDX-License-Identifier: Apache-2.0
#include "window/script/barra_de_busqueda.h"

#include "window/controls/control.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>

namespace kv {

BarraDeBusqueda::BarraDeBusqueda(QPlainTextEdit& caja, QWidget* padre)
    : QWidget(padre), caja_(caja), buscado_(control<QLineEdit>("TxtBuscar", this)),
      nuevo_(control<QLineEdit>("TxtReemplazo", this)),
      mayusculas_(control<QCheckBox>("ChkMayusculas", tr("&Mayúsculas"), this)),
      cuenta_(control<QLabel>("LblCoincidencias", this)), filaDeReemplazo_(hacer<QWidget>(this)) {
    buscado_->setPlaceholderText(tr("Buscar"));
    buscado_->setAccessibleName(tr("Buscar"));
    nuevo_->setPlaceholderText(tr("Reemplazar por"));
    nuevo_->setAccessibleName(tr("Reemplazar por"));
    mayusculas_->setToolTip(tr("Distinguir mayúsculas de minúsculas"));
    cuenta_->setMinimumWidth(cuenta_->fontMetrics().horizontalAdvance(tr("No se encontró")) + 12);
    armar();
    connect(buscado_, &QLineEdit::textEdited, this, [this] { buscar(false, false); });
    connect(mayusculas_, &QCheckBox::toggled, this, [this] { buscar(false, false); });
    hide();
}

void BarraDeBusqueda::armar() {
    auto* filas = hacer<QVBoxLayout>(this);
    filas->setContentsMargins(0, 0, 0, 0);
    auto* arriba = hacer<QHBoxLayout>();
    arriba->addWidget(buscado_, 1);
    arriba->addWidget(boton("BtnAnterior", tr("&Anterior"), &BarraDeBusqueda::anterior));
    arriba->addWidget(boton("BtnSiguiente", tr("&Siguiente"), &BarraDeBusqueda::siguiente));
    arriba->addWidget(mayusculas_);
    arriba->addWidget(cuenta_);
    arriba->addWidget(boton("BtnCerrarBusqueda", tr("Cerrar"), &BarraDeBusqueda::cerrar));
    filas->addLayout(arriba);
    auto* abajo = hacer<QHBoxLayout>(filaDeReemplazo_);
    abajo->setContentsMargins(0, 0, 0, 0);
    abajo->addWidget(nuevo_, 1);
    abajo->addWidget(boton("BtnReemplazar", tr("&Reemplazar"), &BarraDeBusqueda::reemplazar));
    abajo->addWidget(
        boton("BtnReemplazarTodo", tr("Reemplazar &todo"), &BarraDeBusqueda::reemplazarTodo));
    filas->addWidget(filaDeReemplazo_);
}

QPushButton* BarraDeBusqueda::boton(const char* nombre, const QString& rotulo,
                                    void (BarraDeBusqueda::*accion)()) {
    auto* nuevo = control<QPushButton>(nombre, rotulo, this);
    connect(nuevo, &QPushButton::clicked, this, accion);
    return nuevo;
}

void BarraDeBusqueda::abrir(bool paraReemplazar) {
    const QString elegido = caja_.textCursor().selectedText();
    if (!elegido.isEmpty() && !elegido.contains(QChar::ParagraphSeparator))
        buscado_->setText(elegido);
    filaDeReemplazo_->setVisible(paraReemplazar);
    show();
    buscado_->setFocus();
    buscado_->selectAll();
    cuenta_->clear();
}

void BarraDeBusqueda::cerrar() {
    hide();
    caja_.setFocus();
}

void BarraDeBusqueda::keyPressEvent(QKeyEvent* tecla) {
    const bool entrar = tecla->key() == Qt::Key_Return || tecla->key() == Qt::Key_Enter;
    if (tecla->key() == Qt::Key_Escape) {
        cerrar();
    } else if (entrar && nuevo_->hasFocus()) {
        reemplazar();
    } else if (auto* enfocado = qobject_cast<QPushButton*>(focusWidget()); entrar && enfocado) {
        enfocado->click();
    } else if (entrar) {
        buscar((tecla->modifiers() & Qt::ShiftModifier) != 0, true);
    } else {
        QWidget::keyPressEvent(tecla);
    }
}

Qt::CaseSensitivity BarraDeBusqueda::caja() const {
    return mayusculas_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

// Characters have the same positions in the raw text and in the document.
QString BarraDeBusqueda::texto() const { return caja_.document()->toRawText(); }

void BarraDeBusqueda::buscar(bool atras, bool avanzar) {
    const QString que = buscado_->text();
    const QString t = texto();
    QTextCursor c = caja_.textCursor();
    qsizetype i = -1;
    if (!que.isEmpty() && atras) {
        if (c.selectionStart() > 0) i = t.lastIndexOf(que, c.selectionStart() - 1, caja());
        if (i < 0) i = t.lastIndexOf(que, -1, caja());
    } else if (!que.isEmpty()) {
        i = t.indexOf(que, avanzar ? c.selectionEnd() : c.selectionStart(), caja());
        if (i < 0) i = t.indexOf(que, 0, caja());
    }
    if (i >= 0) {
        c.setPosition(static_cast<int>(i));
        c.setPosition(static_cast<int>(i + que.size()), QTextCursor::KeepAnchor);
        caja_.setTextCursor(c);
    }
    contar(t, i);
}

void BarraDeBusqueda::contar(const QString& texto, qsizetype encontrado) {
    const QString que = buscado_->text();
    if (que.isEmpty()) {
        cuenta_->clear();
        return;
    }
    int todas = 0;
    int cual = 0;
    for (auto i = texto.indexOf(que, 0, caja()); i >= 0;
         i = texto.indexOf(que, i + que.size(), caja())) {
        ++todas;
        if (i <= encontrado) cual = todas;
    }
    cuenta_->setText(todas == 0 ? tr("No se encontró") : tr("%1 de %2").arg(cual).arg(todas));
}

void BarraDeBusqueda::reemplazar() {
    QTextCursor c = caja_.textCursor();
    if (!buscado_->text().isEmpty() && c.selectedText().compare(buscado_->text(), caja()) == 0) {
        c.insertText(nuevo_->text());
        caja_.setTextCursor(c);
    }
    siguiente();
}

/// One insertion in place of many: one step to undo, and the time of a large text stays linear.
void BarraDeBusqueda::reemplazarTodo() {
    const QString que = buscado_->text();
    const QString t = texto();
    const qsizetype primera = que.isEmpty() ? -1 : t.indexOf(que, 0, caja());
    if (primera < 0) {
        contar(t, -1);
        return;
    }
    QString reemplazado;
    qsizetype desde = primera;
    int veces = 0;
    for (qsizetype i = primera; i >= 0; i = t.indexOf(que, desde, caja())) {
        reemplazado += QStringView(t).mid(desde, i - desde);
        reemplazado += nuevo_->text();
        desde = i + que.size();
        ++veces;
    }
    QTextCursor c = caja_.textCursor();
    const int linea = c.blockNumber();
    c.setPosition(static_cast<int>(primera));
    c.setPosition(static_cast<int>(desde), QTextCursor::KeepAnchor);
    c.insertText(reemplazado);
    c.setPosition(caja_.document()->findBlockByNumber(linea).position());
    caja_.setTextCursor(c);
    cuenta_->setText(tr("%1 reemplazos").arg(veces));
}

} // namespace kv
