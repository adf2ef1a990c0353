// SPDX-License-Identifier: Apache-2.0
// What comes by the door of the machine is in a recording like all else that comes.

#include "grabado/apoyo.h"

#include "apoyo/carpeta.h"
#include "apoyo/configuracion.h"
#include "apoyo/estaciones.h"
#include "platform/simulated/bucle_simulado.h"
#include "recording/grabador.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace kv {
namespace {

/// A program at the door, which takes what it is sent.
class Lector final : public ExtremoSimulado {
  public:
    Lector(BucleSimulado& b, const std::string& quien)
        : bucle(b), enlace(b.red().conectarCliente(b.red().puertoDeRuta("/kv/DriverKV2200.sock"),
                                                   *this, quien)) {
        bucle.avanzar(1);
    }
    void alRecibir(IdEnlace /*e*/, std::span<const std::uint8_t> b) override {
        recibido.append(b.begin(), b.end());
    }
    void pedir(std::string_view bytes, std::int64_t ms = 2000) {
        bucle.red().enviar(
            enlace, {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}); // NOLINT
        bucle.avanzar(ms);
    }
    BucleSimulado& bucle;
    IdEnlace enlace;
    std::string recibido;
};

/// All that happened, to the byte.
std::string sucesosDe(const Sucesos& todos) {
    std::string texto;
    for (std::uint64_t n = todos.primero(); n < todos.siguiente(); ++n) {
        const Suceso& s = todos[n];
        for (const auto x : {std::int64_t(s.que), std::int64_t(s.detalle), std::int64_t(s.conexion),
                             std::int64_t(s.bloque), std::int64_t(s.escritura), s.instante})
            texto += std::to_string(x) + " ";
        texto.append(s.losBytes().begin(), s.losBytes().end());
        texto += std::to_string(s.numero) + " " + std::string(todos.textoDe(s)) + "\n";
    }
    return texto;
}

struct Vida {
    std::string visto, valores, sucesos;
};

Vida vivir(const std::string& cinta, const std::string& grupo) {
    BucleSimulado bucle;
    ArchivosSimulados disco;
    Configuracion c;
    c.puerto({"1", "1", "2"}).estacion(1, "10.0.0.1", 1).bloque(1, "10", "1").bloque(1, "11", "1");
    disco.poner("/kv/DRIVER_KV2200_Config.ini", c.texto());
    disco.poner("/kv/sis_config.ini",
                "[DRIVER_KV2200]\r\nPuerta_Local_Escriben=turno\r\nPuerta_Local_Grupo=" + grupo +
                    "\r\nTiempo_Entre_poleo=100\r\n");
    disco.poner("/etc/passwd", "root:x:0:0::/:\nturno:x:1000:1000::/:\nvisita:x:1001:1000::/:\n");
    disco.poner("/etc/group", "plantas:x:77:\n");
    Estaciones una(bucle.red(), bucle.reloj());
    bucle.red().atender("10.0.0.1", 502, una);
    bucle.red().negarGrupos();
    CintaEscrita escrita(1U << 30);
    EXPECT_TRUE(escrita.abrir(cinta));
    escrita.texto("prueba");
    Grabador grabador(bucle, escrita);
    ArchivosGrabados archivos(disco, grabador);
    Driver d(grabador, archivos);
    grabador.empezarTramo();
    d.arrancar();
    grabador.terminarTramo();
    bucle.avanzar(12'000);
    Lector turno(bucle, "1000/50"), visita(bucle, "1001/51"), sordo(bucle, "0/52");
    bucle.red().fijarVentana(sordo.enlace, 0);
    sordo.pedir("{\"pedido\":\"vigilar\",\"valores\":true,\"sucesos\":true}\n");
    visita.pedir("{\"pedido\":\"vigilar\",\"valores\":true,\"sucesos\":true,\"id\":[1]}\n");
    visita.pedir("{\"pedido\":\"escribir\",\"direccion\":\"1.1.10\",\"valor\":5}\nno es\n");
    EXPECT_NE(visita.recibido.find("error"), std::string::npos);
    turno.pedir("{\"pedido\":\"escribir\",\"direccion\":\"1.1.10\",\"va", 300);
    turno.pedir("lor\":77,\"id\":\"a\"}\n{\"pedido\":\"escribir\",\"direccion\":\"1.1.11.3\","
                "\"valor\":1}\n");
    turno.pedir("{\"pedido\":\"forzar\",\"direccion\":\"1.1.20\"}\n");
    turno.pedir("{\"pedido\":\"forzar\",\"nivel\":1,\"veces\":2}\n{\"pedido\":\"estado\"}\n");
    EXPECT_NE(turno.recibido.find("\"confirmada\":true"), std::string::npos) << turno.recibido;
    bucle.red().cortar(visita.enlace); // in the midst of what it follows
    turno.pedir("{\"pedido\":\"sucesos\"}\n{\"pedido\":\"escribir\",\"direccion\":\"1.1.10\","
                "\"valor\":78}\n",
                0);
    bucle.red().romper(turno.enlace, ECONNRESET); // before it is taken up
    bucle.avanzar(5000);
    bucle.red().fijarVentana(sordo.enlace, 100'000);
    Lector(bucle, "1001/53").pedir(std::string(70'000, 'x'));
    bucle.avanzar(300'000); // who does not read is closed
    EXPECT_FALSE(bucle.red().vivo(sordo.enlace));
    return {d.testigo.todo, d.valores(), sucesosDe(d.motor.sucesos)};
}

} // namespace

TEST(Grabado, LoQueVinoPorLaPuertaLocalVuelveAPasar) {
    for (const char* grupo : {"plantas", "nadie"}) {
        const Carpeta carpeta;
        const Vida vivido = vivir(carpeta.ruta() + "/vuelo", grupo);
        EXPECT_NE(vivido.valores.find(" 77 OK "), std::string::npos) << vivido.valores;
        std::string sucesos;
        bool entera = false;
        const auto repetido = repetir(carpeta.leer("vuelo"), &entera, [&sucesos](Driver& d) {
            sucesos = sucesosDe(d.motor.sucesos);
        });
        EXPECT_TRUE(entera);
        EXPECT_EQ(repetido.first, vivido.visto);
        EXPECT_EQ(repetido.second, vivido.valores);
        EXPECT_EQ(sucesos, vivido.sucesos);
    }
}

} // namespace kv
