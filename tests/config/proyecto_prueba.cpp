// SPDX-License-Identifier: Apache-2.0
#include "config/comprobacion.h"
#include "platform/epoll/sistema.h"
#include "platform/ruta.h"
#include "platform/simulated/archivos_simulados.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

struct ProyectoPrueba : testing::Test {
    ArchivosSimulados archivos;
    Ajustes ajustes{archivos, "C:\\Driver"};
    Problemas problemas;

    Ubicacion conProyecto(const std::string& ruta) {
        archivos.poner("C:\\Driver\\sis_config.ini",
                       "[PROYECTO_PREDETERMINADO]\r\nRutaProyecto=" + ruta + "\r\n");
        ajustes.vueltaNueva();
        return ubicarConfiguracion(ajustes, problemas);
    }
};

} // namespace

TEST_F(ProyectoPrueba, SinProyectoSeUsaElIniDelPrograma) {
    const Ubicacion u = ubicarConfiguracion(ajustes, problemas);
    EXPECT_EQ(u.rutaConfiguracion, "C:\\Driver\\DRIVER_KV2200_Config.ini");
    EXPECT_EQ(u.nombreProyecto, "DRIVER_KV2200_Config.ini");
    EXPECT_FALSE(u.desdeExportacion);
    EXPECT_TRUE(problemas.ninguno());
    EXPECT_FALSE(archivos.existe("C:\\Driver\\sis_config.ini")); // nothing is written back
    EXPECT_EQ(conProyecto("D:\\NoEsta.qmx").rutaConfiguracion,
              "C:\\Driver\\DRIVER_KV2200_Config.ini");
    EXPECT_EQ(problemas.lista().size(), 1U);
    EXPECT_EQ(problemas.lista()[0].linea, 2U);
}

TEST_F(ProyectoPrueba, RutasDelProyecto) {
    archivos.poner("C:\\Planta\\Linea1.QMX", "");
    Ubicacion u = conProyecto("C:\\Planta\\Linea1.QMX");
    EXPECT_EQ(u.rutaConfiguracion, "C:\\Planta\\Linea1.KalmorKV2200");
    EXPECT_EQ(u.nombreProyecto, "Linea1");
    EXPECT_EQ(u.rutaExportacion, "C:\\Planta\\Linea1.KalmorKV2200_Conf");
    EXPECT_FALSE(u.desdeExportacion);
    archivos.poner("C:\\Planta\\Linea1.KalmorKV2200_Conf", "");
    EXPECT_TRUE(conProyecto("C:\\Planta\\Linea1.QMX").desdeExportacion);
    archivos.poner("/planta/x.qmx", "");
    EXPECT_EQ(conProyecto("/planta/x.qmx").nombreProyecto, "x");
    archivos.poner("C:\\Driver\\local.qmx", "");
    EXPECT_EQ(conProyecto("local.qmx").rutaConfiguracion, "C:\\Driver\\local.KalmorKV2200");
    EXPECT_TRUE(problemas.ninguno());
    archivos.poner("C:\\otro.txt", "");
    u = conProyecto("C:\\otro.txt");
    EXPECT_FALSE(u.desdeExportacion); // the project file is not its own export
    EXPECT_FALSE(problemas.ninguno());
}

TEST_F(ProyectoPrueba, SinExportacionSeLeeElIniDelProyecto) {
    archivos.poner("C:\\P.qmx", "");
    archivos.poner("C:\\P.KalmorKV2200", "[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\n");
    static_cast<void>(conProyecto("C:\\P.qmx"));
    ConfiguracionLeida c = leerConfiguracionUbicada(ajustes, {});
    EXPECT_EQ(c.listas.puertos.size(), 1U);
    archivos.poner("C:\\P.KalmorKV2200_Conf", "x");
    int mensajes = 0;
    c = leerConfiguracionUbicada(ajustes, [&mensajes](std::string_view) { ++mensajes; });
    EXPECT_EQ(mensajes, 1);
    EXPECT_TRUE(c.listas.puertos.empty());
}

