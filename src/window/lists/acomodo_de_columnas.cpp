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

/// How wide a title is that is broken at the blank where that helps most.
int anchoEnDosLineas(const QString& titulo, const QFontMetrics& letras) {
    int ancho = letras.horizontalAdvance(titulo);
    for (auto i = titulo.indexOf(' '); i >= 0; i = titulo.indexOf(' ', i + 1))
        ancho = std::min(ancho, std::max(letras.horizontalAdvance(titulo.left(i)),
                                         letras.horizontalAdvance(titulo.mid(i + 1))));
    return ancho;
}

} // namespace

AcomodoDeColumnas::AcomodoDeColumnas(QTableView& tabla, QList<int> anchos, int laQueMasDice)
    : QObject(&tabla), tabla_(tabla), titulos_(tabla.horizontalHeader()->viewport()),
      anchos_(std::move(anchos)), laQueMasDice_(laQueMasDice) {
    tabla.viewport()->installEventFilter(this);
    titulos_->installEventFilter(this);
    acomodar();
}

int AcomodoDeColumnas::minimo(int columna, Titulos titulos) const {
    const QString titulo =
        tabla_.model()->headerData(columna, Qt::Horizontal, Qt::DisplayRole).toString();
    const QFontMetrics letras = tabla_.horizontalHeader()->fontMetrics();
    const double parte = columna == laQueMasDice_ ? kParteMinimaDeLaQueDice : kParteMinima;
    const int enUna = letras.horizontalAdvance(titulo) + kMargenDeCabeza;
    const int suyo = titulos == Titulos::EnUnaLinea || enUna <= anchos_[columna]
                         ? enUna
                         : anchoEnDosLineas(titulo, letras) + kMargenDeCabeza;
    return std::max(static_cast<int>(anchos_[columna] * parte), suyo);
}

QList<int> AcomodoDeColumnas::lasQueEntran(Titulos titulos) const {
    const QHeaderView& cabeza = *tabla_.horizontalHeader();
    int queda = tabla_.viewport()->width();
    QList<int> entran;
    for (int v = 0; v < cabeza.count(); ++v) {
        const int c = cabeza.logicalIndex(v);
        queda -= minimo(c, titulos);
        // The first is shown whatever room there is.
        if (!entran.isEmpty() && queda < 0) break;
        entran << c;
    }
    return entran;
}

void AcomodoDeColumnas::ponerTitulos(Titulos titulos) {
    QHeaderView& cabeza = *tabla_.horizontalHeader();
    const int alto = titulos == Titulos::EnUnaLinea
                         ? 0
                         : cabeza.sizeHint().height() + cabeza.fontMetrics().lineSpacing();
    if (cabeza.minimumHeight() == alto) return;
    cabeza.setMinimumHeight(alto);
    emit cabeza.geometriesChanged(); // the table gives it the room
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
    const QList<int> enDos = lasQueEntran(Titulos::EnDos);
    QList<int> entran = lasQueEntran(Titulos::EnUnaLinea);
    const Titulos titulos = enDos.size() > entran.size() ? Titulos::EnDos : Titulos::EnUnaLinea;
    if (titulos == Titulos::EnDos) entran = enDos;
    ponerTitulos(titulos);
    int queda = tabla_.viewport()->width();
    for (int c = 0; c < cabeza.count(); ++c)
        tabla_.setColumnHidden(c, !entran.contains(c));
    for (const int c : entran)
        queda -= minimo(c, titulos);
    std::stable_partition(entran.begin(), entran.end(),
                          [this](int c) { return c == laQueMasDice_; });
    for (const int c : entran) {
        const int suyo = minimo(c, titulos);
        const int mas = std::clamp(queda, 0, std::max(0, anchos_[c] - suyo));
        queda -= mas;
        tabla_.setColumnWidth(c, suyo + mas);
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
