// SPDX-License-Identifier: Apache-2.0
// The operator's manual: the same in both languages, and a place in it for every window.

#include "ventana/manos.h"
#include "window/help/ventana_de_manual.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextBlock>

namespace kv {
namespace {

/// What has to be the same whatever the words are: headings by level, tables by rows, pictures, and
/// all keys and options that are shown as such.
QStringList armazon(const char* archivo) {
    QFile manual(QString(KV_FUENTES) + "/docs/" + archivo);
    EXPECT_TRUE(manual.open(QIODevice::ReadOnly)) << archivo;
    static const QRegularExpression titulo("^#+ ");
    static const QRegularExpression clave("`(?:Ctrl|Shift|F[0-9]|Tab|Esc|--)[^`]*`");
    QStringList todo;
    for (const QString& linea : QString::fromUtf8(manual.readAll()).split('\n')) {
        if (const auto t = titulo.match(linea); t.hasMatch()) todo << t.captured();
        if (linea.startsWith("![")) todo << "picture";
        if (!linea.startsWith('|')) continue;
        QStringList fila{"row of " + QString::number(linea.count('|'))};
        for (auto i = clave.globalMatch(linea); i.hasNext();)
            fila << i.next().captured().replace("Espacio", "Space");
        todo << fila.join(' ');
    }
    return todo;
}

/// Whether it is a link into the manual; pictures and links lead somewhere.
bool mirar(const QTextCharFormat& f, TextoDelManual& texto) {
    if (f.isImageFormat()) {
        const QUrl nombre(f.toImageFormat().name());
        const QVariant foto = texto.document()->resource(QTextDocument::ImageResource, nombre);
        EXPECT_FALSE(foto.value<QImage>().isNull()) << qPrintable(nombre.toString());
    }
    const QUrl a(f.anchorHref());
    if (!a.path().isEmpty() || a.fragment().isEmpty()) return false;
    texto.irA(a.fragment());
    EXPECT_GT(texto.textCursor().block().blockFormat().headingLevel(), 1)
        << qPrintable(a.fragment());
    return true;
}

} // namespace

TEST(Manual, DiceLoMismoEnLosDosIdiomas) {
    QStringList es = armazon("manual-operador.md");
    const QStringList en = armazon("operator-manual.md");
    EXPECT_GT(es.size(), 150);
    for (qsizetype i = 0; i < std::min(es.size(), en.size()); ++i)
        ASSERT_EQ(es[i].toStdString(), en[i].toStdString())
            << "the " << i << "th of headings, rows and pictures";
    EXPECT_EQ(es.size(), en.size());
}

TEST(Manual, CadaVentanaTieneSuLugarYCadaEnlaceSuTitulo) {
    for (const char* idioma : {"", "en"}) {
        const EnIdioma esta(idioma);
        VentanaDeManual ventana(nullptr);
        auto& texto = hallar<TextoDelManual>(ventana, "txtManual");
        const auto titulo = [&] { return texto.textCursor().block().text(); };
        for (const char* nombre : {"Form1", "FrmEscritura", "FrmScript", "FrmServerTCP",
                                   "FrmPuertos", "FrmAbout", "FrmResumen", "FrmSucesos",
                                   "FrmTendencias", "FrmConexion", "FrmPorQue", "dlgPregunta"}) {
            QWidget otra;
            otra.setObjectName(nombre);
            const QString suyo = VentanaDeManual::tituloDe(&otra, nullptr);
            ASSERT_FALSE(suyo.isEmpty()) << nombre;
            ventana.mostrarEn(suyo);
            EXPECT_EQ(titulo(), suyo) << nombre;
        }
        int enlaces = 0;
        for (QTextBlock b = texto.document()->begin(); b.isValid(); b = b.next()) {
            for (auto i = b.begin(); !i.atEnd(); ++i)
                enlaces += mirar(i.fragment().charFormat(), texto) ? 1 : 0;
        }
        EXPECT_GE(enlaces, 16);
    }
}

} // namespace kv
