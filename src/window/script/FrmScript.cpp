// SPDX-License-Identifier: Apache-2.0
#include "window/script/FrmScript.h"

#include "window/controls/avisar.h"
#include "window/controls/control.h"
#include "window/controls/idioma.h"
#include "window/controls/ventana.h"
#include "window/script/barra_de_busqueda.h"
#include "window/script/caja_de_codigo.h"

#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QLocale>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr int kBorde = 7; // pixels, all around
constexpr int kEntreMiradasMs = 500;

/// Line 0: what is wrong has no place, but is the file.
QString enSuLugar(int linea, int columna, const std::string& que) {
    if (linea == 0) return enQt(que);
    return FrmScript::tr("línea %1, columna %2: %3").arg(linea).arg(columna).arg(enQt(que));
}

QString enPalabras(const FallaDeGuion& falla) {
    return enSuLugar(falla.linea, falla.columna, enIngles() ? falla.enIngles : falla.descripcion);
}

QString enPalabras(const AvisoDeGuion& aviso) {
    return enSuLugar(aviso.linea, aviso.columna, enIngles() ? aviso.enIngles : aviso.texto);
}

QString demasiadoLargo() {
    const auto& frase = EditorDeGuion::kDemasiadoLargo;
    return enQt(enIngles() ? frase.ingles : frase.castellano);
}

/// A question over `padre`, answered later through `finished`.
QMessageBox* pregunta(QWidget* padre, const QString& texto) {
    auto* caja = hacer<QMessageBox>(QMessageBox::Question, padre->windowTitle().remove("[*]"),
                                    texto, QMessageBox::NoButton, padre);
    caja->setAttribute(Qt::WA_DeleteOnClose);
    return caja;
}

} // namespace

