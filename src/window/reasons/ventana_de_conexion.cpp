// SPDX-License-Identifier: Apache-2.0
#include "window/reasons/ventana_de_conexion.h"

#include "window/controls/control.h"
#include "window/controls/memoria.h"
#include "window/controls/ventana.h"
#include "window/reasons/barra_de_reparto.h"

#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace kv {
namespace {

QString enMs(std::int64_t us) {
    return QLocale().toString(static_cast<double>(us) / 1000, 'f', us < 100'000 ? 1 : 0) + " ms";
}

/// Last, median and worst; a line while nothing has been answered.
QString tiempos(const Cuentas& c) {
    if (c.respuestas == 0) return "—";
    return VentanaDeConexion::tr("última %1,  mediana %2,  peor %3")
        .arg(enMs(c.ultimoUs), enMs(c.medianoUs), enMs(c.peorUs));
}

QString hace(const Cuentas& c, const PorQue& porQue) {
    return c.ultimaRespuestaMs < 0
               ? VentanaDeConexion::tr("nunca")
               : VentanaDeConexion::tr("hace %1").arg(enQt(porQue.hace(c.ultimaRespuestaMs)));
}

enum ColumnaDeEstacion {
    kEstacion,
    kUltima,
    kTiempos,
    kPedidos,
    kVencidos,
    kReintentos,
    kDescartes,
    kColumnas
};

} // namespace

ModeloDeEstaciones::ModeloDeEstaciones(const Tablas& tablas, const Operador& operador,
                                       QObject* padre)
    : QAbstractTableModel(padre), tablas_(tablas), operador_(operador) {}

void ModeloDeEstaciones::ponerConexion(Indice conexion) {
    beginResetModel();
    conexion_ = conexion;
    filas_ = conexion == kNinguno ? std::vector<Indice>()
                                  : tablas_.conexiones[conexion].estacionesEnUso();
    endResetModel();
}

void ModeloDeEstaciones::seguir() {
    if (filas_ != tablas_.conexiones[conexion_].estacionesEnUso()) ponerConexion(conexion_);
}

int ModeloDeEstaciones::rowCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : static_cast<int>(filas_.size());
}

int ModeloDeEstaciones::columnCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : kColumnas;
}

QVariant ModeloDeEstaciones::data(const QModelIndex& celda, int papel) const {
    if (!celda.isValid() || celda.row() >= rowCount()) return {};
    const Indice estacion = filas_[static_cast<std::size_t>(celda.row())];
    if (papel == Qt::ToolTipRole)
        return ayudaSinMarcas(enQt(operador_.porQue().porQueEstacion(conexion_, estacion)));
    if (papel != Qt::DisplayRole) return {};
    if (celda.column() == kEstacion) return enQt(direccionDeEstacion(tablas_, conexion_, estacion));
    const Cuentas c = operador_.contadores().deEstacion(conexion_, estacion);
    switch (celda.column()) {
    case kUltima:
        return hace(c, operador_.porQue());
    case kTiempos:
        return tiempos(c);
    case kPedidos:
        return QString::number(c.pedidos);
    case kVencidos:
        return QString::number(c.vencidos);
    case kReintentos:
        return QString::number(c.reintentos);
    default:
        return QString::number(c.descartes);
    }
}

QVariant ModeloDeEstaciones::headerData(int columna, Qt::Orientation orientacion, int papel) const {
    if (orientacion != Qt::Horizontal || papel != Qt::DisplayRole) return {};
    const QStringList titulos{tr("Estación"), tr("Última respuesta"), tr("Tiempo de respuesta"),
                              tr("Pedidos"),  tr("Vencidos"),         tr("Reintentos"),
                              tr("Descartes")};
    return titulos.value(columna);
}

