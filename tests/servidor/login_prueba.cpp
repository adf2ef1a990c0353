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
    EXPECT_NE(p.planta.motor.vista.servidor.Text2.texto().find(
                  "16/11/2025 07:05:11[Read;1.1.10;FinRead;]\r\n"),
              std::string::npos)
        << p.planta.motor.vista.servidor.Text2.texto();
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

TEST(Puerta, SoloEntranLosPermitidos) {
    PlantaConServidor p(tresBloques());
    p.planta.ajuste("Escucha_Clientes_Permitidos", "10.0.0.8, 10.0.0.10/32;todos");
    p.arrancar();
    p.cliente.conectar();
    EXPECT_FALSE(p.cliente.conectado);
    p.otro.conectar();
    EXPECT_TRUE(p.otro.conectado);
    EXPECT_EQ(veces(p.log(), "no esta entre los permitidos"), 1U);
    EXPECT_EQ(veces(p.log(), "todos no es direccion"), 1U);
    p.otro.cerrar();
    p.planta.ajuste("Escucha_Clientes_Permitidos", "nadie");
    p.planta.avanzar(6000);
    p.otro.conectar();
    EXPECT_FALSE(p.otro.conectado) << "a list without a good address is no open door";
    p.planta.ajuste("Escucha_Clientes_Permitidos", "10.0.0.0/28");
    p.otro.conectar();
    EXPECT_TRUE(p.otro.conectado);
}

TEST(Puerta, AjustesQueNuncaSePudieronLeerNoDejanEntrarANadie) {
    PlantaConServidor p(tresBloques());
    const std::string enorme = "[DRIVER_KV2200]\r\n" + std::string(5U << 20, ';');
    p.planta.archivos.poner("/kv/sis_config.ini", enorme);
    p.arrancar();
    p.cliente.conectar();
    EXPECT_FALSE(p.cliente.conectado);
    p.planta.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\n");
    p.planta.avanzar(3000);
    p.cliente.conectar();
    EXPECT_TRUE(p.cliente.conectado);
    // Once it was read, a file that cannot be read any more leaves the door as it was.
    p.cliente.cerrar();
    p.planta.archivos.poner("/kv/sis_config.ini", enorme);
    p.planta.avanzar(6000);
    p.cliente.conectar();
    EXPECT_TRUE(p.cliente.conectado);
}

TEST(Puerta, Redes) {
    EXPECT_TRUE(redDeTexto("10.0.0.9"));
    EXPECT_EQ(redDeTexto("10.1.2.3/8")->direccion, 0x0A000000U);
    EXPECT_EQ(redDeTexto("10.1.2.3/0")->mascara, 0U);
    for (const char* mala : {"", "10.0.0", "10.0.0.256", "10.0.0.1/33", "10.0.0.1/-1", "10.0.0.1/",
                             "10.0.0.1/8x", "10.0.0.1/1.5"})
        EXPECT_FALSE(redDeTexto(mala)) << mala;
}

TEST(Puerta, NadaSeDiceAntesDelLoginSiAsiSeQuiere) {
    PlantaConServidor p(tresBloques());
    p.planta.ajuste("Escucha_Login_Antes_De_Todo", "1");
    p.planta.ajuste("Escucha_Plazo_De_Login_Segundos", "20");
    p.arrancar();
    p.planta.en("10.0.0.1");
    p.cliente.conectar();
    p.planta.avanzar(9000);
    EXPECT_EQ(p.cliente.tomar(), "");
    p.cliente.enviar(p.cliente.clave());
    p.planta.avanzar(1000);
    EXPECT_NE(p.cliente.tomar().find("[SINK_FIN]"), std::string::npos)
        << "the first synchronisation has waited for the login";
    p.planta.avanzar(20'000);
    EXPECT_TRUE(p.cliente.conectado);
    p.cliente.cerrar();
    p.planta.avanzar(3000);
    p.otro.conectar();
    p.planta.avanzar(24'000);
    EXPECT_FALSE(p.otro.conectado);
    EXPECT_EQ(p.estado(), EstadoZocalo::Escuchando);
}

TEST(Puerta, EscriturasContadasYSoloLectura) {
    PlantaConServidor p(tresBloques());
    p.planta.ajuste("Escucha_Escrituras_Por_Segundo", "2");
    p.arrancarConCliente();
    p.cliente.enviar("[Write]a;1[/Write][Write]b;1[/Write][Write]c;1[/Write]");
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK][WRITE_OK][WRITE_OK]");
    EXPECT_EQ(p.ordenes.tomar(), (Textos{"escribir a 1", "escribir b 1"}));
    p.planta.ajuste("Escucha_Solo_Lectura", "si");
    p.planta.avanzar(3000);
    (void)p.cliente.tomar();
    p.cliente.enviar("[Write]a;1[/Write][FORZNIV]1;1[/FORZNIV]");
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK]");
    EXPECT_EQ(p.ordenes.tomar(), Textos{"forzar 1 1"});
    EXPECT_EQ(p.planta.archivos.contenido("/kv/sis_config.ini").find("Escucha_Direccion"),
              std::string::npos)
        << "settings of the door are not written back";
}

} // namespace kv
