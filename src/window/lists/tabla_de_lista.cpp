// SPDX-License-Identifier: Apache-2.0
#include "window/lists/tabla_de_lista.h"

#include "window/controls/control.h"
#include "window/controls/elegir_archivo.h"
#include "window/controls/memoria.h"
#include "window/lists/acomodo_de_columnas.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QItemSelection>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>
#include <utility>

namespace kv {
namespace {

constexpr int kMargenDeCelda = 26;      // a check box or a sign
constexpr unsigned kVueltasPorEdad = 4; // of `refrescar`: what grows by the second is painted again

/// Tells of double clicks on a row, but not of those on its check box, which they only toggle.
class AvisoDeDobleClic final : public QStyledItemDelegate {
  public:
    AvisoDeDobleClic(std::function<void(const QModelIndex&)> avisar, QObject* padre)
        : QStyledItemDelegate(padre), avisar_(std::move(avisar)) {}

  protected:
    bool editorEvent(QEvent* suceso, QAbstractItemModel* modelo, const QStyleOptionViewItem& como,
                     const QModelIndex& celda) override {
        if (QStyledItemDelegate::editorEvent(suceso, modelo, como, celda)) return true;
        if (suceso->type() == QEvent::MouseButtonDblClick) avisar_(celda);
        return false;
    }

  private:
    std::function<void(const QModelIndex&)> avisar_;
};

} // namespace

TablaDeLista::TablaDeLista(Lista& lista, const FormaDeLista& forma, const QString& titulo,
                           Anexos anexos, QWidget* padre)
    : QWidget(padre), tabla_(control<QTableView>(std::string(lista.nombre()).c_str(), this)),
      filtro_(control<QLineEdit>(("txtFiltro_" + std::string(lista.nombre())).c_str(), this)),
      cuenta_(control<QLabel>(("lblFilas_" + std::string(lista.nombre())).c_str(), this)),
      titulo_(titulo), conTildes_(forma.conTildes), columnaDeEstado_(forma.columnaDeEstado),
      columnaDeCifras_(forma.columnaDeCifras), conAnexos_(static_cast<bool>(anexos.reparo)) {
    QList<int> anchos(forma.anchos.begin(), forma.anchos.end());
    for (const ColumnaPropia& c : anexos.columnas)
        anchos << c.ancho;
    modelo_ = hacer<ModeloDeLista>(lista, forma, std::move(anexos), this);
    auto* rotulo = hacer<QLabel>(titulo, this);
    QFont negrita = rotulo->font();
    negrita.setBold(true);
    rotulo->setFont(negrita);
    filtro_->setPlaceholderText(tr("Filtrar…"));
    filtro_->setClearButtonEnabled(true);
    filtro_->setMaximumWidth(260);
    filtro_->setAccessibleName(tr("Filtro de %1").arg(titulo));
    filtro_->setToolTip(
        tr("Muestra las filas que tengan todas las palabras escritas; con ^ delante, "
           "las que empiecen así"));
    tabla_->setAccessibleName(titulo);
    armarTabla();
    acomodo_ = hacer<AcomodoDeColumnas>(*tabla_, enPixeles(anchos), columnaDeEstado_);

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
    connect(modelo_, &ModeloDeLista::modelAboutToBeReset, this, &TablaDeLista::guardarElegidas);
    connect(modelo_, &ModeloDeLista::modelReset, this, [this] {
        volverAElegir();
        contar();
    });
    connect(tabla_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& actual) {
                if (actual.isValid()) emit mirada(modelo_->filaDeLista(actual.row()));
            });
    tabla_->setItemDelegate(
        hacer<AvisoDeDobleClic>([this](const QModelIndex& celda) { activar(celda); }, tabla_));
}

