// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class QCompleter;
class QKeyEvent;
class QStringListModel;

namespace kv {

class CajaDeCodigo;

/// Proposes how the name at the cursor could go on: after two letters or a point, or when it is
/// asked for with Ctrl+Space. Enter and Tab take the one that is chosen, Esc closes them.
class Completador final : public QObject {
    Q_OBJECT
  public:
    struct Opciones {
        QString empezado; ///< what of the name is there
        QStringList lista;
    };
    /// `buscar` is asked with the text before the cursor and the one behind it.
    using Buscar = std::function<Opciones(const QString& antes, const QString& despues)>;
    Completador(CajaDeCodigo& caja, Buscar buscar);

    /// Whether the key is for the list of proposals, which stands.
    [[nodiscard]] bool esSuya(const QKeyEvent& tecla) const;
    /// The box has taken the key.
    void trasTecla(const QKeyEvent& tecla);
    /// Proposes now, however short the name is; a single way to go on is taken at once.
    void pedir();

  private:
    void proponer(bool aMano);
    void tomar(const QString& opcion);

    CajaDeCodigo& caja_;
    Buscar buscar_;
    QStringListModel* modelo_;
    QCompleter* lista_;
    qsizetype empezado_ = 0;
};

} // namespace kv
