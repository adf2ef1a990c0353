// SPDX-License-Identifier: Apache-2.0
#include "window/history/modelo_de_sucesos.h"

#include "text/texto.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"
#include "window/lists/estado_de_fila.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

namespace kv {
namespace {

EstadoDeFila senal(Gravedad g) {
    if (g == Gravedad::Alarma) return EstadoDeFila::Mal;
    return g == Gravedad::Aviso ? EstadoDeFila::Descansa : EstadoDeFila::Bien;
}

} // namespace

ModeloDeSucesos::ModeloDeSucesos(LibroDeSucesos& libro, const Tablas& tablas, QObject* padre)
    : QAbstractTableModel(padre), libro_(libro), tablas_(tablas) {
    rehacer();
}

int ModeloDeSucesos::rowCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : static_cast<int>(visibles_.size());
}

int ModeloDeSucesos::columnCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : kColumnas;
}

std::uint64_t ModeloDeSucesos::lineaDe(int fila) const {
    return visibles_[visibles_.size() - 1 - static_cast<std::size_t>(fila)];
}

QString ModeloDeSucesos::texto(const Anotacion& a, int columna) const {
    switch (columna) {
    case kHora:
        return enQt(horaDe(a.primero));
    case kGravedad:
        if (a.gravedad == Gravedad::Nota) return tr("nota");
        return a.gravedad == Gravedad::Aviso ? tr("aviso") : tr("alarma");
    case kDonde:
        return enQt(lugarDe(a, tablas_));
    case kQue:
        return fraseDe(a, tablas_);
    case kVeces:
        return a.veces == 1 ? QString()
                            : tr("%1, la última %2")
                                  .arg(a.veces)
                                  .arg(enQt(horaDe(a.suceso.instante)).section(' ', 0, 0));
    default:
        return a.reconocida ? tr("sí") : QString();
    }
}

QVariant ModeloDeSucesos::data(const QModelIndex& celda, int papel) const {
    if (!celda.isValid() || celda.row() >= rowCount()) return {};
    const std::uint64_t linea = lineaDe(celda.row());
    if (linea < libro_.primera()) return {}; // gone, and the table does not know yet
    const Anotacion& a = libro_[linea];
    switch (papel) {
    case Qt::DisplayRole:
        return texto(a, celda.column());
    case Qt::ToolTipRole:
        return ayudaSinMarcas(texto(a, celda.column()));
    case Qt::DecorationRole:
        return celda.column() == kGravedad ? senalDeEstado(senal(a.gravedad)) : QVariant();
    case Qt::ForegroundRole: {
        const QColor color = colorDeEstado(a.reconocida ? EstadoDeFila::Apagada : senal(a.gravedad),
                                           QGuiApplication::palette());
        return color.isValid() ? color : QVariant();
    }
    default:
        return {};
    }
}

QVariant ModeloDeSucesos::headerData(int columna, Qt::Orientation orientacion, int papel) const {
    if (orientacion != Qt::Horizontal || papel != Qt::DisplayRole) return {};
    switch (columna) {
    case kHora:
        return tr("Hora");
    case kGravedad:
        return tr("Importa");
    case kDonde:
        return tr("Dónde");
    case kQue:
        return tr("Qué pasó");
    case kVeces:
        return tr("Veces");
    default:
        return tr("Reconocido");
    }
}

void ModeloDeSucesos::filtrar(const Filtro& filtro) {
    filtro_ = filtro;
    palabras_.clear();
    const std::string todo = deQt(filtro.palabras);
    for (const std::string_view palabra : partir(todo, ' ')) {
        if (!palabra.empty()) palabras_.emplace_back(palabra);
    }
    rehacer();
}

bool ModeloDeSucesos::pasa(const Anotacion& a) const {
    if (filtro_.graves && a.gravedad == Gravedad::Nota) return false;
    if (filtro_.sinReconocer && (a.reconocida || a.gravedad == Gravedad::Nota)) return false;
    if (palabras_.empty()) return true;
    std::string todo;
    for (const int c : {kHora, kGravedad, kDonde, kQue})
        todo += deQt(texto(a, c)) + '\n';
    return std::all_of(palabras_.begin(), palabras_.end(), [&](const std::string& palabra) {
        return buscarSinCaja(todo, palabra) != std::string::npos;
    });
}

void ModeloDeSucesos::rehacer() {
    beginResetModel();
    visibles_.clear();
    for (vistas_ = libro_.primera(); vistas_ < libro_.siguiente(); ++vistas_) {
        if (pasa(libro_[vistas_])) visibles_.push_back(vistas_);
    }
    version_ = libro_.version();
    endResetModel();
}

void ModeloDeSucesos::actualizar() {
    if (version_ == libro_.version()) return;
    version_ = libro_.version();
    const auto idas = std::lower_bound(visibles_.begin(), visibles_.end(), libro_.primera());
    if (idas != visibles_.begin()) {
        const auto cuantas = static_cast<int>(idas - visibles_.begin());
        beginRemoveRows({}, rowCount() - cuantas, rowCount() - 1);
        visibles_.erase(visibles_.begin(), idas);
        endRemoveRows();
    }
    std::vector<std::uint64_t> nuevas;
    for (vistas_ = std::max(vistas_, libro_.primera()); vistas_ < libro_.siguiente(); ++vistas_) {
        if (pasa(libro_[vistas_])) nuevas.push_back(vistas_);
    }
    if (!nuevas.empty()) {
        beginInsertRows({}, 0, static_cast<int>(nuevas.size()) - 1);
        visibles_.insert(visibles_.end(), nuevas.begin(), nuevas.end());
        endInsertRows();
    }
    // Lines that happened again have another time, and those that were seen show it.
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, kColumnas - 1));
}

} // namespace kv
