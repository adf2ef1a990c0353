// SPDX-License-Identifier: Apache-2.0
// Who may come in, and what becomes of that when the settings file is in a bad way.

#include "apoyo.h"
#include "text/windows1252.h"

#include <gtest/gtest.h>

namespace kv {

TEST(Permitidos, SoloEntranLosPermitidos) {
    PlantaConServidor p(tresBloques());
    p.planta.ajuste("Escucha_Clientes_Permitidos", "10.0.0.8, 10.0.0.10/32;todos");
    p.arrancar();
    p.cliente.conectar();
    EXPECT_FALSE(p.cliente.conectado);
    p.otro.conectar();
    EXPECT_TRUE(p.otro.conectado);
    EXPECT_EQ(veces(p.log(), "no esta entre los permitidos"), 1U);
    EXPECT_EQ(veces(p.log(), "tiene \"todos\", que no es"), 1U);
    p.otro.cerrar();
    p.planta.ajuste("Escucha_Clientes_Permitidos", "nadie");
    p.planta.avanzar(6000);
    p.otro.conectar();
    EXPECT_FALSE(p.otro.conectado) << "a list without a good address is no open door";
    p.planta.ajuste("Escucha_Clientes_Permitidos", "10.0.0.0/28");
    p.otro.conectar();
    EXPECT_TRUE(p.otro.conectado);
}

TEST(Permitidos, AjustesQueNuncaFueronEnterosNoDejanEntrarANadie) {
    const std::string enorme = "[DRIVER_KV2200]\r\n" + std::string(5U << 20, ';');
    const std::string utf16("\xFF\xFE[\0D\0R\0", 8);
    for (const std::string& malo : {std::string(), enorme, utf16,
                                    std::string("[PROYECTO_PREDETERMINADO]\r\nRutaProyecto=\r\n"),
                                    std::string("[DRIVER_KV2200]\r\nVER=0\r\nEscucha_Solo_Lec")}) {
        PlantaConServidor p(tresBloques());
        p.planta.archivos.poner("/kv/sis_config.ini", malo);
        p.arrancar();
        p.cliente.conectar();
        EXPECT_FALSE(p.cliente.conectado);
        EXPECT_EQ(veces(p.log(), "no se admite a ningún"), 0U)
            << "the log's bytes are Windows-1252";
        EXPECT_EQ(veces(p.log(), "no se admite a ning\xFAn cliente"), 1U) << p.log();
        EXPECT_EQ(p.planta.archivos.contenido("/kv/sis_config.ini"), malo) << "nobody wrote to it";
        // One that comes whole later may still be the half of it.
        p.planta.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\n");
        p.planta.avanzar(3000);
        p.cliente.conectar();
        EXPECT_FALSE(p.cliente.conectado);
        p.planta.avanzar(6000);
        p.cliente.conectar();
        EXPECT_TRUE(p.cliente.conectado);
    }
}

namespace {

const std::string kCerrada = "[DRIVER_KV2200]\r\nPuertoEscucha=1334\r\n"
                             "Escucha_Clientes_Permitidos=10.0.0.9\r\nEscucha_Solo_Lectura=1\r\n"
                             "Escucha_Login_Antes_De_Todo=1\r\nVER=0\r\n";

} // namespace

/// With an allow-list, read-only and login first, nothing that befalls the settings file lets a
/// stranger in or a write through.
TEST(Permitidos, UnaVezCerradaQuedaCerrada) {
    PlantaConServidor p(tresBloques());
    p.planta.archivos.poner("/kv/sis_config.ini", kCerrada);
    p.arrancar();
    const auto sigueCerrada = [&p](std::string_view tras) {
        for (int i = 0; i < 4; ++i) {
            p.planta.avanzar(10'000);
            p.otro.conectar();
            EXPECT_FALSE(p.otro.conectado) << tras;
            if (!p.cliente.conectado) p.cliente.conectar();
            EXPECT_TRUE(p.cliente.conectado) << tras;
            EXPECT_EQ(p.cliente.tomar(), "") << tras;
            p.cliente.enviar(p.cliente.clave() + "");
            p.cliente.enviar("[Write]1.1.10;5[/Write]");
            EXPECT_EQ(p.ordenes.tomar(), Textos{"rechazar 1.1.10 5: solo lectura"}) << tras;
            p.cliente.cerrar();
            (void)p.cliente.tomar();
        }
    };
    sigueCerrada("nothing");
    const std::string entero = p.planta.archivos.contenido("/kv/sis_config.ini");
    EXPECT_GT(entero.size(), kCerrada.size()) << "completed with defaults";
    for (std::size_t largo = 0; largo < kCerrada.size(); largo += 7) {
        const std::string parte = entero.substr(0, largo);
        if (parte.ends_with('\n') && parte.find("DRIVER_KV2200]\r\n") != std::string::npos)
            continue;
        p.planta.archivos.poner("/kv/sis_config.ini", parte);
        sigueCerrada(parte);
        EXPECT_EQ(p.planta.archivos.contenido("/kv/sis_config.ini"), parte);
    }
    p.planta.archivos.poner("/kv/sis_config.ini", "[OTRA]\r\n" + entero.substr(17));
    sigueCerrada("another section");
    p.planta.archivos.borrar("/kv/sis_config.ini");
    sigueCerrada("gone");
    EXPECT_FALSE(p.planta.archivos.existe("/kv/sis_config.ini"));
    EXPECT_GE(veces(p.log(), "quedan como estaban"), 4U) << p.log();
}

TEST(Permitidos, UnaClaveQueDesapareceCuentaALaSegundaMirada) {
    PlantaConServidor p(tresBloques());
    p.planta.archivos.poner("/kv/sis_config.ini", kCerrada);
    p.arrancar();
    p.planta.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\n");
    const auto entra = [&p] {
        p.otro.conectar();
        return std::exchange(p.otro.conectado, false);
    };
    EXPECT_FALSE(entra());
    p.planta.avanzar(4000);
    EXPECT_FALSE(entra());
    EXPECT_EQ(p.planta.archivos.contenido("/kv/sis_config.ini"), "[DRIVER_KV2200]\r\n")
        << "nothing is written into what may be half a file";
    p.planta.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\nVER=0\r\n");
    p.planta.avanzar(4000);
    EXPECT_FALSE(entra()) << "the file has changed since the first look";
    p.planta.archivos.poner("/kv/sis_config.ini", kCerrada);
    p.planta.avanzar(9000);
    EXPECT_FALSE(entra()) << "it is back";
    p.planta.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\nVER=0\r\n");
    p.planta.avanzar(9000);
    EXPECT_TRUE(entra());
    EXPECT_EQ(veces(p.log(), "Escucha_Solo_Lectura ya no est"), 1U);
    // What closes counts at once, and a value that may go on does not open.
    p.planta.archivos.poner("/kv/sis_config.ini", kCerrada);
    EXPECT_FALSE(entra());
    p.planta.archivos.poner("/kv/sis_config.ini",
                            "[DRIVER_KV2200]\r\nEscucha_Clientes_Permitidos=10.0.0.10");
    EXPECT_FALSE(entra());
    p.planta.avanzar(9000);
    EXPECT_TRUE(entra());
}

TEST(Permitidos, LoQueNoSignificaNadaLaCierraYSeDiceAlArrancar) {
    struct Oye : Observador {
        void alCambiarEtiqueta(std::string_view, std::string_view) override {}
        void alCambiarColor(std::string_view, Color) override {}
        void alMostrarMensaje(std::string_view titulo, std::string_view texto) override {
            mensajes += std::string(titulo) + ": " + std::string(texto) + "\n";
        }
        std::string mensajes;
    };
    for (const auto& [renglon, dice] : std::vector<std::pair<std::string, std::string>>{
             {"Escucha_Direccion=abc", "Escucha_Direccion=\"abc\" no es una dirección IPv4"},
             {"Escucha_Clientes_Permitidos=10.0.0.0/99", "que no es una dirección ni una red"},
             {"Escucha_Solo_Lectur=1", "\"Escucha_Solo_Lectur\" no es una clave conocida"},
             {"Escucha_Solo_Lectura", "falta el"},
             {"Escucha_Solo_Lectura=0\r\nescucha_solo_lectura=1", "repetida con otro valor"},
             {"Escucha_Escrituras_Por_Segundo=pocas", "no es un número de 0 a"},
             {"[OTRA]\r\nEscucha_Solo_Lectura=1", "no está en la sección"}}) {
        PlantaConServidor p(tresBloques());
        Oye oye;
        p.planta.motor.vista.observar(&oye);
        p.planta.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\n" + renglon + "\r\n");
        p.arrancar();
        p.cliente.conectar();
        EXPECT_FALSE(p.cliente.conectado) << renglon;
        EXPECT_EQ(veces(oye.mensajes, dice), 1U) << renglon << " told " << oye.mensajes;
        EXPECT_EQ(veces(p.log(), windows1252DesdeUtf8(dice)), 1U) << renglon;
        p.planta.motor.vista.observar(nullptr);
        // Mended while it runs.
        p.planta.archivos.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\n");
        p.planta.avanzar(9000);
        p.cliente.conectar();
        EXPECT_TRUE(p.cliente.conectado) << renglon;
    }
}

TEST(Permitidos, Redes) {
    EXPECT_TRUE(redDeTexto("10.0.0.9"));
    EXPECT_EQ(redDeTexto("10.1.2.3/8")->direccion, 0x0A000000U);
    EXPECT_EQ(redDeTexto("10.1.2.3/0")->mascara, 0U);
    for (const char* mala : {"", "10.0.0", "10.0.0.256", "10.0.0.1/33", "10.0.0.1/-1", "10.0.0.1/",
                             "10.0.0.1/8x", "10.0.0.1/1.5"})
        EXPECT_FALSE(redDeTexto(mala)) << mala;
}

TEST(Permitidos, NadaSeDiceAntesDelLoginSiAsiSeQuiere) {
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

TEST(Permitidos, EscriturasContadasYSoloLectura) {
    PlantaConServidor p(tresBloques());
    p.planta.ajuste("Escucha_Escrituras_Por_Segundo", "2");
    p.arrancarConCliente();
    p.cliente.enviar("[Write]a;1[/Write][Write]b;1[/Write][Write]c;1[/Write]");
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK][WRITE_OK][WRITE_OK]");
    EXPECT_EQ(p.ordenes.tomar(),
              (Textos{"escribir a 1", "escribir b 1", "rechazar c 1: demasiadas en un segundo"}));
    p.planta.ajuste("Escucha_Solo_Lectura", "si");
    p.planta.avanzar(3000);
    (void)p.cliente.tomar();
    p.cliente.enviar("[Write]a;1[/Write][FORZNIV]1;1[/FORZNIV]");
    EXPECT_EQ(p.cliente.tomar(), "[WRITE_OK]");
    EXPECT_EQ(p.ordenes.tomar(), (Textos{"rechazar a 1: solo lectura", "forzar 1 1"}));
    EXPECT_EQ(p.planta.archivos.contenido("/kv/sis_config.ini").find("Escucha_Direccion"),
              std::string::npos)
        << "settings of the door are not written back";
}

} // namespace kv
