// SPDX-License-Identifier: Apache-2.0
// Lines that are slow, noisy or shared with the dead: every value is its own register's, and nobody
// is forgotten.

#include "apoyo/planta.h"
#include "plant/valor_y_estado.h"

#include <gtest/gtest.h>

#include <random>

namespace kv {
namespace {

enum class Dice { Todo, Nada, Distinto };

/// What a station of that habit puts into the free bytes.
std::function<Libres(const Solicitud&)> habito(Dice dice) {
    if (dice == Dice::Todo) return [](const Solicitud& t) { return Libres{t[1], 0, t[3], 0}; };
    if (dice == Dice::Nada) return [](const Solicitud&) { return Libres{}; };
    return [n = std::uint8_t{0}](const Solicitud&) mutable { return Libres{0, ++n, 0, 0}; };
}

class Linea : public testing::Test {
  protected:
    /// Blocks 10, 11, ... on one station, polled all the time.
    Planta& planta(int bloques, const Configuracion::Puerto& puerto, int pausaMs, Dice dice) {
        Configuracion config;
        config.puerto(puerto).estacion(1, "10.0.0.1", 1);
        for (int b = 0; b < bloques; ++b)
            config.bloque(1, std::to_string(10 + b), "0.1");
        p = std::make_unique<Planta>(config);
        p->ajuste("Tiempo_Entre_poleo", std::to_string(pausaMs));
        plc = &p->en("10.0.0.1");
        plc->libres = habito(dice);
        p->bucle.alTerminarCadaSuceso([this] { vigilar(); });
        p->arrancarYConectar();
        return *p;
    }
    void vigilar() {
        Tablas& t = p->motor.tablas;
        for (std::size_t i = 0; i < t.bloques.limiteSuperior(); ++i) {
            const BloqueLectura& b = t.bloques[i];
            const int propio = plc->valor(b.tramaSolicitud[1], b.tramaSolicitud[3]);
            if (b.estado == kOk && b.valor != propio) ++enOtroLugar;
        }
    }
    std::unique_ptr<Planta> p;
    Estaciones* plc = nullptr;
    int enOtroLugar = 0;
};

} // namespace

TEST_F(Linea, RuidoNoPagaUnaRespuestaQueSeDebe) {
    for (const Dice dice : {Dice::Todo, Dice::Nada, Dice::Distinto})
        for (const int pausa : {100, 800})
            for (const char* reintentos : {"2", "0"}) {
                auto& planta_ = planta(3, {"1", reintentos, "5"}, pausa, dice);
                planta_.avanzar(20'000);
                int vez = 0;
                plc->demora = [&vez](const Solicitud&) { return ++vez == 1 ? 1300.0 : 20.0; };
                planta_.avanzar(pausa + 500); // the late one's request is out
                plc->mandar(std::vector<std::uint8_t>(8, 0x55));
                planta_.avanzar(48'000);
                EXPECT_EQ(enOtroLugar, 0);
                for (std::size_t b = 0; b < 3; ++b)
                    EXPECT_TRUE(planta_.ok(b)) << pausa << reintentos;
                EXPECT_EQ(plc->conexiones, 1);
            }
}

TEST_F(Linea, SiempreTardeCadaBloqueSeLeeOCae) {
    for (const Dice dice : {Dice::Todo, Dice::Nada, Dice::Distinto})
        for (const double demora : {1300.0, 1900.0, 2900.0})
            for (const int bloques : {1, 2, 3, 4, 6})
                for (const char* reintentos : {"0", "1", "3"}) {
                    auto& planta_ = planta(bloques, {"1", reintentos, "5"}, 100, dice);
                    plc->demora = [demora](const Solicitud&) { return demora; };
                    planta_.avanzar(30'000);
                    plc->mandar(std::vector<std::uint8_t>(8, 0x55));
                    planta_.avanzar(90'000);
                    for (int r = 10; r < 10 + bloques; ++r)
                        plc->registros[{1, 16 + r - 10}] = 5000 + r;
                    // Whoever still says OK has been answered since.
                    p->bucle.alTerminarCadaSuceso(nullptr);
                    planta_.avanzar(240'000);
                    for (std::size_t b = 0; b < static_cast<std::size_t>(bloques); ++b)
                        EXPECT_TRUE(!planta_.ok(b) ||
                                    planta_.valor(b) == 5010 + static_cast<int>(b))
                            << "block " << b << " of " << bloques << ", " << demora << " ms, "
                            << reintentos << " retries, habit " << static_cast<int>(dice);
                    EXPECT_EQ(enOtroLugar, 0);
                }
}

TEST_F(Linea, EcosYUnTercioDaniadasSeAtribuyenBien) {
    for (const Dice dice : {Dice::Todo, Dice::Nada, Dice::Distinto}) {
        auto& planta_ = planta(4, {"1", "3", "5"}, 100, dice);
        std::mt19937 azar(7);
        plc->deformar = [&azar](std::vector<std::uint8_t>& bytes, const Solicitud& t) {
            if (azar() % 3 == 0) bytes[1 + azar() % 7] ^= 0x40;
            if (azar() % 2 == 0) bytes.insert(bytes.begin(), t.begin(), t.end()); // its echo
        };
        int buenas = 0;
        for (int s = 0; s < 600; ++s) {
            planta_.avanzar(1000);
            for (std::size_t b = 0; b < 4; ++b)
                buenas += planta_.ok(b) ? 1 : 0;
        }
        EXPECT_EQ(enOtroLugar, 0);
        // One in eighty is damaged four times in a row.
        EXPECT_GT(buenas, 600 * 4 * 8 / 10) << static_cast<int>(dice);
        EXPECT_EQ(plc->conexiones, 1);
    }
}

TEST_F(Linea, DadasDosVecesJuntasOEnLaPausaValen) {
    for (const bool juntas : {true, false}) {
        auto& planta_ = planta(3, {"1", "2", "5"}, 300, Dice::Nada);
        std::size_t dadas = plc->pedidos.size();
        const auto pasar = [&](int ms) {
            for (; ms > 0; ms -= 10) {
                planta_.avanzar(10);
                if (dadas == plc->pedidos.size()) continue;
                dadas = plc->pedidos.size();
                const Solicitud& t = plc->pedidos.back().trama;
                if (!juntas) plc->mandar(respuestaDe(plc->valor(t[1], t[3]), {}), 100);
            }
        };
        if (juntas)
            plc->deformar = [](std::vector<std::uint8_t>& bytes, const Solicitud&) {
                bytes.insert(bytes.end(), bytes.begin(), bytes.begin() + 8);
            };
        pasar(5000);
        const auto antes = plc->pedidos.size();
        pasar(30'000);
        EXPECT_GT(plc->pedidos.size() - antes, 90U) << "at full speed";
        EXPECT_EQ(enOtroLugar, 0);
        p->bucle.alTerminarCadaSuceso(nullptr);
        planta_.motor.solicitudes.escribirDireccion("1.1.10", 77, "prueba");
        pasar(3000);
        EXPECT_EQ(planta_.valor(0), 77);
        EXPECT_NE(planta_.motor.trazas.txtDemandaLecturaEscritura.texto().find(
                      " 1.1.10 = 77: confirmada"),
                  std::string::npos);
        plc->registros[{1, 0x11}] = 9;
        pasar(3000);
        EXPECT_EQ(planta_.valor(1), 9);
    }
}

TEST_F(Linea, UnaProbadaTieneElTurnoSiguiente) {
    auto config = Configuracion()
                      .puerto({"1", "0", "10"})
                      .estacion(1, "10.0.0.1", 1)
                      .estacion(2, "10.0.0.1", 2)
                      .bloque(1, "10", "0.1")
                      .bloque(1, "11", "0.1")
                      .bloque(2, "10", "0.1");
    Planta q(config);
    auto& dos = q.en("10.0.0.1");
    dos.libres = habito(Dice::Nada);
    dos.demora = [](const Solicitud& t) {
        return t[1] == 2 ? std::optional<double>() : std::optional<double>(20);
    };
    q.arrancarYConectar();
    q.avanzar(120'000);
    int pruebas = 0;
    for (std::size_t i = 0; i + 2 < dos.pedidos.size(); ++i) {
        if (dos.pedidos[i].trama[1] != 2) continue;
        // Behind the dead one's request: the trial, quiet, and the same once more.
        ++pruebas;
        EXPECT_EQ(dos.pedidos[i + 1].trama, dos.pedidos[i + 2].trama);
        EXPECT_GE(dos.pedidos[i + 2].ms - dos.pedidos[i + 1].ms, 3000);
    }
    EXPECT_GT(pruebas, 3);
    EXPECT_TRUE(q.ok(0) && q.ok(1)) << "being asked on trial hurts nobody, without any retries";
}

/// Six living registers on one station, some dead ones on another of the same address: reads of the
/// living in ten minutes, once the dead are known, and the longest time without any.
struct Reparto {
    double parte = 0;
    double huecoMs = 0;
};

static Reparto repartir(int muertos, Dice dice, bool breves) {
    auto config = Configuracion()
                      .puerto({"0.5", "3", "5"})
                      .estacion(1, "10.0.0.1", 1)
                      .estacion(2, "10.0.0.1", 2);
    for (int b = 0; b < 6; ++b)
        config.bloque(1, std::to_string(10 + b), "0.1");
    for (int b = 0; b < muertos; ++b)
        config.bloque(2, std::to_string(20 + b), "0.1");
    Planta p(config);
    if (breves) p.ajuste("Tiempo_Entre_poleo", "100");
    auto& plc = p.en("10.0.0.1");
    plc.libres = habito(dice);
    plc.demora = [](const Solicitud& t) {
        return t[1] == 2 ? std::optional<double>() : std::optional<double>(20);
    };
    p.arrancarYConectar();
    p.avanzar(300'000);
    const double desde = p.ahoraMs();
    const auto antes = p.motor.recepcion.respuestas();
    std::uint64_t vistas = antes;
    double ultima = desde, hueco = 0;
    while (p.ahoraMs() < desde + 600'000) {
        p.avanzar(10);
        if (p.motor.recepcion.respuestas() == vistas) continue;
        vistas = p.motor.recepcion.respuestas();
        hueco = std::max(hueco, p.ahoraMs() - ultima);
        ultima = p.ahoraMs();
    }
    for (std::size_t b = 0; b < 6; ++b)
        EXPECT_TRUE(p.ok(b));
    const double posibles = 600'000.0 / ((breves ? 100 : 800) + 20);
    return {static_cast<double>(p.motor.recepcion.respuestas() - antes) / posibles, hueco};
}

TEST(Reparto, UnaEstacionMuertaNoSeLlevaLaLineaDeLasVivas) {
    for (const bool breves : {false, true})
        for (const int muertos : {1, 6}) {
            const Reparto dicen = repartir(muertos, Dice::Todo, breves);
            const Reparto callan = repartir(muertos, Dice::Nada, breves);
            EXPECT_GE(dicen.parte, 0.75) << muertos;
            // One probe and the two pauses around it.
            EXPECT_LE(dicen.huecoMs, 500 + 2 * (breves ? 100 : 800) + 50) << muertos;
            EXPECT_GE(callan.parte, 0.65) << muertos;
        }
}

} // namespace kv
