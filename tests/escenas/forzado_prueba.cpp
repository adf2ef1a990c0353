// SPDX-License-Identifier: Apache-2.0
// Forced reads, levels, switching blocks and changing their scan times.

#include "apoyo/planta.h"
#include "view/columnas.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

class Fuerza : public testing::Test {
  protected:
    Fuerza() {
        p.arrancarYConectar();
        p.avanzar(8000);
        plc.pedidos.clear();
    }
    [[nodiscard]] std::string columna4(std::size_t b) {
        return p.fila(p.motor.vista.lstViewEstadoDeBloques, p.bloque(b).filaBloque, 4);
    }
    [[nodiscard]] bool dicho(const std::string& texto) const {
        return p.motor.trazas.txtDemandaLecturaEscritura.texto().find(texto) != std::string::npos;
    }
    [[nodiscard]] bool tildado(std::size_t b) {
        return p.motor.vista.lstViewEstadoDeBloques.tildada(p.bloque(b).filaBloque) &&
               p.motor.vista.lstViewVariables.tildada(p.bloque(b).filaVariable);
    }
    Configuracion config = Configuracion()
                               .puerto()
                               .estacion(1, "10.0.0.1", 1)
                               .bloque(1, "10", "600", true, 5, 2)
                               .bloque(1, "20", "600", true, 1, 2)
                               .bloque(1, "30", "90", true, 1, 3);
    // The first of them is five blocks, 10 to 14.
    static constexpr Indice k20 = 5, k30 = 6;
    Planta p{config};
    Estaciones& plc{p.en("10.0.0.1")};
    Forzado& forzado{p.motor.forzado};
};

} // namespace

TEST_F(Fuerza, UnaDireccionDentroDeUnBloque) {
    forzado.forzarPoleo("1.1.14", "prueba");
    p.avanzar(10);
    EXPECT_EQ(plc.pedidos.size(), 1U);
    EXPECT_TRUE(dicho(" Forzado OK 1.1.14\r\n"));
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 7U);
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_14_3"), std::nullopt);
    forzado.forzarPoleo("1.1.14.3", "prueba");
    // The register has 120, which is 0x78.
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_14_3"), 1) << "at once what its register says";
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_14_3_STATUS"), 6);
    forzado.forzarPoleo("1.1.14.2", "prueba");
    EXPECT_EQ(p.motor.scriptControl.valorDe("MW_1_1_14_2"), 0);
    EXPECT_EQ(p.motor.tablas.cantidadDePuntos, 9);
    forzado.forzarPoleo("1.1.14.3", "prueba");
    EXPECT_EQ(p.motor.tablas.cantidadDePuntos, 9) << "one bit, one point";
    // A bit's row says what its register's says: a value that is not answered for is as old as it
    // was.
    const auto filas = [&](std::size_t columna) {
        const Lista& lista = p.motor.vista.lstViewVariables;
        const auto texto = [&](const char* clave) {
            return lista.texto(static_cast<FilaDeLista>(lista.buscar(clave)), columna);
        };
        return std::pair(texto("1.1.14"), texto("1.1.14.3"));
    };
    plc.demora = [](const Solicitud&) { return std::nullopt; };
    forzado.forzarPoleo("1.1.14", "prueba");
    while (p.ok(4))
        p.avanzar(1000);
    EXPECT_EQ(filas(de_variables::kEstado).first, filas(de_variables::kEstado).second);
    EXPECT_EQ(filas(de_variables::kFechaHora).first, filas(de_variables::kFechaHora).second);
}

TEST_F(Fuerza, UnaDesconocidaSeDaDeAltaYOtrasSeRechazan) {
    forzado.forzarPoleo("1.1.15", "prueba");
    p.avanzar(2000);
    ASSERT_EQ(p.motor.tablas.bloques.limiteSuperior(), 8U);
    EXPECT_TRUE(dicho(" Bloque 1.1.15 dado de alta. DefaultScan de 5 Segundos\r\n"));
    EXPECT_TRUE(dicho(" Forzado OK 1.1.15\r\n"));
    EXPECT_TRUE(p.ok(7));
    for (const char* const direccion : {"1.1.1F", "1.1.1f", "1.1.01F.3"}) {
        forzado.forzarPoleo(direccion, "prueba");
        p.avanzar(2000);
        EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 9U) << direccion;
        EXPECT_TRUE(dicho(std::string(" Forzado OK ") + direccion + "\r\n"));
    }
    forzado.forzarPoleo("1.1", "prueba");
    forzado.forzarPoleo("7.1.10", "prueba");
    EXPECT_TRUE(dicho(" NO EXISTE PUERTO O PLC \r\n"));
    for (int i = 0; i < 1000; ++i)
        forzado.forzarPoleo("1.1.F00D" + std::to_string(i), "prueba");
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 9U);
    p.ajuste("Bloques_A_Pedido_Por_Estacion", "3");
    p.motor.aplicarAjustes();
    for (const char* const direccion : {"1.1.A0", "1.1.A1", "1.1.A2"})
        forzado.forzarPoleo(direccion, "prueba");
    EXPECT_EQ(p.motor.tablas.bloques.limiteSuperior(), 10U) << "three of a station, no more";
    EXPECT_TRUE(
        dicho(" Error al dar de alta bloque, La estacion ya tiene 3 a pedido. Bloque: 1.1.A1\r\n"));
    plc.cortar();
    p.bucle.red().rechazar("10.0.0.1", 502);
    p.avanzar(100);
    forzado.forzarPoleo("1.1.20", "prueba");
    EXPECT_TRUE(dicho(" Imposible FORZAR, Sin conexion con estacion 10.0.0.1:502\r\n"));
}

