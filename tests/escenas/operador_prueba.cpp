// SPDX-License-Identifier: Apache-2.0
// What the operator asks for, without any window.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace kv {

TEST(Operador, LaDireccionSiguienteCuentaEnHexadecimalYPasaDeBitABit) {
    for (const auto& [esta, siguiente] : {std::pair{"1.1.10", "1.1.11"},
                                          {"1.1.0F", "1.1.10"},
                                          {"1.1.FF", "1.1.100"},
                                          {"1.1.40001", "1.1.40002"},
                                          {"1.1.10.3", "1.1.10.4"},
                                          {"1.1.1F.15", "1.1.20.0"}})
        EXPECT_EQ(direccionSiguiente(esta), siguiente) << esta;
    for (const char* ninguna :
         {"", "10", "1.1.", "1.1.XY", "1.1.10.x", "1.1.FFFFFFFF", "1.1.10.-1"})
        EXPECT_EQ(direccionSiguiente(ninguna), std::nullopt) << ninguna;
}

TEST(Operador, LaFilaDeUnBitAbreLaEscrituraDelBit) {
    Configuracion config;
    config.puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "1");
    Planta p(config);
    Estaciones& plc = p.en("10.0.0.1");
    plc.registros[{1, 0x10}] = 8;
    p.archivos.poner("/kv/descripciones.csv", "direccion;descripcion\n1.1.10.3;Bomba\n");
    p.arrancarYConectar();
    Operador& operador = p.motor.operador;
    operador.forzarLectura(" 1.1.10.3 ");
    p.avanzar(5'000);
    const auto apertura = operador.abrirEscritura(1);
    EXPECT_TRUE(apertura.abrir);
    EXPECT_EQ(apertura.puerto + "/" + apertura.plc + "/" + apertura.direccion, "1/1/10.3");
    EXPECT_EQ(apertura.valor, 1);
    ASSERT_NE(operador.descripcionDe("1.1.10.3"), nullptr);
    EXPECT_EQ(operador.descripcionDe("1.1.10.3")->texto, "Bomba");
    EXPECT_EQ(operador.descripcionDe("1.1.10"), nullptr) << "the register has none of its own";
    EXPECT_FALSE(operador.abrirEscritura(7).abrir);
    EXPECT_TRUE(operador.abrirEscritura(7).aviso.vacio()) << "no such row, no word";
    EXPECT_EQ(operador.preguntarScan(7), std::nullopt);
    operador.activarBloque(99, true);
    EXPECT_TRUE(operador.responderScan(99, "5").vacio());
}

TEST(Operador, UnaTrazaSeGuardaEnLaLetraDelCampoOSeDiceQueNo) {
    Planta p(std::string{});
    EXPECT_TRUE(p.motor.operador.guardar("/kv/traza.txt", "Envío\r\n").vacio());
    EXPECT_EQ(p.archivos.contenido("/kv/traza.txt"), "Env\xEDo\r\n");
    p.archivos.negarEscrituras(true);
    EXPECT_EQ(p.motor.operador.guardar("/kv/otra.txt", "x").texto,
              "No se puede escribir /kv/otra.txt");
}

TEST(Operador, LoQueNoSeAceptaSeDiceEnSuIdioma) {
    Configuracion config;
    config.puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "1", false);
    Planta p(config);
    p.arrancar();
    Operador& operador = p.motor.operador;
    const auto todo = [&] {
        const std::array pares{Operador::Par{"1.1.10", "1"}, Operador::Par{"1.1.11", "x"}};
        std::string sinSiguiente = "1.1.XY";
        p.archivos.negarEscrituras(true);
        const std::vector<std::string> dicho{
            operador.escribirValor("", "1").texto,
            operador.enviarPares(pares).texto,
            operador.escribirOtraDireccion(sinSiguiente, "1").texto,
            operador.responderScan(0, "-1").texto,
            operador.preguntarScan(0)->texto,
            operador.forzarPorNivel("", "1").texto,
            operador.forzarPorNivel("1", "x").texto,
            operador.abrirEscritura(0).aviso.texto,
            operador.guardar("/kv/x.txt", "").texto,
            std::string(operador.loQueSeLee("1.1.10").substr(0, 13))};
        p.archivos.negarEscrituras(false);
        return dicho;
    };
    const auto castellano = todo();
    operador.hablarEn(Idioma::Ingles);
    EXPECT_EQ(todo(), (std::vector<std::string>{
                          "Entry error\r\nAddress: missing", "Entry error\r\nValue 2: not a number",
                          "Entry error\r\nAddress: there is no next one",
                          "Entry error\r\nScan: from 0.001 s to a year, or 0",
                          "Scan time of the block (seconds)\r\n1.1.10/1\r\n0: read on connecting "
                          "and when forced",
                          "The level and/or the number of polls is missing\r\nLevel",
                          "The level and/or the number of polls is not a whole number\r\nTimes",
                          "Impossible. No connection with the station",
                          "/kv/x.txt cannot be written", "0   BAD (off)"}));
    operador.hablarEn(Idioma::Castellano);
    EXPECT_EQ(todo(), castellano);
    EXPECT_EQ(castellano.front(), "Error de Ingreso\r\nDirección: falta");
}

} // namespace kv
