// SPDX-License-Identifier: Apache-2.0
#include "window/lists/tabla_de_lista.h"

#include "window/controls/control.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

namespace kv {
namespace {

constexpr int kMargenDeCelda = 26; // a check box or a sign
constexpr int kMargenDeCabeza = 14;

/// Tells of double clicks on a row, but not of those on its check box, which they only toggle.
class AvisoDeDobleClic final : public QStyledItemDelegate {
  public:
    AvisoDeDobleClic(std::function<void(int fila)> avisar, QObject* padre)
        : QStyledItemDelegate(padre), avisar_(std::move(avisar)) {}

  protected:
    bool editorEvent(QEvent* suceso, QAbstractItemModel* modelo, const QStyleOptionViewItem& como,
                     const QModelIndex& celda) override {
        if (QStyledItemDelegate::editorEvent(suceso, modelo, como, celda)) return true;
        if (suceso->type() == QEvent::MouseButtonDblClick) avisar_(celda.row());
        return false;
    }

  private:
    std::function<void(int fila)> avisar_;
};

} // namespace

TablaDeLista::TablaDeLista(Lista& lista, const FormaDeLista& forma, const QString& titulo,
                           QWidget* padre)
    : QWidget(padre), modelo_(hacer<ModeloDeLista>(lista, forma, this)),
      tabla_(control<QTableView>(std::string(lista.nombre()).c_str(), this)),
      filtro_(control<QLineEdit>(("txtFiltro_" + std::string(lista.nombre())).c_str(), this)),
      cuenta_(control<QLabel>(("lblFilas_" + std::string(lista.nombre())).c_str(), this)),
      conTildes_(forma.conTildes) {
    auto* rotulo = hacer<QLabel>(titulo, this);
    QFont negrita = rotulo->font();
    negrita.setBold(true);
    rotulo->setFont(negrita);
    filtro_->setPlaceholderText(tr("Filtrar…"));
    filtro_->setClearButtonEnabled(true);
    filtro_->setMaximumWidth(260);
    filtro_->setAccessibleName(tr("Filtro de %1").arg(titulo));
    filtro_->setToolTip(tr("Muestra las filas que tengan todas las palabras escritas"));
    tabla_->setAccessibleName(titulo);
    armarTabla(lista, forma);

    auto* arriba = hacer<QHBoxLayout>();
    arriba->addWidget(rotulo);
    arriba->addWidget(cuenta_);
    arriba->addStretch();
    arriba->addWidget(filtro_);
    auto* todo = hacer<QVBoxLayout>(this);
    todo->setContentsMargins(0, 0, 0, 0);
    todo->setSpacing(3);
    todo->addLayout(arriba);
    todo->addWidget(tabla_);

    connect(filtro_, &QLineEdit::textChanged, modelo_, &ModeloDeLista::filtrar);
    connect(modelo_, &ModeloDeLista::tildada, this, &TablaDeLista::tildada);
    connect(modelo_, &ModeloDeLista::modelAboutToBeReset, this, [this] {
        const QModelIndex actual = tabla_->currentIndex();
        if (actual.isValid()) elegida_ = modelo_->filaDeLista(actual.row());
    });
    connect(modelo_, &ModeloDeLista::modelReset, this, [this] {
        const int lugar = modelo_->lugarDe(elegida_);
        if (lugar >= 0) tabla_->selectRow(lugar);
        contar();
    });
    tabla_->setItemDelegate(hacer<AvisoDeDobleClic>([this](int fila) { activar(fila); }, tabla_));
}

void TablaDeLista::armarTabla(const Lista& lista, const FormaDeLista& forma) {
    tabla_->setModel(modelo_);
    tabla_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tabla_->setSelectionMode(QAbstractItemView::SingleSelection);
    tabla_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tabla_->setAlternatingRowColors(true);
    tabla_->setShowGrid(false);
    tabla_->setWordWrap(false);
    tabla_->setTabKeyNavigation(false);
    tabla_->setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    tabla_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // Rows of one height: the table never has to look at a row to know where another one is.
    tabla_->verticalHeader()->hide();
    tabla_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tabla_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    QHeaderView* cabeza = tabla_->horizontalHeader();
    cabeza->setSortIndicatorClearable(true);
    cabeza->setSortIndicator(-1, Qt::AscendingOrder);
    cabeza->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    cabeza->setHighlightSections(false);
    cabeza->setStretchLastSection(true);
    tabla_->setSortingEnabled(true);
    const int letra = fontMetrics().averageCharWidth();
    for (std::size_t c = 0; c < forma.anchos.size(); ++c)
        tabla_->setColumnWidth(
            static_cast<int>(c),
            std::max(forma.anchos[c] * letra + kMargenDeCelda,
                     cabeza->fontMetrics().horizontalAdvance(enQt(lista.columnas()[c])) +
                         kMargenDeCabeza));
    tabla_->installEventFilter(this);
}

void TablaDeLista::seguir(bool seguir) {
    modelo_->seguir(seguir);
    if (seguir) tabla_->viewport()->update();
    contar();
}

void TablaDeLista::refrescar() {
    const int desde = tabla_->rowAt(0);
    const int hasta = tabla_->rowAt(tabla_->viewport()->height() - 1);
    tabla_->setAutoScroll(false); // rows come and go by themselves: what is in sight stays there
    modelo_->actualizar(desde, hasta < 0 ? modelo_->rowCount() : hasta);
    tabla_->setAutoScroll(true);
    contar();
}

void TablaDeLista::elegir(std::uint32_t fila) {
    if (modelo_->lugarDe(fila) < 0) filtro_->clear();
    const int lugar = modelo_->lugarDe(fila);
    if (lugar < 0) return;
    tabla_->selectRow(lugar);
    tabla_->scrollTo(modelo_->index(lugar, 0), QAbstractItemView::PositionAtCenter);
}

void TablaDeLista::enfocar() { tabla_->setFocus(Qt::ShortcutFocusReason); }

void TablaDeLista::enfocarFiltro() {
    filtro_->setFocus(Qt::ShortcutFocusReason);
    filtro_->selectAll();
}

void TablaDeLista::contar() {
    const auto todas = static_cast<int>(modelo_->total());
    const int vistas = modelo_->rowCount();
    cuenta_->setText(vistas == todas ? QString::number(todas)
                                     : tr("%1 de %2").arg(vistas).arg(todas));
}

void TablaDeLista::activar(int fila) {
    if (fila >= 0 && fila < modelo_->rowCount()) emit activada(modelo_->filaDeLista(fila));
}

bool TablaDeLista::eventFilter(QObject* objeto, QEvent* suceso) {
    if (objeto != tabla_ || suceso->type() != QEvent::KeyPress)
        return QWidget::eventFilter(objeto, suceso);
    const auto* tecla = static_cast<QKeyEvent*>(suceso); // NOLINT: told by its type
    if (tecla->matches(QKeySequence::Copy)) {
        copiar();
        return true;
    }
    return alPulsar(tecla->key());
}

/// True when the key meant the row and not the table. A row that is not seen to be chosen is not
/// meant: a table that gets the focus makes its first one the current one.
bool TablaDeLista::alPulsar(int tecla) {
    const QModelIndex actual = tabla_->currentIndex();
    const bool elegida = tabla_->selectionModel()->isSelected(actual);
    if (tecla == Qt::Key_Return || tecla == Qt::Key_Enter) {
        if (elegida) activar(actual.row());
        return true;
    }
    if (tecla == Qt::Key_Select) return true;
    if (tecla == Qt::Key_Space) {
        if (!elegida || !conTildes_) return true;
        const QModelIndex celda = actual.siblingAtColumn(0);
        const bool estaba = celda.data(Qt::CheckStateRole).toInt() == Qt::Checked;
        modelo_->setData(celda, estaba ? Qt::Unchecked : Qt::Checked, Qt::CheckStateRole);
        return true;
    }
    return false;
}

void TablaDeLista::copiar() {
    const QModelIndex actual = tabla_->currentIndex();
    if (!tabla_->selectionModel()->isSelected(actual)) return;
    QStringList textos;
    for (int c = 0; c < modelo_->columnCount(); ++c)
        textos << actual.siblingAtColumn(c).data().toString();
    QGuiApplication::clipboard()->setText(textos.join('\t'));
}

} // namespace kv
