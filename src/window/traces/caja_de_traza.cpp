#include "window/traces/caja_de_traza.h"

#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QClipboard>
#include <QFileDialog>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QToolButton>
#include <QTreeView>
#include <QVBoxLayout>

namespace kv {

CajaDeTraza::CajaDeTraza(const char* nombre, const QString& titulo, Fuente fuente, QWidget* padre)
    : QWidget(padre), fuente_(std::move(fuente)), texto_(control<QPlainTextEdit>(nombre, this)),
      pausa_(boton("btnPausa", tr("Pausa"), tr("Deja quieto lo que se ve; la traza sigue"))) {
    texto_->setReadOnly(true);
    texto_->setUndoRedoEnabled(false);
    texto_->setLineWrapMode(QPlainTextEdit::NoWrap);
    texto_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    texto_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    texto_->setAccessibleName(titulo);
    pausa_->setCheckable(true);
    auto* copiarTodo = boton("btnCopiar", tr("Copiar"), tr("Copia lo elegido, o todo"));
    auto* guardarTodo = boton("btnGuardar", tr("Guardar…"), tr("Guarda la traza en un archivo"));

    auto* arriba = hacer<QHBoxLayout>();
    arriba->addWidget(hacer<QLabel>(titulo, this));
    arriba->addStretch();
    arriba->addWidget(pausa_);
    arriba->addWidget(copiarTodo);
    arriba->addWidget(guardarTodo);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->setContentsMargins(0, 0, 0, 0);
    todo->setSpacing(2);
    todo->addLayout(arriba);
    todo->addWidget(texto_);

    connect(pausa_, &QToolButton::toggled, this, [this] { refrescar(); });
    connect(copiarTodo, &QToolButton::clicked, this, &CajaDeTraza::copiar);
    connect(guardarTodo, &QToolButton::clicked, this, &CajaDeTraza::elegirArchivo);
}

CajaDeTraza::CajaDeTraza(const CajaDeTexto& caja, const QString& titulo, QWidget* padre)
    : CajaDeTraza(
          std::string(caja.nombre()).c_str(), titulo, [&caja] { return &caja; }, padre) {}

QToolButton* CajaDeTraza::boton(const char* nombre, const QString& texto, const QString& ayuda) {
    auto* b = control<QToolButton>(nombre, this);
    b->setText(texto);
    b->setToolTip(ayuda);
    b->setAutoRaise(true);
    b->setFocusPolicy(Qt::TabFocus);
    return b;
}

void CajaDeTraza::refrescar() {
    if (!isVisible()) return;
    const CajaDeTexto* caja = fuente_();
    if (caja == caja_ && (pausa_->isChecked() || caja == nullptr || caja->version() == version_))
        return;
    if (caja != caja_) pausa_->setChecked(false); // a pause was meant for the other box
    caja_ = caja;
    version_ = caja != nullptr ? caja->version() : 0;
    mostrar(caja != nullptr ? caja->texto() : std::string());
}

/// Text that only grew is continued; what was emptied meanwhile is written anew.
void CajaDeTraza::mostrar(const std::string& texto) {
    if (!mostrado_.empty() && texto.starts_with(mostrado_)) {
        QTextCursor fin(texto_->document());
        fin.movePosition(QTextCursor::End);
        fin.insertText(enQt(std::string_view(texto).substr(mostrado_.size())));
    } else {
        texto_->setPlainText(enQt(texto));
    }
    mostrado_ = texto;
    texto_->moveCursor(QTextCursor::End);
}

void CajaDeTraza::showEvent(QShowEvent* suceso) {
    QWidget::showEvent(suceso);
    refrescar();
}

void CajaDeTraza::copiar() {
    const QString elegido = texto_->textCursor().selectedText().replace(QChar(0x2029), '\n');
    QGuiApplication::clipboard()->setText(elegido.isEmpty() ? texto_->toPlainText() : elegido);
}

void CajaDeTraza::elegirArchivo() {
    const QString texto = enQt(mostrado_); // as it stands now, whatever is traced meanwhile
    auto* dialogo = control<QFileDialog>("dlgGuardar", this, tr("Guardar traza"));
    dialogo->setAcceptMode(QFileDialog::AcceptSave);
    dialogo->setOption(QFileDialog::DontUseNativeDialog);
    dialogo->setDefaultSuffix("txt");
    dialogo->setAttribute(Qt::WA_DeleteOnClose);
    acomodar(*dialogo, {820, 480});
    if (auto* archivos = dialogo->findChild<QTreeView*>())
        archivos->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(dialogo, &QFileDialog::fileSelected, this,
            [this, texto](const QString& ruta) { emit guardar(ruta, texto); });
    dialogo->open();
}

} // namespace kv
