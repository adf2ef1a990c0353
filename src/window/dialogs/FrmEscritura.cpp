// SPDX-License-Identifier: Apache-2.0
#include "window/dialogs/FrmEscritura.h"

#include "window/controls/avisar.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QValidator>

#include <algorithm>

namespace kv {
namespace {

constexpr int kMargen = 14;
constexpr int kEntreMiradasMs = 300;

/// Lets no character in that the key filter refuses, whether it is typed, pasted or dropped. What
/// the driver itself put there (the sign of a value) may stay.
class SoloDigitos final : public QValidator {
  public:
    explicit SoloDigitos(QLineEdit* caja) : QValidator(caja) {
        connect(caja, &QLineEdit::textChanged, this, [this](const QString& t) { habia_ = t; });
    }
    State validate(QString& texto, int& /*posicion*/) const override {
        const bool pasan = std::all_of(texto.cbegin(), texto.cend(), [&](QChar c) {
            return EscrituraManual::admite(c.unicode()) || texto.count(c) <= habia_.count(c);
        });
        return pasan ? Acceptable : Invalid;
    }

  private:
    QString habia_;
};

} // namespace

FrmEscritura::FrmEscritura(OrdenDeEscribir& orden, QWidget* padre)
    : QDialog(padre), orden_(orden), LblAhora_(rotulo("LblAhora", this)),
      LblExceso_(rotulo("LblExceso", this)), LblBinario_(rotulo("LblBinario", this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setObjectName("FrmEscritura");
    setWindowTitle(tr("Escritura manual"));
    auto* todo = hacer<QVBoxLayout>(this);
    todo->setContentsMargins(kMargen, kMargen, kMargen, kMargen);
    todo->setSpacing(kMargen);
    auto* campos = hacer<QFormLayout>();
    txtPuerto_ = caja("txtPuerto", tr("P&uerto"), *campos);
    TxtPlc_ = caja("TxtPlc", tr("&PLC"), *campos);
    TxtDireccion_ = caja("TxtDireccion", tr("&Dirección"), *campos);
    campos->addRow(tr("Ahora"), LblAhora_);
    TxtValor_ = caja("TxtValor", tr("&Valor"), *campos);
    campos->addRow(QString(), LblExceso_);
    todo->addLayout(campos);
    LblBinario_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    LblBinario_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    todo->addWidget(LblBinario_);
    todo->addLayout(bits());
    todo->addStretch();
    todo->addLayout(botones());
    for (QLineEdit* parte : {txtPuerto_, TxtPlc_, TxtDireccion_})
        connect(parte, &QLineEdit::textChanged, this, &FrmEscritura::leerDireccion);
    connect(TxtValor_, &QLineEdit::textChanged, this, &FrmEscritura::actualizarChecks);
    actualizarChecks();
    TxtValor_->setFocus();
    connect(&mirada_, &QTimer::timeout, this, &FrmEscritura::mirar);
    mirada_.start(kEntreMiradasMs);
    prepararVentana(*this);
}

QLineEdit* FrmEscritura::caja(const char* nombre, const QString& rotulo, QFormLayout& donde) {
    auto* nueva = control<QLineEdit>(nombre, this);
    nueva->setValidator(hacer<SoloDigitos>(nueva));
    nueva->setMaxLength(kDireccionMaxima);
    QString sinMarca = rotulo;
    nueva->setAccessibleName(sinMarca.remove('&'));
    donde.addRow(rotulo, nueva);
    return nueva;
}

QLayout* FrmEscritura::bits() {
    constexpr int kPorGrupo = 4;
    constexpr int kEntreGrupos = 20;
    auto* rejilla = hacer<QGridLayout>();
    rejilla->setHorizontalSpacing(8);
    int columna = 0;
    // From the left, as the tab key goes: bit 15 first, bit 0 last.
    for (int b = static_cast<int>(CheckBin_.size()) - 1; b >= 0; --b) {
        auto* bit = hacer<QCheckBox>(this);
        bit->setObjectName(QString("CheckBin(%1)").arg(b));
        bit->setAccessibleName(tr("Bit %1").arg(b));
        bit->setToolTip(tr("Bit %1, vale %2").arg(b).arg(1 << b));
        auto* numero = control<QLabel>("NumeroDeBit", QString::number(b), this);
        numero->setAlignment(Qt::AlignHCenter);
        rejilla->addWidget(numero, 0, columna);
        rejilla->addWidget(bit, 1, columna++, Qt::AlignHCenter);
        if (b % kPorGrupo == 0 && b > 0) rejilla->setColumnMinimumWidth(columna++, kEntreGrupos);
        connect(bit, &QCheckBox::clicked, this, [this, b](bool marcado) {
            escritura_.marcar(b, marcado);
            TxtValor_->setText(enQt(escritura_.TxtValor()));
        });
        CheckBin_.at(static_cast<std::size_t>(b)) = bit;
    }
    rejilla->setColumnStretch(columna, 1);
    return rejilla;
}

QLayout* FrmEscritura::botones() {
    auto* fila = hacer<QHBoxLayout>();
    const auto boton = [&](const char* nombre, const QString& rotulo) {
        auto* nuevo = control<QPushButton>(nombre, rotulo, this);
        nuevo->setAutoDefault(false);
        fila->addWidget(nuevo);
        return nuevo;
    };
    fila->addStretch();
    BtnOk_ = boton("BtnOk", tr("&OK"));
    BtnOk_->setDefault(true);
    connect(BtnOk_, &QPushButton::clicked, this, &FrmEscritura::BtnOk);
    connect(boton("BtnCancelar", tr("&Cancelar")), &QPushButton::clicked, this, &QWidget::close);
    connect(boton("BtnSalir", tr("&Salir")), &QPushButton::clicked, this, &QWidget::close);
    return fila;
}

void FrmEscritura::mostrarPara(const QString& puerto, const QString& plc, const QString& direccion,
                               double valor) {
    txtPuerto_->setText(puerto);
    TxtPlc_->setText(plc);
    TxtDireccion_->setText(direccion);
    const int bit = escritura_.bit();
    // The bit is that of the row: without its number the address would be that of a whole word.
    for (QLineEdit* parte : {txtPuerto_, TxtPlc_, TxtDireccion_})
        parte->setReadOnly(bit >= 0);
    for (QLabel* numero : findChildren<QLabel*>("NumeroDeBit"))
        numero->setVisible(bit < 0 || numero->text() == QString::number(bit));
    for (std::size_t b = 0; b < CheckBin_.size(); ++b)
        CheckBin_.at(b)->setVisible(bit < 0 || static_cast<int>(b) == bit);
    recibirValorMW(valor);
    adjustSize();
    setWindowTitle(tr("Escritura manual: %1").arg(enQt(escritura_.direccion())));
    TxtValor_->setFocus();
    TxtValor_->selectAll();
    alFrente(*this);
}

void FrmEscritura::leerDireccion() {
    escritura_.txtPuerto = deQt(txtPuerto_->text());
    escritura_.TxtPlc = deQt(TxtPlc_->text());
    escritura_.TxtDireccion = deQt(TxtDireccion_->text());
    mirar();
}

void FrmEscritura::mirar() {
    const std::string ahora = orden_.loQueSeLee(escritura_.direccion());
    LblAhora_->setText(ahora.empty() ? tr("no se lee") : enQt(ahora));
}

void FrmEscritura::recibirValorMW(double valor) {
    escritura_.recibirValorMW(valor);
    TxtValor_->setText(enQt(escritura_.TxtValor()));
    actualizarChecks();
}

void FrmEscritura::actualizarChecks() {
    escritura_.ponerValor(deQt(TxtValor_->text()));
    const QString valor = enQt(escritura_.TxtValor());
    if (valor != TxtValor_->text()) {
        TxtValor_->setText(valor); // comes back here
        TxtValor_->selectAll();    // so that what is typed next stands alone
        return;
    }
    for (std::size_t b = 0; b < CheckBin_.size(); ++b)
        CheckBin_.at(b)->setChecked(escritura_.CheckBin(static_cast<int>(b)));
    LblBinario_->setText(enQt(escritura_.LblBinario()).replace("Binario", tr("Binario")));
    BtnOk_->setEnabled(escritura_.cabe());
    LblExceso_->setText(escritura_.cabe()       ? QString()
                        : escritura_.bit() >= 0 ? tr("Un bit es 0 o 1")
                                                : tr("No entra: el máximo es 65535"));
}

void FrmEscritura::BtnOk() {
    if (!confirmar_) return escribir();
    // The dialog may have been closed when the answer comes.
    confirmar_(tr("Escribir %1 en %2").arg(TxtValor_->text(), enQt(escritura_.direccion())),
               [este = QPointer<FrmEscritura>(this)] {
                   if (este != nullptr) este->escribir();
               });
}

void FrmEscritura::escribir() {
    const auto mal = escritura_.BtnOk(orden_);
    if (!mal) {
        close();
        return;
    }
    for (QLineEdit* c : {txtPuerto_, TxtPlc_, TxtDireccion_, TxtValor_}) {
        if (!c->text().trimmed().isEmpty()) continue;
        c->setFocus();
        break;
    }
    const std::array errores{tr("Error de numero de Puerto"), tr("Error de numero de PLC"),
                             tr("Error de numero de Direccion"), tr("Error de valor numerico")};
    avisar(this, errores.at(static_cast<std::size_t>(*mal)));
}

} // namespace kv
