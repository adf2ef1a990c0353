// SPDX-License-Identifier: Apache-2.0
// Every way in which a variable can be BAD, made to happen, and what the driver says of it.

#include "apoyo/dos_idiomas.h"
#include "apoyo/planta.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <regex>

namespace kv {
namespace {

/// Station 1 with two registers, and station 2 with one behind the same address.
Configuracion dosEstaciones(const PuertoDePrueba& puerto = {"1", "1", "20"}) {
    Configuracion c;
    c.puerto(puerto)
        .estacion(1, "10.0.0.1", 1)
        .estacion(2, "10.0.0.1", 2)
        .bloque(1, "10", "2")
        .bloque(1, "11", "2")
        .bloque(2, "20", "2");
    return c;
}

class PorQueEstaMal : public testing::Test {
  protected:
    explicit PorQueEstaMal(Configuracion c = dosEstaciones()) : p(c) {}
    // Whatever is asked says the same in English.
    [[nodiscard]] std::string variable(Indice i) const {
        return enLosDos(p.motor.porQue.porQueVariable(i), ingles.porQueVariable(i));
    }
    [[nodiscard]] std::string conexion() const {
        return enLosDos(p.motor.porQue.porQueConexion(0), ingles.porQueConexion(0));
    }
    [[nodiscard]] std::string estacion(Indice e) const {
        return enLosDos(p.motor.porQue.porQueEstacion(0, e), ingles.porQueEstacion(0, e));
    }
    static std::string enLosDos(const std::string& castellano, const std::string& enIngles) {
        EXPECT_EQ(loQueFallaEnIngles(castellano, enIngles), "");
        return castellano;
    }
    /// The calendar time `s` seconds after the plant was started.
    [[nodiscard]] static std::string a(int s) {
        return formatoGeneral(fechaDesdeSegundos(1'763'276'710 + s)).substr(11);
    }
    void callar(int cual) {
        p.en("10.0.0.1").demora = [cual](const Solicitud& s) -> std::optional<double> {
            return s[1] == cual ? std::nullopt : std::optional<double>(0);
        };
    }
    Planta p;
    PorQue ingles = enIngles(p.motor.porQue);
};

} // namespace

TEST_F(PorQueEstaMal, SinEnlaceDiceDesdeCuandoPorQueYCuandoSeIntenta) {
    p.bucle.red().enmudecer("10.0.0.1", 502);
    p.arrancar();
    EXPECT_EQ(variable(0), "BAD desde " + a(0) +
                               ", nunca leida: la conexion 10.0.0.1:502 no se establecio nunca; "
                               "proximo intento dentro de 5,0 s.");
    p.avanzar(5000);
    EXPECT_TRUE(conexion().ends_with("nunca; se esta intentando ahora.")) << conexion();
    p.avanzar(20'000);
    EXPECT_TRUE(
        conexion().ends_with(": nadie contesta en esa direccion; se esta intentando ahora."))
        << conexion();
    p.bucle.red().rechazar("10.0.0.1", 502);
    p.avanzar(30'000);
    EXPECT_NE(conexion().find(": rechaza la conexion (nadie atiende ese puerto); "),
              std::string::npos)
        << conexion();
    // The attempt that is foretold is made then, whatever the state it is foretold in.
    for (int k = 0; k < 30; ++k) {
        const std::int64_t ms = p.motor.conexiones.proximoIntentoMs(0);
        const double antes = p.conexion(0).contadorSolicitudes;
        const bool descansa = p.conexion(0).enTiempoFuera;
        if (ms > 1) p.avanzar(static_cast<double>(ms) - 1);
        EXPECT_EQ(p.conexion(0).contadorSolicitudes, descansa ? 0 : antes) << k;
        p.avanzar(2);
        EXPECT_TRUE(p.conexion(0).contadorSolicitudes > (descansa ? 0 : antes) ||
                    p.conexion(0).enTiempoFuera)
            << k;
    }
}

TEST_F(PorQueEstaMal, UnEnlaceQueSePierdeDiceComo) {
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    EXPECT_TRUE(conexion().starts_with("La conexion 10.0.0.1:502 esta conectada desde " + a(10)))
        << conexion();
    p.avanzar(7000);
    ASSERT_TRUE(p.ok(0));
    plc.cortar();
    p.bucle.red().rechazar("10.0.0.1", 502);
    p.avanzar(3000); // the pass at 20 s
    EXPECT_TRUE(variable(0).starts_with("BAD desde " + a(20) + ", leida por ultima vez hace "))
        << variable(0);
    EXPECT_NE(variable(0).find("esta caida desde " + a(20) + ": la cerro el otro extremo; "),
              std::string::npos)
        << variable(0);
    p.bucle.red().nombrar("10.0.0.1", "");
    p.en("10.0.0.1"); // the same machine, on again
    p.bucle.red().atender("10.0.0.1", 502, plc);
}

TEST_F(PorQueEstaMal, CadaManeraDeNoTenerEnlaceDiceLaSuya) {
    struct Manera {
        int error;
        double demoraMs;
        std::string dice;
    };
    const std::array maneras = {
        Manera{ENETUNREACH, 0, "no hay ruta hasta esa red"},
        Manera{EHOSTUNREACH, 0, "no hay ruta hasta esa direccion"},
        Manera{EHOSTUNREACH, 3000, "no hay ruta hasta esa direccion"}, // nobody has that address
        Manera{ECONNRESET, 1, "el otro extremo la corta apenas se establece"},
        Manera{ETIMEDOUT, 2500, "nadie contesta en esa direccion"},
        Manera{EACCES, 0, "las rutas o el cortafuegos de esta maquina no lo permiten"},
        Manera{ECONNREFUSED, 1, "rechaza la conexion (nadie atiende ese puerto)"}};
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    for (const Manera& m : maneras) {
        p.bucle.red().negar("10.0.0.1", 502, m.error, static_cast<std::int64_t>(m.demoraMs * 1e3));
        plc.cortar();
        p.avanzar(60'000);
        EXPECT_NE(variable(0).find(" esta caida desde "), std::string::npos) << variable(0);
        EXPECT_NE(variable(0).find(": " + m.dice + "; "), std::string::npos) << variable(0);
        EXPECT_NE(conexion().find(": " + m.dice + "; "), std::string::npos) << conexion();
        EXPECT_NE(estacion(0).find(": " + m.dice + "; "), std::string::npos) << estacion(0);
        p.bucle.red().atender("10.0.0.1", 502, plc);
        p.avanzar(120'000);
        ASSERT_TRUE(p.ok(0)) << variable(0);
    }
}

/// How it was lost is the reason given until the supervision has looked, whatever comes of the
/// attempts before.
TEST(PorQueSeRompio, UnEnlaceQueSeRompeDiceComoAunqueYaSeHayaIntentadoOtraVez) {
    Configuracion c;
    c.puerto()
        .estacion(1, "10.0.0.1", 1)
        .estacion(2, "10.0.0.2", 2) // where nobody is: connections are asked for all the time
        .bloque(1, "10", "2")
        .bloque(2, "20", "2");
    Planta p(c);
    auto& plc = p.en("10.0.0.1");
    p.ajuste("Base_Tiempo_Solicitar_Conexiones_Milisegundos", "500");
    p.arrancarYConectar();
    const PorQue& q = p.motor.porQue;
    const auto log = [&p] {
        std::string todo;
        for (const std::string& ruta : p.archivos.en("/kv/LOGS_DRIVER"))
            todo += p.archivos.contenido(ruta);
        return todo;
    };
    for (const auto& [error, dice] : {std::pair{ECONNRESET, "la corto el otro extremo de golpe"},
                                      std::pair{EHOSTUNREACH, "no hay ruta hasta esa direccion"}}) {
        p.avanzar(3'600'000); // what flaps is counted, not logged
        ASSERT_TRUE(p.ok(0)) << q.porQueVariable(0);
        const std::int64_t arriba = p.conexion(0).enlaceDesde.ms();
        p.bucle.red().romper(plc.enlace(), error);
        p.bucle.red().rechazar("10.0.0.1", 502);
        p.avanzar(10);
        const std::string perdida = "La conexion 10.0.0.1:502 se acaba de perder (estaba conectada "
                                    "desde " +
                                    q.hora(arriba) + "): " + dice + "; ";
        EXPECT_TRUE(q.porQueConexion(0).starts_with(perdida)) << q.porQueConexion(0);
        p.avanzar(3000); // it was tried again, and refused
        EXPECT_NE(p.conexion(0).motivo, "");
        EXPECT_TRUE(q.porQueConexion(0).starts_with(perdida)) << q.porQueConexion(0);
        while (p.ok(0))
            p.avanzar(100);
        EXPECT_NE(log().find(std::string("10.0.0.1:502: se perdio, ") + dice + ", DescError:KV202"),
                  std::string::npos)
            << log();
        p.avanzar(20'000);
        EXPECT_NE(q.porQueConexion(0).find(": rechaza la conexion"), std::string::npos)
            << q.porQueConexion(0);
        p.bucle.red().atender("10.0.0.1", 502, plc);
    }
}

TEST_F(PorQueEstaMal, LoQueSeEstableceYSePierdeEnseguidaSeDice) {
    struct Fugaz final : ExtremoSimulado {
        explicit Fugaz(RedSimulada& r) : red(r) {}
        void alConectar(IdEnlace e) override { red.romper(e, ECONNRESET); }
        void alRecibir(IdEnlace, std::span<const std::uint8_t>) override {}
        RedSimulada& red;
    } fugaz(p.bucle.red());
    p.bucle.red().atender("10.0.0.1", 502, fugaz);
    p.arrancar();
    p.avanzar(60'000);
    EXPECT_NE(variable(0).find(" nunca leida: la conexion 10.0.0.1:502 se establece y se pierde "
                               "antes de usarse: la corto el otro extremo de golpe; "),
              std::string::npos)
        << variable(0);
}

TEST(PorQueSinNombre, UnNombreQueNadieConoceSeDice) {
    Configuracion c;
    c.puerto().estacion(1, "plc-norte", 1).bloque(1, "10", "2");
    Planta p(c);
    p.bucle.red().nombrar("plc-norte", "");
    p.arrancar();
    p.avanzar(12'000);
    EXPECT_NE(p.motor.porQue.porQueVariable(0).find(": nadie conoce el nombre plc-norte; "),
              std::string::npos)
        << p.motor.porQue.porQueVariable(0);
}

TEST_F(PorQueEstaMal, LoQueSeApagaDiceQuienYDesdeCuando) {
    p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(5000);
    p.motor.operador.activarBloque(0, false);
    p.avanzar(2000);
    EXPECT_TRUE(variable(0).starts_with("OK, leida por ultima vez hace ")) << variable(0);
    EXPECT_TRUE(
        variable(0).ends_with(": el bloque esta apagado desde " + a(15) + " por la ventana."))
        << variable(0);
    EXPECT_FALSE(p.motor.porQue.edad(0).vieja) << "nobody expects it any more";
    p.motor.forzado.Activar_Desactivar_Bloque_Por_Solicitud(1, false, "el guion");
    EXPECT_TRUE(variable(1).ends_with(" por el guion.")) << variable(1);
    // Its link is lost meanwhile: the reason is still that nobody asks.
    p.en("10.0.0.1").cortar();
    p.avanzar(5000);
    EXPECT_TRUE(variable(0).starts_with("BAD desde " + a(20))) << variable(0);
    EXPECT_TRUE(
        variable(0).ends_with(": el bloque esta apagado desde " + a(15) + " por la ventana."))
        << variable(0);
}

TEST(PorQueNuncaSeLee, LoQueLaConfiguracionDejaAfueraSeDice) {
    Configuracion c;
    c.puerto()
        .estacion(1, "10.0.0.1", 1)
        .bloque(1, "40001", "2")
        .bloque(1, "10", "2", false)
        .bloque(1, "11", "0");
    Planta p(c);
    p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(5000);
    const PorQue& q = p.motor.porQue;
    EXPECT_EQ(q.porQueBloque(0), "1.1.40001: no se puede polear: la direccion o el indice de la "
                                 "estacion no caben en un pedido.");
    EXPECT_TRUE(
        q.porQueVariable(1).ends_with("nunca leida: el bloque esta apagado por la configuracion."))
        << q.porQueVariable(1);
    EXPECT_TRUE(p.ok(2));
    EXPECT_EQ(q.porQueBloque(2),
              "1.1.11: tiene scan 0: se lee solo al conectar y cuando se lo fuerza.");
    EXPECT_EQ(q.edad(2).esperadaMs, 0);
    EXPECT_FALSE(q.edad(2).vieja);
}

TEST_F(PorQueEstaMal, UnBloqueCalladoCuentaSusIntentosYCuandoVuelve) {
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(6000);
    ASSERT_TRUE(p.ok(1));
    bool ruido = false;
    plc.demora = [&](const Solicitud& s) -> std::optional<double> {
        if (s[1] != 1 || s[3] != 0x11) return 0.0;
        const std::array<std::uint8_t, 9> basura{1, 2, 3, 4, 5, 6, 7, 8, 9};
        if (ruido) plc.mandar(basura);
        ruido = !ruido;
        return std::nullopt;
    };
    while (p.ok(1))
        p.avanzar(100);
    const BloqueLectura& b = p.bloque(1);
    EXPECT_EQ(b.fallidos.total(), 2U);
    const std::string dice = variable(1);
    EXPECT_NE(dice.find("(2 intentos: 1 sin nada, 1 con bytes que no son respuesta); descansa "
                        "hasta "),
              std::string::npos)
        << dice;
    const std::int64_t faltan = p.motor.relojDeBloques.faltanMs(1);
    EXPECT_TRUE(dice.ends_with("proximo intento dentro de " +
                               textoDeDuracion((faltan + 999) / 1000 * 1000) + "."))
        << dice;
    plc.pedidos.clear();
    p.avanzar(static_cast<double>(faltan) + 1500);
    const bool pidio = std::any_of(plc.pedidos.begin(), plc.pedidos.end(),
                                   [](const auto& x) { return x.trama[3] == 0x11; });
    EXPECT_TRUE(pidio) << "then it is asked again, as was said";
    EXPECT_TRUE(estacion(0).starts_with("PLC 1: contesta; ")) << "its other register does";
    callar(0);
    while (!p.ok(1))
        p.avanzar(100);
    EXPECT_TRUE(variable(1).starts_with("OK, leida por ultima vez hace ")) << variable(1);
    EXPECT_EQ(b.fallidos.total(), 0U);
}

TEST_F(PorQueEstaMal, UnaEstacionMudaYSusVecinasQueEsperan) {
    p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(6000);
    callar(1);
    while (!p.conexion(0).estaciones[0].muda)
        p.avanzar(100);
    const Indice sondea = p.motor.relojDeBloques.enMarcha(0) ? 0 : 1;
    const std::string clave = p.bloque(sondea).clave;
    EXPECT_NE(variable(sondea).find("; este bloque pregunta por todos dentro de "),
              std::string::npos)
        << variable(sondea);
    EXPECT_NE(variable(1 - sondea).find("; el bloque " + clave + " pregunta por todos dentro de "),
              std::string::npos)
        << variable(1 - sondea);
    EXPECT_TRUE(estacion(0).starts_with("PLC 1: sin respuesta desde ")) << estacion(0);
    const ResumenDeEstacion r = p.motor.porQue.resumen(0, 0);
    EXPECT_TRUE(r.callada);
    EXPECT_EQ(r.bad, 2U);
    EXPECT_NE(estacion(0).find("(" + std::to_string(r.intentos) + " intentos: "),
              std::string::npos);
    EXPECT_NE(conexion().find("; PLC 1 sin respuesta desde "), std::string::npos) << conexion();
    // Of the neighbour that waits while the silent one is asked, the sentence says behind whom.
    bool dicho = false;
    for (int k = 0; k < 600 && !dicho; ++k) {
        p.avanzar(100);
        dicho = p.bloque(2).pendiente &&
                variable(2).find("detras de la estacion [PLC 1 - Indice "
                                 "1] 10.0.0.1:502, sin respuesta desde ") != std::string::npos;
        if (!dicho)
            dicho = p.motor.porQue.porQueBloque(2).find("detras de la estacion [PLC 1") !=
                    std::string::npos;
    }
    EXPECT_TRUE(dicho);
    // The first of them asks for all, and is switched off while it rests.
    while (!p.motor.relojDeBloques.enMarcha(0))
        p.avanzar(100);
    p.motor.operador.activarBloque(0, false);
    EXPECT_NE(variable(1).find("; este bloque pregunta por todos dentro de "), std::string::npos)
        << variable(1);
    p.archivos.poner(
        "/kv/DRIVER_KV2200_Config.ini",
        Configuracion().puerto().estacion(2, "10.0.0.1", 2).bloque(2, "20", "2").texto());
    p.motor.operador.recargar();
    p.avanzar(1000);
    EXPECT_EQ(conexion().find("PLC 1"), std::string::npos) << conexion();
    EXPECT_EQ(estacion(0), "PLC 1: ya no esta en la configuracion.");
}

TEST(PorQueDudosa, UnaRespuestaDudosaSeCuentaComoTal) {
    Configuracion c;
    c.puerto({"1", "0", "20"}).estacion(1, "10.0.0.1", 1).bloque(1, "10", "1").bloque(1, "11", "1");
    Planta q(c);
    auto& plc = q.en("10.0.0.1");
    plc.libres = [](const Solicitud&) { return Libres{9, 9, 9, 9}; }; // they tell nothing
    // One register is dead; the other one is asked on trial, and its answer might be a late one.
    plc.demora = [](const Solicitud& s) {
        return s[3] == 0x10 ? std::nullopt : std::optional<double>(0);
    };
    q.arrancarYConectar();
    for (int k = 0; k < 600 && q.bloque(1).fallidos.total() == 0; ++k)
        q.avanzar(10);
    EXPECT_NE(q.motor.porQue.porQueVariable(1).find("(1 intento: 1 con respuesta dudosa); "),
              std::string::npos)
        << q.motor.porQue.porQueVariable(1);
    EXPECT_GT(q.motor.contadores.deConexion(0).dudosas, 0U);
}

TEST_F(PorQueEstaMal, LaEdadDeUnValorSeMideConLoQueSuConexionPuedeDar) {
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(10'000);
    // Three blocks, a pause of 800 ms: their turn takes longer than their scan of 2 s.
    const Edad e = p.motor.porQue.edad(0);
    EXPECT_GT(e.esperadaMs, 3 * 2000);
    EXPECT_LT(e.esperadaMs, 3 * 2500);
    EXPECT_FALSE(e.vieja);
    plc.demora = [](const Solicitud&) { return std::nullopt; };
    // Before it is BAD it is old.
    bool fueVieja = false;
    while (p.ok(0)) {
        p.avanzar(100);
        const Edad ahora = p.motor.porQue.edad(0);
        EXPECT_EQ(ahora.vieja, p.ok(0) && p.motor.bucle.reloj().monotonicoMs() - ahora.leidaMs >
                                              ahora.esperadaMs);
        if (ahora.vieja) {
            fueVieja = true;
            EXPECT_TRUE(variable(0).starts_with("OK pero vieja, leida por ultima vez hace "))
                << variable(0);
            EXPECT_TRUE(std::regex_search(variable(0),
                                          std::regex(R"(\(se espera a lo sumo cada 7,\d+ s\))")))
                << variable(0);
        }
    }
    EXPECT_TRUE(fueVieja);
}

TEST_F(PorQueEstaMal, QuienEsperaDetrasDeUnaEscrituraNoPasaPorPreguntado) {
    auto& plc = p.en("10.0.0.1");
    p.arrancarYConectar();
    p.avanzar(5000); // reads have gone by
    const auto bloque = [this] {
        return enLosDos(p.motor.porQue.porQueBloque(1), ingles.porQueBloque(1));
    };
    // The first read of a bit's register has the frame of that register's block.
    for (const char* direccion : {"1.1.11", "1.1.11.3"}) {
        plc.demora = [](const Solicitud&) { return std::optional<double>(500); };
        p.motor.solicitudes.escribirDireccion(direccion, 1, "ventana");
        for (int i = 0; i < 1000 && p.motor.turnos.enCurso(0) != &p.motor.ejecucion; ++i)
            p.avanzar(10);
        p.motor.relojDeBloques.pedir(1);
        EXPECT_NE(bloque().find("espera su turno detras de una escritura"), std::string::npos)
            << direccion << ": " << bloque();
        p.avanzar(10'000);
    }
}

TEST_F(PorQueEstaMal, LosContadoresDicenLoQueLaPlantaHizo) {
    auto& plc = p.en("10.0.0.1");
    plc.demora = [](const Solicitud& s) { return std::optional<double>(s[1] == 1 ? 20 : 50); };
    p.arrancarYConectar();
    p.avanzar(60'000);
    const auto deEstacion = [&](int e) {
        return static_cast<std::uint64_t>(
            std::count_if(plc.pedidos.begin(), plc.pedidos.end(),
                          [e](const auto& x) { return x.trama[1] == e; }));
    };
    const Contadores& c = p.motor.contadores;
    EXPECT_EQ(c.deEstacion(0, 0).pedidos, deEstacion(1));
    EXPECT_EQ(c.deEstacion(0, 1).pedidos, deEstacion(2));
    EXPECT_EQ(c.deEstacion(0, 1).medianoUs, 50'000 + 400) << "and the network's way, both ways";
    CuentasDeConexion toda = c.deConexion(0);
    EXPECT_EQ(toda.respuestas, p.motor.recepcion.respuestas());
    EXPECT_EQ(toda.peorUs, 50'400);
    EXPECT_EQ(toda.vencidos + toda.reintentos + toda.dudosas + toda.descartes + toda.caidas, 0U);
    const RepartoDeLinea& r = toda.reparto;
    EXPECT_NEAR(static_cast<double>(r.pausas), static_cast<double>(toda.respuestas) * 800e3, 1.6e6);
    EXPECT_NEAR(static_cast<double>(r.total()), 60e6, 2e6) << "all of the time is told";
    EXPECT_EQ(r.silencio, 0);
    // A damaged answer is so many bytes, and its try one in vain; a lost link is counted.
    plc.deformar = [](std::vector<std::uint8_t>& bytes, const Solicitud&) { bytes.back() ^= 1; };
    p.avanzar(3500);
    plc.deformar = nullptr;
    p.avanzar(10'000);
    plc.cortar();
    p.avanzar(10'000);
    toda = c.deConexion(0);
    EXPECT_GT(toda.vencidos, 0U);
    EXPECT_EQ(toda.bytesDescartados, toda.descartes * kLargoRespuesta);
    EXPECT_GT(toda.reparto.silencio, 1'000'000);
    EXPECT_EQ(toda.caidas, 1U);
    EXPECT_EQ(toda.pedidos, plc.pedidos.size());
}

TEST(PorQueDudosa, LoQueSeEsperaAUnaEscrituraDudosaEsSilencio) {
    Configuracion c;
    c.puerto({"1", "0", "600"}).estacion(1, "10.0.0.1", 1);
    c.bloque(1, "10", "600").bloque(1, "11", "600");
    Planta q(c);
    auto& plc = q.en("10.0.0.1");
    plc.libres = [](const Solicitud&) { return Libres{9, 9, 9, 9}; };
    q.arrancarYConectar();
    q.avanzar(5000);
    plc.deformar = [](std::vector<std::uint8_t>& bytes, const Solicitud& t) {
        const auto otra = respuestaDe(100, {9, 9, 9, 9});
        if (t[0] == 0x57) bytes.insert(bytes.end(), otra.begin(), otra.end());
    };
    const std::int64_t antes = q.motor.contadores.deConexion(0).reparto.silencio;
    q.motor.solicitudes.escribirDireccion("1.1.10", 7, "prueba");
    q.avanzar(3500);
    const CuentasDeConexion toda = q.motor.contadores.deConexion(0);
    EXPECT_NEAR(static_cast<double>(toda.reparto.silencio - antes), 3e6, 1e5)
        << "the line is let fall silent for three time-outs before what it holds is read back";
}

} // namespace kv