FrmScript::FrmScript(EditorDeGuion& editor, QWidget* padre)
    : QWidget(padre, Qt::Window), editor_(editor),
      TextCodigo_(control<CajaDeCodigo>("TextCodigo", this)),
      busqueda_(hacer<BarraDeBusqueda>(*TextCodigo_, this)), aviso_(avisoDeCambio()),
      lugar_(hacer<QLabel>(this)), mensaje_(rotulo("LblMensaje", this)),
      medida_(rotulo("LblCorrida", this)), guardado_(rotulo("LblGuardado", this)),
      BtnOk_(control<QPushButton>("BtnOk", tr("&Guardar"), this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName("FrmScript");
    setWindowTitle(tr("Guion: %1[*]").arg(enQt(editor.nombre())));
    acomodar(*this, {900, 640});
    TextCodigo_->setAccessibleName(tr("Texto del guion"));
    auto* todo = hacer<QVBoxLayout>(this);
    todo->setContentsMargins(kBorde, kBorde, kBorde, kBorde);
    todo->setMenuBar(menus());
    todo->addWidget(aviso_);
    todo->addWidget(TextCodigo_, 1);
    todo->addWidget(busqueda_);
    todo->addWidget(mensaje_); // in a line of its own: it may need all of it
    todo->addLayout(pie());
    connect(TextCodigo_->document(), &QTextDocument::modificationChanged, this,
            [this](bool cambiado) {
                setWindowModified(cambiado);
                if (cambiado) guardado_->clear();
            });
    const auto lugar = [this] {
        lugar_->setText(tr("Línea %1, columna %2")
                            .arg(TextCodigo_->lineaActual())
                            .arg(TextCodigo_->columnaActual()));
    };
    connect(TextCodigo_, &QPlainTextEdit::cursorPositionChanged, this, lugar);
    lugar();
    TextCodigo_->explicarCon([this](const QString& nombre) { return valorDe(nombre); });
    TextCodigo_->completarCon([this](const QString& antes, const QString& despues) {
        const Completado c = editor_.completar(deQt(antes), deQt(despues));
        QStringList lista;
        for (const std::string& o : c.opciones)
            lista += enQt(o);
        return Completador::Opciones{enQt(c.empezado), lista};
    });
    cargar();
    TextCodigo_->setFocus();
    connect(&mirada_, &QTimer::timeout, this, &FrmScript::mirar);
    mirada_.start(kEntreMiradasMs);
    prepararVentana(*this);
}

QMenuBar* FrmScript::menus() {
    auto* barra = hacer<QMenuBar>(this);
    QMenu* menu = barra->addMenu(tr("Gui&on"));
    const auto entrada = [&](const QString& rotulo, const char* teclas, auto accion) {
        menu->addAction(rotulo, QKeySequence(teclas), this, accion);
    };
    entrada(tr("&Guardar"), "Ctrl+S", [this] { BtnOk_->click(); });
    entrada(tr("&Comprobar"), "F7", [this] { comprobar(texto(), {}); });
    entrada(tr("Ir al &error"), "F8", [this] { irAlError(); });
    menu->addSeparator();
    entrada(tr("Ce&rrar"), "Ctrl+W", [this] { close(); });
    menu = barra->addMenu(tr("&Edición"));
    entrada(tr("&Deshacer"), "Ctrl+Z", [this] { TextCodigo_->undo(); });
    entrada(tr("&Rehacer"), "Ctrl+Y", [this] { TextCodigo_->redo(); });
    menu->addSeparator();
    entrada(tr("&Completar"), "Ctrl+Space", [this] { TextCodigo_->completar(); });
    entrada(tr("&Buscar..."), "Ctrl+F", [this] { busqueda_->abrir(false); });
    entrada(tr("Buscar &siguiente"), "F3", [this] { busqueda_->siguiente(); });
    entrada(tr("Buscar &anterior"), "Shift+F3", [this] { busqueda_->anterior(); });
    entrada(tr("Ree&mplazar..."), "Ctrl+H", [this] { busqueda_->abrir(true); });
    entrada(tr("&Ir a la línea..."), "Ctrl+G", [this] { irALinea(); });
    menu = barra->addMenu(tr("&Ver"));
    entrada(tr("Letra más &grande"), "Ctrl++", [this] { TextCodigo_->zoomIn(); });
    entrada(tr("Letra más &chica"), "Ctrl+-", [this] { TextCodigo_->zoomOut(); });
    return barra;
}

QWidget* FrmScript::avisoDeCambio() {
    auto* marco = hacer<QFrame>(this);
    marco->setObjectName("AvisoDeCambio");
    marco->setFrameShape(QFrame::StyledPanel);
    auto* fila = hacer<QHBoxLayout>(marco);
    fila->addWidget(hacer<QLabel>(tr("⚠ Otro programa cambió el archivo."), marco), 1);
    auto* recargar =
        control<QPushButton>("BtnRecargar", tr("&Leer de nuevo (se pierde lo de aquí)"), marco);
    auto* conservar = control<QPushButton>("BtnConservar", tr("Co&nservar lo de aquí"), marco);
    connect(recargar, &QPushButton::clicked, this, &FrmScript::cargar);
    connect(conservar, &QPushButton::clicked, this, [this] {
        editor_.pasarPorAltoElCambio();
        TextCodigo_->document()->setModified(true);
        aviso_->hide();
    });
    fila->addWidget(recargar);
    fila->addWidget(conservar);
    marco->hide();
    return marco;
}

QHBoxLayout* FrmScript::pie() {
    auto* fila = hacer<QHBoxLayout>();
    mensaje_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    mensaje_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    fila->addWidget(lugar_);
    fila->addSpacing(2 * kBorde);
    medida_->setToolTip(tr("Lo que tardó la última corrida del guion, y la memoria que usa"));
    fila->addWidget(medida_);
    fila->addSpacing(2 * kBorde);
    fila->addWidget(guardado_);
    fila->addStretch(1);
    auto* cancelar = control<QPushButton>("BtnCancelar", tr("&Cerrar sin guardar"), this);
    connect(BtnOk_, &QPushButton::clicked, this, [this] { guardarY([] {}); });
    connect(cancelar, &QPushButton::clicked, this, &FrmScript::cerrarSinGuardar);
    fila->addWidget(BtnOk_);
    fila->addWidget(cancelar);
    return fila;
}

void FrmScript::cargar() {
    const int linea = TextCodigo_->lineaActual();
    const auto leido = editor_.leer();
    legible_ = leido.has_value();
    BtnOk_->setEnabled(legible_);
    TextCodigo_->setReadOnly(!legible_);
    TextCodigo_->setPlainText(enQt(leido.value_or(std::string())));
    TextCodigo_->irA(linea);
    TextCodigo_->desmarcar(CajaDeCodigo::Marca::Comprobacion);
    TextCodigo_->desmarcar(CajaDeCodigo::Marca::Corrida);
    TextCodigo_->ponerAvisos({});
    noCompila_.reset();
    aviso_->hide();
    decir({});
    if (!legible_)
        decir(editor_.eraDemasiadoLargo()
                  ? tr("✖ %1; no se lo puede cambiar desde aquí.").arg(demasiadoLargo())
                  : tr("✖ No se puede leer el archivo; no se lo puede cambiar desde aquí."));
    if (editor_.ruta().empty()) decir(tr("La configuración no tiene lugar para un guion."));
    falla_.reset();
    guardado_->clear();
    mirar();
}

std::string FrmScript::texto() const { return deQt(TextCodigo_->texto().replace('\n', "\r\n")); }

void FrmScript::guardarY(std::function<void()> luego) {
    if (!legible_) return;
    if (!editor_.cambioAfuera()) {
        if (guardar()) luego();
        return;
    }
    QMessageBox* caja =
        pregunta(this, tr("Otro programa cambió el archivo desde que se abrió. ¿Guardar encima?"));
    QPushButton* si = caja->addButton(tr("&Guardar encima"), QMessageBox::AcceptRole);
    // Another program's change must not be lost by accident.
    caja->setDefaultButton(caja->addButton(tr("&No guardar"), QMessageBox::RejectRole));
    connect(caja, &QDialog::finished, this, [this, caja, si, luego = std::move(luego)] {
        if (caja->clickedButton() == si && guardar()) luego();
    });
    caja->open();
}

bool FrmScript::guardar() {
    const std::string t = texto();
    const auto que = editor_.guardar(t);
    if (que != EditorDeGuion::Guardado::Hecho) {
        quejarse(que, t);
        return false;
    }
    TextCodigo_->document()->setModified(false);
    guardado_->setText(tr("✔ Guardado"));
    aviso_->hide();
    mirar();
    // A script with a mistake is saved all the same: whether it may run is the engineer's decision.
    comprobar(t, tr("Guardado."));
    return true;
}

void FrmScript::quejarse(EditorDeGuion::Guardado que, const std::string& texto) {
    if (que == EditorDeGuion::Guardado::SinRuta) return;
    if (que == EditorDeGuion::Guardado::NoSePudo) {
        avisar(this, tr("No se pudo escribir el archivo. No se guardó nada."));
        return;
    }
    if (que == EditorDeGuion::Guardado::DemasiadoLargo)
        return avisar(this, tr("%1. No se guardó nada.").arg(demasiadoLargo()));
    const auto ajeno = EditorDeGuion::caracterAjeno(texto);
    if (!ajeno) return;
    TextCodigo_->irA(ajeno->linea, ajeno->columna);
    avisar(this, tr("El archivo no puede guardar el carácter \"%1\" de la línea %2. No se guardó "
                    "nada.")
                     .arg(enQt(ajeno->descripcion))
                     .arg(ajeno->linea));
}

void FrmScript::comprobar(const std::string& texto, const QString& hecho) {
    noCompila_ = EditorDeGuion::comprobar(texto);
    const auto decirTrasHecho = [&](const QString& que) {
        decir("⚠ " + (hecho.isEmpty() ? que : hecho + " " + que));
    };
    if (noCompila_) {
        const QString que = tr("No compila: %1").arg(enPalabras(*noCompila_));
        TextCodigo_->ponerAvisos({});
        TextCodigo_->marcar(CajaDeCodigo::Marca::Comprobacion, noCompila_->linea, que);
        return decirTrasHecho(que);
    }
    TextCodigo_->desmarcar(CajaDeCodigo::Marca::Comprobacion);
    const auto avisos = editor_.avisos(texto);
    marcarAvisos(avisos);
    if (avisos.empty()) return decir(hecho.isEmpty() ? tr("Sin errores.") : hecho);
    decirTrasHecho(
        tr("Avisos: %1. El primero, en la %2").arg(avisos.size()).arg(enPalabras(avisos.front())));
}

void FrmScript::marcarAvisos(const std::vector<AvisoDeGuion>& avisos) {
    std::vector<CajaDeCodigo::Aviso> lugares;
    lugares.reserve(avisos.size());
    for (const AvisoDeGuion& a : avisos)
        lugares.push_back({a.linea, a.columna, enQt(enIngles() ? a.enIngles : a.texto)});
    TextCodigo_->ponerAvisos(lugares);
}

QString FrmScript::valorDe(const QString& nombre) const {
    const auto valor = editor_.valorDe(deQt(nombre));
    return valor ? nombre + " = " + enQt(*valor) : QString();
}

void FrmScript::mostrarMedida() {
    const auto medida = editor_.ultimaCorrida();
    if (!medida) return medida_->clear();
    medida_->setText(tr("Corrida: %1 ms, %2 KiB")
                         .arg(QLocale().toString(static_cast<double>(medida->us) / 1000, 'f', 2))
                         .arg((medida->bytes + 1023) / 1024));
}

void FrmScript::irAlError() {
    // Lines may have moved since; what was wrong in one still begins at its column, more or less.
    for (const auto& [marca, falla] : {std::pair{CajaDeCodigo::Marca::Corrida, &falla_},
                                       {CajaDeCodigo::Marca::Comprobacion, &noCompila_}}) {
        const int linea = TextCodigo_->lineaMarcada(marca);
        if (linea != 0 && *falla) return TextCodigo_->irA(linea, (*falla)->columna);
    }
    const auto avisos = TextCodigo_->avisos();
    if (avisos.empty()) return decir(tr("No hay errores ni avisos marcados."));
    const auto lugar = std::pair(TextCodigo_->lineaActual(), TextCodigo_->columnaActual());
    const auto siguiente = std::find_if(avisos.begin(), avisos.end(), [&](const auto& a) {
        return std::pair(a.linea, a.columna) > lugar;
    });
    const auto& a = siguiente == avisos.end() ? avisos.front() : *siguiente;
    TextCodigo_->irA(a.linea, a.columna);
    decir("⚠ " + a.mensaje);
}

void FrmScript::mirar() {
    mostrarMedida();
    if (editor_.cambioAfuera() && aviso_->isHidden()) aviso_->show();
    const auto falla = editor_.fallaDeLaCorrida();
    if (falla == falla_) return;
    falla_ = falla;
    if (!falla) {
        TextCodigo_->desmarcar(CajaDeCodigo::Marca::Corrida);
        decir({});
        return;
    }
    const QString que = tr("Última corrida: %1").arg(enPalabras(*falla));
    if (falla->linea > 0) TextCodigo_->marcar(CajaDeCodigo::Marca::Corrida, falla->linea, que);
    decir("✖ " + que);
}

void FrmScript::decir(const QString& que) {
    mensaje_->setText(que);
    mensaje_->setToolTip(ayudaSinMarcas(que));
}

void FrmScript::irALinea() {
    auto* caja = hacer<QInputDialog>(this);
    caja->setAttribute(Qt::WA_DeleteOnClose);
    caja->setWindowTitle(tr("Ir a la línea"));
    caja->setLabelText(tr("Línea (1 a %1):").arg(TextCodigo_->blockCount()));
    caja->setInputMode(QInputDialog::IntInput);
    caja->setIntRange(1, TextCodigo_->blockCount());
    caja->setIntValue(TextCodigo_->lineaActual());
    caja->setOkButtonText(tr("OK"));
    caja->setCancelButtonText(tr("Cancelar"));
    connect(caja, &QInputDialog::intValueSelected, this,
            [this](int linea) { TextCodigo_->irA(linea); });
    caja->open();
}

void FrmScript::cerrarSinGuardar() {
    cerrando_ = true;
    close();
}

void FrmScript::closeEvent(QCloseEvent* evento) {
    const bool pierde = TextCodigo_->document()->isModified() && !cerrando_;
    evento->setAccepted(!pierde);
    if (pierde) preguntarAntesDeCerrar([] {});
}

void FrmScript::cerrarY(const std::function<void()>& luego) {
    if (TextCodigo_->document()->isModified()) return preguntarAntesDeCerrar(luego);
    close();
    luego();
}

void FrmScript::preguntarAntesDeCerrar(const std::function<void()>& luego) {
    QMessageBox* caja = pregunta(this, tr("El guion tiene cambios sin guardar."));
    QPushButton* guardarlos = caja->addButton(tr("&Guardar"), QMessageBox::AcceptRole);
    QPushButton* perderlos =
        caja->addButton(tr("&Cerrar sin guardar"), QMessageBox::DestructiveRole);
    caja->setDefaultButton(guardarlos);
    caja->setEscapeButton(caja->addButton(tr("&Seguir editando"), QMessageBox::RejectRole));
    const auto cerrar = [this, luego] {
        cerrarSinGuardar();
        luego();
    };
    connect(caja, &QDialog::finished, this, [this, caja, guardarlos, perderlos, cerrar] {
        if (caja->clickedButton() == perderlos) cerrar();
        if (caja->clickedButton() == guardarlos) guardarY(cerrar);
    });
    caja->open();
}

} // namespace kv
