// SPDX-License-Identifier: Apache-2.0
// What the log says of a plant's night, by number.

#include "apoyo/planta.h"
#include "plant/ordenantes.h"
#include "text/numeros.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

constexpr double kMinuto = 60'000;

class BitacoraPrueba : public testing::Test {
  protected:
    Planta& planta(Configuracion c) {
        p = std::make_unique<Planta>(c);
        p->ajuste("Base_Tiempo_Solicitar_Conexiones_Milisegundos", "1000");
        return *p;
    }
    [[nodiscard]] std::string log() const {
        return p->archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt");
    }
    /// How many lines of the log end with a number.
    [[nodiscard]] int lineas(const std::string& codigo) const {
        const std::string fin = codigo + "\r\n";
        const std::string todo = log();
        int n = 0;
        for (auto i = todo.find(fin); i != std::string::npos; i = todo.find(fin, i + 1))
            ++n;
        return n;
    }
    [[nodiscard]] bool dice(const std::string& texto) const {
        return log().find(texto) != std::string::npos;
    }
    static void callar(Estaciones& plc, bool calla) {
        plc.demora = [calla](const Solicitud&) {
            return calla ? std::nullopt : std::optional<double>(0);
        };
    }
    std::unique_ptr<Planta> p;
};

Configuracion una() {
    return Configuracion().puerto({"1", "1", "5"}).estacion(1, "10.0.0.1", 1).bloque(1, "10", "1");
}

TEST_F(BitacoraPrueba, UnEnlaceQueVaYVieneSeCuenta) {
    planta(una());
    Estaciones& plc = p->en("10.0.0.1");
    p->arrancarYConectar();
    EXPECT_TRUE(dice("DRIVER>Enlace>10.0.0.1:502: conectada, DescError:KV201\r\n")) << log();
    for (int i = 0; i < 200; ++i) { // half an hour of it
        plc.cortar();
        p->avanzar(9000);
    }
    EXPECT_TRUE(dice("10.0.0.1:502: se perdio, ")) << log();
    EXPECT_EQ(lineas("KV201") + lineas("KV202"), 2) << log();
    EXPECT_GE(lineas("KV204"), 3);
    EXPECT_LE(lineas("KV204"), 6) << "ever more seldom\n" << log();
    // When it is quiet again the log says how it stands, and the next loss is news.
    const int antes = lineas("KV204");
    p->avanzar(2 * kMinuto);
    EXPECT_EQ(lineas("KV204"), antes + 1);
    EXPECT_TRUE(log().ends_with("al final, Enlace: 10.0.0.1:502: conectada, DescError:KV204\r\n"))
        << log();
    plc.cortar();
    p->avanzar(9000);
    EXPECT_EQ(lineas("KV202"), 2);
}

