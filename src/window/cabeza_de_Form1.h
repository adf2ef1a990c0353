// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/editor_de_guion.h"
#include "view/vista.h"

#include <QWidget>

class QHBoxLayout;
class QLabel;

namespace kv {

/// The strip at the top of the main window: which project, since when, how many points, how the
/// script does and what it has to say.
class CabezaDeForm1 final : public QWidget {
    Q_OBJECT
  public:
    /// Both must outlive it.
    CabezaDeForm1(const Vista& vista, const EditorDeGuion& editor, QWidget* padre);
    void refrescar();
    /// In a small window there is no room for why a script failed.
    void compactar(bool compacta);

  signals:
    void puertos();
    void tamanio();

  private:
    void armarRotulos(QHBoxLayout& fila);
    void vestirLabel10(const AspectoDeEtiqueta& aspecto);
    void refrescarGuion();

    const Vista& vista_;
    const EditorDeGuion& editor_;
    bool compacta_ = false;
    QLabel* Label1_;
    QLabel* Label10_;
    AspectoDeEtiqueta aspectoDeLabel10_;
    QLabel* lblProyecto_;
    QLabel* lblCantidadDePuntos_;
    QLabel* lblEstadoScript_;
};

} // namespace kv
