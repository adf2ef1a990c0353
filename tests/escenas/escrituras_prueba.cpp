// SPDX-License-Identifier: Apache-2.0
// What happens to a write, from the request to its confirmation or its end.

#include "apoyo/planta.h"
#include "operator/escritura_manual.h"
#include "plant/valor_y_estado.h"
#include "text/texto.h"
#include "write/palabra.h"

#include <cmath>
#include <map>
#include <utility>

#include <gtest/gtest.h>

namespace kv {
namespace {

class Escribe : public testing::Test {
  protected:
    void planta(const Configuracion::Puerto& puerto = {}, const std::string& scan = "600") {
        auto config = Configuracion()
                          .puerto(puerto)
                          .estacion(1, "10.0.0.1", 1)
                          .bloque(1, "10", scan)
                          .bloque(1, "0A", scan)
                          .bloque(1, "40001", scan);
        p = std::make_unique<Planta>(config);
        plc = &p->en("10.0.0.1");
        p->arrancarYConectar();
        p->avanzar(3000); // the first reads are done and the line is free
        plc->pedidos.clear();
    }
    double escribir(const std::string& direccion, double valor) {
        return p->motor.solicitudes.escribirDireccion(direccion, valor, "prueba");
    }
    /// W for a write, R for a read, with the address, in the order in which the station saw them.
    [[nodiscard]] std::string visto() const {
        std::string s;
        for (const auto& x : plc->pedidos) {
            char t[32];
            std::snprintf(t, sizeof t, x.trama[0] == 0x57 ? "W%02X=%d " : "R%02X ", x.trama[3],
                          x.trama[4] * 256 + x.trama[5]);
            s += t;
        }
        return s;
    }
    /// What became of the writes, as the operator's box says: "1.1.10=7 " or "1.1.10=7! ".
    [[nodiscard]] std::string fines() const {
        std::string salida;
        const std::string todo = demanda();
        for (const std::string_view linea : partir(todo, '\n')) {
            const auto igual = linea.find(" = ");
            const auto fin = linea.find(": ", igual);
            if (igual == std::string::npos || fin == std::string::npos ||
                linea.find("ya espera") != std::string::npos)
                continue;
            const auto desde = linea.rfind(' ', igual - 1) + 1;
            salida += std::string(linea.substr(desde, igual - desde)) + "=" +
                      std::string(linea.substr(igual + 3, fin - igual - 3)) +
                      (linea.find("confirmada") != std::string::npos ? " " : "! ");
        }
        return salida;
    }
    void callarEscrituras() {
        plc->demora = [](const Solicitud& s) {
            return s[0] == 0x57 ? std::optional<double>() : std::optional<double>(0);
        };
    }
    void callar() {
        plc->demora = [](const Solicitud&) { return std::nullopt; };
    }
    [[nodiscard]] std::string demanda() const {
        return p->motor.trazas.txtDemandaLecturaEscritura.texto();
    }
    std::unique_ptr<Planta> p;
    Estaciones* plc = nullptr;
};

} // namespace

TEST_F(Escribe, ContestadaEnseguidaSeConfirmaYSePublica) {
    planta();
    EXPECT_EQ(escribir("1.1.10", 65534), 0);
    EXPECT_TRUE(p->conexion(0).turno == EstadoDeTurno::Esperando &&
                p->motor.turnos.enCurso(0) == &p->motor.ejecucion);
    p->avanzar(1);
    EXPECT_EQ(visto(), "W10=65534 ");
    EXPECT_EQ(fines(), "1.1.10=65534 ");
    EXPECT_EQ(p->valor(0), -2) << "the same 16 bits, read as the driver reads registers";
    EXPECT_EQ(p->motor.scriptControl.valorDe("MW_1_1_10"), -2);
    EXPECT_TRUE(
        p->tramasTiene("Escritura: 1.1.10[Dir 10 : Valor 65534] Envio -> [57][01][00][10]"));
    escribir("1.1.10", 5);
    p->avanzar(700);
    EXPECT_EQ(visto(), "W10=65534 ") << "the pause comes first";
    p->avanzar(200);
    EXPECT_EQ(visto(), "W10=65534 W10=5 ");
    p->avanzar(10'000);
    EXPECT_EQ(p->motor.tablas.escrituras.limiteSuperior(), 0U) << "reclaimed";
}

TEST_F(Escribe, RespuestaPerdidaYLaPrimeraRelecturaConfirma) {
    planta();
    callarEscrituras();
    escribir("1.1.10", 7);
    p->avanzar(5100);
    EXPECT_EQ(visto(), "W10=7 R10 ");
    EXPECT_EQ(fines(), "1.1.10=7 ");
    EXPECT_TRUE(
        p->tramasTiene(" PEDIDO DE CONFIRMACION 0 Bloque: 1.1.10[Dir 10: Valor 7] Envio -> "));
}

TEST_F(Escribe, CalladaConDosReintentosYConNinguno) {
    planta({"5", "2", "30"});
    callar();
    escribir("1.1.10", 7);
    p->avanzar(24'900);
    EXPECT_EQ(visto(), "W10=7 R10 W10=7 R10 W10=7 ");
    EXPECT_EQ(fines(), "");
    EXPECT_TRUE(p->tramasTiene(" REINTENTO ESCRITURA1 Bloque: 1.1.10"));
    p->avanzar(200);
    EXPECT_EQ(fines(), "1.1.10=7! ");
    EXPECT_TRUE(p->tramasTiene(" Deshabilitacion de ESCRITURA: 1.1.10 [10 Valor: 7]\r\n"));
    p->avanzar(60'000);
    const std::string todo = visto();
    EXPECT_EQ(std::count(todo.begin(), todo.end(), 'W'), 3) << "never sent again";
    EXPECT_EQ(p->conexion(0).turno, EstadoDeTurno::Libre);
    planta({"5", "0", "30"});
    callar();
    escribir("1.1.10", 7);
    p->avanzar(5100);
    EXPECT_EQ(visto(), "W10=7 ");
    EXPECT_EQ(fines(), "1.1.10=7! ");
}

TEST_F(Escribe, UnaRespuestaConOtroValorNoConfirma) {
    planta({"5", "1", "30"});
    callarEscrituras();
    escribir("1.1.10", 7);
    p->avanzar(1);
    plc->mandar(respuestaCon(8));
    p->avanzar(10);
    EXPECT_EQ(fines(), "");
    EXPECT_TRUE(p->conexion(0).recepcion.empty());
    EXPECT_EQ(p->conexion(0).turno, EstadoDeTurno::Esperando);
    p->avanzar(5000);
    EXPECT_EQ(fines(), "1.1.10=7 ") << "the read-back tells";
    plc->mandar(respuestaCon(7)); // a second equal frame completes nothing
    p->avanzar(10);
    EXPECT_EQ(fines(), "1.1.10=7 ");
}

TEST_F(Escribe, ConElEnlacePerdidoAntesDuranteYEnEspera) {
    planta();
    callar();
    escribir("1.1.10", 1);
    escribir("1.1.0A", 2);
    p->avanzar(100);
    plc->cortar();
    p->avanzar(5000);
    EXPECT_EQ(fines(), "1.1.10=1! 1.1.0A=2! ") << "given up at the supervision";
    EXPECT_TRUE(p->tramasTiene("[0A Valor: 2] Sin conexion\r\n"));
    p->bucle.red().rechazar("10.0.0.1", 502);
    p->motor.conexiones.wsSocket(0).cerrar();
    EXPECT_EQ(escribir("1.1.10", 3), -1);
    EXPECT_NE(
        demanda().find(" Imposible escribir. Sin conexion con 10.0.0.1:502 Direccion: 1.1.10"),
        std::string::npos);
    p->bucle.red().atender("10.0.0.1", 502, *plc);
    p->avanzar(60'000);
    EXPECT_EQ(visto().find("W0A"), std::string::npos) << "no command hours later";
}

TEST_F(Escribe, EnUnEnlaceQueLaSupervisionNoHaVistoSeRechaza) {
    planta();
    plc->cortar();
    while (p->motor.conexiones.wsSocket(0).estado() == EstadoZocalo::Conectado ||
           p->conexion(0).estadoSupervision == 1)
        p->avanzar(10);
    while (p->motor.conexiones.wsSocket(0).estado() != EstadoZocalo::Conectado)
        p->avanzar(10);
    EXPECT_EQ(escribir("1.1.10", 1), -1);
    EXPECT_NE(demanda().find(" Imposible escribir. Sin conexion"), std::string::npos);
    plc->cortar(); // before any pass: a write taken now would wait for as long as the link is down
    p->avanzar(6000);
    EXPECT_EQ(p->motor.ejecucion.enEspera(), 0U);
}

TEST_F(Escribe, UnPulsoSaleEnOrdenYDosIgualesSinEnviarSonUna) {
    planta();
    escribir("1.1.0A", 9); // takes the line
    for (const double v : {1.0, 0.0, 1.0, 1.0, 1.0, 0.0})
        escribir("1.1.10", v);
    p->avanzar(6000);
    EXPECT_EQ(visto(), "W0A=9 W10=1 W10=0 W10=1 W10=0 ");
    EXPECT_EQ(fines(), "1.1.0A=9 1.1.10=1 1.1.10=0 1.1.10=1 1.1.10=0 ");
}

TEST_F(Escribe, PedidaEnCadaEstadoDeLaConexionEsperaSuTurno) {
    planta({}, "2");
    plc->demora = [](const Solicitud&) { return 300.0; };
    for (int ms = 0; ms < 40; ++ms) { // idle, waiting for a read, for a write, pausing
        escribir("1.1.10", ms);
        p->avanzar(977);
    }
    p->avanzar(60'000);
    std::string esperado;
    for (int v = 0; v < 40; ++v)
        esperado += "1.1.10=" + std::to_string(v) + " ";
    EXPECT_EQ(fines(), esperado);
    for (std::size_t i = 1; i < plc->pedidos.size(); ++i)
        EXPECT_GE(plc->pedidos[i].ms - plc->pedidos[i - 1].ms, 1100) << "one request at a time";
}

TEST_F(Escribe, ABloqueQueDescansaTambienSeEscribe) {
    planta({"1", "0", "600"}, "2");
    callar();
    p->avanzar(10'000);
    ASSERT_FALSE(p->ok(0));
    plc->demora = [](const Solicitud&) { return 0.0; };
    plc->pedidos.clear();
    escribir("1.1.10", 4);
    p->avanzar(20'000);
    EXPECT_EQ(fines(), "1.1.10=4 ");
}

TEST_F(Escribe, LoQueNoSePuedeSeDiceYNoDejaNada) {
    planta();
    EXPECT_EQ(escribir("1.9.10", 1), -1);
    EXPECT_NE(demanda().find(" Imposible escribir.1.9.10 No se encuentra PLC"), std::string::npos);
    const auto& log = "/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt";
    for (const char* mala : {"1.1.33", "1.1.40001", "", "x", "1.1", "1.1.10.16", "1.1.10.1.5e9.3",
                             "1.1.10.x", "1.1.10."})
        EXPECT_EQ(escribir(mala, 1), -1) << mala;
    EXPECT_NE(demanda().find(" Imposible escribir. 1.1.10.x = 1: bit fuera de 0 a 15\r\n"),
              std::string::npos);
    for (const double malo : {70000.0, -40000.0, std::nan(""), 65535.5})
        EXPECT_EQ(escribir("1.1.10", malo), -1);
    for (int i = 0; i < 3; ++i)
        escribir(std::string(5000, '9'), 1);
    EXPECT_LT(demanda().size(), 3000U) << "an address is cut wherever it is told";
    EXPECT_NE(p->archivos.contenido(log).find("DRIVER>escritura de 1.1.33 valor: 1 - Scan: 3>"),
              std::string::npos);
    for (int i = 0; i < 1000; ++i)
        escribir("1.1.33", i);
    EXPECT_EQ(p->motor.tablas.escrituras.limiteSuperior(), 0U);
    escribir("1.1.10", 12.5);
    escribir("1.1.0A", 13.5);
    p->avanzar(3000);
    EXPECT_EQ(visto(), "W10=12 W0A=14 ") << "rounded as the script rounds";
}

TEST_F(Escribe, UnBitSeLeeAntesDeMezclarlo) {
    planta();
    plc->registros[{1, 16}] = 0x8001; // since the last poll, which is minutes ago
    escribir("1.1.10.3", 1);
    p->avanzar(10);
    EXPECT_TRUE(p->tramasTiene(
        "Escritura de BIT: Lectura Primaria: 1.1.10[Dir 10 : Valor 1] Envio -> [52][01][00][10]"));
    EXPECT_EQ(visto(), "R10 ");
    plc->registros[{1, 16}] = 0x8001;
    escribir("1.1.10.0", 0);
    p->avanzar(5000);
    EXPECT_EQ(visto(), "R10 W10=32777 R10 W10=32776 ");
    EXPECT_EQ(fines(), "1.1.10.3=1 1.1.10.0=0 ");
    p->motor.forzado.forzarPoleo("1.1.10.3", "prueba");
    p->motor.forzado.forzarPoleo("1.1.0A.1", "prueba");
    p->avanzar(3000);
    EXPECT_EQ(p->motor.scriptControl.valorDe("MW_1_1_10_3"), 1);
    EXPECT_EQ(p->motor.scriptControl.valorDe("MW_1_1_0A_1"), 1) << "registers with letters too";
    escribir("1.1.10", 0);
    p->avanzar(2000);
    EXPECT_EQ(p->motor.scriptControl.valorDe("MW_1_1_10_3"), 0);
    callar();
    p->avanzar(700'000);
    EXPECT_EQ(p->motor.scriptControl.valorDe("MW_1_1_10_3_STATUS"), 13) << "BAD with its register";
    plc->demora = [](const Solicitud&) { return 0.0; };
    p->avanzar(60'000);
    EXPECT_EQ(p->motor.scriptControl.valorDe("MW_1_1_10_3_STATUS"), 6) << "and back with it";
}

TEST_F(Escribe, UnBitQueSeReleeSeMezclaConLoQueLaPlantaHizoEntretanto) {
    planta();
    callarEscrituras();
    plc->registros[{1, 16}] = 0x8001;
    escribir("1.1.10.3", 1);
    p->avanzar(2000);
    plc->registros[{1, 16}] = 0x0009; // the bit is there, and bit 15 gone
    p->avanzar(15'000);
    EXPECT_EQ(visto(), "R10 W10=32777 R10 ") << "which no repetition brings back";
    EXPECT_EQ(fines(), "1.1.10.3=1 ");
    EXPECT_EQ(p->valor(0), 9);
    planta();
    callarEscrituras();
    escribir("1.1.10.0", 1);
    p->avanzar(2000);
    plc->registros[{1, 16}] = 0x0100; // the bit is not
    p->avanzar(20'000);
    EXPECT_EQ(visto(), "R10 W10=117 R10 W10=257 R10 ");
    EXPECT_EQ(fines(), "1.1.10.0=1 ");
    planta();
    escribir("1.1.10.0", 1);
    p->avanzar(500);
    callar();
    p->avanzar(8000);
    plc->registros[{1, 16}] = 0x0200;
    plc->demora = [](const Solicitud&) { return 0.0; };
    p->avanzar(20'000);
    EXPECT_EQ(visto(), "R10 W10=117 R10 R10 W10=513 ") << "an old word is not sent again";
    EXPECT_EQ(fines(), "1.1.10.0=1 ");
}

TEST_F(Escribe, UnBitCuyaPalabraNoSeLeeSeAbandona) {
    planta({"5", "1", "600"});
    callar();
    escribir("1.1.10.3", 1);
    p->avanzar(11'000);
    EXPECT_EQ(visto(), "R10 R10 ") << "what cannot be read is not written";
    EXPECT_NE(demanda().find(" 1.1.10.3 = 1: no se pudo leer la palabra del bit\r\n"),
              std::string::npos);
    EXPECT_NE(p->conexion(0).turno, EstadoDeTurno::Esperando);
}

TEST_F(Escribe, LaQueEnvejeceSeAbandonaYSeDice) {
    planta();
    p->ajuste("Escritura_Vigencia_Segundos", "30");
    p->motor.aplicarAjustes();
    plc->demora = [](const Solicitud&) { return 4000.0; };
    for (int v = 1; v <= 20; ++v)
        escribir("1.1.10", v);
    p->avanzar(36'000);
    EXPECT_EQ(p->motor.ejecucion.enEspera(), 0U) << "the line does one in five seconds";
    EXPECT_LE(plc->pedidos.size(), 8U);
    EXPECT_NE(demanda().find(" 1.1.10 = 20: espero demasiado\r\n"), std::string::npos);
    const auto dichas = fines();
    EXPECT_EQ(std::count(dichas.begin(), dichas.end(), '='), 20) << dichas;
}

TEST_F(Escribe, UnaAbandonadaConElCableCortadoNoLlegaDespues) {
    planta({"5", "0", "30"});
    p->bucle.red().interrumpir(plc->enlace());
    escribir("1.1.10", 77);
    p->avanzar(5'100);
    EXPECT_EQ(fines(), "1.1.10=77! ");
    p->bucle.red().reanudar(plc->enlace());
    p->avanzar(120'000);
    EXPECT_EQ(visto().find("W10=77"), std::string::npos) << visto();
    EXPECT_EQ(plc->conexiones, 2);
    // A station that has the bytes and says nothing keeps its link.
    callarEscrituras();
    escribir("1.1.10", 78);
    p->avanzar(20'000);
    EXPECT_NE(visto().find("W10=78"), std::string::npos);
    EXPECT_EQ(plc->conexiones, 2);
}

TEST_F(Escribe, DiezMilEnOrdenYLasLecturasNoSeQuedanSinTurno) {
    planta({}, "1");
    p->ajuste("Tiempo_Entre_poleo", "0");
    p->avanzar(10'000);
    plc->pedidos.clear();
    for (int i = 0; i < 10'000; ++i)
        escribir("1.1.10", i);
    p->avanzar(30'000);
    EXPECT_EQ(p->motor.ejecucion.enEspera(), 0U);
    int esperado = 0;
    int lecturas = 0;
    for (const auto& x : plc->pedidos) {
        if (x.trama[0] == 0x57) {
            EXPECT_EQ(x.trama[4] * 256 + x.trama[5], esperado++);
        } else if (esperado < 10'000) {
            ++lecturas;
        }
    }
    EXPECT_EQ(esperado, 10'000);
    EXPECT_GT(lecturas, 5) << "reads came through meanwhile";
    EXPECT_EQ(p->motor.tablas.escrituras.limiteSuperior(), 0U);
}

/// Every ten seconds one write that fails, on the factory's time-outs and retries: by a station
/// that is silent, or that holds another value.
TEST_F(Escribe, LasQueFallanNoCongelanLosValores) {
    struct Caso {
        const char* que;
        bool muda, conNombre;
        double masSinLeerMs; ///< a living register's longest wait
    };
    for (const Caso& caso :
         {Caso{"silent", true, true, 45'000}, Caso{"clamped", false, true, 20'000},
          Caso{"silent, answers without a name", true, false, 100'000}}) {
        auto config =
            Configuracion().puerto().estacion(1, "10.0.0.1", 1).estacion(2, "10.0.0.1", 2);
        for (const char* r : {"10", "11", "12", "13", "14"})
            config.bloque(1, r, "1");
        config.bloque(2, "20", "1").bloque(2, "21", "1");
        p = std::make_unique<Planta>(config);
        plc = &p->en("10.0.0.1");
        if (!caso.conNombre) plc->libres = [](const Solicitud&) { return Libres{}; };
        p->arrancarYConectar();
        p->avanzar(10'000);
        plc->demora = [&](const Solicitud& s) {
            return caso.muda && s[1] == 2 ? std::optional<double>() : std::optional<double>(5);
        };
        if (!caso.muda)
            plc->deformar = [](std::vector<std::uint8_t>& bytes, const Solicitud& s) {
                const Respuesta topada = respuestaDe(100, Libres{s[1], 0, s[3], 0});
                if (s[1] == 2) bytes.assign(topada.begin(), topada.end());
            };
        p->avanzar(60'000);
        plc->pedidos.clear();
        const double desde = p->ahoraMs();
        for (int i = 0; i < 60; ++i) {
            escribir("1.2.20", 200 + i);
            p->avanzar(10'000);
        }
        std::map<int, double> ultima;
        double mas = 0;
        for (const auto& x : plc->pedidos) {
            if (x.trama[0] != 0x52 || x.trama[1] != 1) continue;
            double& u = ultima.try_emplace(x.trama[3], desde).first->second;
            mas = std::max(mas, x.ms - std::exchange(u, x.ms));
        }
        EXPECT_EQ(ultima.size(), 5U) << caso.que;
        for (const auto& [registro, cuando] : ultima)
            mas = std::max(mas, p->ahoraMs() - cuando);
        EXPECT_LE(mas, caso.masSinLeerMs) << caso.que;
        EXPECT_GE(std::count_if(plc->pedidos.begin(), plc->pedidos.end(),
                                [](const auto& x) { return x.trama[0] == 0x57; }),
                  12)
            << caso.que << ": and writes go on being tried";
    }
}

TEST_F(Escribe, QuienEscribeSiempreNoHaceCrecerLaTabla) {
    planta({}, "1");
    p->ajuste("Tiempo_Entre_poleo", "0");
    p->avanzar(10'000);
    callar(); // one write is under way all the time, so nothing is ever reclaimed
    plc->demora = [](const Solicitud&) { return 1.0; };
    for (int i = 0; i < 20'000; ++i) {
        escribir("1.1.10", i);
        escribir("1.1.0A", i);
        p->avanzar(3);
    }
    EXPECT_LT(p->motor.tablas.escrituras.limiteSuperior(), 3000U);
}

TEST_F(Escribe, TodaEscrituraQuedaEnElRegistroDelDia) {
    planta();
    p->motor.solicitudes.escribirDireccion("1.1.10", 7, "cliente 10.0.0.9:50000");
    p->avanzar(2000);
    p->motor.solicitudes.escribirDireccion("1.1.10.0", 0, "guion");
    p->avanzar(2000);
    for (int i = 0; i < 1000; ++i)
        p->motor.solicitudes.escribirDireccion("9.9.1;\r\n", 1, "x");
    p->motor.solicitudes.escribirDireccion(std::string(5000, '.'), 2, "x");
    callar();
    p->motor.solicitudes.escribirDireccion("1.1.0A", 3, "guion");
    p->avanzar(60'000);
    // A station that takes no more than 100.
    plc->demora = [](const Solicitud&) { return 0.0; };
    plc->deformar = [](std::vector<std::uint8_t>& bytes, const Solicitud& t) {
        const Respuesta r = respuestaCon(100, t[1], t[3]);
        bytes.assign(r.begin(), r.end());
    };
    p->avanzar(60'000);
    const auto sobrantes = p->motor.contadores.deConexion(0).sobrantes;
    p->motor.solicitudes.escribirDireccion("1.1.0A", 150, "guion");
    p->avanzar(60'000);
    EXPECT_GT(p->motor.contadores.deConexion(0).sobrantes, sobrantes);
    const std::string registro =
        p->archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 Escrituras.txt");
    const auto tiene = [&registro](const std::string& que) {
        EXPECT_NE(registro.find(que), std::string::npos) << que << "\n" << registro;
    };
    tiene(";cliente 10.0.0.9:50000;1.1.10;116;7;confirmada\r\n");
    tiene(";guion;1.1.10.0;1;0;confirmada\r\n");
    tiene(";x;9.9.1\\3B\\0D\\0A;?;1;rechazada: no se encuentra PLC\r\n");
    tiene(";;;;;la anterior 999 veces mas\r\n");
    tiene(";guion;1.1.0A;110;3;sin respuesta\r\n");
    tiene(";guion;1.1.0A;110;150;contesto otro valor\r\n");
    EXPECT_LT(registro.size(), 2000U);
}

TEST(Palabra, BitsDeUnaPalabra) {
    EXPECT_EQ(SetearBIT_YDevolverPalabra(5, 1, true), 7);
    EXPECT_EQ(SetearBIT_YDevolverPalabra(70001, 0, false), 4464);
    EXPECT_EQ(SetearBIT_YDevolverPalabra(0, 15, true), 32768);
    EXPECT_EQ(wordbit(5, 0) * 100 + wordbit(5, 1) * 10 + wordbit(5, 2), 101);
    EXPECT_EQ(wordbit(-1, 15), 1);
}

TEST(EscrituraManual, CajasDeNumeros) {
    EXPECT_EQ(ValidarIngresoDeNumeros('7', false, false), '7');
    EXPECT_EQ(ValidarIngresoDeNumeros(8, false, false), 8);
    EXPECT_EQ(ValidarIngresoDeNumeros('.', false, false), 16);
    EXPECT_EQ(ValidarIngresoDeNumeros('.', false, true), '.');
    EXPECT_EQ(ValidarIngresoDeNumeros('-', true, false), '-');
    EXPECT_EQ(ValidarIngresoDeNumeros('a', true, true), 16);
}

TEST_F(Escribe, ElRegistroCuentaLoQueNoAnotaYNoCallaNada) {
    planta();
    const std::string ruta = "/kv/LOGS_DRIVER/251116 DriverKV2200 Escrituras.txt";
    const auto registro = [&] { return p->archivos.contenido(ruta); };
    const auto lineas = [&] {
        const std::string r = registro();
        return std::count(r.begin(), r.end(), '\n');
    };
    for (int i = 0; i < 5000; ++i)
        escribir("9.9." + std::to_string(i), 1);
    p->avanzar(6000); // the next turn of the loop
    EXPECT_LE(lineas(), 102) << "whoever may ask may ask without end";
    EXPECT_NE(registro().find(";;;;;4900 lineas mas sin anotar"), std::string::npos);
    // The disk is full, and has room again.
    p->archivos.negarEscrituras(true);
    escribir("1.1.10", 3);
    p->avanzar(5000);
    p->archivos.negarEscrituras(false);
    escribir("1.1.10", 4);
    p->avanzar(5000);
    EXPECT_NE(registro().find(";;;;;2 lineas sin anotar: el disco no las tomo"), std::string::npos)
        << registro().substr(registro().size() - 300);
    // The number of repeats is written within a minute; what waits when the program ends has its
    // line.
    for (int i = 0; i < 7; ++i)
        escribir("9.9.9", 1);
    p->avanzar(1000);
    EXPECT_EQ(registro().find("la anterior 6 veces mas"), std::string::npos);
    p->avanzar(62'000);
    EXPECT_NE(registro().find("la anterior 6 veces mas"), std::string::npos);
    callar();
    escribir("1.1.10", 5);
    escribir("1.1.0A", 6);
    escribir("1.1.0A", 6);
    p->avanzar(100);
    p->motor.terminar();
    for (const char* linea :
         {";prueba;1.1.10;4;5;enviada\r\n", ";prueba;1.1.10;4;5;termino el programa\r\n",
          ";prueba;1.1.0A;?;6;termino el programa\r\n",
          ";prueba;1.1.0A;?;6;ya espera una igual\r\n"})
        EXPECT_NE(registro().find(linea), std::string::npos) << linea;
}

TEST_F(Escribe, UnaRepetidaTrasMedianocheEsDelDiaNuevo) {
    planta();
    p->bucle.relojSimulado().ponerFecha(1763337580); // 23:59:40
    escribir("9.9.9", 1);
    escribir("9.9.9", 1);
    p->avanzar(5000);
    const std::string ayer = "/kv/LOGS_DRIVER/251116 DriverKV2200 Escrituras.txt";
    const std::string hoy = "/kv/LOGS_DRIVER/251117 DriverKV2200 Escrituras.txt";
    ASSERT_NE(p->archivos.contenido(ayer).find(";9.9.9;"), std::string::npos);
    p->avanzar(60'000);
    EXPECT_NE(p->archivos.contenido(ayer).find("la anterior 1 veces mas"), std::string::npos);
    escribir("9.9.9", 1);
    p->avanzar(6000);
    EXPECT_NE(p->archivos.contenido(hoy).find(";9.9.9;?;1;rechazada"), std::string::npos);
}

TEST_F(Escribe, UnaIgualAOtraQueSalioOTerminoEsNueva) {
    planta();
    plc->demora = [](const Solicitud&) { return 500.0; };
    escribir("1.1.10", 5);
    p->avanzar(100); // it has left
    escribir("1.1.10", 5);
    p->avanzar(5000);
    escribir("1.1.10", 5);
    p->avanzar(5000);
    EXPECT_EQ(visto(), "W10=5 W10=5 W10=5 ");
    EXPECT_EQ(fines(), "1.1.10=5 1.1.10=5 1.1.10=5 ");
}

} // namespace kv
