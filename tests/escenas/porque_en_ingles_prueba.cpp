// SPDX-License-Identifier: Apache-2.0
// Every way in which a variable can be BAD, made to happen, as it is given to a reader of English.

#include "apoyo/dos_idiomas.h"
#include "apoyo/planta.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <functional>
#include <regex>

namespace kv {
namespace {

/// Station 1 with two registers, and station 2 with one behind the same address.
Configuracion dosEstaciones() {
    Configuracion c;
    c.puerto({"1", "1", "20"})
        .estacion(1, "10.0.0.1", 1)
        .estacion(2, "10.0.0.1", 2)
        .bloque(1, "10", "2")
        .bloque(1, "11", "2")
        .bloque(2, "20", "2");
    return c;
}

/// A way to be BAD: how the plant gets there, and what is said of a variable. "H" stands for a time
/// of the day, "D" for a length of time, "N" for how often.
struct Manera {
    const char* nombre;
    std::function<void(Planta&)> llegar;
    std::string dice;
    Configuracion config = dosEstaciones();
    Indice cual = 0;
    friend void PrintTo(const Manera& m, std::ostream* donde) { *donde << m.nombre; }
};

void leida(Planta& p) {
    p.en("10.0.0.1");
    p.arrancarYConectar();
    while (!p.ok(0))
        p.avanzar(100);
}
void hastaQueSeaMala(Planta& p) {
    while (p.ok(0))
        p.avanzar(50);
}
void callar(Planta& p, const std::function<bool(const Solicitud&)>& quien) {
    p.en("10.0.0.1").demora = [quien](const Solicitud& s) {
        return quien(s) ? std::nullopt : std::optional<double>(0);
    };
}
bool laPrimera(const Solicitud& s) { return s[1] == 1; }

/// A minute at the most.
void hastaQueDiga(Planta& p, Indice cual, const char* que) {
    const auto dice = [&] { return enIngles(p.motor.porQue).porQueVariable(cual); };
    for (int k = 0; k < 6'000 && dice().find(que) == std::string::npos; ++k)
        p.avanzar(10);
}

/// The link is lost, and cannot be had again.
std::function<void(Planta&)> sinEnlace(int error) {
    return [error](Planta& p) {
        leida(p);
        p.bucle.red().negar("10.0.0.1", 502, error, 0);
        p.en("10.0.0.1").cortar();
        p.avanzar(30'000);
    };
}
Manera negada(const char* nombre, int error, const char* motivo) {
    return {nombre, sinEnlace(error),
            std::string("BAD since H, last read D ago: the connection 10.0.0.1:502 has been down "
                        "since H: ") +
                motivo + "; next attempt in D."};
}
std::function<void(Planta&)> perdida(const std::function<void(Planta&)>& como) {
    return [como](Planta& p) {
        leida(p);
        como(p);
        p.bucle.red().rechazar("10.0.0.1", 502);
        hastaQueSeaMala(p);
    };
}
/// Switched off by `quien`, and its link lost meanwhile.
std::function<void(Planta&)> apagadaPor(const std::string& quien) {
    return [quien](Planta& p) {
        leida(p);
        p.motor.forzado.Activar_Desactivar_Bloque_Por_Solicitud(0, false, quien);
        p.en("10.0.0.1").cortar();
        hastaQueSeaMala(p);
    };
}
std::string apagada(const std::string& por) {
    return "BAD since H, last read D ago: the block has been switched off since H by " + por + ".";
}

std::vector<Manera> sinSuEnlace() {
    const std::string caida =
        "BAD since H, last read D ago: the connection 10.0.0.1:502 has been down since H: ";
    return {
        {"never up", [](Planta& p) { p.bucle.red().enmudecer("10.0.0.1", 502), p.arrancar(); },
         "BAD since H, never read: the connection 10.0.0.1:502 never came up; next attempt in D."},
        {"being tried",
         [](Planta& p) {
             p.bucle.red().enmudecer("10.0.0.1", 502), p.arrancar(), p.avanzar(25'000);
         },
         "BAD since H, never read: the connection 10.0.0.1:502 never came up: nobody answers at "
         "that address; it is being tried now."},
        {"up, not yet used", [](Planta& p) { p.en("10.0.0.1"), p.arrancar(), p.avanzar(9'000); },
         "BAD since H, never read: the connection 10.0.0.1:502 has just come up and is used from "
         "the next supervision on."},
        {"unknown name",
         [](Planta& p) { p.bucle.red().nombrar("plc", ""), p.arrancar(), p.avanzar(12'000); },
         "BAD since H, never read: the connection plc:502 never came up: nobody knows the name "
         "plc; next attempt in D.",
         Configuracion().puerto().estacion(1, "plc", 1).bloque(1, "10", "2")},
        negada("no network", ENETUNREACH, "there is no route to that network"),
        negada("no route", EHOSTUNREACH, "there is no route to that address"),
        negada("reset", ECONNRESET, "the other end cuts it as soon as it comes up"),
        negada("not allowed", EACCES, "the routes or the firewall of this machine do not allow it"),
        negada("refused", ECONNREFUSED, "it refuses the connection (nobody serves that port)"),
        {"closed", perdida([](Planta& p) { p.en("10.0.0.1").cortar(); }),
         caida + "the other end closed it; next attempt in D."},
        {"broken",
         perdida([](Planta& p) { p.bucle.red().romper(p.en("10.0.0.1").enlace(), ECONNRESET); }),
         caida + "the other end cut it abruptly; next attempt in D."},
        {"broken, and BAD before the loss is seen",
         [](Planta& p) {
             leida(p);
             callar(p, laPrimera);
             hastaQueSeaMala(p);
             p.bucle.red().romper(p.en("10.0.0.1").enlace(), ECONNRESET);
             p.avanzar(10);
         },
         "BAD since H, last read D ago: the connection 10.0.0.1:502 has just been lost (it had "
         "been "
         "up since H): the other end cut it abruptly; next attempt in D."},
    };
}

std::vector<Manera> queNadiePide() {
    return {
        {"off by the window", apagadaPor("la ventana"), apagada("the window")},
        {"off by the script", apagadaPor("el guion"), apagada("the script")},
        {"off by a client", apagadaPor("el cliente 10.0.0.9"), apagada("the client 10.0.0.9")},
        {"off by a user", apagadaPor("el usuario la ana"), apagada("the user la ana")},
        {"off by the configuration", [](Planta& p) { p.en("10.0.0.1"), p.arrancarYConectar(); },
         "BAD since H, never read: the block is switched off by the configuration.",
         Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "10", "2", false)},
        {"cannot be polled", [](Planta& p) { p.en("10.0.0.1"), p.arrancarYConectar(); },
         "BAD since H, never read: it cannot be polled: the address or the station's index does "
         "not fit a request.",
         Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "40001", "2")},
        {"no longer configured",
         [](Planta& p) {
             leida(p);
             p.archivos.poner(
                 "/kv/DRIVER_KV2200_Config.ini",
                 Configuracion().puerto().estacion(2, "10.0.0.1", 2).bloque(2, "20", "2").texto());
             p.motor.operador.recargar();
         },
         "BAD since H, last read D ago: it is no longer in the configuration."},
    };
}

std::vector<Manera> queNoContestan() {
    return {
        {"resting",
         [](Planta& p) {
             leida(p);
             callar(p, [](const Solicitud& s) { return laPrimera(s) && s[3] == 0x10; });
             hastaQueSeaMala(p);
         },
         "BAD since H, last read D ago: no answer since H (2 tries: 2 without anything); it rests "
         "until H, next attempt in D."},
        {"asks for its silent station",
         [](Planta& p) {
             leida(p);
             callar(p, laPrimera);
             while (!p.conexion(0).estaciones[0].muda || !p.motor.relojDeBloques.enMarcha(0))
                 p.avanzar(100);
         },
         "BAD since H, last read D ago: the station [PLC 1 - Indice 1] 10.0.0.1:502 has given no "
         "answer since H (N tries: N without anything); this block asks for all of them in D."},
        {"its silent station is asked for",
         [](Planta& p) {
             leida(p);
             callar(p, laPrimera);
             while (!p.conexion(0).estaciones[0].muda || !p.motor.relojDeBloques.enMarcha(1))
                 p.avanzar(100);
         },
         "BAD since H, last read D ago: the station [PLC 1 - Indice 1] 10.0.0.1:502 has given no "
         "answer since H (N tries: N without anything); the block 1.1.11 asks for all of them in "
         "D."},
        {"is asked for the first time", [](Planta& p) { p.en("10.0.0.1"), p.arrancarYConectar(); },
         "BAD since H, never read: it is being asked now."},
        {"waits for its first turn", [](Planta& p) { p.en("10.0.0.1"), p.arrancarYConectar(); },
         "BAD since H, never read: it waits its turn, one of 3 blocks.", dosEstaciones(), 1},
        {"waits behind a silent station",
         [](Planta& p) {
             callar(p, laPrimera);
             p.arrancarYConectar();
             hastaQueDiga(p, 2, "behind");
         },
         "BAD since H, never read: it waits its turn behind the station [PLC 1 - Indice 1] "
         "10.0.0.1:502, which has given no answer since H (1 try: 1 without anything).",
         dosEstaciones(), 2},
        {"an answer that may be another's",
         [](Planta& p) {
             callar(p, [](const Solicitud& s) { return s[3] == 0x10; });
             p.en("10.0.0.1").libres = [](const Solicitud&) { return Libres{9, 9, 9, 9}; };
             p.arrancarYConectar();
             hastaQueDiga(p, 1, "doubtful");
         },
         "BAD since H, never read: no answer since H (1 try: 1 with a doubtful answer); it waits "
         "its turn, one of 2 blocks.",
         Configuracion()
             .puerto({"1", "0", "20"})
             .estacion(1, "10.0.0.1", 1)
             .bloque(1, "10", "1")
             .bloque(1, "11", "1"),
         1},
    };
}

/// As a pattern: all but the places stands for itself.
std::regex molde(const std::string& dice) {
    std::string patron;
    for (std::size_t i = 0; i < dice.size(); ++i) {
        const bool sola =
            (i == 0 || dice[i - 1] == ' ' || dice[i - 1] == '(') &&
            (i + 1 == dice.size() || std::string(" ,.:;)").find(dice[i + 1]) != std::string::npos);
        if (sola && dice[i] == 'H') {
            patron += "\\d\\d:\\d\\d:\\d\\d";
        } else if (sola && dice[i] == 'D') {
            patron += "(\\d\\.\\d s|\\d+ s|\\d+ min( \\d+ s)?)";
        } else if (sola && dice[i] == 'N') {
            patron += "\\d+";
        } else {
            if (std::string("()[].+?").find(dice[i]) != std::string::npos) patron += '\\';
            patron += dice[i];
        }
    }
    return std::regex(patron);
}

class PorQueEnIngles : public testing::TestWithParam<Manera> {};

} // namespace

TEST_P(PorQueEnIngles, LaMismaVerdadEnOtrasPalabras) {
    const Manera& m = GetParam();
    Configuracion config = m.config;
    Planta p(config);
    p.motor.operador.hablarEn(Idioma::Ingles); // as windows do
    m.llegar(p);
    ASSERT_FALSE(p.ok(m.cual));
    const PorQue& ingles = p.motor.operador.porQue();
    const PorQue& castellano = p.motor.porQue; // as the local door has it
    const std::string dicho = ingles.porQueVariable(m.cual);
    EXPECT_TRUE(std::regex_match(dicho, molde(m.dice))) << dicho << "\n" << m.dice;
    const BloqueLectura& b = p.bloque(m.cual);
    for (const auto& [es, en] :
         {std::pair{castellano.porQueVariable(m.cual), dicho},
          {castellano.porQueBloque(m.cual), ingles.porQueBloque(m.cual)},
          {castellano.porQueConexion(0), ingles.porQueConexion(0)},
          {castellano.porQueEstacion(0, b.idEstacion), ingles.porQueEstacion(0, b.idEstacion)}}) {
        EXPECT_NE(es, en);
        EXPECT_EQ(hechosDe(es), hechosDe(en)) << es << "\n" << en;
    }
    EXPECT_TRUE(ingles.porQueConexion(0).starts_with("The connection "));
}

INSTANTIATE_TEST_SUITE_P(SinEnlace, PorQueEnIngles, testing::ValuesIn(sinSuEnlace()),
                         [](const auto& caso) { return std::to_string(caso.index); });
INSTANTIATE_TEST_SUITE_P(Apagadas, PorQueEnIngles, testing::ValuesIn(queNadiePide()),
                         [](const auto& caso) { return std::to_string(caso.index); });
INSTANTIATE_TEST_SUITE_P(Calladas, PorQueEnIngles, testing::ValuesIn(queNoContestan()),
                         [](const auto& caso) { return std::to_string(caso.index); });

} // namespace kv
