// SPDX-License-Identifier: Apache-2.0
// A client comes, says who it is, and is or is not served.

#include "apoyo.h"

#include <gtest/gtest.h>

namespace kv {

TEST(Login, LaClaveDeLaHoraYNingunaOtra) {
    PlantaConServidor p(tresBloques());
    p.arrancar();
    EXPECT_EQ(p.planta.motor.vista.servidor.lblPuertoServidor.texto(), "Puerto 1334");
    p.cliente.conectar();
    p.planta.avanzar(1000);
    (void)p.cliente.tomar(); // the first synchronisation
    p.cliente.enviar("Password:Lumo+7252025111607");
    p.cliente.enviar(p.cliente.clave(1));
    p.cliente.enviar(p.cliente.clave(-1));
    const std::string clave = p.cliente.clave();
    p.cliente.enviar(clave.substr(0, 60));
    p.cliente.enviar(clave.substr(60));
    p.cliente.enviar("Read;1.1.10;FinRead;[Write]1.1.10;5[/Write]");
    EXPECT_EQ(p.cliente.tomar(), "");
    p.cliente.enviar(p.cliente.clave());
    EXPECT_EQ(p.cliente.tomar(), "PassOK");
    p.cliente.enviar("Read;1.1.10;FinRead;");
    EXPECT_EQ(p.cliente.tomar(), "[DRI]#1.1.10;0;13;#[/DRI]");
    EXPECT_EQ(p.ordenes.tomar(), Textos{});
    EXPECT_NE(
        p.planta.motor.trazas.Text2.texto().find("16/11/2025 07:05:11[Read;1.1.10;FinRead;]\r\n"),
        std::string::npos)
        << p.planta.motor.trazas.Text2.texto();
}

TEST(Login, CambioDeHoraYDeDia) {
    PlantaConServidor p(tresBloques());
    p.planta.bucle.relojSimulado().ponerFecha(1'767'225'599); // 31 December 2025, 23:59:59
    p.arrancar();
    p.cliente.conectar();
    const std::string vieja = p.cliente.clave();
    p.planta.avanzar(1000);
    (void)p.cliente.tomar();
    EXPECT_EQ(formatoDeHora(p.planta.bucle.reloj().ahora()), "2026010100");
    p.cliente.enviar(vieja);
    EXPECT_EQ(p.cliente.tomar(), "");
    p.cliente.enviar(p.cliente.clave());
    EXPECT_EQ(p.cliente.tomar(), "PassOK");
}

TEST(Login, UnSegundoClienteNoEntraYElSiguienteSeIdentificaDeNuevo) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.otro.conectar();
    p.planta.avanzar(5000);
    EXPECT_FALSE(p.otro.conectado);
    EXPECT_EQ(p.otro.tomar(), "");
    EXPECT_EQ(p.planta.motor.vista.servidor.lblEstado.texto(), "Conectado");
    p.cliente.cerrar();
    p.planta.avanzar(3000);
    EXPECT_EQ(p.planta.motor.vista.servidor.lblEstado.texto(), "Error");
    EXPECT_EQ(p.estado(), EstadoZocalo::Escuchando);
    p.otro.conectar();
    p.otro.enviar("[Write]1.1.10;5[/Write]");
    EXPECT_EQ(p.ordenes.tomar(), Textos{}) << "its predecessor's login is not its own";
    p.otro.enviar(p.otro.clave());
    EXPECT_EQ(p.otro.tomar(), "PassOK");
    p.otro.enviar("[Write]1.1.10;5[/Write]");
    EXPECT_EQ(p.ordenes.tomar(), Textos{"escribir 1.1.10 5"});
    EXPECT_EQ(p.ordenes.ultimoOrigen, "cliente 10.0.0.10:50001");
}

TEST(Login, TrasDiezClavesErradasHayUnaPausa) {
    PlantaConServidor p(tresBloques());
    p.arrancar();
    p.cliente.conectar();
    for (int i = 0; i < 30; ++i)
        p.cliente.enviar("[KEEP_DESDE_DRI]"); // no passwords
    for (int i = 0; i < 9; ++i)
        p.cliente.enviar("12345");
    p.cliente.enviar(p.cliente.clave());
    EXPECT_EQ(p.cliente.tomar(), "PassOK") << "nine are no ten";
    p.cliente.cerrar();
    p.planta.avanzar(3000);
    p.cliente.conectar();
    p.planta.avanzar(1000);
    p.cliente.enviar("12345");
    (void)p.cliente.tomar();
    p.cliente.enviar(p.cliente.clave());
    EXPECT_EQ(p.cliente.tomar(), "") << "not even the right one, and not by coming again";
    EXPECT_EQ(veces(p.log(), "demasiadas claves"), 1U);
    p.cliente.contesta = true;
    p.planta.avanzar(60'000);
    (void)p.cliente.tomar();
    p.cliente.conectado ? void() : p.cliente.conectar();
    p.cliente.enviar(p.cliente.clave());
    EXPECT_NE(p.cliente.tomar().find("PassOK"), std::string::npos);
}

} // namespace kv
