// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apoyo/planta.h"
#include "ventana/manos.h"
#include "window/controls/control.h"
#include "window/ventanas.h"

#include <QAction>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QSettings>
#include <QTabWidget>
#include <QTableView>

namespace kv {

inline constexpr double kMuchoMs = 20'000;

/// Keeps what the messages say, as the program's own output does.
class Salida final : public Observador {
  public:
    void alCambiarEtiqueta(std::string_view /*etiqueta*/, std::string_view /*texto*/) override {}
    void alCambiarColor(std::string_view /*etiqueta*/, Color /*color*/) override {}
    void alMostrarMensaje(std::string_view /*titulo*/, std::string_view texto) override {
        mensajes.emplace_back(texto);
    }
    std::vector<std::string> mensajes;
};

/// What the windows remember from one start to the next.
inline void olvidarTodo() {
    QSettings ajustes(QSettings::IniFormat, QSettings::UserScope, "DriverKV2200", "ventana");
    ajustes.clear();
    QDir carpeta = QFileInfo(ajustes.fileName()).dir();
    for (const QString& archivo : carpeta.entryList({"sucesos-*.txt"}))
        carpeta.remove(archivo);
}

class Principal : public testing::Test {
  protected:
    Principal() { p.motor.vista.observar(&mensajero); }
    ~Principal() override { p.motor.vista.observar(nullptr); }

    void arrancar() {
        p.arrancarYConectar();
        p.avanzar(5'000); // every block of the station that is there has been read
        mostrar();
    }
    void mostrar() {
        p.motor.vista.Form1Visible = true;
        ventanas.mirarVisibilidad();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));
    }
    /// Time passes in the plant, and the window shows what came of it.
    void avanzar(double ms) {
        p.avanzar(ms);
        form.refrescar();
    }
    void escribir(const char* caja, const char* texto) {
        auto& linea = hallar<QLineEdit>(form, caja);
        linea.clear();
        QTest::keyClicks(&linea, texto);
    }
    [[nodiscard]] QString linea(const char* caja) { return hallar<QLineEdit>(form, caja).text(); }
    [[nodiscard]] QString rotulo(const char* nombre) { return hallar<QLabel>(form, nombre).text(); }
    [[nodiscard]] QTableView& variables() { return hallar<QTableView>(form, "lstViewVariables"); }
    [[nodiscard]] QTableView& bloques() {
        hallar<QTabWidget>(form, "fichasDeListas").setCurrentIndex(1);
        return hallar<QTableView>(form, "lstViewEstadoDeBloques");
    }
    [[nodiscard]] static QString celda(const QTableView& tabla, int fila, int columna) {
        return tabla.model()->index(fila, columna).data().toString();
    }
    static void dobleClic(QTableView& tabla, int fila) {
        dobleClic(tabla, tabla.visualRect(tabla.model()->index(fila, 1)).center());
    }
    static void dobleClic(QTableView& tabla, const QPoint& lugar) {
        QTest::mouseClick(tabla.viewport(), Qt::LeftButton, {}, lugar);
        QTest::mouseDClick(tabla.viewport(), Qt::LeftButton, {}, lugar);
        QTest::mouseRelease(tabla.viewport(), Qt::LeftButton, {}, lugar);
    }
    [[nodiscard]] static QPoint tilde(const QTableView& tabla, int fila) {
        const QRect todo = tabla.visualRect(tabla.model()->index(fila, 0));
        return {todo.left() + 10, todo.center().y()};
    }
    void menu(const char* accion) { hallarAccion(accion).trigger(); }
    [[nodiscard]] QAction& hallarAccion(const char* accion) {
        auto* hallada = form.findChild<QAction*>(accion);
        if (hallada == nullptr) qFatal("no action named %s", accion);
        return *hallada;
    }
    [[nodiscard]] QString demanda() {
        form.refrescar();
        return enQt(p.motor.trazas.txtDemandaLecturaEscritura.texto());
    }
    [[nodiscard]] std::string auditoria() {
        return p.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 Escrituras.txt");
    }
    [[nodiscard]] bool logTiene(const char* que) {
        const std::string log =
            p.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt");
        return log.find(que) != std::string::npos;
    }
    /// The text of the message that stands, which is closed.
    [[nodiscard]] QString mensaje() {
        const QMessageBox* caja = mensajeSobre(form);
        if (caja == nullptr) return "";
        const QString texto = caja->text();
        responder(form, "Aceptar");
        return texto;
    }

    const bool deCero_ = (olvidarTodo(), true);
    Configuracion config = Configuracion()
                               .puerto({"1", "0", "30"})
                               .estacion(1, "10.0.0.1", 1)
                               .bloque(1, "10", "1")
                               .bloque(1, "11", "1", true, 1, 2)
                               .bloque(1, "1F", "1")
                               .bloque(1, "20", "1")
                               .estacion(2, "10.0.0.2", 2)
                               .bloque(2, "10", "1");
    Planta p{config};
    Estaciones& plc{p.en("10.0.0.1")};
    Salida salida;
    Mensajero mensajero{salida};
    EditorDeGuion editor{p.archivos, p.motor.guion, p.motor.scriptControl, p.motor.tablas};
    int apagados = 0;
    /// Stands for the program that makes the bundle: it fails where it cannot write.
    const std::vector<std::string> ordenDeEvidencia{"/bin/sh", "-c",
                                                    "echo algo falta >&2; echo toda > \"$0\""};
    Ventanas ventanas{{p.motor.vista, p.motor.sucesos, p.motor.tablas, p.motor.trazas,
                       p.motor.operador, editor, mensajero, "9.9", [this] { ++apagados; },
                       ordenDeEvidencia}};
    Form1& form{ventanas.principal()};
};

} // namespace kv
