// SPDX-License-Identifier: Apache-2.0
#include "window/help/ventana_de_manual.h"

#include "window/controls/control.h"
#include "window/controls/idioma.h"
#include "window/controls/ventana.h"

#include <QFile>
#include <QImage>
#include <QScrollBar>
#include <QTextBlock>
#include <QUrl>
#include <QVBoxLayout>

#include <array>

namespace kv {
namespace {

constexpr const char* kCarpeta = ":/manual/";
constexpr int kAnchoDeImagen = 720;

/// "la-ventana-principal": what a link inside the manual calls a heading.
QString comoAncla(const QString& titulo) {
    QString ancla;
    for (const QChar c : titulo.toLower()) {
        if (c.isLetterOrNumber() || c == '-') ancla += c;
        if (c.isSpace()) ancla += '-';
    }
    return ancla;
}

struct Lugar {
    const char* nombre; ///< of a window, or of a control in it
    const char* titulo;
    const char* enIngles;
};
/// Controls stand before the windows that hold them.
constexpr std::array kLugares = {
    Lugar{"fichasDeTrazas", "Las trazas", "The traces"},
    Lugar{"lstViewSockets", "Las tres listas", "The three lists"},
    Lugar{"fichasDeListas", "Las tres listas", "The three lists"},
    Lugar{"lstResumen", "Vigilar la planta", "Look after the plant"},
    Lugar{"FrmEscritura", "Escribir un valor", "Write a value"},
    Lugar{"FrmScript", "El guion", "The script"},
    Lugar{"FrmServerTCP", "El servidor de clientes", "The client server"},
    Lugar{"FrmPuertos", "El servidor de clientes", "The client server"},
    Lugar{"FrmResumen", "El resumen de estaciones", "The overview of stations"},
    Lugar{"FrmSucesos", "Los sucesos", "The events"},
    Lugar{"FrmTendencias", "Las tendencias", "The trends"},
    Lugar{"FrmConexion", "El detalle de una conexión", "The detail of a connection"},
    Lugar{"FrmPorQue", "Por qué está así", "Why it is so"},
    Lugar{"dlgPregunta", "Forzar lecturas y prender o apagar bloques",
          "Force reads, and switch blocks on or off"},
    Lugar{"FrmAbout", "Manual del operador", "Operator's manual"},
    Lugar{"Form1", "La ventana principal", "The main window"},
};

} // namespace

TextoDelManual::TextoDelManual(QWidget* padre) : QTextBrowser(padre) {
    setOpenLinks(false);
    setSearchPaths({kCarpeta});
    QFile archivo(QString(kCarpeta) + (enIngles() ? "operator-manual.md" : "manual-operador.md"));
    if (archivo.open(QIODevice::ReadOnly)) setMarkdown(QString::fromUtf8(archivo.readAll()));
    connect(this, &QTextBrowser::anchorClicked, this, [this](const QUrl& a) {
        if (a.path().isEmpty()) irA(a.fragment());
    });
}

void TextoDelManual::irA(const QString& titulo) {
    const QString ancla = comoAncla(titulo);
    moveCursor(QTextCursor::Start);
    for (QTextBlock b = document()->begin(); b.isValid(); b = b.next()) {
        if (b.blockFormat().headingLevel() == 0 ||
            (b.text() != titulo && comoAncla(b.text()) != ancla))
            continue;
        setTextCursor(QTextCursor(b));
        // At the top, not just somewhere in sight.
        verticalScrollBar()->setValue(verticalScrollBar()->value() + cursorRect().top());
        return;
    }
}

QVariant TextoDelManual::loadResource(int tipo, const QUrl& nombre) {
    QVariant cosa = QTextBrowser::loadResource(tipo, nombre);
    if (tipo != QTextDocument::ImageResource) return cosa;
    QImage imagen(QString(kCarpeta) + nombre.path());
    if (imagen.isNull() || imagen.width() <= kAnchoDeImagen) return imagen;
    return imagen.scaledToWidth(kAnchoDeImagen, Qt::SmoothTransformation);
}

VentanaDeManual::VentanaDeManual(QWidget* padre)
    : QWidget(padre, Qt::Window), texto_(control<TextoDelManual>("txtManual", this)) {
    setObjectName("FrmManual");
    setWindowTitle(tr("Manual del operador"));
    setWindowIcon(iconoDelPrograma());
    texto_->setAccessibleName(tr("Manual del operador"));
    auto* todo = hacer<QVBoxLayout>(this);
    todo->addWidget(texto_);
    acomodar(*this, {820, 640});
    prepararVentana(*this);
}

void VentanaDeManual::mostrarEn(const QString& titulo) {
    alFrente(*this);
    texto_->irA(titulo);
}

QString VentanaDeManual::tituloDe(const QWidget* ventana, const QWidget* foco) {
    const auto de = [](const QWidget* w) {
        for (const Lugar& l : kLugares) {
            if (w->objectName() == l.nombre)
                return QString::fromUtf8(enIngles() ? l.enIngles : l.titulo);
        }
        return QString();
    };
    for (const QWidget* w = foco; w != nullptr && w != ventana; w = w->parentWidget()) {
        if (QString titulo = de(w); !titulo.isEmpty()) return titulo;
    }
    return ventana == nullptr ? QString() : de(ventana);
}

} // namespace kv
