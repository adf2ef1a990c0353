#pragma once

#include <QPlainTextEdit>
#include <QTextCursor>

#include <array>

namespace kv {

class MargenDeCodigo;
class ResaltadoDeGuion;

/// A text box for scripts: colours, line numbers, the current line, marks on lines that have
/// something wrong, and indentation that follows what is typed.
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
    /// Marks a line, one of each kind; the mark moves with its line.
    void marcar(Marca cual, int linea, const QString& mensaje);
    void desmarcar(Marca cual);
    /// 0: no line is marked.
    [[nodiscard]] int lineaMarcada(Marca cual) const;
    [[nodiscard]] QString mensajeDe(int linea) const;

  protected:
    void keyPressEvent(QKeyEvent* tecla) override;
    void resizeEvent(QResizeEvent* evento) override;
    void changeEvent(QEvent* evento) override;

  private:
    friend class MargenDeCodigo;
    struct Senal {
        QTextCursor lugar;
        QString mensaje; ///< empty: not set
    };
    [[nodiscard]] Senal& senal(Marca cual) { return senales_.at(static_cast<std::size_t>(cual)); }
    [[nodiscard]] const Senal& senal(Marca cual) const {
        return senales_.at(static_cast<std::size_t>(cual));
    }
    [[nodiscard]] int anchoDelMargen() const;
    void acomodarMargen();
    void resaltarLineas();
    void sangrarSeleccion(bool afuera);
    void nuevaLinea();
    /// Keys that edit code as code: line breaks and tabulators. False: not one of them.
    bool teclaDeCodigo(int tecla);

    ResaltadoDeGuion* resaltado_;
    MargenDeCodigo* margen_;
    std::array<Senal, 2> senales_;
};

} // namespace kv
