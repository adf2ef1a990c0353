// SPDX-License-Identifier: Apache-2.0
#include "ventana/juicio.h"

#include "window/controls/colores.h"
#include "window/controls/control.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTabBar>
#include <QTableView>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <functional>
#include <unordered_map>

namespace kv {
namespace {

constexpr int kFilasQueSeMiran = 12; // of a list

/// What can be scrolled into sight is judged by the room that it has in what is scrolled.
QRect sitio(const QWidget& control, const QWidget& ventana) {
    for (const QWidget* w = &control; w != &ventana; w = w->parentWidget()) {
        const auto* area = qobject_cast<QScrollArea*>(w->parentWidget()->parentWidget());
        if (area == nullptr || area->widget() != w) continue;
        EXPECT_GE(area->viewport()->width(), w->minimumSizeHint().width())
            << "only downwards is there anything to be scrolled to";
        return w->rect().translated(control.mapFrom(w, QPoint()));
    }
    return ventana.rect().translated(-control.mapTo(&ventana, QPoint()));
}

QSize necesario(const QWidget& control) {
    constexpr int kLineas = 3;
    const QFontMetrics letras = control.fontMetrics();
    const int alto = letras.lineSpacing();
    if (qobject_cast<const QAbstractItemView*>(&control) != nullptr) return {80, 2 * alto};
    if (qobject_cast<const QPlainTextEdit*>(&control) != nullptr) return {120, kLineas * alto};
    if (const auto* linea = qobject_cast<const QLineEdit*>(&control))
        return {std::max(40, letras.horizontalAdvance(linea->placeholderText())), alto};
    if (const auto* boton = qobject_cast<const QAbstractButton*>(&control))
        return {letras.size(Qt::TextShowMnemonic, boton->text()).width(), alto};
    if (const auto* grupo = qobject_cast<const QGroupBox*>(&control))
        return {letras.size(Qt::TextShowMnemonic, grupo->title()).width(), alto};
    if (qobject_cast<const QComboBox*>(&control) != nullptr) return control.minimumSizeHint();
    QSize todo = control.minimumSizeHint();
    if (const auto* rotulo = qobject_cast<const QLabel*>(&control)) {
        const bool cede = rotulo->sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
        if (cede) todo.setWidth(0);
        if (rotulo->wordWrap() && !cede) todo.setHeight(rotulo->heightForWidth(rotulo->width()));
    }
    return todo;
}

bool seJuzga(const QWidget& control) {
    const auto* padre = control.parentWidget();
    if (qobject_cast<const QAbstractItemView*>(padre) != nullptr ||
        qobject_cast<const QLineEdit*>(padre) != nullptr)
        return false; // headers, and buttons inside of boxes
    return qobject_cast<const QAbstractButton*>(&control) != nullptr ||
           qobject_cast<const QLineEdit*>(&control) != nullptr ||
           qobject_cast<const QLabel*>(&control) != nullptr ||
           qobject_cast<const QGroupBox*>(&control) != nullptr ||
           qobject_cast<const QComboBox*>(&control) != nullptr ||
           qobject_cast<const QAbstractItemView*>(&control) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(&control) != nullptr;
}

std::vector<QWidget*> aLaVista(const QWidget& ventana) {
    std::vector<QWidget*> todos;
    for (QWidget* c : ventana.findChildren<QWidget*>()) {
        if (c->isVisible() && c->window() == &ventana) todos.push_back(c);
    }
    return todos;
}

std::string quienEs(const QWidget& c, const std::string& foto) {
    const auto* boton = qobject_cast<const QAbstractButton*>(&c);
    const auto* rotulo = qobject_cast<const QLabel*>(&c);
    return foto + ": " + c.metaObject()->className() + " " + deQt(c.objectName()) + " " +
           (boton != nullptr ? deQt(boton->text()) : "") +
           (rotulo != nullptr ? deQt(rotulo->text()) : "");
}

/// Headings, tabs and menus that are there and whose words do not fit.
void juzgarTitulos(const QWidget& c, const std::string& foto) {
    if (const auto* cabeza = qobject_cast<const QHeaderView*>(&c)) {
        for (int i = 0; cabeza->orientation() == Qt::Horizontal && i < cabeza->count(); ++i) {
            const QString titulo =
                cabeza->model()->headerData(i, Qt::Horizontal, Qt::DisplayRole).toString();
            if (cabeza->isSectionHidden(i)) continue;
            const int comoSeEscribe =
                cabeza->model()->headerData(i, Qt::Horizontal, Qt::TextAlignmentRole).toInt();
            const QRect sitio(0, 0, cabeza->sectionSize(i) - 4, cabeza->height());
            const QRect ocupa = cabeza->fontMetrics().boundingRect(sitio, comoSeEscribe, titulo);
            EXPECT_TRUE(sitio.contains(ocupa))
                << quienEs(*cabeza->parentWidget(), foto) << " cuts " << deQt(titulo);
        }
    } else if (const auto* fichas = qobject_cast<const QTabBar*>(&c)) {
        for (int i = 0; i < fichas->count(); ++i) {
            const QRect ficha = fichas->tabRect(i);
            EXPECT_TRUE(fichas->rect().contains(ficha)) << quienEs(c, foto) << " hides a tab";
            EXPECT_GE(ficha.width(),
                      fichas->fontMetrics().size(Qt::TextShowMnemonic, fichas->tabText(i)).width())
                << quienEs(c, foto);
        }
    } else if (const auto* menu = qobject_cast<const QMenuBar*>(&c)) {
        for (QAction* a : menu->actions())
            EXPECT_TRUE(menu->rect().contains(menu->actionGeometry(a))) << quienEs(c, foto);
    }
}

void juzgarTrozo(QWidget& c, const QRect& donde, const std::string& que) {
    const QRect visto = donde & c.rect();
    if (visto.isEmpty()) return;
    EXPECT_GE(contrasteDe(c.grab(visto).toImage()), kContrasteDeTexto) << que;
}

/// Letters of a text by the colours that they have: only a few of them are in sight.
void juzgarLetras(const QTextDocument& texto, const QPalette& paleta, const std::string& que) {
    const auto mirar = [&](const QTextCharFormat& f) {
        const QColor tinta = f.foreground().style() == Qt::NoBrush ? paleta.color(QPalette::Text)
                                                                   : f.foreground().color();
        const QColor papel = f.background().style() == Qt::NoBrush ? paleta.color(QPalette::Base)
                                                                   : f.background().color();
        EXPECT_GE(contraste(tinta, papel), kContrasteDeTexto) << que << " " << deQt(tinta.name());
    };
    for (QTextBlock b = texto.begin(); b.isValid(); b = b.next()) {
        for (auto i = b.begin(); !i.atEnd(); ++i)
            mirar(i.fragment().charFormat());
        for (const QTextLayout::FormatRange& r : b.layout()->formats())
            mirar(r.format);
    }
}

void juzgarCeldas(QAbstractItemView& tabla, const std::string& que) {
    const QAbstractItemModel* modelo = tabla.model();
    for (int f = 0; f < std::min(modelo->rowCount(), kFilasQueSeMiran); ++f) {
        for (int c = 0; c < modelo->columnCount(); ++c) {
            const QModelIndex celda = modelo->index(f, c);
            if (celda.data().toString().trimmed().isEmpty()) continue;
            juzgarTrozo(*tabla.viewport(), tabla.visualRect(celda),
                        que + " " + deQt(celda.data().toString()));
        }
    }
}

/// Headings, and the first rows with their tool tips; names of files are the disk's.
void textosDeLista(const QAbstractItemView& lista,
                   const std::function<void(const QString&)>& tomar) {
    const QAbstractItemModel* modelo = lista.model();
    if (modelo == nullptr) return;
    const bool conTitulos = qobject_cast<const QTableView*>(&lista) != nullptr;
    const bool delDisco = qobject_cast<const QFileDialog*>(lista.window()) != nullptr;
    const int filas = delDisco ? 0 : std::min(modelo->rowCount(), kFilasQueSeMiran);
    for (int c = 0; c < modelo->columnCount(); ++c) {
        if (conTitulos) tomar(modelo->headerData(c, Qt::Horizontal).toString());
        for (int f = 0; f < filas; ++f) {
            tomar(modelo->index(f, c).data().toString());
            tomar(modelo->index(f, c).data(Qt::ToolTipRole).toString());
        }
    }
}

} // namespace

double contrasteDe(const QImage& dibujo) {
    std::unordered_map<QRgb, int> cuantos;
    for (int y = 0; y < dibujo.height(); ++y) {
        for (int x = 0; x < dibujo.width(); ++x)
            ++cuantos[dibujo.pixel(x, y)];
    }
    const auto fondo =
        std::max_element(cuantos.begin(), cuantos.end(),
                         [](const auto& a, const auto& b) { return a.second < b.second; });
    double mayor = 1;
    for (const auto& [color, n] : cuantos)
        mayor = std::max(mayor, contraste(color, fondo->first));
    return mayor;
}

void juzgarLugares(QWidget& ventana, const std::string& foto) {
    const QRect pantalla = ventana.screen()->availableGeometry();
    EXPECT_TRUE(pantalla.contains(ventana.frameGeometry()))
        << foto << ": " << ventana.width() << " x " << ventana.height();
    std::vector<const QWidget*> controles;
    for (const QWidget* c : aLaVista(ventana)) {
        juzgarTitulos(*c, foto);
        if (seJuzga(*c)) controles.push_back(c);
    }
    for (const QWidget* c : controles) {
        const auto* area = qobject_cast<const QAbstractScrollArea*>(c);
        EXPECT_TRUE(area == nullptr || area->horizontalScrollBar()->maximum() == 0)
            << quienEs(*c, foto) << " has to be scrolled sideways";
        const QSize falta = necesario(*c);
        EXPECT_TRUE(sitio(*c, ventana).contains(c->rect())) << quienEs(*c, foto) << " is cut";
        EXPECT_TRUE(c->width() >= falta.width() && c->height() >= falta.height())
            << quienEs(*c, foto) << " is crushed: " << c->width() << " x " << c->height()
            << ", needs " << falta.width() << " x " << falta.height();
        for (const QWidget* otro : controles) {
            if (otro == c || otro->parentWidget() != c->parentWidget()) continue;
            EXPECT_FALSE(c->geometry().intersects(otro->geometry()))
                << quienEs(*c, foto) << " lies over " << deQt(otro->objectName());
        }
    }
}

void juzgarContraste(QWidget& ventana, const std::string& foto) {
    for (QWidget* c : aLaVista(ventana)) {
        if (!c->isEnabled()) continue;
        const std::string que = quienEs(*c, foto);
        if (auto* texto = qobject_cast<QPlainTextEdit*>(c)) {
            juzgarLetras(*texto->document(), c->palette(), que);
        } else if (auto* paginas = qobject_cast<QTextEdit*>(c)) {
            juzgarLetras(*paginas->document(), c->palette(), que);
        } else if (auto* cabeza = qobject_cast<QHeaderView*>(c)) {
            if (cabeza->orientation() == Qt::Horizontal)
                juzgarTrozo(*cabeza->viewport(), cabeza->viewport()->rect(), que);
        } else if (auto* tabla = qobject_cast<QAbstractItemView*>(c)) {
            juzgarCeldas(*tabla, que);
        } else if (auto* fichas = qobject_cast<QTabBar*>(c)) {
            for (int i = 0; i < fichas->count(); ++i)
                juzgarTrozo(*c, fichas->tabRect(i), que);
        } else if (auto* linea = qobject_cast<QLineEdit*>(c)) {
            if (!linea->displayText().isEmpty() || !linea->placeholderText().isEmpty())
                juzgarTrozo(*c, c->rect().adjusted(4, 4, -4, -4), que);
        } else if (const auto* rotulo = qobject_cast<QLabel*>(c)) {
            if (!rotulo->text().trimmed().isEmpty()) juzgarTrozo(*c, c->rect(), que);
        } else if (const auto* boton = qobject_cast<QAbstractButton*>(c)) {
            if (!boton->text().isEmpty()) juzgarTrozo(*c, c->rect().adjusted(4, 4, -4, -4), que);
        }
    }
}

QMap<QString, QString> textosDe(const QWidget& ventana) {
    QMap<QString, QString> todos;
    QList<const QObject*> cosas{&ventana};
    for (const QObject* o : ventana.findChildren<QObject*>()) {
        const QObject* dueno = o;
        while (!dueno->isWidgetType())
            dueno = dueno->parent();
        const auto* w = static_cast<const QWidget*>(dueno); // NOLINT: it is one
        // A window that belongs to this one is looked at by itself; menus are not.
        if (w->window() == &ventana || qobject_cast<const QMenu*>(w) != nullptr) cosas << o;
    }
    for (const QObject* o : cosas) {
        const auto tomar = [&](const QString& texto) {
            todos[QString(texto).remove('&')] = ventana.objectName() + "/" + o->objectName();
        };
        for (const char* propiedad : {"text", "title", "windowTitle", "toolTip", "accessibleName",
                                      "placeholderText", "accessibleDescription"}) {
            const bool loEscrito =
                qobject_cast<const QLineEdit*>(o) != nullptr && QString(propiedad) == "text";
            if (!loEscrito) tomar(o->property(propiedad).toString());
        }
        if (const auto* fichas = qobject_cast<const QTabBar*>(o)) {
            for (int i = 0; i < fichas->count(); ++i)
                tomar(fichas->tabText(i));
        } else if (const auto* opciones = qobject_cast<const QComboBox*>(o)) {
            for (int i = 0; i < opciones->count(); ++i)
                tomar(opciones->itemText(i));
        } else if (const auto* lista = qobject_cast<const QAbstractItemView*>(o)) {
            textosDeLista(*lista, tomar);
        }
    }
    return todos;
}

} // namespace kv
