// SPDX-License-Identifier: Apache-2.0
#include "window/trends/lienzo.h"

#include "text/numeros.h"
#include "window/controls/colores.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr int kMargen = 8;
constexpr int kEntreCarriles = 6;
constexpr int kLetrasDeEscala = 9; // "65535.25"
constexpr std::int64_t kSegundosPorDia = 86'400;

/// Times at which a line helps: the first of these that leaves room between two.
constexpr std::array<std::int64_t, 11> kPasos = {5,   10,  30,   60,   120, 300,
                                                 600, 900, 1800, 3600, 7200}; // seconds

/// The lowest and the highest good value in sight, with some air; a constant lies in the middle.
std::pair<double, double> escala(const Serie& s, std::int64_t desdeMs, std::int64_t hastaMs) {
    double piso = 0;
    double techo = 0;
    bool hay = false;
    const auto tomar = [&](const Muestra& m) {
        if (!m.ok) return;
        piso = hay ? std::min(piso, m.valor) : m.valor;
        techo = hay ? std::max(techo, m.valor) : m.valor;
        hay = true;
    };
    if (const auto antes = s.en(desdeMs)) tomar(*antes);
    for (const Muestra& m : s.muestras) {
        if (m.ms >= desdeMs && m.ms <= hastaMs) tomar(m);
    }
    if (piso == techo) return {piso - 1, techo + 1};
    return {piso, techo};
}

} // namespace

LienzoDeTendencias::LienzoDeTendencias(const RegistroDeTendencias& registro, QWidget* padre)
    : QWidget(padre), registro_(registro) {
    setMinimumSize(320, 160);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
}

QColor LienzoDeTendencias::color(std::size_t serie, const QPalette& paleta) {
    // Apart in brightness too, and red is not among them: that is the colour of BAD.
    static constexpr std::array<QRgb, RegistroDeTendencias::kSeries> kSobreClaro = {
        0x1F4E79, 0x2E7D32, 0x7B1FA2, 0x00695C, 0x8D4B00, 0x37474F, 0x01579B, 0x33691E};
    static constexpr std::array<QRgb, RegistroDeTendencias::kSeries> kSobreOscuro = {
        0x90CAF9, 0xA5D6A7, 0xCE93D8, 0x80CBC4, 0xFFCC80, 0xCFD8DC, 0x4FC3F7, 0xDCE775};
    return QColor::fromRgb((esOscura(paleta) ? kSobreOscuro : kSobreClaro).at(serie));
}

void LienzoDeTendencias::ver(std::int64_t hastaMs, std::int64_t largoMs, const FechaHora& hora) {
    hastaMs_ = hastaMs;
    largoMs_ = std::max<std::int64_t>(largoMs, 1);
    segundosDelDia_ = hora.hora * 3600LL + hora.minuto * 60LL + hora.segundo;
    update();
}

QRect LienzoDeTendencias::carril(std::size_t serie) const {
    const int izquierda = kMargen + kLetrasDeEscala * fontMetrics().averageCharWidth();
    const int abajo = fontMetrics().height() + kMargen;
    const int cuantos = std::max<int>(1, static_cast<int>(registro_.series().size()));
    const int alto = (height() - kMargen - abajo) / cuantos;
    return {izquierda, kMargen + static_cast<int>(serie) * alto, width() - izquierda - kMargen,
            alto - kEntreCarriles};
}

int LienzoDeTendencias::xDe(std::int64_t ms, const QRect& donde) const {
    const double parte =
        static_cast<double>(ms - (hastaMs_ - largoMs_)) / static_cast<double>(largoMs_);
    return donde.left() + static_cast<int>(std::clamp(parte, 0.0, 1.0) * (donde.width() - 1));
}

QString LienzoDeTendencias::horaDe(std::int64_t ms) const {
    const std::int64_t antes = (hastaMs_ - ms) / 1000;
    const std::int64_t s =
        ((segundosDelDia_ - antes) % kSegundosPorDia + kSegundosPorDia) % kSegundosPorDia;
    return QString("%1:%2:%3")
        .arg(s / 3600, 2, 10, QChar('0'))
        .arg(s / 60 % 60, 2, 10, QChar('0'))
        .arg(s % 60, 2, 10, QChar('0'));
}

void LienzoDeTendencias::pintarHoras(QPainter& p) const {
    const QRect donde = carril(0);
    const int ancho = fontMetrics().horizontalAdvance("00:00:00") + 2 * kMargen;
    std::int64_t paso = kPasos.back();
    for (auto i = kPasos.rbegin(); i != kPasos.rend(); ++i) {
        if (*i * 1000 * donde.width() / largoMs_ >= ancho) paso = *i;
    }
    const std::int64_t ultima = hastaMs_ - segundosDelDia_ % paso * 1000;
    const QColor tinta = palette().color(QPalette::Text);
    for (std::int64_t ms = ultima; ms >= hastaMs_ - largoMs_; ms -= paso * 1000) {
        const int x = xDe(ms, donde);
        p.setPen(sobrePapel(palette(), tinta, 0.18F));
        p.drawLine(x, kMargen, x, height() - fontMetrics().height() - kMargen);
        p.setPen(sobrePapel(palette(), tinta, 0.75F));
        const int izquierda = std::min(x - ancho / 2, width() - ancho);
        p.drawText(
            QRect(izquierda, height() - fontMetrics().height() - 4, ancho, fontMetrics().height()),
            Qt::AlignCenter, horaDe(ms));
    }
}

