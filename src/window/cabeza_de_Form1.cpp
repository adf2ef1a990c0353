// SPDX-License-Identifier: Apache-2.0
#include "window/cabeza_de_Form1.h"

#include "window/controls/control.h"
#include "window/controls/idioma.h"
#include "window/controls/ventana.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QShortcut>

namespace kv {
namespace {

constexpr int kAnchoDelProyecto = 200; // pixels: names of files have no end either
constexpr int kAnchoDeLaFalla = 340;   // neither has what a script failed with
constexpr int kLineasDelGuion = 3;
constexpr std::size_t kMaximoDeRotulo = 1000; // bytes: a script's text has no end of its own

} // namespace

CabezaDeForm1::CabezaDeForm1(const Vista& vista, const EditorDeGuion& editor, QWidget* padre)
    : QWidget(padre), vista_(vista), editor_(editor), Label1_(rotulo("Label1", this)),
      Label10_(rotulo("Label10", this)), lblProyecto_(rotulo("lblProyecto", this)),
      lblCantidadDePuntos_(rotulo("lblCantidadDePuntos", this)),
      lblEstadoScript_(rotulo("lblEstadoScript", this)) {
    auto* fila = hacer<QHBoxLayout>(this);
    fila->setContentsMargins(0, 0, 0, 0);
    fila->setSpacing(10);
    armarRotulos(*fila);
    auto* configuracion = control<QPushButton>("BtnConfig", tr("P&uertos…"));
    connect(configuracion, &QPushButton::clicked, this, &CabezaDeForm1::puertos);
    fila->addWidget(configuracion);
    auto* boton = control<QPushButton>("btnTamañoFormulario", tr("&Tamaño"));
    boton->setToolTip(tr("Ventana chica o entera (F11)"));
    connect(boton, &QPushButton::clicked, this, &CabezaDeForm1::tamanio);
    // A shortcut of the button's own would take the place of its letter.
    auto* tecla = hacer<QShortcut>(QKeySequence(Qt::Key_F11), this);
    connect(tecla, &QShortcut::activated, this, &CabezaDeForm1::tamanio);
    fila->addWidget(boton);
}

void CabezaDeForm1::armarRotulos(QHBoxLayout& fila) {
    Label1_->setToolTip(tr("En marcha desde"));
    lblCantidadDePuntos_->setToolTip(tr("Puntos publicados"));
    lblEstadoScript_->setToolTip(tr("Última corrida del guion"));
    lblEstadoScript_->setContentsMargins(6, 2, 6, 2);
    Label10_->setToolTip(tr("Texto del guion"));
    // However long it is, it takes the room that is left and not that of the lists.
    Label10_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QSizePolicy conSuLugar = Label10_->sizePolicy();
    conSuLugar.setRetainSizeWhenHidden(true); // what is beside it stays where it is
    Label10_->setSizePolicy(conSuLugar);
    Label10_->setMaximumHeight(kLineasDelGuion * fontMetrics().lineSpacing());
    QFont negrita = lblProyecto_->font();
    negrita.setBold(true);
    lblProyecto_->setFont(negrita);
    fila.addWidget(lblProyecto_);
    fila.addWidget(hacer<QLabel>(tr("Desde:")));
    fila.addWidget(Label1_);
    fila.addWidget(hacer<QLabel>(tr("Puntos:")));
    fila.addWidget(lblCantidadDePuntos_);
    fila.addWidget(lblEstadoScript_);
    fila.addWidget(Label10_, 1);
}

void CabezaDeForm1::compactar(bool compacta) {
    compacta_ = compacta;
    refrescar();
}

/// As a script wants its label. One that sets only the background means it to be read, whatever the
/// theme's letters are.
void CabezaDeForm1::vestirLabel10(const AspectoDeEtiqueta& aspecto) {
    if (aspecto == aspectoDeLabel10_) return;
    aspectoDeLabel10_ = aspecto;
    const auto suyo = AspectoDeEtiqueta::esPropio;
    const auto color = [](std::int32_t c) {
        return QColor(c & 0xFF, c >> 8 & 0xFF, c >> 16 & 0xFF);
    };
    QPalette paleta = palette();
    if (suyo(aspecto.fondo)) {
        const QColor fondo = color(aspecto.fondo);
        paleta.setColor(QPalette::Window, fondo);
        paleta.setColor(QPalette::WindowText, qGray(fondo.rgb()) > 127 ? Qt::black : Qt::white);
    }
    if (suyo(aspecto.tinta)) paleta.setColor(QPalette::WindowText, color(aspecto.tinta));
    Label10_->setPalette(paleta);
    Label10_->setAutoFillBackground(suyo(aspecto.fondo));
    Label10_->setVisible(aspecto.visible);
}

void CabezaDeForm1::refrescar() {
    vestirLabel10(vista_.Label10.aspecto());
    Label1_->setText(enQt(vista_.Label1.texto()));
    Label10_->setText(enQt(std::string_view(vista_.Label10.texto()).substr(0, kMaximoDeRotulo)));
    const QString proyecto = enQt(vista_.lblProyecto.texto());
    lblProyecto_->setText(
        lblProyecto_->fontMetrics().elidedText(proyecto, Qt::ElideMiddle, kAnchoDelProyecto));
    lblProyecto_->setToolTip(ayudaSinMarcas(tr("Proyecto") + ": " + proyecto));
    // Every point has a row; the label of the view is from the start, and reads add points.
    lblCantidadDePuntos_->setText(QString::number(vista_.lstViewVariables.filasEnUso()));
    refrescarGuion();
}

/// How the last run ended, and why.
void CabezaDeForm1::refrescarGuion() {
    const Color color = vista_.lblEstadoScript.color();
    if (color == Color::Ninguno) return lblEstadoScript_->setText(tr("○ Guion sin correr"));
    const bool bien = color == Color::Verde;
    const auto falla = bien ? std::nullopt : editor_.ultimaFalla();
    QString texto = bien ? tr("● Guion OK") : tr("✖ Guion con error");
    QString ayuda = tr("Última corrida del guion");
    if (falla) {
        const QString falta =
            enQt(enIngles() && !falla->enIngles.empty() ? falla->enIngles : falla->descripcion);
        const QString que =
            falla->linea > 0 ? tr("línea %1: %2").arg(falla->linea).arg(falta) : falta;
        ayuda += "\n" + que;
        if (!compacta_) texto += ": " + que;
    }
    lblEstadoScript_->setText(
        lblEstadoScript_->fontMetrics().elidedText(texto, Qt::ElideRight, kAnchoDeLaFalla));
    lblEstadoScript_->setToolTip(ayudaSinMarcas(ayuda));
    const QColor fondo = bien ? Qt::green : Qt::red;
    if (lblEstadoScript_->palette().color(QPalette::Window) == fondo) return;
    QPalette paleta = palette();
    paleta.setColor(QPalette::Window, fondo);
    paleta.setColor(QPalette::WindowText, Qt::black); // readable on both
    lblEstadoScript_->setPalette(paleta);
    lblEstadoScript_->setAutoFillBackground(true);
}

} // namespace kv
