// SPDX-License-Identifier: Apache-2.0
// What a client that has logged in asks for, and what it gets.

#include "apoyo.h"

#include <gtest/gtest.h>

namespace kv {

TEST(Ordenes, VariasEnUnaLlegadaEnOrdenYEnMinusculas) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.cliente.enviar("[write]1.1.10;5[/WRITE][Write]1.1.11;-7.5;x[/Write];[forzniv]2;3[/forzniv]"
                     "read;1.1.12;finread;Read;9.9.9;FinRead;[Write]solo[/Write]");
    EXPECT_EQ(p.ordenes.tomar(),
              (Textos{"escribir 1.1.10 5", "escribir 1.1.11 -7.5", "forzar 2 3", "polear 9.9.9"}));
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK][WRITE_OK][WRITE_OK][DRI]#1.1.12;0;13;#[/DRI]");
    p.cliente.enviar("[Write]a;1[/Write][Write]a;0[/Write][Write]a;1[/Write]");
    EXPECT_EQ(p.ordenes.tomar(), (Textos{"escribir a 1", "escribir a 0"}));
    EXPECT_NE(p.planta.motor.trazas.Text2.texto().find("1 escrituras repetidas"),
              std::string::npos);
}

TEST(Ordenes, UnaTramaPartidaSePierde) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.cliente.enviar("[Write]1.1.1");
    p.cliente.enviar("0;5[/Write]");
    p.cliente.enviar("Read;1.1.10;Fin");
    p.cliente.enviar("Read;");
    p.cliente.enviar("Read;FinRead;");
    EXPECT_EQ(p.cliente.tomar(), "");
    EXPECT_EQ(p.ordenes.tomar(), Textos{"polear "});
}

TEST(Ordenes, UnNumeroMaloPierdeElRestoDeLaLlegadaYQuedaEnElLog) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.cliente.enviar("[Write]a;1[/Write][Write]b;x\r\ny[/Write][Write]c;1[/Write]SINCRONIZAR");
    EXPECT_EQ(p.ordenes.tomar(),
              (Textos{"escribir a 1", "rechazar b nan: el valor no es un numero"}));
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK][WRITE_OK]");
    const std::string log = p.log();
    EXPECT_NE(log.find("DriverKV2200>arriba datos>"), std::string::npos) << log;
    EXPECT_NE(log.find("x y en b;x y, de 10.0.0.9:50000 Datos: [Write]c;1[/Write]SINCRONIZAR\r\n"),
              std::string::npos)
        << log;
    p.planta.avanzar(2000);
    EXPECT_EQ(p.cliente.tomar().find("[SINK_FIN]"), std::string::npos);
    // However often it happens, the log is bounded.
    for (int i = 0; i < 300; ++i)
        p.cliente.enviar("[FORZNIV]x;" + std::to_string(i) + std::string(60'000, 'y') +
                         "[/FORZNIV]");
    EXPECT_LT(p.log().size(), 200'000U);
    p.planta.avanzar(63'000);
    EXPECT_EQ(veces(p.log(), "entradas mas"), 1U);
    p.cliente.conectar();
    p.cliente.enviar(p.cliente.clave());
    for (int i = 0; i < LogAcotado::kPorMinuto + 10; ++i)
        p.cliente.enviar("[FORZNIV]x;y[/FORZNIV]");
    EXPECT_EQ(veces(p.log(), "entradas mas"), 1U);
    p.servidor.terminar();
    EXPECT_EQ(veces(p.log(), ">y 10 entradas mas"), 1U) << "told at the end, too";
}

TEST(Ordenes, LosBytesDelCampoVanYVuelven) {
    auto config = tresBloques();
    PlantaConServidor p(config);
    p.planta.ajuste("primerSeparador", "|");
    p.planta.ajuste("tramasSeparador", "~~");
    p.planta.motor.vista.FrmServerTCPVisible = true;
    p.arrancarConCliente();
    p.cliente.enviar("Read;1.1.10;FinRead;[Write]Ca\xF1o;1[/Write]");
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK][DRI]~~1.1.10|0|13|~~[/DRI]");
    EXPECT_EQ(p.ordenes.tomar(), Textos{"escribir Caño 1"});
    EXPECT_TRUE(p.planta.motor.trazas.Text1.texto().ends_with("[DRI]~~1.1.10|0|13|~~[/DRI]\r\n"));
    std::uint64_t visto = p.planta.motor.sucesos.siguiente();
    p.planta.motor.vista.FrmServerTCPVisible = false;
    p.cliente.enviar("Read;1.1.10;FinRead;");
    EXPECT_EQ(p.cliente.tomar(), "[DRI]~~1.1.10|0|13|~~[/DRI]") << "hidden, and served on";
    std::string nuevo;
    EXPECT_TRUE(p.planta.motor.trazas.Text1.seguir(visto, nuevo));
    EXPECT_EQ(nuevo, "");
}

TEST(Ordenes, UnaLlegadaDentroDeOtraEsperaSuFin) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    bool primera = true;
    p.ordenes.alHacer = [&] {
        if (!std::exchange(primera, false)) return;
        const std::string dentro = "[Write]dentro;2[/Write]";
        p.planta.bucle.red().enviar(
            p.cliente.enlace(),
            {reinterpret_cast<const std::uint8_t*>(dentro.data()), dentro.size()});
        p.planta.bucle.demorar(5);
        p.planta.bucle.dejarCorrerPendientes();
    };
    p.cliente.enviar("[Write]a;1[/Write][Write]b;1[/Write]Read;1.1.10;FinRead;");
    p.planta.avanzar(5); // an order that takes long is the last one of its turn
    EXPECT_EQ(p.ordenes.tomar(), (Textos{"escribir a 1", "escribir b 1", "escribir dentro 2"}));
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK][WRITE_OK][DRI]#1.1.10;0;13;#[/DRI][WRITE_OK]");
}

