// SPDX-License-Identifier: Apache-2.0
#include "window/script/caja_de_codigo.h"

#include "window/controls/colores.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"
#include "window/script/margen_de_codigo.h"
#include "window/script/resaltado_de_guion.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QTextBlock>
#include <QToolTip>

#include <algorithm>

namespace kv {
namespace {

constexpr int kSangria = 4;

bool esBlanco(QChar c) { return c == ' ' || c == '\t'; }

/// The blanks that a line begins with, up to `hasta`.
QString sangriaDe(const QString& linea, int hasta) {
    int n = 0;
    while (n < std::min<int>(hasta, static_cast<int>(linea.size())) && esBlanco(linea[n]))
        ++n;
    return linea.left(n);
}

} // namespace

CajaDeCodigo::CajaDeCodigo(QWidget* padre)
    : QPlainTextEdit(padre), resaltado_(hacer<ResaltadoDeGuion>(document(), palette())),
      margen_(hacer<MargenDeCodigo>(*this)) {
    setLineWrapMode(NoWrap);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setTabStopDistance(kSangria * QFontMetricsF(font()).horizontalAdvance(' '));
    connect(this, &QPlainTextEdit::blockCountChanged, this, &CajaDeCodigo::acomodarMargen);
    connect(this, &QPlainTextEdit::updateRequest, this, [this](const QRect& r, int dy) {
        if (dy != 0) {
            margen_->scroll(0, dy);
        } else {
            margen_->update(0, r.y(), margen_->width(), r.height());
        }
    });
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &CajaDeCodigo::resaltarLineas);
    connect(this, &QPlainTextEdit::textChanged, this, &CajaDeCodigo::soltarLoEditado);
    acomodarMargen();
    resaltarLineas();
}

QString CajaDeCodigo::texto() const {
    QString crudo = document()->toRawText();
    crudo.replace(QChar::ParagraphSeparator, '\n').replace(QChar::LineSeparator, '\n');
    return crudo;
}

void CajaDeCodigo::irA(int linea, int columna) {
    const int ultima = document()->blockCount() - 1;
    const QTextBlock bloque = document()->findBlockByNumber(std::clamp(linea - 1, 0, ultima));
    QTextCursor cursor(bloque);
    cursor.setPosition(bloque.position() + std::clamp(columna - 1, 0, bloque.length() - 1));
    setTextCursor(cursor);
    centerCursor();
}

void CajaDeCodigo::marcar(Marca cual, int linea, const QString& mensaje) {
    const int ultima = document()->blockCount() - 1;
    const QTextBlock bloque = document()->findBlockByNumber(std::clamp(linea - 1, 0, ultima));
    senal(cual) = {QTextCursor(bloque), mensaje, bloque.text()};
    resaltarLineas();
}

void CajaDeCodigo::desmarcar(Marca cual) {
    senal(cual) = {};
    resaltarLineas();
}

void CajaDeCodigo::soltarLoEditado() {
    for (const Marca m : {Marca::Corrida, Marca::Comprobacion}) {
        const Senal& s = senal(m);
        if (!s.mensaje.isEmpty() && s.lugar.block().text() != s.linea) desmarcar(m);
    }
}

int CajaDeCodigo::lineaMarcada(Marca cual) const {
    const Senal& s = senal(cual);
    return s.mensaje.isEmpty() ? 0 : s.lugar.blockNumber() + 1;
}

void CajaDeCodigo::ponerAvisos(const std::vector<Aviso>& avisos) {
    avisos_.clear();
    for (const Aviso& a : avisos) {
        const QTextBlock bloque = document()->findBlockByNumber(a.linea - 1);
        if (!bloque.isValid()) continue;
        QTextCursor lugar(bloque);
        lugar.setPosition(bloque.position() + std::clamp(a.columna - 1, 0, bloque.length() - 1));
        const QString linea = bloque.text();
        const qsizetype comilla = linea.mid(lugar.positionInBlock(), 1) == "\""
                                      ? linea.indexOf('"', lugar.positionInBlock() + 1)
                                      : -1;
        if (comilla >= 0)
            lugar.setPosition(bloque.position() + static_cast<int>(comilla) + 1,
                              QTextCursor::KeepAnchor);
        else
            lugar.movePosition(QTextCursor::EndOfWord, QTextCursor::KeepAnchor);
        avisos_.push_back({lugar, a.mensaje, {}});
    }
    resaltarLineas();
}

std::vector<CajaDeCodigo::Aviso> CajaDeCodigo::avisos() const {
    std::vector<Aviso> todos;
    for (const Senal& s : avisos_) {
        const QTextBlock bloque = document()->findBlock(s.lugar.selectionStart());
        todos.push_back({bloque.blockNumber() + 1, s.lugar.selectionStart() - bloque.position() + 1,
                         s.mensaje});
    }
    return todos;
}

QString CajaDeCodigo::mensajeDe(int linea) const {
    QStringList mensajes;
    for (const Marca m : {Marca::Corrida, Marca::Comprobacion}) {
        if (lineaMarcada(m) == linea) mensajes += senal(m).mensaje;
    }
    for (const Aviso& a : avisos()) {
        if (a.linea == linea) mensajes += a.mensaje;
    }
    return mensajes.join('\n');
}

