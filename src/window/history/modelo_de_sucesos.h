// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/history/libro_de_sucesos.h"

#include <QAbstractTableModel>
#include <QString>

#include <deque>
#include <string>
#include <vector>

namespace kv {

/// The history as a table, the latest line first: all of it or what a filter lets through.
class ModeloDeSucesos final : public QAbstractTableModel {
    Q_OBJECT
  public:
    enum Columna { kHora, kGravedad, kDonde, kQue, kVeces, kReconocida, kColumnas };
    /// Both must outlive the model.
    ModeloDeSucesos(LibroDeSucesos& libro, const Tablas& tablas, QObject* padre);

    [[nodiscard]] int rowCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& padre = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& celda, int papel) const override;
    [[nodiscard]] QVariant headerData(int columna, Qt::Orientation orientacion,
                                      int papel) const override;

    struct Filtro {
        QString palabras;    ///< every one of them, in any column
        bool graves = false; ///< no notes
        bool sinReconocer = false;
    };
    void filtrar(const Filtro& filtro);
    /// Takes over what has happened since.
    void actualizar();
    /// The number in the book of a row's line.
    [[nodiscard]] std::uint64_t lineaDe(int fila) const;

  private:
    [[nodiscard]] QString texto(const Anotacion& a, int columna) const;
    [[nodiscard]] bool pasa(const Anotacion& a) const;
    void rehacer();

    LibroDeSucesos& libro_;
    const Tablas& tablas_;
    std::deque<std::uint64_t> visibles_; ///< the oldest first
    std::uint64_t vistas_ = 0;           ///< up to here the book has been looked at
    std::uint64_t version_ = 0;
    std::vector<std::string> palabras_;
    Filtro filtro_;
};

} // namespace kv
