// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "window/script/completador.h"

#include <QPlainTextEdit>
#include <QTextCursor>

#include <array>
#include <functional>
#include <vector>

namespace kv {

class MargenDeCodigo;
class ResaltadoDeGuion;

/// A text box for scripts: colours, line numbers, the current line, marks on lines with a fault,
/// and indentation that follows what is typed.
class CajaDeCodigo final : public QPlainTextEdit {
    Q_OBJECT
  public:
    explicit CajaDeCodigo(QWidget* padre);

    /// The whole text as it is, lines divided by LF. (`toPlainText` would turn some characters into
    /// others.)
    [[nodiscard]] QString texto() const;
    /// Lines and columns count from 1; what lies beyond the end is the end.
    void irA(int linea, int columna = 1);
    [[nodiscard]] int lineaActual() const { return textCursor().blockNumber() + 1; }
    [[nodiscard]] int columnaActual() const { return textCursor().positionInBlock() + 1; }

    enum class Marca { Corrida, Comprobacion };
    /// Marks a line, one of each kind; the mark moves with its line, and goes when that is edited:
    /// it was of the line as it was.
    void marcar(Marca cual, int linea, const QString& mensaje);
    void desmarcar(Marca cual);
    /// 0: no line is marked.
    [[nodiscard]] int lineaMarcada(Marca cual) const;
    /// Places that want a look: their lines are marked and what stands there is underlined.
    struct Aviso {
        int linea;
        int columna;
        QString mensaje;
    };
    void ponerAvisos(const std::vector<Aviso>& avisos);
    /// Where they are now, from the top.
    [[nodiscard]] std::vector<Aviso> avisos() const;
    [[nodiscard]] QString mensajeDe(int linea) const;

    /// What a name under the pointer is explained with; empty: nothing.
    void explicarCon(std::function<QString(const QString& nombre)> explicar) {
        explicar_ = std::move(explicar);
    }
    /// The explanation and the message of what is at a place of the viewport.
    [[nodiscard]] QString ayudaEn(const QPoint& lugar) const;
    void completarCon(Completador::Buscar buscar);
    void completar();

  protected:
    void keyPressEvent(QKeyEvent* tecla) override;
    void resizeEvent(QResizeEvent* evento) override;
    void changeEvent(QEvent* evento) override;
    bool viewportEvent(QEvent* evento) override;

  private:
    friend class MargenDeCodigo;
    struct Senal {
        QTextCursor lugar;  ///< of a warning, what is underlined
        QString mensaje;    ///< empty: not set
        QString linea = {}; ///< text of the line that is marked
    };
    void soltarLoEditado();
    [[nodiscard]] Senal& senal(Marca cual) { return senales_.at(static_cast<std::size_t>(cual)); }
    [[nodiscard]] const Senal& senal(Marca cual) const {
        return senales_.at(static_cast<std::size_t>(cual));
    }
    void acomodarMargen();
    void resaltarLineas();
    void sangrarSeleccion(bool afuera);
    void nuevaLinea();
    /// Keys that edit code as code: line breaks and tabulators. False: not one of them.
    bool teclaDeCodigo(int tecla);

    ResaltadoDeGuion* resaltado_;
    MargenDeCodigo* margen_;
    std::array<Senal, 2> senales_;
    std::vector<Senal> avisos_;
    std::function<QString(const QString&)> explicar_;
    Completador* completador_ = nullptr;
};

} // namespace kv
