// SPDX-License-Identifier: Apache-2.0
#include "main/con_ventana.h"

#include "cli/version.h"
#include "window/controls/aplicacion.h"
#include "window/controls/idioma.h"
#include "window/ventanas.h"

#include <stdexcept>

namespace kv {
namespace {

/// This program once more, by the file that it runs from: it may have been replaced meanwhile.
std::vector<std::string> ordenDeEvidencia(const Opciones& opciones) {
    std::vector<std::string> orden{"/proc/self/exe", "--carpeta", opciones.carpeta};
    if (!opciones.grabar.archivo.empty())
        orden.insert(orden.end(), {"--con-grabacion", opciones.grabar.archivo});
    orden.emplace_back("--evidencia");
    return orden;
}

} // namespace

int correrConVentana(const Opciones& opciones) {
    if (!hayPantalla())
        throw std::runtime_error(
            "no hay pantalla donde mostrar la ventana; con --sin-ventana corre sin ella");
    Programa programa(opciones, Aplicacion::terminar);
    Motor& motor = programa.motor;
    Aplicacion aplicacion(
        programa.bucle.descriptor(), [&programa] { programa.bucle.atender(); },
        [&motor](const std::string& control, const char* que) {
            motor.log.escribirLog("DRIVER", "Ventana", control, que);
        });
    // The window reads settings of its own: questions of the engine may be recorded, and this is
    // not one.
    Ajustes ajustes(programa.archivos, opciones.carpeta);
    ponerIdioma(
        ajustes.leerIni(ajustes.archivoDeAjustes(), kSeccionDeAjustes, kIdiomaVentana.clave, ""));
    Mensajero mensajero(programa.salida);
    motor.vista.observar(&mensajero);
    const bool unico = programa.arranque.soyElUnico();
    if (unico) {
        EditorDeGuion editor(programa.archivos, motor.guion, motor.scriptControl, motor.tablas);
        Ventanas ventanas({motor.vista, motor.sucesos, motor.tablas, motor.trazas, motor.operador,
                           editor, mensajero, std::string(version()), Aplicacion::terminar,
                           ordenDeEvidencia(opciones)});
        bool corriendo = true;
        programa.bucle.alFinalDeVuelta([&] {
            if (corriendo) ventanas.mirarVisibilidad();
        });
        programa.arrancar();
        aplicacion.correr();
        corriendo = false;
        programa.cerrar();
    } else {
        mensajero.alCerrarTodos(Aplicacion::terminar);
        aplicacion.correr();
    }
    motor.vista.observar(&programa.salida);
    return unico ? kOrdenado : kYaCorre;
}

} // namespace kv
