// SPDX-License-Identifier: Apache-2.0
#include "window/lists/acomodo_de_columnas.h"

#include <QEvent>
#include <QHeaderView>
#include <QTableView>

#include <algorithm>

namespace kv {
namespace {

constexpr double kParteMinima = 0.85;           // figures and hours are read whole
constexpr double kParteMinimaDeLaQueDice = 0.6; // the pointer tells the rest
constexpr int kMargenDeCabeza = 14;

} // namespace

AcomodoDeColumnas::AcomodoDeColumnas(QTableView& tabla, QList<int> anchos, int laQueMasDice)
    : QObject(&tabla), tabla_(tabla), titulos_(tabla.horizontalHeader()->viewport()),
      anchos_(std::move(anchos)), laQueMasDice_(laQueMasDice) {
    for (int c = 0; c < anchos_.size(); ++c)
        anchos_[c] = std::max(anchos_[c], minimo(c));
    tabla.viewport()->installEventFilter(this);
    titulos_->installEventFilter(this);
    acomodar();
}

int AcomodoDeColumnas::minimo(int columna) const {
    const QString titulo =
        tabla_.model()->headerData(columna, Qt::Horizontal, Qt::DisplayRole).toString();
    const QFontMetrics letras = tabla_.horizontalHeader()->fontMetrics();
    const double parte = columna == laQueMasDice_ ? kParteMinimaDeLaQueDice : kParteMinima;
    return std::max(static_cast<int>(anchos_[columna] * parte),
                    letras.horizontalAdvance(titulo) + kMargenDeCabeza);
}

void AcomodoDeColumnas::pedir(int columna, int ancho) {
    if (anchos_[columna] >= ancho) return;
    anchos_[columna] = ancho;
    if (arregladas_ && tabla_.columnWidth(columna) < ancho) tabla_.setColumnWidth(columna, ancho);
    acomodar();
}

void AcomodoDeColumnas::acomodar() {
    if (arregladas_) return;
    const QHeaderView& cabeza = *tabla_.horizontalHeader();
    int queda = tabla_.viewport()->width();
    QList<int> entran;
    for (int v = 0; v < cabeza.count(); ++v) {
        const int c = cabeza.logicalIndex(v);
        // The first is shown whatever room there is.
        if (!entran.isEmpty() && queda < minimo(c)) break;
        queda -= minimo(c);
        entran << c;
    }
    for (int c = 0; c < cabeza.count(); ++c)
        tabla_.setColumnHidden(c, !entran.contains(c));
    std::stable_partition(entran.begin(), entran.end(),
                          [this](int c) { return c == laQueMasDice_; });
    for (const int c : entran) {
        const int mas = std::clamp(queda, 0, anchos_[c] - minimo(c));
        queda -= mas;
        tabla_.setColumnWidth(c, minimo(c) + mas);
    }
}

void AcomodoDeColumnas::ponerArregladas(bool arregladas) {
    arregladas_ = arregladas;
    acomodar();
}

QList<int> AcomodoDeColumnas::disposicion() const {
    const QHeaderView& cabeza = *tabla_.horizontalHeader();
    QList<int> todas;
    for (int v = 0; v < cabeza.count(); ++v)
        todas << cabeza.logicalIndex(v) << cabeza.sectionSize(cabeza.logicalIndex(v));
    return todas;
}

bool AcomodoDeColumnas::eventFilter(QObject* objeto, QEvent* suceso) {
    // The table is not asked: what goes on while it is being destroyed comes here, too.
    const bool enLosTitulos = objeto == titulos_;
    switch (suceso->type()) {
    case QEvent::Resize:
        if (!enLosTitulos) acomodar();
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (enLosTitulos) alApretar_ = disposicion();
        break;
    case QEvent::MouseButtonRelease:
        if (enLosTitulos && disposicion() != alApretar_) arregladas_ = true;
        break;
    default:
        break;
    }
    return QObject::eventFilter(objeto, suceso);
}

} // namespace kv