TEST(Ordenes, UnaSesionQueReemplazaAOtraNoHeredaNada) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.ordenes.alHacer = [&] {
        p.ordenes.alHacer = nullptr;
        p.planta.bucle.red().cortar(p.cliente.enlace());
        p.planta.bucle.demorar(4000);
        p.planta.bucle.dejarCorrerPendientes(); // the state timer listens again
        p.otro.pedir();
        p.planta.bucle.demorar(5);
        p.planta.bucle.dejarCorrerPendientes();
    };
    p.cliente.enviar("[Write]a;1[/Write][Write]b;1[/Write]SINCRONIZARRead;1.1.10;FinRead;");
    EXPECT_TRUE(p.otro.conectado);
    EXPECT_EQ(p.ordenes.tomar(), Textos{"escribir a 1"});
    p.planta.avanzar(3000);
    EXPECT_EQ(p.otro.tomar(), "");
}

TEST(Sincronismo, ElPrimeroSaleSoloYVeintitresVariablesVanEn10_10_3) {
    auto config = Configuracion()
                      .puerto()
                      .estacion(1, "10.0.0.1", 1)
                      .bloque(1, "10", "2", true, 23)
                      .bloque(1, "40", "2");
    PlantaConServidor p(config);
    p.arrancar();
    p.planta.avanzar(1500); // nobody there: it waits
    p.cliente.conectar();
    p.planta.avanzar(1000);
    std::string debido;
    int registro = 0x10;
    for (const int n : {10, 10, 3}) {
        debido += "[DRI]#";
        for (int i = 0; i < n; ++i) {
            char texto[32];
            std::snprintf(texto, sizeof texto, "1.1.%02X;0;13;", registro++);
            debido += texto;
        }
        debido += "#[/DRI]";
    }
    debido += "[DRI]#1.1.40;0;13;#[/DRI][SINK_FIN]";
    EXPECT_EQ(p.cliente.tomar(), debido);
    EXPECT_EQ(p.cliente.envios, 1U) << "gathered into one piece";
    p.planta.avanzar(4000);
    EXPECT_EQ(p.cliente.tomar(), "") << "only once";
    p.cliente.enviar(p.cliente.clave());
    p.cliente.enviar("sincronizarSINCRONIZAR");
    p.planta.avanzar(1001);
    EXPECT_EQ(p.cliente.tomar(), "PassOK" + debido);
}