/// What falls on one column of pixels is one stroke from its lowest to its highest: the drawing
/// costs what its width does, however much there is to be drawn.
void LienzoDeTendencias::pintarLinea(QPainter& p, const Serie& s, const QRect& donde, double piso,
                                     double techo) const {
    const auto yDe = [&](double valor) {
        const double parte = std::clamp((valor - piso) / (techo - piso), 0.0, 1.0);
        return donde.bottom() - 3 - static_cast<int>(parte * (donde.height() - 7));
    };
    const std::int64_t desde = hastaMs_ - largoMs_;
    auto i = std::upper_bound(s.muestras.begin(), s.muestras.end(), desde,
                              [](std::int64_t ms, const Muestra& m) { return ms < m.ms; });
    if (i != s.muestras.begin()) --i;
    const QPen entera(color(static_cast<std::size_t>(&s - registro_.series().data()), palette()),
                      2);
    QPen rota = entera;
    rota.setStyle(Qt::DotLine);
    int xAntes = -1;
    int yAntes = 0;
    int arriba = 0;
    int abajo = 0;
    for (; i != s.muestras.end() && i->ms <= hastaMs_; ++i) {
        const auto sigue = i + 1;
        const int x = xDe(std::max(i->ms, desde), donde);
        const int hasta = sigue == s.muestras.end() ? xDe(hastaMs_, donde)
                                                    : xDe(std::min(sigue->ms, hastaMs_), donde);
        const int y = yDe(i->valor);
        p.setPen(entera);
        if (x != xAntes) arriba = abajo = xAntes < 0 ? y : yAntes;
        if (y < arriba) p.drawLine(x, arriba, x, y);
        if (y > abajo) p.drawLine(x, abajo, x, y);
        arriba = std::min(arriba, y);
        abajo = std::max(abajo, y);
        if (!i->ok)
            p.fillRect(QRect(x, donde.top(), std::max(hasta - x, 1), donde.height()),
                       QBrush(colorDeBad(palette()), Qt::BDiagPattern));
        p.setPen(i->ok ? entera : rota);
        if (hasta > x) p.drawLine(x, y, hasta, y);
        xAntes = x;
        yAntes = y;
    }
}

void LienzoDeTendencias::pintarCarril(QPainter& p, std::size_t serie) const {
    const Serie& s = registro_.series()[serie];
    const QRect donde = carril(serie);
    const auto [piso, techo] = escala(s, hastaMs_ - largoMs_, hastaMs_);
    const QColor tinta = palette().color(QPalette::Text);
    p.setPen(sobrePapel(palette(), tinta, 0.35F));
    p.setBrush(Qt::NoBrush);
    p.drawRect(donde.adjusted(0, 0, -1, -1));
    p.save();
    p.setClipRect(donde);
    pintarLinea(p, s, donde, piso, techo);
    p.restore();
    p.setPen(tinta);
    const int alto = fontMetrics().height();
    const QRect escalas(0, donde.top(), donde.left() - 4, donde.height());
    p.drawText(escalas, Qt::AlignRight | Qt::AlignTop, enQt(textoDeNumero(techo)));
    if (donde.height() > 2 * alto)
        p.drawText(escalas, Qt::AlignRight | Qt::AlignBottom, enQt(textoDeNumero(piso)));
    const auto ahora = s.en(hastaMs_);
    const QString que = enQt(s.direccion) +
                        (ahora ? " = " + enQt(textoDeNumero(ahora->valor)) : "") +
                        (ahora && !ahora->ok ? "  BAD" : "");
    QFont negrita = font();
    negrita.setBold(true);
    p.setFont(negrita);
    p.setPen(color(serie, palette()));
    const QRect rotulo = QFontMetrics(negrita).boundingRect(que).adjusted(-3, 0, 5, 0);
    const QRect lugar(donde.left() + 4, donde.top() + 2, rotulo.width(), alto);
    p.fillRect(lugar, palette().color(QPalette::Base));
    p.drawText(lugar, Qt::AlignCenter, que);
    p.setFont(font());
}

void LienzoDeTendencias::paintEvent(QPaintEvent* /*suceso*/) {
    QPainter p(this);
    if (registro_.series().empty()) {
        p.drawText(rect().adjusted(kMargen, 0, -kMargen, 0), Qt::AlignCenter | Qt::TextWordWrap,
                   tr("Elija filas en la lista de variables y, en su menú (botón derecho), "
                      "\"Agregar a tendencias\"."));
        return;
    }
    pintarHoras(p);
    for (std::size_t i = 0; i < registro_.series().size(); ++i)
        pintarCarril(p, i);
}

QString LienzoDeTendencias::valoresEn(const QPoint& lugar) const {
    const QRect donde = carril(0);
    if (registro_.series().empty() || lugar.x() < donde.left() || lugar.x() > donde.right())
        return {};
    const std::int64_t ms = hastaMs_ - largoMs_ +
                            largoMs_ * (lugar.x() - donde.left()) / std::max(1, donde.width() - 1);
    QStringList lineas{horaDe(ms)};
    for (const Serie& s : registro_.series()) {
        const auto m = s.en(ms);
        lineas << enQt(s.direccion) + ": " +
                      (m ? enQt(textoDeNumero(m->valor)) + (m->ok ? "" : "  BAD")
                         : tr("sin datos"));
    }
    return lineas.join('\n');
}

bool LienzoDeTendencias::event(QEvent* suceso) {
    if (suceso->type() != QEvent::ToolTip) return QWidget::event(suceso);
    const auto* ayuda = static_cast<QHelpEvent*>(suceso); // NOLINT: its type says so
    QToolTip::showText(ayuda->globalPos(), ayudaSinMarcas(valoresEn(ayuda->pos())), this);
    return true;
}

} // namespace kv