TEST_F(Fuerza, UnNivelTresVecesYQuedaComoEstaba) {
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(k20, false, "una prueba");
    forzado.ModificarScanDeBloque(0, 2, "prueba");
    p.avanzar(3000);
    plc.pedidos.clear();
    const auto leidas = [&](int registro) {
        return std::count_if(plc.pedidos.begin(), plc.pedidos.end(),
                             [&](const auto& x) { return x.trama[3] == registro; });
    };
    forzado.forzarBloque_porNivel_NVeces(2, 1, "una prueba");
    forzado.forzarBloque_porNivel_NVeces(
        2, 3, "una prueba"); // what an earlier force counted is no matter
    EXPECT_EQ(columna4(k20), "FORZANDO POR NIVEL, Cantidad de veces a leer : 3");
    EXPECT_TRUE(tildado(k20)) << "on while it is forced";
    forzado.ModificarScanDeBloque(k20, 2, "prueba");
    std::string pasos;
    for (int ms = 0; ms < 20'000; ms += 100) {
        p.avanzar(100);
        if (pasos.find(columna4(k20)) == std::string::npos) pasos += columna4(k20) + "|";
    }
    EXPECT_NE(pasos.find("FORZADO POR NIVEL: Recepcion 2 de 3|FORZADO POR NIVEL: Recepcion 3 de "
                         "3|FORZADO POR NIVEL OK|"),
              std::string::npos)
        << pasos;
    EXPECT_EQ(leidas(0x20), 3) << "three times are three reads";
    EXPECT_FALSE(p.bloque(k20).activo || tildado(k20)) << "it was off, and is off again";
    EXPECT_TRUE(p.bloque(0).activo && tildado(0)) << "it was polled, and goes on";
    EXPECT_GT(leidas(0x10), 5);
    EXPECT_TRUE(p.bloque(k30).activo) << "another level";
    forzado.forzarBloque_porNivel_NVeces(2, 0, "una prueba");
    EXPECT_TRUE(tildado(0) && tildado(k20));
    forzado.forzarBloque_porNivel_NVeces(2, -2, "una prueba");
    EXPECT_TRUE(p.bloque(0).activo);
    forzado.forzarBloque_porNivel_NVeces(2, -1, "una prueba");
    EXPECT_FALSE(tildado(0) || tildado(k20) || p.bloque(0).activo);
    forzado.forzarBloque_porNivel_NVeces(1e300, 1, "una prueba");
    forzado.forzarBloque_porNivel(-1);
    EXPECT_TRUE(dicho(" Ningun bloque tiene el nivel -1\r\n"));
}