TEST(Sincronismo, NoSeAnidaYUnPedidoDuranteOtroSeAtiendeDespues) {
    Configuracion config;
    config.puerto().estacion(1, "10.0.0.1", 1);
    for (int i = 0; i < 100; ++i)
        config.bloque(1, "10", "0");
    PlantaConServidor p(config);
    p.arrancarConCliente();
    bool pedido = false;
    const auto cadena = p.planta.bucle.crearTemporizador([&] {
        if (std::exchange(pedido, true)) return;
        // In the very instant of the synchronisation, so that it falls into one of its yields.
        const std::string otra = "SINCRONIZAR";
        p.planta.bucle.red().fijarLatencia(0);
        p.planta.bucle.red().enviar(
            p.cliente.enlace(), {reinterpret_cast<const std::uint8_t*>(otra.data()), otra.size()});
    });
    p.cliente.enviar("SINCRONIZAR");
    cadena->rearmar(1000); // due with it, and ticking before or inside it
    p.planta.avanzar(1001);
    EXPECT_TRUE(pedido);
    EXPECT_EQ(veces(p.cliente.tomar(), "[SINK_FIN]"), 1U);
    p.planta.avanzar(1000);
    EXPECT_EQ(veces(p.cliente.tomar(), "[SINK_FIN]"), 1U);
    p.planta.avanzar(3000);
    EXPECT_EQ(veces(p.cliente.tomar(), "[SINK_FIN]"), 0U);
}

TEST(Sincronismo, ElQueNoLlegoEnteroSeLeDebeAlSiguiente) {
    Configuracion config;
    config.puerto().estacion(1, "10.0.0.1", 1);
    for (int i = 0; i < 100; ++i)
        config.bloque(1, "10", "0");
    PlantaConServidor p(config);
    p.arrancar();
    const auto corte = p.planta.bucle.crearTemporizador([&] {
        p.planta.bucle.red().fijarLatencia(0);
        p.planta.bucle.red().cortar(p.cliente.enlace());
    });
    corte->rearmar(1000); // due with the first synchronisation, and ticking inside it
    p.cliente.conectar();
    p.planta.avanzar(2000);
    EXPECT_FALSE(p.estado() == EstadoZocalo::Conectado);
    corte->habilitar(false);
    p.planta.avanzar(3000);
    p.otro.conectar();
    p.planta.avanzar(1000);
    EXPECT_EQ(veces(p.otro.tomar(), "[SINK_FIN]"), 1U);
}

TEST(Novedades, LoQueCambiaSeAvisaSinPedirlo) {
    PlantaConServidor p(tresBloques());
    auto& plc = p.planta.en("10.0.0.1");
    p.arrancarConCliente();
    p.cliente.contesta = true;
    p.planta.avanzar(12'000);
    const std::string buenas = p.cliente.tomar();
    EXPECT_EQ(veces(buenas, "[DRI]#1.1.10;116;6;#[/DRI]"), 1U) << buenas;
    EXPECT_EQ(veces(buenas, "[DRI]#1.1.12;118;6;#[/DRI]"), 1U) << buenas;
    p.planta.bucle.red().rechazar("10.0.0.1", 502);
    plc.cortar();
    p.planta.avanzar(6000);
    EXPECT_EQ(veces(p.cliente.tomar(), ";13;#[/DRI]"), 3U);
}

} // namespace kv
