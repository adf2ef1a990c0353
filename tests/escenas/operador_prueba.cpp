// SPDX-License-Identifier: Apache-2.0
// What the operator asks for, without any window.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

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

} // namespace kv
