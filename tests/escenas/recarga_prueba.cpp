// SPDX-License-Identifier: Apache-2.0
// A configuration is taken over while the plant is served.

#include "apoyo/planta.h"
#include "plant/direcciones.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace kv {
namespace {

constexpr const char* kLog = "/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt";

constexpr std::int64_t kPasoAPaso = 1;

/// With the portions of a driver, in which these plants are done at a stretch, and step by step.
class Recarga : public testing::TestWithParam<std::int64_t> {
  protected:
    Planta& plantaDe(Configuracion c) {
        planta = std::make_unique<Planta>(c);
        planta->motor.recarga.fijarPorcion(GetParam());
        return *planta;
    }
    void pedir(Configuracion c) {
        planta->archivos.poner("/kv/DRIVER_KV2200_Config.ini", c.texto());
        planta->motor.operador.recargar();
    }
    void recargar(Configuracion c) {
        pedir(std::move(c));
        terminar();
    }
    void terminar() {
        while (planta->motor.recarga.enCurso())
            planta->avanzar(1);
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

TEST_P(Recarga, LoQueNoCambioNoSeToca) {
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
    const double desde = p.ahoraMs();
    recargar(dos());
    otra.avanzar(p.ahoraMs() - desde);
    p.avanzar(60'000);
    otra.avanzar(60'000);
    EXPECT_EQ(testigo.conexiones, 1);
    EXPECT_EQ(pedidos(testigo, 0x11), pedidos(sinRecarga, 0x11)) << "no read early or late";
    EXPECT_EQ(pedidos(testigo, 0x10), pedidos(sinRecarga, 0x10));
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 2U);
    EXPECT_EQ(p.bloque(1).scanSegundos, 1.5);
}

TEST_P(Recarga, LoNuevoSeLeeYLoQuitadoSeVa) {
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
    EXPECT_EQ(p.motor.porQue.porQueConexion(1), "10.0.0.2:502: ya no esta en la configuracion.");
    EXPECT_EQ(p.motor.contadores.deConexion(1).caidas, 0U) << "nobody lost it";
    EXPECT_NE(p.archivos.contenido(kLog).find("DRIVER>Enlace>10.0.0.2:502: se cierra, ya no esta "
                                              "configurada, DescError:KV205\r\n"),
              std::string::npos);
    EXPECT_FALSE(direccionesDe(p.motor.tablas).sePuedePedir(1, 2, "30"));
    EXPECT_TRUE(direccionesDe(p.motor.tablas).sePuedePedir(1, 1, "77"));
    const int conexiones = dosPlc.conexiones;
    p.avanzar(60'000);
    EXPECT_EQ(dosPlc.conexiones, conexiones) << "and not asked for again";
}

TEST_P(Recarga, UnaRespuestaQueLlegaDespuesNoDespiertaANadie) {
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

TEST_P(Recarga, CambianScanNivelActividadTiemposYDireccion) {
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

TEST_P(Recarga, UnArchivoMaloNoCambiaNada) {
    auto c = dos();
    auto& p = plantaDe(c.bloque(1, "ZZ", "1")); // a fault that was there from the start
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(5'000);
    const std::string bueno = p.archivos.leer("/kv/DRIVER_KV2200_Config.ini", 1 << 20).value();
    auto otra = dos();
    const std::vector<std::pair<std::string, std::string>> malos{
        {"", "CANT_PUERTOS"},
        {bueno.substr(0, bueno.size() / 2), "a medio escribir"},
        {"\xFF\xFE" + bueno, "UTF-16"},
        {"[CONFIG]\nCANT_PUERTOS=0\n", "bloque"},
        {"[CONFIG]\nCANT_PUERTOS=2\n" + bueno.substr(bueno.find("[PUERTO1]")) + "[PUERTO2]\n",
         "falta NUMERO en [PUERTO2]"},
        {otra.bloque(1, "12", "abc").texto(), "abc"},
    };
    for (const auto& [texto, queja] : malos) {
        p.archivos.poner("/kv/DRIVER_KV2200_Config.ini", texto);
        p.motor.operador.recargar();
        terminar();
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

TEST_P(Recarga, UnaFallaConocidaLoEsEnOtraLineaYCadaVezUna) {
    const auto con = [](int repetidos) {
        Configuracion c = Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "1");
        for (int i = 0; i < repetidos; ++i)
            c.bloque(1, "010", "1");
        return c.texto();
    };
    Planta& p = plantaDe(Configuracion()
                             .puerto()
                             .estacion(1, "10.0.0.1", 1)
                             .bloque(1, "10", "1")
                             .bloque(1, "010", "1"));
    p.en("10.0.0.1");
    p.arrancarYConectar();
    const auto seRecarga = [&](const std::string& texto) {
        const auto antes = p.archivos.contenido(kLog).size();
        p.archivos.poner("/kv/DRIVER_KV2200_Config.ini", texto);
        p.motor.operador.recargar();
        terminar();
        return p.archivos.contenido(kLog).find("no se recarga", antes) == std::string::npos;
    };
    EXPECT_TRUE(seRecarga("; one line more\r\n" + con(1))) << p.archivos.contenido(kLog);
    EXPECT_FALSE(seRecarga(con(2))) << "the same fault once more is a new one";
    EXPECT_TRUE(seRecarga(con(1)));
}

TEST_P(Recarga, UnaClaveQueNoSeConoceSeDiceLaPrimeraVez) {
    auto& p = plantaDe(dos());
    p.arrancarYConectar();
    const auto recargarCon = [&](const std::string& renglones) {
        const auto antes = p.archivos.contenido(kLog).size();
        p.archivos.poner("/kv/DRIVER_KV2200_Config.ini", dos().texto() + renglones);
        p.motor.operador.recargar();
        terminar();
        return p.archivos.contenido(kLog).substr(antes);
    };
    const std::string log = recargarCon("Bloque0_Nivell=2\n");
    EXPECT_NE(log.find("recargada: 0 variables nuevas"), std::string::npos) << log;
    EXPECT_NE(log.find("\"Bloque0_Nivell\" no es un dato de un bloque: "), std::string::npos)
        << log;
    EXPECT_EQ(recargarCon("; moved\nBloque0_Nivell=2\n").find("Nivell"), std::string::npos);
}

TEST_P(Recarga, LasEscriturasQueEsperanTerminanYLosPedidosQuedan) {
    auto& p = plantaDe(dos());
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.motor.forzado.forzarPoleo("1.1.44", "prueba");
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

TEST_P(Recarga, EnUnaEstacionMuda) {
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

INSTANTIATE_TEST_SUITE_P(Porciones, Recarga, testing::Values(20'000, kPasoAPaso));

class RecargaEnMedio : public Recarga {
  protected:
    /// Step by step to the moment when `cuando` holds.
    template <class Condicion>
    void hasta(Condicion cuando) {
        while (planta->motor.recarga.enCurso() && !cuando())
            planta->avanzar(1);
        ASSERT_TRUE(planta->motor.recarga.enCurso()) << "it never came to that";
    }
    /// Each record is wholly as it was or wholly as it will be, and found by all or by nobody.
    void cadaUnoEntero() {
        const Motor& m = planta->motor;
        for (Indice i = 0; i < m.tablas.bloques.limiteSuperior(); ++i) {
            const BloqueLectura& b = m.tablas.bloques[i];
            EXPECT_EQ(m.vista.lstViewVariables.retirada(b.filaVariable), b.retirado) << b.clave;
            EXPECT_EQ(m.vista.lstViewEstadoDeBloques.retirada(b.filaBloque), b.retirado);
            const Indice hallado = m.tablas.buscarPorRegistro(b.idConexion, b.plc, b.direccion());
            EXPECT_EQ(hallado == i, !b.retirado) << b.clave;
            const auto lugar = m.tablas.buscarEstacion(b.puerto, b.plc);
            EXPECT_TRUE(b.retirado ? b.estado == 13 : lugar.conexion == b.idConexion) << b.clave;
        }
    }
    [[nodiscard]] bool decidida() const {
        const auto& bloques = planta->motor.tablas.bloques;
        for (Indice i = 0; i < bloques.limiteSuperior(); ++i) {
            if (bloques[i].retirado) return true;
        }
        return false;
    }
};

INSTANTIATE_TEST_SUITE_P(PasoAPaso, RecargaEnMedio, testing::Values(kPasoAPaso));

Configuracion conVecina() {
    return dos()
        .bloque(1, "12", "2", true, 4)
        .estacion(2, "10.0.0.2", 7)
        .bloque(2, "20", "1", true, 3);
}
Configuracion sinVecina() {
    return Configuracion()
        .puerto()
        .estacion(1, "10.0.0.1", 1)
        .estacion(3, "10.0.0.3", 2)
        .bloque(1, "10", "2")
        .bloque(1, "13", "4")
        .bloque(1, "40", "1", true, 8)
        .bloque(3, "30", "1", true, 8);
}

TEST_P(RecargaEnMedio, ConUnaPlantaGrandeElBucleGira) {
    const auto grande = [](int desde) {
        auto c = dos().bloque(1, "12", "1");
        for (int plc = 2; plc < 22; ++plc) {
            c.estacion(plc, "10.0.1." + std::to_string(plc), 1);
            if (plc >= desde) c.bloque(plc, "00", "60", true, 250);
        }
        return c;
    };
    planta = std::make_unique<Planta>(grande(22).texto());
    auto& p = *planta;
    p.en("10.0.0.1");
    p.arrancarYConectar();
    const auto deUnGolpe = [&](int desde) {
        std::size_t mayor = 0;
        const auto suma = [&p] {
            std::size_t n = 0;
            for (Indice i = 0; i < p.motor.tablas.bloques.limiteSuperior(); ++i)
                n += p.motor.tablas.bloques[i].retirado ? 2 : 1;
            return n;
        };
        std::size_t antes = suma();
        p.bucle.alTerminarCadaSuceso([&] {
            mayor = std::max(mayor, suma() - antes);
            antes = suma();
        });
        recargar(grande(desde));
        EXPECT_EQ(suma(), antes) << "nothing is left for later";
        p.bucle.alTerminarCadaSuceso({});
        return mayor;
    };
    EXPECT_LE(deUnGolpe(2), 500U) << "of 5,000 new blocks";
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 5003U);
    EXPECT_LE(deUnGolpe(22), 1000U) << "of 5,000 that go";
    EXPECT_EQ(p.motor.vista.lblCantidadDePuntos.texto(), "3");
}

TEST_P(RecargaEnMedio, CadaRegistroEsElDeAntesOElDeDespues) {
    auto& p = plantaDe(conVecina());
    p.en("10.0.0.1");
    p.en("10.0.0.2");
    p.en("10.0.0.3");
    p.arrancarYConectar();
    p.avanzar(10'000);
    for (const auto& c : {sinVecina(), conVecina(), sinVecina()}) {
        pedir(c);
        std::size_t pasos = 0;
        for (; p.motor.recarga.enCurso(); ++pasos) {
            cadaUnoEntero();
            p.avanzar(1);
        }
        cadaUnoEntero();
        EXPECT_GE(pasos, 100U);
        p.avanzar(30'000);
    }
    for (const char* clave : {"1.1.10", "1.1.13", "1.1.40", "1.1.47", "1.3.30", "1.3.37"})
        EXPECT_EQ(estado(clave), 6) << clave;
    EXPECT_EQ(p.motor.vista.lblCantidadDePuntos.texto(), "18");
}

TEST_P(RecargaEnMedio, OrdenesAQuienSeVaYAQuienLlega) {
    auto& p = plantaDe(conVecina());
    auto& plc = p.en("10.0.0.1");
    auto& vecina = p.en("10.0.0.2");
    p.en("10.0.0.3");
    p.arrancarYConectar();
    p.motor.forzado.forzarPoleo("1.1.60", "prueba");
    p.avanzar(10'000);
    const Indice pedido = bloque("1.1.60");
    plc.demora = [](const Solicitud&) { return 300.0; };
    pedir(sinVecina());
    p.avanzar(20);
    ASSERT_FALSE(decidida());
    // Until it is decided the plant is the old one, for whoever gives an order.
    while (p.conexion(0).turno == EstadoDeTurno::Libre)
        p.avanzar(1);
    EXPECT_GE(p.motor.solicitudes.escribirDireccion("1.1.11", 77, "ventana"), 0);
    EXPECT_LT(p.motor.solicitudes.escribirDireccion("1.3.30", 5, "ventana"), 0);
    p.motor.operador.activarBloque(bloque("1.1.12"), false);
    p.motor.operador.olvidar(pedido);
    EXPECT_FALSE(p.bloque(pedido).retirado) << "not while records are being compared";
    hasta([this] { return decidida(); });
    // What the comparison could not know of.
    p.motor.forzado.forzarPoleo("1.1.41", "prueba");
    p.motor.forzado.forzarPoleo("1.2.55", "prueba");
    ASSERT_NE(bloque("1.1.41"), kNinguno);
    ASSERT_NE(bloque("1.2.55"), kNinguno);
    ASSERT_EQ(bloque("1.1.11"), kNinguno);
    p.motor.forzado.forzarPoleo("1.1.11", "prueba");
    terminar();
    cadaUnoEntero();
    EXPECT_TRUE(p.bloque(pedido).retirado);
    EXPECT_EQ(bloque("1.2.55"), kNinguno) << "it goes with its station";
    EXPECT_EQ(p.conexion(0).estaciones[0].aPedido, 1U) << "1.1.11, asked for when it had gone";
    EXPECT_NE(p.motor.trazas.txtDemandaLecturaEscritura.texto().find(
                  "1.1.11 = 77: ya no esta configurado"),
              std::string::npos);
    const double cuando = p.ahoraMs();
    plc.demora = [](const Solicitud&) { return 0.0; };
    p.avanzar(20'000);
    EXPECT_EQ(plc.valor(1, 0x11), 117) << "and it never left";
    EXPECT_TRUE(pedidos(vecina, 0x55, cuando).empty());
    std::size_t de41 = 0;
    for (Indice i = 0; i < p.motor.tablas.bloques.limiteSuperior(); ++i)
        de41 += p.bloque(i).clave == "1.1.41" ? 1 : 0;
    EXPECT_EQ(de41, 1U) << "what was asked for is the configured one now";
    for (const char* clave : {"1.1.10", "1.1.11", "1.1.41", "1.1.47", "1.3.30"})
        EXPECT_EQ(estado(clave), 6) << clave;
}

TEST_P(RecargaEnMedio, SeCortaUnEnlace) {
    for (const int ms : {30, 250, 400, 500, 600}) {
        auto& p = plantaDe(conVecina());
        auto& plc = p.en("10.0.0.1");
        p.en("10.0.0.2");
        p.en("10.0.0.3");
        p.arrancarYConectar();
        p.avanzar(10'000);
        pedir(sinVecina());
        p.avanzar(ms);
        plc.cortar();
        p.motor.conexiones.estadoConexiones();
        cadaUnoEntero();
        terminar();
        cadaUnoEntero();
        p.avanzar(60'000);
        for (const char* clave : {"1.1.10", "1.1.13", "1.1.47", "1.3.37"})
            EXPECT_EQ(estado(clave), 6) << clave << " " << ms;
        EXPECT_EQ(bloque("1.1.11"), kNinguno);
    }
}

TEST_P(RecargaEnMedio, PedidaOtraVezSeTomaElUltimoArchivo) {
    auto& p = plantaDe(conVecina());
    p.en("10.0.0.1");
    p.en("10.0.0.2");
    p.en("10.0.0.3");
    p.arrancarYConectar();
    p.avanzar(10'000);
    int terminadas = 0;
    p.motor.recarga.alTerminar([&terminadas] { ++terminadas; });
    for (const bool tarde : {false, true}) {
        pedir(sinVecina());
        if (tarde) hasta([this] { return decidida(); });
        pedir(dos());
        pedir(conVecina());
        terminar();
        p.avanzar(15'000);
        cadaUnoEntero();
        for (const char* clave : {"1.1.10", "1.1.11", "1.1.15", "1.2.22"})
            EXPECT_EQ(estado(clave), 6) << clave;
        EXPECT_EQ(bloque("1.3.30"), kNinguno);
    }
    EXPECT_EQ(terminadas, 2);
    // One that comes while a bad one is read counts just so.
    p.archivos.poner("/kv/DRIVER_KV2200_Config.ini", "");
    p.motor.operador.recargar();
    p.avanzar(5);
    pedir(dos());
    terminar();
    EXPECT_NE(p.archivos.contenido(kLog).find("no se recarga"), std::string::npos);
    EXPECT_EQ(p.motor.vista.lblCantidadDePuntos.texto(), "2");
}

TEST_P(RecargaEnMedio, TerminaElPrograma) {
    for (int ms = 0; ms < 700; ms += 35) {
        auto& p = plantaDe(conVecina());
        p.en("10.0.0.1");
        p.arrancarYConectar();
        pedir(sinVecina());
        p.avanzar(ms);
        p.motor.solicitudes.escribirDireccion("1.1.10", 5, "ventana");
        p.motor.terminar();
        EXPECT_EQ(p.motor.ejecucion.enEspera(), 0U);
        planta.reset();
    }
}

} // namespace
} // namespace kv
