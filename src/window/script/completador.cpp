// SPDX-License-Identifier: Apache-2.0
#include "window/script/completador.h"

#include "window/controls/control.h"
#include "window/script/caja_de_codigo.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStringListModel>

#include <utility>

namespace kv {
namespace {

constexpr qsizetype kLetras = 2; // of a name that proposals come for by themselves
constexpr int kVisibles = 12;

} // namespace

Completador::Completador(CajaDeCodigo& caja, Buscar buscar)
    : QObject(&caja), caja_(caja), buscar_(std::move(buscar)),
      modelo_(hacer<QStringListModel>(this)), lista_(hacer<QCompleter>(this)) {
    lista_->setModel(modelo_);
    lista_->setWidget(&caja);
    lista_->setCompletionMode(QCompleter::UnfilteredPopupCompletion);
    lista_->setMaxVisibleItems(kVisibles);
    lista_->popup()->setObjectName("Propuestas");
    connect(lista_, QOverload<const QString&>::of(&QCompleter::activated), this,
            &Completador::tomar);
}

bool Completador::esSuya(const QKeyEvent& tecla) const {
    if (!lista_->popup()->isVisible()) return false;
    const int cual = tecla.key();
    if (cual == Qt::Key_Escape) return true;
    // Who has chosen nothing goes on typing: a line ends where Enter is pressed.
    const bool toma = cual == Qt::Key_Enter || cual == Qt::Key_Return || cual == Qt::Key_Tab;
    return toma && lista_->popup()->currentIndex().isValid();
}

void Completador::trasTecla(const QKeyEvent& tecla) {
    const QString texto = tecla.text();
    if (texto.isEmpty()) return;
    const bool escribe = texto[0].isLetterOrNumber() || texto[0] == '_' || texto[0] == '.';
    if (escribe || (tecla.key() == Qt::Key_Backspace && lista_->popup()->isVisible()))
        proponer(false);
    else
        lista_->popup()->hide();
}

void Completador::pedir() { proponer(true); }

void Completador::proponer(bool aMano) {
    const QString todo = caja_.texto();
    const int lugar = caja_.textCursor().position();
    const Opciones opciones = buscar_(todo.left(lugar), todo.mid(lugar));
    empezado_ = opciones.empezado.size();
    if (aMano && opciones.lista.size() == 1) return tomar(opciones.lista.front());
    const bool miembro = lugar > empezado_ && todo[lugar - empezado_ - 1] == '.';
    const bool basta = aMano || miembro || empezado_ >= kLetras;
    if (!basta || opciones.lista.isEmpty()) return lista_->popup()->hide();
    modelo_->setStringList(opciones.lista);
    QRect donde = caja_.cursorRect();
    donde.setWidth(lista_->popup()->sizeHintForColumn(0) +
                   lista_->popup()->verticalScrollBar()->sizeHint().width());
    lista_->complete(donde);
    lista_->popup()->setCurrentIndex(aMano ? modelo_->index(0) : QModelIndex());
}

void Completador::tomar(const QString& opcion) {
    QTextCursor cursor = caja_.textCursor();
    cursor.movePosition(QTextCursor::Left, QTextCursor::KeepAnchor, static_cast<int>(empezado_));
    cursor.insertText(opcion);
    caja_.setTextCursor(cursor);
}

} // namespace kv
