// SPDX-License-Identifier: Apache-2.0
// The real program with its window, on a screen of its own, and without any screen.

#include "programas.h"

#include "apoyo/configuracion.h"

#include <csignal>
#include <cstdlib>

namespace kv::extremo {
namespace {

/// The program with a window: on a virtual screen, or on one that is not there.
std::vector<std::string> conVentana(const Instalacion& casa, bool hayPantalla) {
    std::vector<std::string> orden{casa.programa(), "--traza"};
    // What windows remember is not that of whoever runs the tests.
    const std::vector<std::string> antes =
        hayPantalla ? std::vector<std::string>{"/usr/bin/env", "XDG_CONFIG_HOME=" + casa.ruta(),
                                               std::string(KV_FUENTES) + "/scripts/con_pantalla.sh"}
                    : std::vector<std::string>{"/usr/bin/env",    "-u", "DISPLAY",        "-u",
                                               "WAYLAND_DISPLAY", "-u", "QT_QPA_PLATFORM"};
    orden.insert(orden.begin(), antes.begin(), antes.end());
    return orden;
}

} // namespace

TEST(Ventana, SinPantallaTermina2YNoEmpiezaNada) {
    const Instalacion casa(Configuracion().puerto().texto());
    const auto habia = casa.nombres();
    const std::string ajustes = casa.leer("sis_config.ini");
    Proceso driver(conVentana(casa, false));
    EXPECT_EQ(driver.resto(), "");
    EXPECT_EQ(driver.terminar(), 2);
    EXPECT_NE(driver.errores().find("no hay pantalla"), std::string::npos) << driver.errores();
    EXPECT_EQ(casa.nombres(), habia);
    EXPECT_EQ(casa.leer("sis_config.ini"), ajustes);
}

TEST(Ventana, ConVERSeMuestraPoleaYTerminaConLaSenal) {
    Simulador s({0}, {"--registro", "01.10=rampa"});
    const Instalacion casa(Configuracion()
                               .puerto()
                               .estacion(1, "127.0.0.1", 1, s.puerto(0))
                               .bloque(1, "10", "0.1")
                               .texto());
    Proceso driver(conVentana(casa, true));
    EXPECT_NE(driver.lineaCon("lblCantidadDePuntos: 1"), "") << driver.errores();
    recibido(driver, "1", "10");
    // A second start shows the window of the first and says why it does not stay. Its own message
    // box waits for an operator to close it; a signal will do.
    Proceso segunda(conVentana(casa, true));
    while (casa.leer("sis_config.ini").find("VER=1") == std::string::npos)
        recibido(driver, "1", "10");
    EXPECT_EQ(segunda.terminar(SIGTERM), 1);
    EXPECT_NE(segunda.errores().find("Programa en ejecucion"), std::string::npos);
    for (int i = 0; i < 60; ++i) // past the next look at VER, and on with the window shown
        recibido(driver, "1", "10");
    EXPECT_EQ(driver.terminar(SIGTERM), 0) << driver.errores();
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST(Ventana, LaSenalDuranteElArranqueTambienTermina) {
    const Instalacion casa(plantaGrande());
    EXPECT_EQ(terminarAlArrancar(casa, conVentana(casa, true)), 0);
}

} // namespace kv::extremo
