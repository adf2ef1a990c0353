// SPDX-License-Identifier: Apache-2.0
#include "window/lists/modelo_de_lista.h"

#include "text/texto.h"
#include "window/controls/control.h"
#include "window/controls/ventana.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <array>
#include <numeric>
#include <string>
#include <utility>

namespace kv {
namespace {

constexpr std::ptrdiff_t kPuntosDeUnBit = 3;

/// The view's own titles, for whoever translates them.
[[maybe_unused]] constexpr std::array kTitulos = {
    QT_TRANSLATE_NOOP("kv::Titulos", "Puerto"),
    QT_TRANSLATE_NOOP("kv::Titulos", "IP:PuertoTCP"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Estado"),
    QT_TRANSLATE_NOOP("kv::Titulos", "[PLC X - Indice Y]"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Base de Tiempo Conexion"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Cant.Intervalos para solicitar"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Cant.de Solicitudes"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Tiempo Fuera"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Direccion"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Valor"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Fecha Hora"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Nombre en Script"),
    QT_TRANSLATE_NOOP("kv::Titulos", "[Direccion]"),
    QT_TRANSLATE_NOOP("kv::Titulos", "[Nivel]"),
    QT_TRANSLATE_NOOP("kv::Titulos", "[Tiempo de Scan(s)]"),
    QT_TRANSLATE_NOOP("kv::Titulos", "Habilitado por respuestas OK. [Si/No]"),
};

} // namespace

ModeloDeLista::ModeloDeLista(Lista& lista, const FormaDeLista& forma, Anexos anexos, QObject* padre)
    : QAbstractTableModel(padre), lista_(lista), forma_(forma), anexos_(std::move(anexos)) {}

int ModeloDeLista::rowCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0 : static_cast<int>(visibles_.size());
}

int ModeloDeLista::columnCount(const QModelIndex& padre) const {
    return padre.isValid() ? 0
                           : static_cast<int>(lista_.columnas().size() + anexos_.columnas.size());
}

const ColumnaPropia* ModeloDeLista::propia(std::size_t columna) const {
    const std::size_t deLaLista = lista_.columnas().size();
    return columna < deLaLista ? nullptr : &anexos_.columnas[columna - deLaLista];
}

std::optional<Reparo> ModeloDeLista::reparoDe(std::uint32_t fila) const {
    if (!anexos_.reparo || forma_.estado(lista_, fila) != EstadoDeFila::Bien) return std::nullopt;
    return anexos_.reparo(fila);
}

EstadoDeFila ModeloDeLista::estadoDe(std::uint32_t fila) const {
    const auto reparo = reparoDe(fila);
    return reparo ? reparo->estado : forma_.estado(lista_, fila);
}

std::string ModeloDeLista::textoDe(std::uint32_t fila, std::size_t columna) const {
    if (const ColumnaPropia* p = propia(columna)) return deQt(p->texto(fila));
    std::string texto = forma_.texto(lista_, fila, columna);
    const auto esta = static_cast<int>(columna);
    if (esta == forma_.columnaDeEstado) {
        const auto reparo = reparoDe(fila);
        return reparo ? texto + deQt(reparo->texto) : texto;
    }
    if (esta != forma_.columnaDeCifras || base_ == Base::Decimal) return texto;
    const std::string direccion = lista_.texto(fila, 0);
    const bool bit = std::count(direccion.begin(), direccion.end(), '.') == kPuntosDeUnBit;
    return bit ? texto : enBase(std::move(texto), base_);
}

QVariant ModeloDeLista::data(const QModelIndex& celda, int papel) const {
    if (!celda.isValid() || celda.row() >= rowCount()) return {};
    const std::uint32_t fila = filaDeLista(celda.row());
    const auto columna = static_cast<std::size_t>(celda.column());
    switch (papel) {
    case Qt::DisplayRole:
        return enQt(textoDe(fila, columna));
    case Qt::ToolTipRole:
        return ayudaSinMarcas(celda.column() == forma_.columnaDeEstado && anexos_.ayuda
                                  ? anexos_.ayuda(fila)
                                  : enQt(textoDe(fila, columna)));
    case Qt::CheckStateRole:
        if (!forma_.conTildes || celda.column() != 0) return {};
        return lista_.tildada(fila) ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
        // As the list stands now, like the text and the check box beside it.
        return celda.column() == forma_.columnaDeEstado ? senalDeEstado(estadoDe(fila))
                                                        : QVariant();
    case Qt::ForegroundRole: {
        const QColor color = colorDeEstado(estadoDe(fila), QGuiApplication::palette());
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
    // Not as the header's own: that one would not take back what it has saved.
    if (papel == Qt::TextAlignmentRole)
        return int{Qt::AlignLeft | Qt::AlignVCenter} | int{Qt::TextWordWrap};
    if (papel != Qt::DisplayRole && papel != Qt::ToolTipRole) return {};
    const auto cual = static_cast<std::size_t>(columna);
    const ColumnaPropia* p = propia(cual);
    return p != nullptr
               ? p->titulo
               : QCoreApplication::translate("kv::Titulos", lista_.columnas()[cual].c_str());
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

template <class Clave>
void ModeloDeLista::ordenarPor(Clave clave) {
    std::vector<decltype(clave(0U))> claves(ordenadas_.size());
    for (const std::uint32_t f : ordenadas_)
        claves[f] = clave(f);
    std::stable_sort(
        ordenadas_.begin(), ordenadas_.end(), [&claves, this](std::uint32_t a, std::uint32_t b) {
            return sentido_ == Qt::AscendingOrder ? claves[a] < claves[b] : claves[b] < claves[a];
        });
}

void ModeloDeLista::ordenar() {
    std::iota(ordenadas_.begin(), ordenadas_.end(), 0U);
    if (columna_ < 0 || columna_ >= columnCount()) return;
    const auto columna = static_cast<std::size_t>(columna_);
    if (const ColumnaPropia* p = propia(columna)) {
        if (p->orden) return ordenarPor(p->orden);
        return ordenarPor(
            [p](std::uint32_t f) { return claveDeOrden(Especie::Texto, deQt(p->texto(f))); });
    }
    ordenarPor([&](std::uint32_t f) {
        return claveDeOrden(forma_.especies[columna], lista_.texto(f, columna));
    });
}

void ModeloDeLista::ponerBase(Base base) {
    base_ = base;
    if (rowCount() > 0)
        emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {Qt::DisplayRole});
}

void ModeloDeLista::filtrar(const QString& texto) {
    palabras_.clear();
    const std::string todo = deQt(texto);
    for (const std::string_view palabra : partir(todo, ' ')) {
        if (!palabra.empty()) palabras_.emplace_back(palabra);
    }
    for (std::uint32_t f = 0; f < filas_.size(); ++f)
        filas_[f].pasa = !filas_[f].retirada && pasaElFiltro(f);
    rehacer();
}

bool ModeloDeLista::pasaElFiltro(std::uint32_t fila) const {
    return std::all_of(palabras_.begin(), palabras_.end(), [&](std::string_view palabra) {
        const bool alComienzo = palabra.starts_with('^') && palabra.size() > 1;
        if (alComienzo) palabra.remove_prefix(1);
        const auto esta = [&](const std::string& texto) {
            const std::size_t donde = buscarSinCaja(texto, palabra);
            return alComienzo ? donde == 0 : donde != std::string::npos;
        };
        return std::any_of(forma_.filtrables.begin(), forma_.filtrables.end(),
                           [&](std::size_t c) { return esta(forma_.texto(lista_, fila, c)); }) ||
               std::any_of(anexos_.columnas.begin(), anexos_.columnas.end(),
                           [&](const ColumnaPropia& c) {
                               return c.filtrable && esta(deQt(c.texto(fila)));
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
    if (!cambia) return;
    if (columna_ >= 0) ordenar(); // an order may be older than the rows: it was remembered
    rehacer();
}

void ModeloDeLista::actualizar(int desde, int hasta) {
    bool cambia = false;
    for (const std::uint32_t f : lista_.cambiadas()) {
        mirar(f, cambia);
        const int lugar = filas_[f].lugar;
        if (lugar < desde || lugar > hasta || lugar < 0) continue;
        // Cell by cell: a view repaints all it shows when a change spans more than one.
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

std::vector<int> ModeloDeLista::columnasQueCrecen() const {
    std::vector<int> todas;
    if (anexos_.reparo) todas.push_back(forma_.columnaDeEstado); // a reservation may tell a count
    for (int c = 0; c < columnCount(); ++c) {
        const ColumnaPropia* p = propia(static_cast<std::size_t>(c));
        if (p != nullptr && p->crece) todas.push_back(c);
    }
    return todas;
}

int ModeloDeLista::lugarDe(std::int64_t filaDeLista) const {
    if (filaDeLista < 0 || filaDeLista >= static_cast<std::int64_t>(filas_.size())) return -1;
    return filas_[static_cast<std::size_t>(filaDeLista)].lugar;
}

} // namespace kv