VentanaDeConexion::VentanaDeConexion(const Tablas& tablas, const Operador& operador, QWidget* padre)
    : VentanaAlDia("FrmConexion", kDeLejosMs, padre), tablas_(tablas), operador_(operador),
      modelo_(hacer<ModeloDeEstaciones>(tablas, operador, this)),
      titulo_(rotulo("lblConexion", this)), frase_(rotulo("lblFraseDeConexion", this)),
      reparto_(control<BarraDeReparto>("barraDeReparto", this)),
      estaciones_(control<QTableView>("lstEstaciones", this)) {
    setWindowTitle(tr("Detalle de la conexión"));
    QFont grande = font();
    grande.setBold(true);
    grande.setPointSizeF(grande.pointSizeF() * 1.3);
    titulo_->setFont(grande);
    frase_->setWordWrap(true);
    frase_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* cifras = hacer<QFormLayout>();
    ultima_ = cifra("lblUltimaRespuesta", tr("Última respuesta:"), *cifras);
    tiempos_ = cifra("lblTiempos", tr("Tiempo de respuesta:"), *cifras);
    pedidos_ = cifra("lblPedidos", tr("Pedidos y respuestas:"), *cifras);
    vencidos_ = cifra("lblVencidos", tr("Sin respuesta a tiempo:"), *cifras);
    descartes_ = cifra("lblDescartes", tr("Descartado:"), *cifras);
    caidas_ = cifra("lblCaidas", tr("Enlaces perdidos:"), *cifras);
    scans_ = cifra("lblScans", tr("Scans:"), *cifras);
    cifras->addRow(tr("La línea, últimos minutos:"), reparto_);
    estaciones_->setModel(modelo_);
    estaciones_->setAccessibleName(tr("Estaciones de la conexión"));
    estaciones_->setSelectionBehavior(QAbstractItemView::SelectRows);
    estaciones_->setShowGrid(false);
    estaciones_->setWordWrap(false);
    estaciones_->verticalHeader()->hide();
    estaciones_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    estaciones_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    for (int c = 0; c < kColumnas; ++c) {
        const QString larga =
            c == kTiempos
                ? tr("última %1,  mediana %2,  peor %3").arg("1000 ms", "1000 ms", "1000 ms")
            : c == kUltima ? tr("hace %1").arg("100 min 10 s")
                           : "1000000";
        const QString titulo = modelo_->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
        estaciones_->setColumnWidth(c, std::max(fontMetrics().horizontalAdvance(larga),
                                                fontMetrics().horizontalAdvance(titulo)) +
                                           14);
    }
    estaciones_->horizontalHeader()->setStretchLastSection(true);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->addWidget(titulo_);
    todo->addWidget(frase_);
    todo->addLayout(cifras);
    todo->addWidget(estaciones_, 1);
    acomodar(*this, {940, 560});
    volverAlLugar(*this);
    prepararVentana(*this);
}

QLabel* VentanaDeConexion::cifra(const char* nombre, const QString& titulo, QFormLayout& donde) {
    QLabel* valor = rotulo(nombre, this);
    valor->setTextInteractionFlags(Qt::TextSelectableByMouse);
    valor->setWordWrap(true);
    valor->setAccessibleDescription(titulo);
    donde.addRow(titulo, valor);
    return valor;
}

void VentanaDeConexion::mostrarPara(Indice conexion) {
    conexion_ = conexion;
    modelo_->ponerConexion(conexion);
    refrescar();
}

/// A line whose blocks want more answers in a second than it can give cannot keep their fastest
/// scans: then all are asked for in turn, and a turn of all is the best that any can have.
QString VentanaDeConexion::scansQueNoSeCumplen() const {
    const ConexionIP& c = tablas_.conexiones[conexion_];
    const std::int64_t turno = operador_.porQue().turnoDeTodosMs(conexion_);
    if (c.activos == 0) return tr("ningún bloque se lee");
    const double unaMs = static_cast<double>(turno) / c.activos;
    double ocupacion = 0;
    std::size_t apurados = 0;
    for (const Indice i : c.bloques) {
        const BloqueLectura& b = tablas_.bloques[i];
        if (!b.activo || !b.tieneTrama || b.scanMs <= 0) continue;
        ocupacion += unaMs / static_cast<double>(b.scanMs);
        if (b.scanMs < turno) ++apurados;
    }
    const QString parte = QLocale().toString(ocupacion * 100, 'f', 0);
    if (ocupacion <= 1) return tr("se cumplen todos (piden el %1 % de la línea)").arg(parte);
    return tr("⚠ %1 no se pueden cumplir (piden el %2 % de la línea); lo mejor posible es %3 s")
        .arg(apurados)
        .arg(parte, QLocale().toString(static_cast<double>(turno) / 1000, 'f', 1));
}

void VentanaDeConexion::refrescar() {
    if (conexion_ == kNinguno) {
        titulo_->setText(tr("Elija una conexión en su lista"));
        return;
    }
    const ConexionIP& c = tablas_.conexiones[conexion_];
    const CuentasDeConexion cuentas = operador_.contadores().deConexion(conexion_);
    titulo_->setText(enQt(direccionDe(c)));
    frase_->setText(enQt(operador_.porQue().porQueConexion(conexion_)));
    ultima_->setText(hace(cuentas, operador_.porQue()));
    tiempos_->setText(tiempos(cuentas));
    pedidos_->setText(tr("%1 pedidos, %2 respuestas").arg(cuentas.pedidos).arg(cuentas.respuestas));
    vencidos_->setText(tr("%1, con %2 reintentos").arg(cuentas.vencidos).arg(cuentas.reintentos));
    descartes_->setText(
        tr("%1 descartes de lo que no es respuesta (%2 bytes), %3 respuestas que no se esperaban o "
           "con otro valor, %4 dudosas")
            .arg(cuentas.descartes)
            .arg(cuentas.bytesDescartados)
            .arg(cuentas.sobrantes)
            .arg(cuentas.dudosas));
    caidas_->setText(QString::number(cuentas.caidas));
    scans_->setText(scansQueNoSeCumplen());
    reparto_->poner(cuentas.reparto);
    modelo_->seguir();
    estaciones_->viewport()->update(); // only what is in sight is asked for
}

} // namespace kv