QString CajaDeCodigo::ayudaEn(const QPoint& lugar) const {
    QTextCursor cursor = cursorForPosition(lugar);
    // Beside the text, the nearest place in it is not what the mouse points at.
    if (!cursorRect(cursor)
             .adjusted(-fontMetrics().averageCharWidth(), 0, fontMetrics().averageCharWidth(), 0)
             .contains(lugar))
        return {};
    QStringList partes;
    for (const Senal& s : avisos_) {
        if (s.lugar.selectionStart() <= cursor.position() &&
            cursor.position() <= s.lugar.selectionEnd())
            partes += s.mensaje;
    }
    cursor.select(QTextCursor::WordUnderCursor);
    if (explicar_ && cursor.hasSelection()) {
        const QString explicacion = explicar_(cursor.selectedText());
        if (!explicacion.isEmpty()) partes.prepend(explicacion);
    }
    return partes.join('\n');
}

bool CajaDeCodigo::viewportEvent(QEvent* evento) {
    if (evento->type() != QEvent::ToolTip) return QPlainTextEdit::viewportEvent(evento);
    const auto& ayuda = dynamic_cast<QHelpEvent&>(*evento);
    QToolTip::showText(ayuda.globalPos(), ayudaSinMarcas(ayudaEn(ayuda.pos())), viewport());
    return true;
}

void CajaDeCodigo::completarCon(Completador::Buscar buscar) {
    completador_ = hacer<Completador>(*this, std::move(buscar));
}

void CajaDeCodigo::completar() {
    if (completador_ != nullptr && !isReadOnly()) completador_->pedir();
}

void CajaDeCodigo::resaltarLineas() {
    QList<QTextEdit::ExtraSelection> todas;
    const auto fondo = [&](QTextCursor donde, const QColor& color, float parte) {
        QTextEdit::ExtraSelection s;
        donde.clearSelection();
        s.cursor = donde;
        s.format.setBackground(sobrePapel(palette(), color, parte));
        s.format.setProperty(QTextFormat::FullWidthSelection, true);
        todas += s;
    };
    fondo(textCursor(), palette().color(QPalette::Text), 0.07F);
    if (lineaMarcada(Marca::Comprobacion) != 0)
        fondo(senal(Marca::Comprobacion).lugar, QColor(0xF9A825), 0.25F);
    if (lineaMarcada(Marca::Corrida) != 0)
        fondo(senal(Marca::Corrida).lugar, QColor(0xC62828), 0.25F);
    for (const Senal& aviso : avisos_) {
        QTextEdit::ExtraSelection s;
        s.cursor = aviso.lugar;
        s.format.setUnderlineStyle(QTextCharFormat::WaveUnderline);
        s.format.setUnderlineColor(QColor(0xE65100));
        todas += s;
    }
    setExtraSelections(todas);
    margen_->update();
}

void CajaDeCodigo::acomodarMargen() {
    setViewportMargins(margen_->ancho(), 0, 0, 0);
    const QRect r = contentsRect();
    margen_->setGeometry(r.left(), r.top(), margen_->ancho(), r.height());
}

void CajaDeCodigo::resizeEvent(QResizeEvent* evento) {
    QPlainTextEdit::resizeEvent(evento);
    acomodarMargen();
}

void CajaDeCodigo::changeEvent(QEvent* evento) {
    QPlainTextEdit::changeEvent(evento);
    if (evento->type() == QEvent::PaletteChange) {
        resaltado_->elegirColores(palette());
        resaltarLineas();
    } else if (evento->type() == QEvent::FontChange) {
        setTabStopDistance(kSangria * QFontMetricsF(font()).horizontalAdvance(' '));
        acomodarMargen();
    }
}

void CajaDeCodigo::keyPressEvent(QKeyEvent* tecla) {
    if (completador_ != nullptr && completador_->esSuya(*tecla)) return tecla->ignore();
    const bool sola = (tecla->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    if (isReadOnly() || !sola || !teclaDeCodigo(tecla->key())) QPlainTextEdit::keyPressEvent(tecla);
    if (completador_ != nullptr && !isReadOnly()) completador_->trasTecla(*tecla);
}

bool CajaDeCodigo::teclaDeCodigo(int tecla) {
    const bool varias = textCursor().selectedText().contains(QChar::ParagraphSeparator);
    if (tecla == Qt::Key_Return || tecla == Qt::Key_Enter) {
        nuevaLinea();
    } else if (tecla == Qt::Key_Backtab || (tecla == Qt::Key_Tab && varias)) {
        sangrarSeleccion(tecla == Qt::Key_Backtab);
    } else if (tecla == Qt::Key_Tab) {
        insertPlainText(QString(kSangria - textCursor().positionInBlock() % kSangria, ' '));
    } else {
        return false;
    }
    return true;
}

void CajaDeCodigo::nuevaLinea() {
    QTextCursor c = textCursor();
    c.beginEditBlock();
    c.removeSelectedText();
    const QString sangria = sangriaDe(c.block().text(), c.positionInBlock());
    c.insertBlock();
    c.insertText(sangria);
    c.endEditBlock();
    setTextCursor(c);
    ensureCursorVisible();
}

void CajaDeCodigo::sangrarSeleccion(bool afuera) {
    QTextCursor c = textCursor();
    const QTextBlock primero = document()->findBlock(c.selectionStart());
    // A selection that ends where a line begins does not mean that line.
    const int fin = std::max(c.selectionStart(), c.selectionEnd() - 1);
    const QTextBlock ultimo = document()->findBlock(fin);
    c.beginEditBlock();
    for (QTextBlock b = primero; b.isValid() && b.blockNumber() <= ultimo.blockNumber();
         b = b.next()) {
        QTextCursor linea(b);
        if (!afuera) {
            if (!b.text().isEmpty()) linea.insertText(QString(kSangria, ' '));
            continue;
        }
        const QString sangria = sangriaDe(b.text(), kSangria);
        const auto sobra = sangria.startsWith('\t') ? 1 : sangria.size();
        linea.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, static_cast<int>(sobra));
        linea.removeSelectedText();
    }
    c.endEditBlock();
}

} // namespace kv