TEST_F(ProyectoPrueba, LaComprobacionNoEscribeYTermina0SoloSinProblemas) {
    archivos.poner("C:\\Driver\\DRIVER_KV2200_Config.ini",
                   "[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\nCantEsclavos=2\n"
                   "Esclavo0_Numero=1\nEsclavo0_Indice=1\nEsclavo1_Numero=2\nEsclavo1_Indice=2\n"
                   "Esclavo1_Puerto=0502\nCantBloques=1\nBloque0_PLC=2\nBloque0_Quantity=3\n"
                   "Bloque0_StarAdrees=1F\nBloque0_ScanTime=2\nTIME_OUT=2.5\n");
    Revision c = revisar(ajustes);
    EXPECT_EQ(c.resultado(), 1);
    EXPECT_EQ(
        informeDe(c),
        "Configuración: C:/Driver/DRIVER_KV2200_Config.ini\n"
        "Proyecto: DRIVER_KV2200_Config.ini\n"
        "Escucha: 0.0.0.0:1334\n"
        "Se construyen 1 puerto, 1 conexión, 2 estaciones, 1 bloque, 3 variables\n"
        "Puerto 1: tiempo fuera 2,5 s, 3 reintentos, reconexión 30 s, scan por defecto 5 s\n"
        "Conexión 127.0.0.1:502 (puerto 1): 2 estaciones, 1 bloque, 3 variables, "
        "pide 1,5 lecturas/s y se le permite 1,2\n"
        "  PLC 1 - Indice 1\n  PLC 2 - Indice 2\n"
        "    1.2.1F: registro 1F, nivel 0, scan 2 s, activo, MW_1_2_1F\n"
        "    1.2.20: registro 20, nivel 0, scan 2 s, activo, MW_1_2_20\n"
        "    1.2.21: registro 21, nivel 0, scan 2 s, activo, MW_1_2_21\n"
        "Problemas: 1\n"
        "C:/Driver/DRIVER_KV2200_Config.ini:6: en \"127.0.0.1:502\" 3 bloques a 2 s piden 1,5 "
        "lecturas/s; la pausa de 800 ms permite 1,2; una vuelta completa tarda al menos 2,4 s\n");
    EXPECT_FALSE(archivos.existe("C:\\Driver\\sis_config.ini"));
    archivos.poner("C:\\Driver\\sis_config.ini", "[DRIVER_KV2200]\nPuertoEscucha=70000\n");
    archivos.borrar("C:\\Driver\\DRIVER_KV2200_Config.ini");
    ajustes.vueltaNueva();
    c = revisar(ajustes);
    EXPECT_EQ(c.resultado(), 2); // there is nothing to read
    EXPECT_NE(informeDe(c).find("sis_config.ini:2: PuertoEscucha=\"70000\" no es un número de 1 a "
                                "65535; se usa 1334\n"),
              std::string::npos);
    EXPECT_NE(informeDe(c).find("Config.ini: no existe el archivo"), std::string::npos);
    archivos.poner("C:\\Driver\\sis_config.ini", std::string(kMaximoDeArchivo + 1, ' '));
    ajustes.vueltaNueva();
    EXPECT_NE(informeDe(revisar(ajustes)).find("sis_config.ini: el archivo no se puede leer"),
              std::string::npos);
}

/// The example plants have no problem, and their two forms build the same.
TEST(Ejemplos, IniYExportacionDescribenLaMismaPlanta) {
    ArchivosReales reales;
    for (const auto& [planta, bloques] : std::vector<std::pair<std::string, std::size_t>>{
             {"planta-chica", 20}, {"planta-50-estaciones", 1000}}) {
        const std::string carpeta = std::string(KV_FUENTES) + "/examples/" + planta;
        ArchivosSimulados archivos;
        for (const char* nombre : {"DRIVER_KV2200_Config.ini", "Planta.qmx", "sis_config.ini",
                                   "Planta.KalmorKV2200_Conf"})
            archivos.poner(unirRuta("P", nombre), *reales.leer(unirRuta(carpeta, nombre), 1 << 20));
        Ajustes ajustes(archivos, "P");
        Revision r = revisar(ajustes);
        const std::string ini = informeDe(r);
        EXPECT_EQ(r.resultado(), 0) << ini;
        archivos.poner("P\\sis_config.ini",
                       "[PROYECTO_PREDETERMINADO]\nRutaProyecto=Planta.qmx\n"
                       "[DRIVER_KV2200]\nTiempo_Entre_poleo=" +
                           std::string(planta == std::string("planta-chica") ? "200" : "50") +
                           "\n");
        ajustes.vueltaNueva();
        r = revisar(ajustes);
        const std::string exportacion = informeDe(r);
        EXPECT_EQ(r.resultado(), 0) << exportacion;
        const auto construido = [](const std::string& informe) {
            return informe.substr(informe.find("Se construyen"));
        };
        EXPECT_EQ(construido(ini), construido(exportacion));
        EXPECT_NE(ini.find(" " + std::to_string(bloques) + " bloques"), std::string::npos);
    }
}

} // namespace kv
