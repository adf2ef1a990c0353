// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "operator/editor_de_guion.h"

#include <QTimer>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

class QHBoxLayout;
class QLabel;
class QMenuBar;
class QPushButton;

namespace kv {

class BarraDeBusqueda;
class CajaDeCodigo;

/// The script editor: shows the file that the engine runs, and saves it. Each one reads the file
/// when it is made and deletes itself when it is closed.
class FrmScript final : public QWidget {
    Q_OBJECT
  public:
    /// `editor` must outlive the window and have no other.
    FrmScript(EditorDeGuion& editor, QWidget* padre);
    /// Closes, asking first what becomes of changes; `luego` is called unless the answer was to go
    /// on editing.
    void cerrarY(const std::function<void()>& luego);

  protected:
    /// The window's own close button asks when there are changes; `BtnCancelar` does not.
    void closeEvent(QCloseEvent* evento) override;

  private:
    [[nodiscard]] QMenuBar* menus();
    [[nodiscard]] QWidget* avisoDeCambio();
    [[nodiscard]] QHBoxLayout* pie();
    void cargar();
    /// Saves and goes on with `luego`; asks first before it writes over what another program
    /// changed. What cannot be saved goes on with nothing.
    void guardarY(std::function<void()> luego);
    bool guardar();
    void quejarse(EditorDeGuion::Guardado que, const std::string& texto);
    /// The editor's text as the file has it.
    [[nodiscard]] std::string texto() const;
    /// Compiles, and marks what is wrong. `hecho`: what to tell beside it.
    void comprobar(const std::string& texto, const QString& hecho);
    void preguntarAntesDeCerrar(const std::function<void()>& luego);
    void cerrarSinGuardar();
    void irALinea();
    /// To what stopped the last run, or does not compile, or else the next warning.
    void irAlError();
    void marcarAvisos(const std::vector<AvisoDeGuion>& avisos);
    [[nodiscard]] QString valorDe(const QString& nombre) const;
    void mostrarMedida();
    /// Now and then: how the last run ended, and whether the file is still the one that was read.
    void mirar();
    void decir(const QString& que);

    EditorDeGuion& editor_;
    CajaDeCodigo* TextCodigo_;
    BarraDeBusqueda* busqueda_;
    QWidget* aviso_;
    QLabel* lugar_;
    QLabel* mensaje_;
    QLabel* medida_;
    QLabel* guardado_; ///< stays until the operator types, whatever a run has to say
    QPushButton* BtnOk_;
    QTimer mirada_;
    std::optional<FallaDeGuion> falla_;
    std::optional<FallaDeGuion> noCompila_; ///< at the last check
    bool legible_ = true;
    bool cerrando_ = false;
};

} // namespace kv
