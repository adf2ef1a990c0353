// SPDX-License-Identifier: Apache-2.0
// The link to the client: kept alive, lost, and abused.

#include "apoyo.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

constexpr std::string_view kPregunta = "[KEEP_DESDE_DRI]";

} // namespace

TEST(KeepAlive, QuienNoContestaCaeEnElOctavoTic) {
    PlantaConServidor p(tresBloques());
    p.arrancar();
    p.planta.avanzar(2000);
    p.cliente.conectar();
    p.planta.avanzar(999); // the first tick comes after three seconds, the others after five
    EXPECT_EQ(p.planta.motor.vista.servidor.lblKeepALive.texto(), "Intentos: 0 Maximo: 6");
    p.planta.avanzar(34'000);
    EXPECT_TRUE(p.cliente.conectado);
    EXPECT_EQ(veces(p.cliente.tomar(), kPregunta), 6U);
    EXPECT_EQ(p.planta.motor.vista.servidor.lblKeepALive.texto(), "Intentos: 6 Maximo: 6");
    p.planta.avanzar(1001);
    EXPECT_FALSE(p.cliente.conectado);
    EXPECT_EQ(p.cliente.tomar(), kPregunta) << "the last one is still seen";
    EXPECT_EQ(p.planta.motor.vista.servidor.lblKeepALive.texto(), "Intentos: 0 Maximo: 6");
    EXPECT_EQ(p.estado(), EstadoZocalo::Escuchando);
    // The ticks run on, the attempts begin anew.
    p.otro.conectar();
    p.planta.avanzar(34'000);
    EXPECT_TRUE(p.otro.conectado);
    EXPECT_EQ(veces(p.otro.tomar(), kPregunta), 6U);
    p.planta.avanzar(2000);
    EXPECT_FALSE(p.otro.conectado);
    // The log tells one that fell silent from one that went.
    p.cliente.conectar();
    p.cliente.enviar(p.cliente.clave());
    p.planta.avanzar(60'000);
    EXPECT_FALSE(p.cliente.conectado);
    EXPECT_EQ(veces(p.log(), "Cliente sale>10.0.0.9:50000, DescError:no contesta KV502"), 1U)
        << p.log();
}

TEST(KeepAlive, QuienLlegaNoRespondePorElSilencioDelAnterior) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.planta.avanzar(30'000);
    EXPECT_EQ(veces(p.cliente.tomar(), kPregunta), 5U);
    p.cliente.cerrar();
    p.planta.avanzar(3000);
    p.otro.conectar();
    p.planta.avanzar(29'000);
    EXPECT_TRUE(p.otro.conectado);
}

TEST(KeepAlive, UnaRespuestaQueFaltaNoLoTiraYQuienContestaSiempreVeUnoCadaDos) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.planta.avanzar(18'000); // some answers missing
    EXPECT_GE(veces(p.cliente.tomar(), kPregunta), 2U);
    p.cliente.enviar("[keep_desde_dri]");
    p.cliente.contesta = true;
    p.planta.avanzar(10'000);
    (void)p.cliente.tomar();
    p.planta.avanzar(3'600'000);
    EXPECT_TRUE(p.cliente.conectado);
    EXPECT_EQ(veces(p.cliente.tomar(), kPregunta), 360U);
    p.cliente.enviar("x[keep_desde_servidor][KEEP_DESDE_SERVIDOR]y");
    EXPECT_EQ(p.cliente.tomar(), "[KEEP_DESDE_SERVIDOR]");
}

TEST(Enlace, ClienteQueSeVaSinUnaPalabraYVuelve) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    p.planta.bucle.red().interrumpir(p.cliente.enlace());
    p.cliente.conectar(); // it has restarted, and nobody listens yet
    EXPECT_FALSE(p.cliente.conectado && p.estado() != EstadoZocalo::Conectado);
    p.planta.avanzar(45'000);
    EXPECT_EQ(p.estado(), EstadoZocalo::Escuchando);
    p.cliente.conectar();
    EXPECT_TRUE(p.cliente.conectado);
    p.cliente.enviar(p.cliente.clave());
    EXPECT_EQ(p.cliente.tomar(), "PassOK");
}

TEST(Enlace, LosAjustesSeLeenMientrasAnda) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    EXPECT_NE(p.planta.archivos.contenido("/kv/sis_config.ini").find("PuertoEscucha=1334"),
              std::string::npos);
    p.planta.ajuste("primerSeparador", "|");
    p.planta.ajuste("PuertoEscucha", "2000");
    p.planta.ajuste("BaseTiempoMilisegundos_KeepALive", "1000");
    p.planta.ajuste("Maximos_Keep_ALive", "2");
    p.planta.avanzar(3000);
    p.cliente.enviar("Read;1.1.10;FinRead;");
    EXPECT_NE(p.cliente.tomar().find("[DRI]#1.1.10|0|13|#[/DRI]"), std::string::npos);
    p.planta.avanzar(10'000);
    EXPECT_FALSE(p.cliente.conectado) << "three unanswered at once a second";
    EXPECT_EQ(p.planta.motor.vista.servidor.lblPuertoServidor.texto(), "Puerto 2000");
    p.cliente.conectar(2000);
    EXPECT_TRUE(p.cliente.conectado);
    p.planta.ajuste("PuertoEscucha", "muchos");
    p.planta.avanzar(6000);
    EXPECT_EQ(veces(p.log(), "PuertoEscucha=muchos"), 1U);
    // Nobody is served: the change counts at once.
    p.planta.ajuste("PuertoEscucha", "2001");
    p.planta.avanzar(6000);
    p.otro.conectar(2001);
    EXPECT_TRUE(p.otro.conectado);
    p.planta.ajuste("Escucha_Solo_Letura", "1"); // a key that is none closes the door
    p.planta.avanzar(10'000);
    EXPECT_NE(p.estado(), EstadoZocalo::Escuchando);
}

TEST(Enlace, UnPuertoTomadoSeVuelveAIntentar) {
    PlantaConServidor p(tresBloques());
    struct Nadie : OyenteDeZocalo {
        void alLlegarDatos(std::size_t, std::span<const std::uint8_t>) override {}
    } nadie;
    auto ajeno = p.planta.bucle.crearZocalo(nadie, 0);
    ajeno->escuchar("0.0.0.0", 1334);
    p.arrancar();
    p.planta.avanzar(30'000);
    EXPECT_EQ(p.planta.motor.vista.servidor.lblEstado.texto(), "Error");
    EXPECT_EQ(veces(p.log(), "no se puede escuchar"), 1U);
    ajeno->cerrar();
    p.planta.avanzar(6000);
    EXPECT_EQ(p.planta.motor.vista.servidor.lblEstado.texto(), "Esperando...");
}

TEST(Enlace, QuienNoLeeSeCierraYElQueLeeTardeNo) {
    Configuracion config;
    config.puerto().estacion(1, "10.0.0.1", 1);
    for (int i = 0; i < 2000; ++i)
        config.bloque(1, "10", "0", false, 100);
    PlantaConServidor p(config); // some three megabytes a synchronisation
    p.planta.ajuste("Maximos_Keep_ALive", "1000");
    p.arrancarConCliente();
    p.planta.bucle.red().fijarVentana(p.cliente.enlace(), 0);
    for (int i = 0; i < 2; ++i) {
        p.cliente.enviar("SINCRONIZAR");
        p.planta.avanzar(1500);
    }
    EXPECT_TRUE(p.estado() == EstadoZocalo::Conectado) << "two wait whole";
    for (int i = 0; i < 20; ++i) {
        p.cliente.enviar("SINCRONIZAR");
        p.planta.avanzar(1500);
    }
    EXPECT_EQ(veces(p.log(), "10.0.0.9:50000: el otro extremo no lee"), 1U);
    p.planta.avanzar(3000);
    EXPECT_EQ(p.estado(), EstadoZocalo::Escuchando);
}

TEST(Hostil, BasuraABytesYARafagasMientrasSePolea) {
    PlantaConServidor p(tresBloques());
    auto& plc = p.planta.en("10.0.0.1");
    p.arrancarConCliente();
    p.cliente.contesta = true;
    p.planta.avanzar(12'000);
    const auto antes = plc.pedidos.size();
    const std::string basura(60'000, '[');
    std::string forma = "[Write]";
    while (forma.size() < 60'000)
        forma += "[Write][/Wri;Read;SINK";
    for (int i = 0; i < 20; ++i) {
        p.cliente.enviar(basura);
        p.cliente.enviar(forma);
    }
    for (int i = 0; i < 10'000; ++i)
        p.cliente.enviar("["); // one byte a millisecond
    EXPECT_EQ(p.ordenes.tomar(), Textos{});
    EXPECT_GE(plc.pedidos.size(), antes + 10) << "polling goes on";
    EXPECT_LE(p.planta.motor.trazas.Text2.texto().size(), 200'000U);
    EXPECT_LT(p.log().size(), 10'000U);
    p.cliente.enviar("Read;1.1.10;FinRead;");
    EXPECT_NE(p.cliente.tomar().find("[DRI]#1.1.10;116;6;#[/DRI]"), std::string::npos);
}

TEST(Hostil, MilesDeOrdenesQueSeNieganNoLlenanElLog) {
    Configuracion c = tresBloques();
    Planta p(c);
    p.arrancar();
    p.avanzar(10'000);
    const auto ruta = "/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt";
    for (int i = 0; i < 5000; ++i) {
        p.motor.solicitudes.escribirDireccion("no es direccion " + std::to_string(i), 1,
                                              kOrigenGuion);
        p.motor.forzado.forzarPoleo("9.9." + std::to_string(i), "prueba");
    }
    EXPECT_EQ(veces(p.archivos.contenido(ruta), "no es direccion"), 10U);
    const std::string sello = formatoDeSello(p.bucle.reloj().ahora());
    EXPECT_EQ(veces(p.archivos.contenido(ruta), "NO EXISTE PUERTO O PLC PARA: 9.9."), 10U);
    EXPECT_EQ(veces(p.archivos.contenido(ruta),
                    "DRIVER>Error al forzar un poleo>" + sello +
                        " NO EXISTE PUERTO O PLC PARA: 9.9.9, DescError:\r\n"),
              1U);
    p.avanzar(120'000);
    EXPECT_EQ(veces(p.archivos.contenido(ruta),
                    "DRIVER>Lecturas forzadas en vano>y 4990 mas en 60 s; al final, Error al "
                    "forzar un poleo: " +
                        sello + " NO EXISTE PUERTO O PLC PARA: 9.9.4999, DescError:KV304\r\n"),
              1U);
    EXPECT_EQ(veces(p.archivos.contenido(ruta), "en el mismo segundo"), 0U) << "others had room";
    EXPECT_EQ(veces(p.archivos.contenido(ruta), ">y 4990 mas en 60 s; al final, escritura de no es "
                                                "direccion 4999 valor: 1 - Scan: 3: 5, direccion "
                                                "no valida"),
              1U);
    for (int i = 0; i < 50; ++i)
        p.motor.solicitudes.escribirDireccion("de nuevo " + std::to_string(i), 1, kOrigenGuion);
    p.motor.solicitudes.escribirDireccion("otra mala", 1, kOrigenVentana);
    EXPECT_EQ(veces(p.archivos.contenido(ruta), "de nuevo 49"), 0U);
    EXPECT_EQ(veces(p.archivos.contenido(ruta), "otra mala"), 1U) << "a flood does not hide it";
}

TEST(Hostil, IrYVenirMilVeces) {
    PlantaConServidor p(tresBloques());
    p.planta.ajuste("Escucha_Clientes_Permitidos", "10.0.0.9");
    p.arrancar();
    for (int i = 0; i < 1000; ++i) {
        p.cliente.conectar();
        p.cliente.cerrar();
        p.otro.conectar();
        p.planta.avanzar(i % 2 == 0 ? 3000 : 1);
    }
    p.planta.avanzar(3000);
    EXPECT_EQ(p.estado(), EstadoZocalo::Escuchando);
    EXPECT_LT(p.log().size(), 400'000U);
    p.cliente.conectar();
    p.cliente.enviar(p.cliente.clave());
    EXPECT_NE(p.cliente.tomar().find("PassOK"), std::string::npos);
    EXPECT_EQ(veces(p.log(), "KV501\r\n"), 1U) << "who only knocks has not come in";
    EXPECT_EQ(veces(p.log(), "KV502\r\n"), 0U);
    p.cliente.cerrar();
    p.planta.avanzar(4000);
    EXPECT_EQ(veces(p.log(), "DRIVER>Cliente sale>10.0.0.9:"), 1U) << p.log();
}

TEST(Puerto, MientrasSeAtiendeAUnClienteNadieLoToma) {
    PlantaConServidor p(tresBloques());
    p.arrancarConCliente();
    struct Nadie final : OyenteDeZocalo {
        void alLlegarDatos(std::size_t /*indice*/, std::span<const std::uint8_t> /*b*/) override {}
    } nadie;
    const auto ajeno = p.planta.bucle.crearZocalo(nadie, 0);
    ajeno->escuchar("", 1334);
    EXPECT_EQ(ajeno->estado(), EstadoZocalo::Error);
    p.otro.conectar();
    p.planta.avanzar(1000);
    EXPECT_FALSE(p.otro.conectado);
    p.cliente.cerrar();
    p.planta.avanzar(5000);
    p.otro.conectar();
    p.planta.avanzar(1000);
    EXPECT_TRUE(p.otro.conectado);
}

} // namespace kv
