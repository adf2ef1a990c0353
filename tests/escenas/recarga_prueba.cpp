// SPDX-License-Identifier: Apache-2.0
// A configuration is taken over while the plant is served.

#include "apoyo/planta.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kv {
namespace {

using testing::Test;

constexpr const char* kLog = "/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt";

class Recarga : public Test {
  protected:
    Planta& plantaDe(Configuracion c) {
        planta = std::make_unique<Planta>(c);
        return *planta;
    }
    void recargar(Configuracion c) {
        planta->archivos.poner("/kv/DRIVER_KV2200_Config.ini", c.texto());
        planta->motor.operador.recargar();
    }
    /// The live block of a key, as everybody finds it.
    [[nodiscard]] Indice bloque(const std::string& clave) const {
        const std::int64_t fila = planta->motor.vista.lstViewVariables.buscar(clave);
        if (fila < 0) return kNinguno;
        return static_cast<Indice>(
            planta->motor.vista.lstViewVariables.etiqueta(static_cast<FilaDeLista>(fila)));
    }
    [[nodiscard]] double estado(const std::string& clave) const {
        const Indice i = bloque(clave);
        return i == kNinguno ? -1 : planta->motor.tablas.bloques[i].estado;
    }
    /// When a register was asked for since `desde`, in ms.
    [[nodiscard]] static std::vector<double> pedidos(const Estaciones& e, int registro,
                                                     double desde = 0) {
        std::vector<double> cuando;
        for (const auto& p : e.pedidos) {
            if (p.trama[3] == registro && p.ms >= desde) cuando.push_back(p.ms);
        }
        return cuando;
    }
    /// What a client hears of variables.
    struct Oyente final : AvisoAlCliente {
        std::vector<std::string> oido;
        void notificarVariable(std::string_view direccion, double valor, double estado) override {
            oido.push_back(std::string(direccion) + "=" + std::to_string(static_cast<int>(valor)) +
                           (estado == 6 ? " OK" : " BAD"));
        }
        [[nodiscard]] bool tiene(const std::string& que) const {
            return std::find(oido.begin(), oido.end(), que) != oido.end();
        }
    };
    std::unique_ptr<Planta> planta;
};

Configuracion dos() {
    return Configuracion()
        .puerto()
        .estacion(1, "10.0.0.1", 1)
        .bloque(1, "10", "2")
        .bloque(1, "11", "3");
}

TEST_F(Recarga, LoQueNoCambioNoSeToca) {
    auto& p = plantaDe(dos());
    auto& testigo = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(20'500);
    Planta otra([] {
        auto c = dos();
        return c.texto();
    }());
    auto& sinRecarga = otra.en("10.0.0.1");
    otra.arrancarYConectar();
    otra.avanzar(20'500);
    // An operator's scan and switch are no change of the configuration.
    for (Planta* cual : {&p, &otra}) {
        cual->motor.operador.activarBloque(0, false);
        EXPECT_TRUE(cual->motor.operador.responderScan(1, "1.5").vacio());
    }
    recargar(dos());
    p.avanzar(60'000);
    otra.avanzar(60'000);
    EXPECT_EQ(testigo.conexiones, 1);
    EXPECT_EQ(pedidos(testigo, 0x11), pedidos(sinRecarga, 0x11)) << "no read early or late";
    EXPECT_EQ(pedidos(testigo, 0x10), pedidos(sinRecarga, 0x10));
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 2U);
    EXPECT_EQ(p.bloque(1).scanSegundos, 1.5);
}

TEST_F(Recarga, LoNuevoSeLeeYLoQuitadoSeVa) {
    auto& p = plantaDe(dos());
    auto& uno = p.en("10.0.0.1");
    auto& dosPlc = p.en("10.0.0.2");
    p.arrancarYConectar();
    p.avanzar(10'000);
    ASSERT_EQ(estado("1.1.11"), 6);
    Oyente cliente;
    p.motor.publicacion.avisarA(&cliente);
    const double cuando = p.ahoraMs();
    recargar(Configuracion()
                 .puerto()
                 .estacion(1, "10.0.0.1", 1)
                 .estacion(2, "10.0.0.2", 7)
                 .bloque(1, "10", "2")
                 .bloque(1, "20", "1", true, 3)
                 .bloque(2, "30", "1"));
    EXPECT_EQ(bloque("1.1.11"), kNinguno);
    EXPECT_TRUE(cliente.tiene("1.1.11=117 BAD")) << "whoever knows it must not go on believing it";
    EXPECT_TRUE(cliente.tiene("1.2.30=0 BAD"));
    p.avanzar(12'000);
    EXPECT_EQ(estado("1.1.10"), 6);
    EXPECT_EQ(estado("1.1.20"), 6);
    EXPECT_EQ(estado("1.1.22"), 6);
    EXPECT_EQ(estado("1.2.30"), 6);
    EXPECT_TRUE(cliente.tiene("1.2.30=748 OK"));
    EXPECT_TRUE(pedidos(uno, 0x11, cuando + 1).empty());
    EXPECT_EQ(uno.conexiones, 1);
    EXPECT_EQ(dosPlc.conexiones, 1);
    EXPECT_EQ(p.motor.vista.lblCantidadDePuntos.texto(), "5");
    // Nobody reaches what went: no force, no write, no level, no switch.
    p.motor.solicitudes.escribirDireccion("1.1.11", 5, "ventana");
    p.motor.operador.activarBloque(1, true);
    (void)p.motor.operador.forzarPorNivel("1", "2");
    p.avanzar(10'000);
    EXPECT_TRUE(pedidos(uno, 0x11, cuando + 1).empty());
    // And it comes back as if it had never gone.
    recargar(dos());
    p.avanzar(10'000);
    EXPECT_EQ(estado("1.1.11"), 6);
    EXPECT_EQ(bloque("1.1.20"), kNinguno);
    EXPECT_EQ(p.motor.vista.lblCantidadDePuntos.texto(), "2");
    EXPECT_EQ(dosPlc.enlace(), 0U) << "a connection without stations is closed";
    const int conexiones = dosPlc.conexiones;
    p.avanzar(60'000);
    EXPECT_EQ(dosPlc.conexiones, conexiones) << "and not asked for again";
}

TEST_F(Recarga, UnaRespuestaQueLlegaDespuesNoDespiertaANadie) {
    auto& p = plantaDe(dos());
    p.en("10.0.0.1").demora = [](const Solicitud&) { return 900.0; };
    p.arrancarYConectar();
    p.avanzar(5'000);
    Oyente cliente;
    while (p.conexion(0).turno != EstadoDeTurno::Esperando || p.conexion(0).bloqueEnCurso != 1)
        p.avanzar(50);
    recargar(Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "2"));
    p.motor.publicacion.avisarA(&cliente);
    p.avanzar(20'000);
    EXPECT_TRUE(std::none_of(cliente.oido.begin(), cliente.oido.end(),
                             [](const auto& o) { return o.find("1.1.11") != std::string::npos; }));
    EXPECT_EQ(estado("1.1.10"), 6);
}

TEST_F(Recarga, CambianScanNivelActividadTiemposYDireccion) {
    auto& p = plantaDe(dos());
    auto& vieja = p.en("10.0.0.1");
    auto& nueva = p.en("10.0.0.9");
    p.arrancarYConectar();
    p.avanzar(10'000);
    recargar(Configuracion()
                 .puerto({"1", "0", "40"})
                 .estacion(1, "10.0.0.1", 1)
                 .bloque(1, "10", "8", true, 1, 4)
                 .bloque(1, "11", "3", false));
    const double desde = p.ahoraMs();
    p.avanzar(60'000);
    const auto lentos = pedidos(vieja, 0x10, desde);
    ASSERT_GE(lentos.size(), 6U);
    EXPECT_LE(lentos.size(), 9U) << "one in eight seconds";
    EXPECT_LE(pedidos(vieja, 0x11, desde).size(), 1U);
    EXPECT_FALSE(p.motor.vista.lstViewVariables.tildada(p.bloque(1).filaVariable));
    EXPECT_EQ(p.fila(p.motor.vista.lstViewEstadoDeBloques, p.bloque(0).filaBloque, 1), "4");
    (void)p.motor.operador.forzarPorNivel("1", "3");
    (void)p.motor.operador.forzarPorNivel("4", "-1");
    EXPECT_FALSE(p.bloque(0).activo) << "it is of level 4 now";
    EXPECT_TRUE(p.bloque(1).activo) << "and the other one still of level 1";
    (void)p.motor.operador.forzarPorNivel("4", "0");
    // The new time-out holds: without retries a dead register rests after one second.
    vieja.demora = [](const Solicitud&) { return std::nullopt; };
    p.avanzar(10'000);
    EXPECT_EQ(estado("1.1.10"), 13);
    EXPECT_EQ(p.bloque(0).reconeccionMs, 40'000);
    // The station moves: what it had is BAD until the new address answers.
    recargar(Configuracion()
                 .puerto({"1", "0", "40"})
                 .estacion(1, "10.0.0.9", 3)
                 .bloque(1, "10", "8", true, 1, 4));
    EXPECT_EQ(estado("1.1.10"), 13);
    p.avanzar(12'000);
    EXPECT_EQ(estado("1.1.10"), 6);
    EXPECT_EQ(p.motor.tablas.bloques[bloque("1.1.10")].valor, 316);
    EXPECT_EQ(vieja.enlace(), 0U);
    EXPECT_EQ(nueva.conexiones, 1);
    EXPECT_EQ(p.motor.solicitudes.escribirDireccion("1.1.10", 5, "ventana"), 0);
    p.avanzar(5'000);
    EXPECT_EQ(nueva.valor(3, 0x10), 5);
}

TEST_F(Recarga, UnArchivoMaloNoCambiaNada) {
    auto c = dos();
    auto& p = plantaDe(c.bloque(1, "ZZ", "1")); // a fault that was there from the start
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(5'000);
    const std::string bueno = p.archivos.leer("/kv/DRIVER_KV2200_Config.ini", 1 << 20).value();
    auto otra = dos();
    const std::vector<std::pair<std::string, std::string>> malos{
        {"", "CANT_PUERTOS"},
        {bueno.substr(0, bueno.size() / 2), "CantEsclavos"},
        {"\xFF\xFE" + bueno, "UTF-16"},
        {"[CONFIG]\nCANT_PUERTOS=0\n", "bloque"},
        {"[CONFIG]\nCANT_PUERTOS=2\n" + bueno.substr(bueno.find("[PUERTO1]")) + "[PUERTO2]\n",
         "CantEsclavos"},
        {otra.bloque(1, "12", "abc").texto(), "abc"},
    };
    for (const auto& [texto, queja] : malos) {
        p.archivos.poner("/kv/DRIVER_KV2200_Config.ini", texto);
        p.motor.operador.recargar();
        EXPECT_EQ(estado("1.1.10"), 6) << texto;
        EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 3U) << texto;
        const auto log = p.archivos.contenido(kLog);
        EXPECT_NE(log.find("no se recarga"), std::string::npos);
        EXPECT_NE(log.find(queja), std::string::npos) << texto;
    }
    EXPECT_EQ(plc.conexiones, 1);
    // The old fault is no reason to refuse what is new.
    recargar(dos().bloque(1, "ZZ", "1").bloque(1, "12", "1"));
    p.avanzar(3'000);
    EXPECT_EQ(estado("1.1.12"), 6);
}

TEST_F(Recarga, LasEscriturasQueEsperanTerminanYLosPedidosQuedan) {
    auto& p = plantaDe(dos());
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.motor.forzado.forzarPoleo("1.1.44");
    p.avanzar(5'000);
    ASSERT_EQ(estado("1.1.44"), 6);
    plc.demora = [](const Solicitud&) { return 700.0; };
    while (p.conexion(0).turno == EstadoDeTurno::Libre)
        p.avanzar(20);
    const double n = p.motor.solicitudes.escribirDireccion("1.1.11", 77, "ventana");
    ASSERT_GE(n, 0);
    const auto c = Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "2");
    recargar(c);
    EXPECT_NE(p.motor.trazas.txtDemandaLecturaEscritura.texto().find(
                  "1.1.11 = 77: ya no esta configurado"),
              std::string::npos);
    p.avanzar(20'000);
    EXPECT_EQ(plc.valor(1, 0x11), 117) << "and it never left";
    EXPECT_EQ(estado("1.1.44"), 6) << "what somebody asked for stays with its station";
    // Configured now, it is no longer one of those that may be too many.
    recargar(Configuracion()
                 .puerto()
                 .estacion(1, "10.0.0.1", 1)
                 .bloque(1, "10", "2")
                 .bloque(1, "44", "1"));
    EXPECT_EQ(p.conexion(0).estaciones[0].aPedido, 0U);
    recargar(c);
    EXPECT_EQ(bloque("1.1.44"), kNinguno);
}

TEST_F(Recarga, EnUnaEstacionMuda) {
    auto& p = plantaDe(dos());
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(5'000);
    plc.demora = [](const Solicitud&) { return std::nullopt; };
    p.avanzar(120'000);
    ASSERT_TRUE(p.conexion(0).estaciones[0].muda);
    for (const char* queda : {"10", "11"}) {
        recargar(Configuracion()
                     .puerto()
                     .estacion(1, "10.0.0.1", 1)
                     .bloque(1, queda, "2")
                     .bloque(1, "50", "2"));
        const double desde = p.ahoraMs();
        p.avanzar(120'000);
        EXPECT_EQ(estado("1.1.50"), 13);
        std::size_t sondeos = 0;
        for (const auto& pedido : plc.pedidos)
            sondeos += pedido.ms >= desde ? 1 : 0;
        EXPECT_GE(sondeos, 2U) << "somebody goes on asking for all";
        EXPECT_LE(sondeos, 12U);
    }
    plc.demora = [](const Solicitud&) { return 0.0; };
    p.avanzar(60'000);
    EXPECT_EQ(estado("1.1.50"), 6);
    EXPECT_EQ(estado("1.1.11"), 6);
}

} // namespace
} // namespace kv