TEST_F(Fuerza, LoQueYaVeniaNoCuentaYUnTildeTermina) {
    plc.demora = [](const Solicitud&) { return 500.0; };
    forzado.forzarPoleo("1.1.20", "prueba");
    p.avanzar(100); // its request is out
    forzado.ModificarScanDeBloque(k20, 1, "prueba");
    forzado.forzarBloque_porNivel_NVeces(2, 2, "una prueba");
    p.avanzar(600);
    EXPECT_EQ(columna4(k20), "FORZANDO POR NIVEL, Cantidad de veces a leer : 2");
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(k20, true, "una prueba");
    p.avanzar(30'000);
    EXPECT_FALSE(p.bloque(k20).forzado);
    EXPECT_EQ(columna4(k20), "");
    EXPECT_TRUE(p.bloque(k20).activo);
}

TEST_F(Fuerza, LoQueNoSePuedePolearSeDice) {
    auto otra =
        Configuracion().puerto().estacion(1, "10.0.0.1", 1).bloque(1, "40001", "2", true, 1, 4);
    Planta q(otra);
    q.en("10.0.0.1");
    q.arrancarYConectar();
    q.motor.forzado.forzarPoleo("1.1.40001", "prueba");
    q.motor.forzado.forzarBloque_porNivel_NVeces(4, 1, "una prueba");
    const std::string dice = q.motor.trazas.txtDemandaLecturaEscritura.texto();
    EXPECT_EQ(dice.find("Forzado OK"), std::string::npos);
    EXPECT_NE(dice.find(" Imposible FORZAR, el bloque no se puede polear: 1.1.40001\r\n"),
              std::string::npos);
    EXPECT_FALSE(q.bloque(0).forzado);
}

TEST_F(Fuerza, ApagadoMientrasSeLoEsperaYEncendidoDeNuevo) {
    plc.demora = [](const Solicitud&) { return 2000.0; };
    forzado.forzarPoleo("1.1.20", "prueba");
    p.avanzar(500);
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(k20, false, "una prueba");
    p.avanzar(30'000);
    EXPECT_EQ(plc.pedidos.size(), 1U);
    EXPECT_EQ(p.conexion(0).turno, EstadoDeTurno::Libre);
    forzado.Activar_Dir("1.1.20", true, "una prueba");
    p.avanzar(1000);
    EXPECT_EQ(plc.pedidos.size(), 2U);
    plc.cortar();
    p.bucle.red().rechazar("10.0.0.1", 502);
    p.avanzar(5000);
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(0, false, "una prueba");
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(0, true,
                                                    "una prueba"); // while the link is down
    plc.pedidos.clear();
    p.bucle.red().atender("10.0.0.1", 502, plc);
    p.avanzar(60'000);
    EXPECT_TRUE(p.ok(0)) << "read when the connection came back";
}

TEST_F(Fuerza, LaQueEnciendeDejaDichoQuien) {
    const auto& log = "/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt";
    const auto dice = [&](const std::string& que) {
        return p.archivos.contenido(log).find(que) != std::string::npos;
    };
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(k20, false, "la ventana");
    forzado.forzarPoleo("1.1.20", "el usuario ana");
    EXPECT_TRUE(tildado(k20));
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(k30, false, "la ventana");
    forzado.ModificarScanDeBloque(k30, 5, "el guion");
    forzado.Activar_Desactivar_Bloque_Por_Solicitud(0, false, "la ventana");
    forzado.forzarBloque_porNivel_NVeces(2, 1, "el usuario ana");
    p.avanzar(70'000);
    EXPECT_TRUE(dice("Bloque encendido>1.1.20, por orden del usuario ana"))
        << p.archivos.contenido(log);
    EXPECT_TRUE(dice("Bloque encendido>1.1.30, por orden del guion"));
    EXPECT_FALSE(dice("Bloque encendido>1.1.10")) << "a forced level leaves it as it was";
}

TEST_F(Fuerza, ElScanCambiaDe90A2YVuelve) {
    forzado.ModificarScanDeBloque(k30, 2, "prueba");
    EXPECT_EQ(p.fila(p.motor.vista.lstViewEstadoDeBloques, p.bloque(k30).filaBloque, 2), "2");
    p.avanzar(20'500);
    EXPECT_NEAR(static_cast<double>(plc.pedidos.size()), 11, 1);
    plc.pedidos.clear();
    forzado.ModificarScanDeBloque(k30, 90, "prueba");
    p.avanzar(200'000);
    ASSERT_EQ(plc.pedidos.size(), 3U);
    EXPECT_NEAR(plc.pedidos[1].ms - plc.pedidos[0].ms, 90'000, 5);
    EXPECT_NEAR(plc.pedidos[2].ms - plc.pedidos[1].ms, 90'000, 5);
    for (const double malo : {-1.0, 1e300})
        forzado.ModificarScanDeBloque(k30, malo, "prueba");
    forzado.ModificarScanDeBloque(99, 1, "prueba");
    forzado.ModificarScanDeBloque(-1, 1, "prueba");
    EXPECT_EQ(p.bloque(k30).scanSegundos, 90);
}

TEST_F(Fuerza, UnBloqueQueDescansaSeRechazaPorDireccionYPorNivelEsperaSuDescanso) {
    plc.demora = [](const Solicitud&) { return std::nullopt; };
    forzado.forzarPoleo("1.1.20", "prueba");
    p.avanzar(21'000);
    ASSERT_FALSE(p.bloque(k20).habilitadoPorRespuestas);
    forzado.forzarPoleo("1.1.20", "prueba");
    EXPECT_TRUE(
        dicho(" Imposible de forzar la lectura por deshabilitacion del bloque: 1.1.20\r\n"));
    plc.pedidos.clear();
    plc.demora = [](const Solicitud&) { return 0.0; };
    forzado.forzarBloque_porNivel(2);
    p.avanzar(35'000);
    EXPECT_TRUE(p.ok(k20));
}

} // namespace kv
