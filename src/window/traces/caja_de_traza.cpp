// SPDX-License-Identifier: Apache-2.0
#include "window/traces/caja_de_traza.h"

#include "window/controls/control.h"
#include "window/controls/elegir_archivo.h"

#include <QClipboard>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>

namespace kv {

CajaDeTraza::CajaDeTraza(const char* nombre, const QString& titulo, Fuente fuente, QWidget* padre)
    : QWidget(padre), fuente_(std::move(fuente)), texto_(control<QPlainTextEdit>(nombre, this)),
      pausa_(boton("btnPausa", tr("Pausa"), tr("Deja quieto lo que se ve; la traza sigue"))),
      solo_(boton("btnSolo", QString(), tr("Vuelve a mostrar todo"))) {
    texto_->setReadOnly(true);
    texto_->setUndoRedoEnabled(false);
    texto_->setLineWrapMode(QPlainTextEdit::WidgetWidth); // no end of a line out of sight
    texto_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    texto_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    texto_->setAccessibleName(titulo);
    pausa_->setCheckable(true);
    auto* copiarTodo = boton("btnCopiar", tr("Copiar"), tr("Copia lo elegido, o todo"));
    auto* guardarTodo = boton("btnGuardar", tr("Guardar…"), tr("Guarda la traza en un archivo"));

    auto* arriba = hacer<QHBoxLayout>();
    arriba->addWidget(hacer<QLabel>(titulo, this));
    arriba->addWidget(solo_);
    arriba->addStretch();
    arriba->addWidget(pausa_);
    arriba->addWidget(copiarTodo);
    arriba->addWidget(guardarTodo);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->setContentsMargins(0, 0, 0, 0);
    todo->setSpacing(2);
    todo->addLayout(arriba);
    todo->addWidget(texto_);

    solo_->hide();
    connect(solo_, &QToolButton::clicked, this, &CajaDeTraza::quitarFiltro);
    connect(pausa_, &QToolButton::toggled, this, [this] { refrescar(); });
    connect(copiarTodo, &QToolButton::clicked, this, &CajaDeTraza::copiar);
    connect(guardarTodo, &QToolButton::clicked, this, &CajaDeTraza::guardarLoQueSeVe);
}

CajaDeTraza::CajaDeTraza(const Traza& traza, const QString& titulo, QWidget* padre)
    : CajaDeTraza(
          std::string(traza.nombre()).c_str(), titulo, [traza] { return traza; }, padre) {}

QToolButton* CajaDeTraza::boton(const char* nombre, const QString& texto, const QString& ayuda) {
    auto* b = control<QToolButton>(nombre, this);
    b->setText(texto);
    b->setToolTip(ayuda);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::TabFocus);
    return b;
}

void CajaDeTraza::soloDe(Indice conexion, Indice bloque, const QString& nombre) {
    conexion_ = conexion;
    bloque_ = bloque;
    nombre_ = nombre;
    solo_->setText(tr("✖ sólo %1").arg(nombre));
    solo_->setVisible(!nombre.isEmpty());
    refrescar();
}

void CajaDeTraza::refrescar() {
    if (!isVisible()) return;
    std::optional<Traza> traza = fuente_();
    if (traza) traza = traza->soloDe(conexion_, bloque_);
    if (traza && traza == traza_) {
        if (!pausa_->isChecked() && alFinal()) seguir();
        return;
    }
    if (!traza && !traza_) return;
    pausa_->setChecked(false); // a pause was meant for the other one
    traza_ = traza;
    visto_ = traza ? traza->hasta() : 0;
    texto_->setPlainText(traza ? enQt(traza->texto()) : QString());
    texto_->moveCursor(QTextCursor::End);
}

bool CajaDeTraza::alFinal() const {
    constexpr int kCasi = 2; // lines
    const QScrollBar* barra = texto_->verticalScrollBar();
    return barra->value() + kCasi >= barra->maximum();
}

/// What came since is continued. Where some of it is gone already, a mark stands for it, and what
/// was on the screen stays.
void CajaDeTraza::seguir() {
    std::string nuevo;
    const bool todo = traza_->seguir(visto_, nuevo);
    if (todo && nuevo.empty()) return;
    QString lineas = enQt(nuevo);
    if (static_cast<std::size_t>(lineas.size()) >= Traza::kMaximo) {
        texto_->setPlainText(lineas);
    } else {
        if (!todo) lineas.prepend("[...]\n");
        agregar(lineas);
    }
    if (texto_->textCursor().hasSelection()) { // it is about to be copied
        texto_->verticalScrollBar()->setValue(texto_->verticalScrollBar()->maximum());
    } else {
        texto_->moveCursor(QTextCursor::End);
    }
}

void CajaDeTraza::agregar(const QString& lineas) {
    constexpr int kMaximo = Traza::kMaximo;
    constexpr int kLargo = 4 * kMaximo; // to cut costs more than to add
    QTextDocument& documento = *texto_->document();
    QTextCursor cursor(&documento);
    cursor.movePosition(QTextCursor::End);
    cursor.insertText(lineas);
    if (documento.characterCount() < kLargo) return;
    const int desde = documento.findBlock(documento.characterCount() - kMaximo).position();
    cursor.setPosition(0);
    cursor.setPosition(desde, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
}

void CajaDeTraza::showEvent(QShowEvent* suceso) {
    QWidget::showEvent(suceso);
    refrescar();
}

void CajaDeTraza::copiar() {
    const QString elegido = texto_->textCursor().selectedText().replace(QChar(0x2029), '\n');
    QGuiApplication::clipboard()->setText(elegido.isEmpty() ? texto_->toPlainText() : elegido);
}

void CajaDeTraza::guardarLoQueSeVe() {
    // As it stands now, whatever is traced meanwhile.
    const QString texto = texto_->toPlainText().replace('\n', "\r\n");
    QString archivo = nombre_.isEmpty() ? QString("traza") : "traza " + nombre_;
    elegirArchivo(this, tr("Guardar traza"), archivo.replace(':', '_') + ".txt",
                  [this, texto](const QString& ruta) { emit guardar(ruta, texto); });
}

} // namespace kv
