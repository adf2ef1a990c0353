// SPDX-License-Identifier: Apache-2.0
// A connection's life: asked for, found, polled, lost, asked for again.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

constexpr double kTic = 5000;

Configuracion unaEstacion(const std::string& scan = "2") {
    return Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", scan);
}

} // namespace

TEST(Conexion, SePideEnLosTics1_5_9_13_17PausaYVuelveEnEl22) {
    auto config = unaEstacion();
    Planta p(config);
    p.arrancar(); // nobody is at the address: every attempt is refused
    std::string intentos;
    double antes = 0;
    for (int tic = 1; tic <= 22; ++tic) {
        p.avanzar(kTic);
        const ConexionIP& c = p.conexion(0);
        if (c.contadorSolicitudes != antes || (tic == 17 && c.enTiempoFuera))
            intentos += std::to_string(tic) + " ";
        antes = c.contadorSolicitudes;
        if (tic == 17) {
            EXPECT_EQ(p.motor.conexiones.wsSocket(0).estado(), EstadoZocalo::Cerrado);
            EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 7), "0/3");
        }
        if (tic == 20) {
            EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 7), "3/3");
        }
    }
    EXPECT_EQ(intentos, "1 5 9 13 17 22 ");
    EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 1), "10.0.0.1:502");
    EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 4), "5000");
    EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 5), "1/3");
    EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 6), "1/5");
}

TEST(Conexion, EmpiezaAPolearEnLaSupervisionSiguienteYPideEnseguida) {
    auto config = unaEstacion("600"); // a block that would wait ten minutes for its first tick
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancar();
    p.avanzar(9999);
    EXPECT_EQ(plc.conexiones, 1);
    EXPECT_EQ(plc.pedidos.size(), 0U);
    p.avanzar(1);
    EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 2), "Conectado OK");
    p.avanzar(1);
    EXPECT_EQ(plc.pedidos.size(), 1U);
    EXPECT_EQ(p.valor(0), 116) << "station 1, register 10 hexadecimal";
    EXPECT_TRUE(p.ok(0));
    p.avanzar(kTic * 4);
    EXPECT_EQ(plc.pedidos.size(), 1U) << "activated once, not at every pass";
}

TEST(Conexion, UnaPerdidaPoneTodoEnBadUnaVezYSeRecupera) {
    auto config = Configuracion()
                      .puerto()
                      .estacion(1, "10.0.0.1", 1)
                      .estacion(2, "10.0.0.2", 1)
                      .bloque(1, "10", "2")
                      .bloque(1, "11", "2", false)
                      .bloque(2, "10", "2");
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.en("10.0.0.2");
    p.arrancarYConectar();
    p.avanzar(1000);
    ASSERT_TRUE(p.ok(0) && p.ok(2));
    p.bucle.red().rechazar("10.0.0.1", 502);
    plc.cortar();
    p.avanzar(kTic);
    EXPECT_FALSE(p.ok(0));
    EXPECT_TRUE(p.ok(2)) << "another connection's variables stay";
    EXPECT_EQ(p.fila(p.motor.vista.lstViewVariables, 0, 2), "BAD");
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_10_STATUS"), 13);
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_11_STATUS"), 13) << "never read";
    EXPECT_EQ(p.conexion(0).turno, EstadoDeTurno::Libre);
    p.en("10.0.0.1");
    p.bucle.red().atender("10.0.0.1", 502, plc);
    p.avanzar(30'000);
    EXPECT_TRUE(p.ok(0));
}

TEST(Conexion, UnEnlaceQueSeFueYVolvioEntreDosSupervisionesTambienSePerdio) {
    auto config = unaEstacion();
    Planta p(config);
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(2500);
    ASSERT_TRUE(p.ok(0));
    p.motor.conexiones.wsSocket(0).conectar("10.0.0.1", 502); // behind the supervision's back
    p.avanzar(100);
    plc.demora = [](const Solicitud&) { return std::nullopt; };
    p.avanzar(2400);
    EXPECT_FALSE(p.ok(0));
    EXPECT_EQ(p.conexion(0).estadoSupervision, 1);
}

TEST(Conexion, LosAjustesSeLeenMientrasAnda) {
    auto config = unaEstacion();
    Planta p(config);
    p.arrancar();
    EXPECT_EQ(p.archivos.contenido("/kv/sis_config.ini").find("Tiempo_Entre_poleo=800") !=
                  std::string::npos,
              true)
        << "a missing key is written back with its default";
    p.avanzar(kTic);
    p.ajuste("Base_Tiempo_Solicitar_Conexiones_Milisegundos", "1000");
    p.ajuste("Tiempo_Entre_poleo", "100");
    p.avanzar(kTic);
    p.avanzar(1000);
    EXPECT_EQ(p.fila(p.motor.vista.lstViewSockets, 0, 4), "1000");
    EXPECT_EQ(p.motor.turnos.pausa(), 100);
    p.ajuste("Tiempo_Entre_poleo", "mucho");
    p.avanzar(kTic * 3);
    EXPECT_EQ(p.motor.turnos.pausa(), 100) << "the last good value";
    const std::string log =
        p.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt");
    const auto primera = log.find("Tiempo_Entre_poleo=mucho");
    EXPECT_NE(primera, std::string::npos) << log;
    EXPECT_EQ(log.find("=mucho", primera + 25), std::string::npos) << "said once";
}

TEST(Arranque, SinConfiguracionArrancaConCeroPuntos) {
    Planta p(std::string{});
    EXPECT_TRUE(p.arranque.soyElUnico());
    p.arrancar();
    EXPECT_EQ(p.motor.vista.lblCantidadDePuntos.texto(), "0");
    p.avanzar(60'000);
    EXPECT_EQ(p.motor.vista.Form1Visible, false);
    EXPECT_NE(p.archivos.contenido("/kv/sis_config.ini").find("VER=0"), std::string::npos);
    p.ajuste("VER", "1"); // what a second start of the program does
    p.avanzar(kTic);
    EXPECT_TRUE(p.motor.vista.Form1Visible);
    p.motor.operador.MnuOcultar();
    p.avanzar(kTic);
    EXPECT_FALSE(p.motor.vista.Form1Visible);
}

TEST(Arranque, LosProblemasQueNoCabenEnElLogSeCuentan) {
    Configuracion config;
    config.puerto().estacion(1, "10.0.0.1", 1);
    for (int i = 0; i < 120; ++i)
        config.bloque(2, "10", "1");
    Planta p(config);
    p.arrancar();
    p.avanzar(kTic);
    const std::string log =
        p.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt");
    EXPECT_NE(log.find("y 30 problemas mas; vea --comprobar"), std::string::npos)
        << log.substr(log.size() - 600);
}

TEST(Arranque, UnaSegundaInstanciaAvisaYNoTocaNada) {
    auto config = unaEstacion();
    Planta p(config);
    EXPECT_TRUE(p.arranque.soyElUnico());
    p.procesos.libre = false;
    EXPECT_FALSE(p.arranque.soyElUnico());
    EXPECT_FALSE(p.archivos.existe("/kv/sis_config.ini"))
        << "it would pass for the one that is lost";
    p.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\n");
    p.motor.ajustes.vueltaNueva();
    EXPECT_FALSE(p.arranque.soyElUnico());
    EXPECT_NE(p.archivos.contenido("/kv/sis_config.ini").find("VER=1"), std::string::npos);
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 0U);
}

} // namespace kv