void TablaDeLista::armarTabla() {
    tabla_->setModel(modelo_);
    tabla_->setSelectionBehavior(QAbstractItemView::SelectRows);
    tabla_->setSelectionMode(QAbstractItemView::ExtendedSelection);
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
    cabeza->setSectionsMovable(true);
    cabeza->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(cabeza, &QWidget::customContextMenuRequested, this, [this, cabeza](const QPoint& p) {
        auto* menu = hacer<QMenu>(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        llenarMenuDeColumnas(*menu);
        menu->popup(cabeza->mapToGlobal(p));
    });
    tabla_->setSortingEnabled(true);
    tabla_->installEventFilter(this);
    tabla_->setContextMenuPolicy(Qt::ActionsContextMenu);
    agregarAccion("accCopiar", tr("Copiar (Ctrl+C)"), [this] { copiar(); });
    agregarAccion("accExportar", tr("Exportar como CSV…"), [this] { exportar(); });
}

QList<int> TablaDeLista::enPixeles(QList<int> letras) const {
    for (int& ancho : letras)
        ancho = ancho * fontMetrics().averageCharWidth() + kMargenDeCelda;
    return letras;
}

void TablaDeLista::seguir(bool seguir) {
    modelo_->seguir(seguir);
    if (seguir) tabla_->viewport()->update();
    contar();
}

void TablaDeLista::refrescar() {
    const int desde = tabla_->rowAt(0);
    int hasta = tabla_->rowAt(tabla_->viewport()->height() - 1);
    tabla_->setAutoScroll(false); // rows come and go by themselves: what is in sight stays there
    if (hasta < 0) hasta = modelo_->rowCount() - 1;
    modelo_->actualizar(desde, hasta);
    tabla_->setAutoScroll(true);
    if (conAnexos_ && ++vueltas_ % kVueltasPorEdad == 0) repintarLoQueCrece(desde, hasta);
    contar();
}

/// Only the cells that may have changed: painting all that is in sight costs most of what a window
/// does.
void TablaDeLista::repintarLoQueCrece(int desde, int hasta) {
    QWidget& donde = *tabla_->viewport();
    std::vector<EstadoDeFila> estados;
    for (int f = std::max(desde, 0); f <= hasta; ++f)
        estados.push_back(modelo_->estadoEn(f));
    if (std::exchange(alaVista_, estados) != estados) return donde.update();
    for (const int c : modelo_->columnasQueCrecen())
        donde.update(tabla_->columnViewportPosition(c), 0, tabla_->columnWidth(c), donde.height());
}

void TablaDeLista::elegir(std::uint32_t fila) {
    if (modelo_->lugarDe(fila) < 0) filtro_->clear();
    const int lugar = modelo_->lugarDe(fila);
    if (lugar < 0) return;
    tabla_->selectRow(lugar);
    tabla_->scrollTo(modelo_->index(lugar, 0), QAbstractItemView::PositionAtCenter);
}

std::int64_t TablaDeLista::actual() const {
    const QModelIndex actual = tabla_->currentIndex();
    return actual.isValid() ? std::int64_t{modelo_->filaDeLista(actual.row())} : -1;
}

void TablaDeLista::ponerDelante(int columna, int lugar) {
    QHeaderView* cabeza = tabla_->horizontalHeader();
    cabeza->moveSection(cabeza->visualIndex(columna), lugar);
    acomodo_->acomodar();
}

QList<int> TablaDeLista::filasElegidas() const {
    QList<int> filas;
    for (const QItemSelectionRange& tramo : tabla_->selectionModel()->selection()) {
        for (int f = tramo.top(); f <= tramo.bottom(); ++f)
            filas << f;
    }
    std::sort(filas.begin(), filas.end());
    filas.erase(std::unique(filas.begin(), filas.end()), filas.end());
    return filas;
}

std::vector<std::uint32_t> TablaDeLista::elegidas() const {
    std::vector<std::uint32_t> filas;
    for (const int f : filasElegidas())
        filas.push_back(modelo_->filaDeLista(f));
    return filas;
}

void TablaDeLista::guardarElegidas() {
    elegidas_ = elegidas();
    const QModelIndex actual = tabla_->currentIndex();
    actual_ = actual.isValid() ? modelo_->filaDeLista(actual.row()) : -1;
    columnaActual_ = actual.isValid() ? actual.column() : 0;
}

/// The rows that are chosen stay so wherever they are now.
void TablaDeLista::volverAElegir() {
    QItemSelection eleccion;
    const int ultima = modelo_->columnCount() - 1;
    for (const std::uint32_t f : elegidas_) {
        const int lugar = modelo_->lugarDe(f);
        if (lugar >= 0) eleccion.select(modelo_->index(lugar, 0), modelo_->index(lugar, ultima));
    }
    QItemSelectionModel* seleccion = tabla_->selectionModel();
    const int lugar = modelo_->lugarDe(actual_);
    if (lugar >= 0)
        seleccion->setCurrentIndex(modelo_->index(lugar, columnaActual_),
                                   QItemSelectionModel::NoUpdate);
    seleccion->select(eleccion, QItemSelectionModel::ClearAndSelect);
}

void TablaDeLista::filtrar(const QString& texto) { filtro_->setText(texto); }

void TablaDeLista::enfocar() { tabla_->setFocus(Qt::ShortcutFocusReason); }

void TablaDeLista::enfocarFiltro() {
    filtro_->setFocus(Qt::ShortcutFocusReason);
    filtro_->selectAll();
}

bool TablaDeLista::tieneElFoco() const { return tabla_->hasFocus() || filtro_->hasFocus(); }

/// A list that does not show all must not be taken for one that does.
void TablaDeLista::contar() {
    const auto todas = static_cast<int>(modelo_->total());
    const int vistas = modelo_->rowCount();
    const bool filtrada = !filtro_->text().isEmpty();
    cuenta_->setText(filtrada ? tr("⚠ filtrada: %1 de %2").arg(vistas).arg(todas)
                              : QString::number(todas));
    QFont letra = font();
    letra.setBold(filtrada);
    if (letra != cuenta_->font()) cuenta_->setFont(letra);
}

void TablaDeLista::activar(const QModelIndex& celda) {
    if (!celda.isValid()) return;
    const std::uint32_t fila = modelo_->filaDeLista(celda.row());
    if (celda.column() == columnaDeEstado_ && conAnexos_) {
        emit preguntada(fila);
    } else {
        emit activada(fila);
    }
}

bool TablaDeLista::eventFilter(QObject* objeto, QEvent* suceso) {
    if (objeto != tabla_ || suceso->type() != QEvent::KeyPress)
        return QWidget::eventFilter(objeto, suceso);
    const auto* tecla = static_cast<QKeyEvent*>(suceso); // NOLINT: its type says so
    if (tecla->matches(QKeySequence::Copy)) {
        copiar();
        return true;
    }
    return alPulsar(tecla->key());
}

/// True when the key meant the row and not the table. A row that is not seen to be chosen is not
/// meant: a table that gets the focus makes its first one the current one. Where several are chosen
/// it is the current one that is meant: a plant is not switched off by Ctrl+A and a blank.
bool TablaDeLista::alPulsar(int tecla) {
    const QModelIndex actual = tabla_->currentIndex();
    const bool elegida = tabla_->selectionModel()->isSelected(actual);
    if (tecla == Qt::Key_Return || tecla == Qt::Key_Enter) {
        if (elegida) emit activada(modelo_->filaDeLista(actual.row()));
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

void TablaDeLista::agregarAccion(const char* nombre, const QString& texto,
                                 const std::function<void()>& que) {
    auto* accion = control<QAction>(nombre, texto, tabla_);
    connect(accion, &QAction::triggered, this, que);
    tabla_->addAction(accion);
}

QList<int> TablaDeLista::columnasALaVista() const {
    QList<int> columnas;
    const QHeaderView* cabeza = tabla_->horizontalHeader();
    for (int v = 0; v < cabeza->count(); ++v) {
        const int columna = cabeza->logicalIndex(v);
        if (!cabeza->isSectionHidden(columna)) columnas << columna;
    }
    return columnas;
}

void TablaDeLista::copiar() {
    const QList<int> filas = filasElegidas();
    if (filas.isEmpty()) return;
    QGuiApplication::clipboard()->setText(textoDeFilas(*modelo_, filas, columnasALaVista(), '\t'));
}

void TablaDeLista::exportar() {
    QList<int> filas = filasElegidas();
    if (filas.size() < 2) {
        filas.resize(modelo_->rowCount());
        std::iota(filas.begin(), filas.end(), 0);
    }
    // As they are now, whatever comes while a file is looked for.
    elegirArchivo(this, tr("Exportar %1").arg(titulo_), titulo_.toLower() + ".csv",
                  [this, texto = textoDeFilas(*modelo_, filas, columnasALaVista(), ';')](
                      const QString& ruta) { emit guardar(ruta, texto); });
}

void TablaDeLista::ordenarPorLaActual() {
    const QModelIndex actual = tabla_->currentIndex();
    const int columna = actual.isValid() ? actual.column() : 0;
    const bool ya = modelo_->columnaDeOrden() == columna;
    const bool subia = modelo_->sentido() == Qt::AscendingOrder;
    if (ya && !subia) return tabla_->sortByColumn(-1, Qt::AscendingOrder);
    tabla_->sortByColumn(columna, ya ? Qt::DescendingOrder : Qt::AscendingOrder);
}

void TablaDeLista::ponerBase(Base base) {
    modelo_->ponerBase(base);
    if (columnaDeCifras_ < 0) return;
    const QString larga = base == Base::Binaria ? "0000 0000 0000 0000" : "00000";
    const int hace = fontMetrics().horizontalAdvance(larga) + kMargenDeCelda;
    acomodo_->pedir(columnaDeCifras_, hace);
}

void TablaDeLista::llenarMenuDeColumnas(QMenu& menu) {
    const QList<int> vistas = columnasALaVista();
    for (int c = 0; c < modelo_->columnCount(); ++c) {
        QString titulo = modelo_->headerData(c, Qt::Horizontal, Qt::DisplayRole).toString();
        if (titulo.isEmpty()) titulo = tr("(notas)");
        QAction* accion = menu.addAction(titulo.replace('&', "&&"));
        accion->setCheckable(true);
        accion->setChecked(vistas.contains(c));
        // A table without columns could not be given any back by its own menu.
        accion->setEnabled(vistas.size() > 1 || !vistas.contains(c));
        connect(accion, &QAction::toggled, this, [this, c](bool seVe) {
            acomodo_->ponerArregladas(true);
            tabla_->setColumnHidden(c, !seVe);
        });
    }
}

QString TablaDeLista::clave(const char* que) const {
    return "listas/" + tabla_->objectName() + '/' + que;
}

void TablaDeLista::recordarse() const {
    // Another version may have other columns.
    recordar(clave("cuantas"), modelo_->columnCount());
    recordar(clave("columnas"), tabla_->horizontalHeader()->saveState());
    recordar(clave("arregladas"), acomodo_->arregladas());
    recordar(clave("filtro"), filtro_->text());
    recordar(clave("base"), static_cast<int>(modelo_->base()));
}

void TablaDeLista::acordarse() {
    if (recordado(clave("cuantas")).toInt() == modelo_->columnCount()) {
        tabla_->horizontalHeader()->restoreState(recordado(clave("columnas")).toByteArray());
        // Those of another screen's width are not what the operator chose.
        acomodo_->ponerArregladas(recordado(clave("arregladas"), true).toBool());
    }
    filtro_->setText(recordado(clave("filtro")).toString());
    const int base = recordado(clave("base")).toInt();
    if (base > 0 && base <= static_cast<int>(Base::Binaria)) ponerBase(static_cast<Base>(base));
}

} // namespace kv
