// SPDX-License-Identifier: Apache-2.0
#include "window/lists/modelo_de_lista.h"

#include "text/texto.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>

namespace kv {

ModeloDeLista::ModeloDeLista(Lista& lista, const FormaDeLista& forma, QObject* padre)
    : QAbstractTableModel(padre), lista_(lista), forma_(forma) {}

int ModeloDeLista::rowCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : static_cast<int>(visibles_.size());
}

int ModeloDeLista::columnCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : static_cast<int>(lista_.columnas().size());
}

QVariant ModeloDeLista::data(const QModelIndex& celda, int papel) const {
    if (!celda.isValid() || celda.row() >= rowCount()) return {};
    const std::uint32_t fila = filaDeLista(celda.row());
    const auto columna = static_cast<std::size_t>(celda.column());
    switch (papel) {
    case Qt::DisplayRole:
        return enQt(forma_.texto(lista_, fila, columna));
    case Qt::ToolTipRole:
        return ayudaSinMarcas(enQt(forma_.texto(lista_, fila, columna)));
    case Qt::CheckStateRole:
        if (!forma_.conTildes || celda.column() != 0) return {};
        return lista_.tildada(fila) ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
        // As the list stands now, like the text and the check box beside it.
        return celda.column() == forma_.columnaDeEstado ? senalDeEstado(forma_.estado(lista_, fila))
                                                        : QVariant();
    case Qt::ForegroundRole: {
        const QColor color = colorDeEstado(forma_.estado(lista_, fila), QGuiApplication::palette());
        return color.isValid() ? color : QVariant();
    }
    case Qt::TextAlignmentRole:
        return int{Qt::AlignVCenter} |
               (celda.column() == forma_.columnaDeCifras ? Qt::AlignRight : Qt::AlignLeft);
    default:
        return {};
    }
}

QVariant ModeloDeLista::headerData(int columna, Qt::Orientation orientacion, int papel) const {
    if (orientacion != Qt::Horizontal || columna < 0 || columna >= columnCount()) return {};
    if (papel == Qt::DisplayRole || papel == Qt::ToolTipRole)
        return enQt(lista_.columnas()[static_cast<std::size_t>(columna)]);
    return {};
}

Qt::ItemFlags ModeloDeLista::flags(const QModelIndex& celda) const {
    const Qt::ItemFlags todas = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    return forma_.conTildes && celda.column() == 0 ? todas | Qt::ItemIsUserCheckable : todas;
}

bool ModeloDeLista::setData(const QModelIndex& celda, const QVariant& valor, int papel) {
    if (papel != Qt::CheckStateRole || !forma_.conTildes || !celda.isValid()) return false;
    emit tildada(lista_.etiqueta(filaDeLista(celda.row())), valor.toInt() == Qt::Checked);
    return true;
}

void ModeloDeLista::sort(int columna, Qt::SortOrder orden) {
    columna_ = columna;
    sentido_ = orden;
    ordenar();
    rehacer();
}

void ModeloDeLista::ordenar() {
    std::iota(ordenadas_.begin(), ordenadas_.end(), 0U);
    if (columna_ < 0 || columna_ >= columnCount()) return;
    const auto columna = static_cast<std::size_t>(columna_);
    std::vector<std::string> claves(ordenadas_.size());
    for (const std::uint32_t f : ordenadas_)
        claves[f] = claveDeOrden(forma_.especies[columna], lista_.texto(f, columna));
    std::stable_sort(
        ordenadas_.begin(), ordenadas_.end(), [&claves, this](std::uint32_t a, std::uint32_t b) {
            return sentido_ == Qt::AscendingOrder ? claves[a] < claves[b] : claves[b] < claves[a];
        });
}

void ModeloDeLista::filtrar(const QString& texto) {
    palabras_.clear();
    const std::string todo = deQt(texto);
    for (const std::string_view palabra : partir(todo, ' ')) {
        if (!palabra.empty()) palabras_.emplace_back(palabra);
    }
    for (std::uint32_t f = 0; f < filas_.size(); ++f)
        filas_[f].pasa = pasaElFiltro(f);
    rehacer();
}

bool ModeloDeLista::pasaElFiltro(std::uint32_t fila) const {
    return std::all_of(palabras_.begin(), palabras_.end(), [&](const std::string& palabra) {
        return std::any_of(forma_.filtrables.begin(), forma_.filtrables.end(),
                           [&](std::size_t columna) {
                               return buscarSinCaja(forma_.texto(lista_, fila, columna), palabra) !=
                                      std::string::npos;
                           });
    });
}

void ModeloDeLista::rehacer() {
    beginResetModel();
    visibles_.clear();
    for (const std::uint32_t f : ordenadas_) {
        filas_[f].lugar = filas_[f].pasa ? static_cast<std::int32_t>(visibles_.size()) : -1;
        if (filas_[f].pasa) visibles_.push_back(f);
    }
    endResetModel();
}

void ModeloDeLista::seguir(bool seguir) {
    lista_.seguirCambios(seguir);
    if (!seguir) return;
    bool cambia = filas_.size() < lista_.filas();
    for (std::uint32_t f = 0; f < lista_.filas(); ++f)
        mirar(f, cambia);
    if (cambia) rehacer();
}

void ModeloDeLista::actualizar(int desde, int hasta) {
    bool cambia = false;
    for (const std::uint32_t f : lista_.cambiadas()) {
        mirar(f, cambia);
        const int lugar = filas_[f].lugar;
        if (lugar < desde || lugar > hasta || lugar < 0) continue;
        // Cell by cell: a view repaints all it shows when it is told of more than one.
        for (int c = 0; c < columnCount(); ++c)
            emit dataChanged(index(lugar, c), index(lugar, c));
    }
    if (cambia) rehacer();
}

/// `entraOSale` becomes true when the table has a row more or less because of this one.
void ModeloDeLista::mirar(std::uint32_t fila, bool& entraOSale) {
    while (filas_.size() <= fila) {
        ordenadas_.push_back(static_cast<std::uint32_t>(filas_.size()));
        filas_.emplace_back();
        ++cuantas_[static_cast<std::size_t>(EstadoDeFila::Ninguno)];
    }
    Fila& f = filas_[fila];
    if (lista_.retirada(fila)) {
        if (std::exchange(f.retirada, true)) return;
        --cuantas_[static_cast<std::size_t>(f.estado)];
        ++retiradas_;
        entraOSale |= std::exchange(f.pasa, false);
        return;
    }
    const EstadoDeFila estado = forma_.estado(lista_, fila);
    --cuantas_[static_cast<std::size_t>(f.estado)];
    ++cuantas_[static_cast<std::size_t>(estado)];
    f.estado = estado;
    const bool pasa = palabras_.empty() || pasaElFiltro(fila);
    entraOSale |= pasa != f.pasa;
    f.pasa = pasa;
}

int ModeloDeLista::lugarDe(std::int64_t filaDeLista) const {
    if (filaDeLista < 0 || filaDeLista >= static_cast<std::int64_t>(filas_.size())) return -1;
    return filas_[static_cast<std::size_t>(filaDeLista)].lugar;
}

} // namespace kv