TEST_F(BitacoraPrueba, UnEnlaceQueSePierdeNoEsUnaEstacionQueCalla) {
    planta(una());
    Estaciones& plc = p->en("10.0.0.1");
    p->arrancarYConectar();
    p->avanzar(5000);
    // All its time-outs end before the supervision looks at the link.
    for (const std::string escribe : {"1.1.10", "1.1.10.3", ""}) {
        callar(plc, true);
        p->avanzar(1100);
        if (!escribe.empty()) p->motor.operador.escribirDireccion(escribe, 1);
        p->avanzar(!escribe.empty() ? 3000 : 100);
        plc.cortar();
        const std::uint32_t antes = p->bloque(0).fallidos.total();
        while (p->conexion(0).estadoSupervision == 1) {
            EXPECT_EQ(p->bloque(0).fallidos.total(), antes);
            p->avanzar(100);
        }
        callar(plc, false);
        p->avanzar(15'000);
    }
    for (const std::string escrita : {"1.1.10", "1.1.10.3"})
        EXPECT_TRUE(
            dice(">" + escrita + " = 1, pedida por ventana, DescError:conexion perdida KV312"))
            << log();
    EXPECT_EQ(lineas("KV211"), 0) << log();
    // Nor does one that is silent fall silent anew with each link.
    callar(plc, true);
    for (int vez = 0; vez < 3; ++vez) {
        p->avanzar(kMinuto);
        plc.cortar();
    }
    p->avanzar(kMinuto);
    EXPECT_EQ(lineas("KV211"), 1) << log();
    callar(plc, false);
    p->avanzar(kMinuto);
    EXPECT_EQ(lineas("KV212"), 1) << log();
}

TEST_F(BitacoraPrueba, UnaDireccionEnLaQueNadieEscuchaSeDiceUnaVez) {
    planta(una());
    p->arrancar();
    p->avanzar(30 * kMinuto);
    EXPECT_EQ(lineas("KV203"), 1) << log();
    EXPECT_TRUE(dice("10.0.0.1:502: no se puede conectar, "));
    p->en("10.0.0.1");
    p->avanzar(kMinuto);
    EXPECT_EQ(lineas("KV201"), 1) << log();
}

TEST_F(BitacoraPrueba, EstacionBloquesYEscrituras) {
    Configuracion c = una();
    for (int i = 0x20; i < 0x20 + 50; ++i) {
        std::string registro;
        agregarHexadecimal(registro, static_cast<std::uint8_t>(i));
        c.bloque(1, registro, "60", true, 1, 2);
    }
    planta(c);
    Estaciones& plc = p->en("10.0.0.1");
    p->arrancarYConectar();
    callar(plc, true);
    p->avanzar(3 * kMinuto);
    EXPECT_TRUE(dice("DRIVER>Estacion sin respuesta>[PLC 1 - Indice 1] 10.0.0.1:502, "
                     "DescError:KV211\r\n"))
        << log();
    callar(plc, false);
    p->avanzar(kMinuto);
    EXPECT_TRUE(dice("DRIVER>Estacion contesta>[PLC 1 - Indice 1] 10.0.0.1:502, DescError:KV212"));
    // It falls silent, its link is lost, and with the next one it answers.
    callar(plc, true);
    while (lineas("KV211") == 1)
        p->avanzar(1000);
    callar(plc, false);
    plc.cortar();
    p->avanzar(kMinuto);
    EXPECT_EQ(lineas("KV212"), 2) << log();
    // Fifty at a blow: ten by name, then how many.
    EXPECT_TRUE(p->motor.operador.forzarPorNivel("2", "-1").vacio());
    p->avanzar(2 * kMinuto);
    EXPECT_EQ(lineas("KV301"), 10) << log();
    EXPECT_TRUE(dice("DRIVER>Bloque apagado>1.1.20, por orden de "));
    EXPECT_TRUE(dice("DRIVER>Bloques conmutados>y 40 mas en "));
    // Refused, given up.
    p->motor.operador.escribirDireccion("9.9.10", 5);
    EXPECT_EQ(lineas("KV311"), 1) << log();
    p->motor.solicitudes.rechazar({"1.1.10", "solo lectura", "cliente 10.0.0.9:4000"}, 5);
    EXPECT_TRUE(dice("DRIVER>Escritura rechazada>1.1.10 = 5, pedida por cliente 10.0.0.9:4000, "
                     "DescError:solo lectura KV513\r\n"))
        << log();
    // A script that writes to a register that nobody reads, at every answer.
    for (int i = 0; i < 30; ++i)
        p->motor.solicitudes.escribirDireccion("1.1.F0", 5, kOrigenGuion);
    EXPECT_TRUE(dice("DRIVER>escritura de 1.1.F0 valor: 5 - Scan: 3>5, DescError:ningun bloque lee "
                     "ese registro KV311\r\n"))
        << log();
    EXPECT_EQ(lineas("KV311") + lineas("KV513"), 2 + 10) << log();
    callar(plc, true);
    p->motor.operador.escribirDireccion("1.1.10", 5);
    p->avanzar(2 * kMinuto);
    EXPECT_TRUE(dice("DRIVER>Escritura sin confirmar>1.1.10 = 5, pedida por ")) << log();
    EXPECT_TRUE(dice("DescError:sin respuesta KV312\r\n"));
    EXPECT_TRUE(dice("DRIVER>Escrituras fallidas>y 20 mas en ")) << log();
    // What is counted when the program ends is told.
    for (int i = 0; i < 300; ++i)
        p->motor.solicitudes.escribirDireccion("1.1.F0", 5);
    p->motor.terminar();
    EXPECT_TRUE(dice(" mas en 0 s; al final, escritura de 1.1.F0 valor: 5 ")) << log();
}

TEST_F(BitacoraPrueba, ElGuionQueFallaYLoQueUnaOrdenCambia) {
    planta(una());
    Estaciones& plc = p->en("10.0.0.1");
    p->archivos.poner("/kv/DRIVER_KV2200_Config.MDrivScrip", "If MW_1_1_10 = 9 Then x = 1 / 0\r\n");
    p->arrancarYConectar();
    p->avanzar(kMinuto);
    // The script fails with a value of the plant, and runs again when that has gone.
    plc.registros[{1, 0x10}] = 9;
    p->avanzar(kMinuto);
    EXPECT_EQ(lineas("KV401"), 1) << log();
    EXPECT_EQ(lineas("KV402"), 1);
    plc.registros[{1, 0x10}] = 8;
    p->avanzar(kMinuto);
    EXPECT_EQ(lineas("KV403"), 1);
    // Taken away while it fails it has not recovered.
    plc.registros[{1, 0x10}] = 9;
    p->avanzar(kMinuto);
    p->archivos.borrar("/kv/DRIVER_KV2200_Config.MDrivScrip");
    p->avanzar(kMinuto);
    EXPECT_TRUE(dice("DRIVER>Guion>ya no hay archivo del guion, DescError:KV403\r\n")) << log();
    // A forced read keeps a block on only for as long as it lasts: the order is what changes it.
    p->motor.operador.activarBloque(0, false);
    for (const char* veces : {"3", "-1", "3", "0"})
        EXPECT_TRUE(p->motor.operador.forzarPorNivel("1", veces).vacio());
    EXPECT_TRUE(p->bloque(0).activo);
    EXPECT_TRUE(log().find("Bloque encendido>1.1.10", log().rfind("Bloque apagado>1.1.10")) !=
                std::string::npos)
        << log();
}

TEST_F(BitacoraPrueba, LosAjustesQueCambianYLaPlantaEnCifras) {
    planta(una());
    p->arrancar();
    p->arranque.abrirServidor();
    EXPECT_TRUE(
        dice("DRIVER>Planta>DRIVER_KV2200_Config.ini: 1 puertos, 1 conexiones, 1 estaciones, "
             "1 variables; problemas de configuracion: 0; cliente: Puerto 1334; "
             "guion: no hay (se busca /kv/DRIVER_KV2200_Config.MDrivScrip), DescError:KV102\r\n"))
        << log();
    p->avanzar(kMinuto);
    EXPECT_EQ(lineas("KV120"), 0) << "defaults that are written down change nothing\n" << log();
    p->ajuste("Escucha_Solo_Lectura", "1");
    p->ajuste("VER", "1");
    p->avanzar(10'000);
    EXPECT_EQ(lineas("KV120"), 1) << log();
    EXPECT_TRUE(dice("DRIVER>Ajuste cambiado>Escucha_Solo_Lectura: \"\" -> \"1\", "));
    p->ajuste("Tiempo_Entre_poleo", "-5");
    p->avanzar(10'000);
    EXPECT_EQ(lineas("KV121"), 1);
    EXPECT_EQ(lineas("KV120"), 1) << "what is not in force is no change\n" << log();
}

} // namespace
} // namespace kv
