// SPDX-License-Identifier: Apache-2.0
#include "config/ajustes.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

struct AjustesPrueba : testing::Test {
    ArchivosSimulados archivos;
    Ajustes ajustes{archivos, "C:\\Driver"};
    const std::string ruta = "C:\\Driver\\sis_config.ini";
};

} // namespace

TEST_F(AjustesPrueba, LoQueFaltaSeEscribeConSuValorPorDefecto) {
    EXPECT_EQ(ajustes.leerConfiguracion("Maximos_Keep_ALive", "6"), "6");
    EXPECT_EQ(archivos.contenido(ruta), "[DRIVER_KV2200]\r\nMaximos_Keep_ALive=6\r\n");
    archivos.poner(ruta, "[Driver_kv2200]\nVER=\n");
    ajustes.vueltaNueva();
    EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "0");
    EXPECT_EQ(archivos.contenido(ruta), "[Driver_kv2200]\nVER=0\n");
    EXPECT_EQ(ajustes.leerConfiguracion("Otra", ""), "");
    EXPECT_EQ(ajustes.leerIni(ruta, "PROYECTO_PREDETERMINADO", "RutaProyecto", ""), "");
    EXPECT_EQ(archivos.contenido(ruta), "[Driver_kv2200]\nVER=0\n");
}

TEST_F(AjustesPrueba, EscribeEnUnaLineaYEnWindows1252) {
    ajustes.escribirConfiguracion("Nota", "año\r\ndos");
    EXPECT_EQ(archivos.contenido(ruta), "[DRIVER_KV2200]\r\nNota=a\xF1o  dos\r\n");
    EXPECT_EQ(ajustes.leerConfiguracion("nota", ""), "año  dos");
    ajustes.escribirConfiguracion("Larga", std::string(300, 'x'));
    EXPECT_EQ(ajustes.leerConfiguracion("Larga", "").size(), 254U);
    ajustes.escribirIni("c:\\driver\\SIS_CONFIG.INI", "DRIVER_KV2200", "VER", "1");
    EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "1"); // the same file, at once
}

TEST_F(AjustesPrueba, LoQueOtroProgramaEscribeSeVeEnLaVueltaSiguiente) {
    archivos.poner(ruta, "[DRIVER_KV2200]\r\nVER=0\r\n");
    EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "0");
    const auto lecturas = archivos.lecturas();
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "0");
        ajustes.vueltaNueva();
    }
    EXPECT_EQ(archivos.lecturas(), lecturas); // unchanged: not opened again
    archivos.poner(ruta, "[DRIVER_KV2200]\r\nVER=1\r\nNota=mia\r\n");
    EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "1");
    archivos.poner(ruta, "[DRIVER_KV2200]\r\nVER=1\r\nNota=otra\r\n");
    ajustes.escribirConfiguracion("VER", "2"); // must not undo what was written meanwhile
    EXPECT_EQ(archivos.contenido(ruta), "[DRIVER_KV2200]\r\nVER=2\r\nNota=otra\r\n");
}

/// What a settings file said still counts while what is there cannot be a whole one, and nothing is
/// written over what is there.
TEST_F(AjustesPrueba, UnArchivoQueSeRompeDiceLoQueDeciaYNadieLoPisa) {
    BucleSimulado bucle;
    Ajustes conReloj(archivos, "C:\\Driver", &bucle.reloj());
    const std::string bueno = "[DRIVER_KV2200]\r\nVER=1\r\nEscucha_Solo_Lectura=1\r\n";
    const std::string utf16("\xFF\xFE[\0D\0R\0", 8);
    const auto ver = [&] {
        conReloj.vueltaNueva();
        conReloj.escribirConfiguracion("Nota", "x");
        return conReloj.leerConfiguracion("VER", "0") + conReloj.leerConfiguracion("Nueva", "5");
    };
    archivos.poner(ruta, bueno);
    EXPECT_EQ(conReloj.leerConfiguracion("VER", "0"), "1");
    for (const std::string& malo :
         {std::string(), std::string(" \r\n"), utf16, std::string(200, '\0'),
          std::string("[OTRA]\r\nVER=0\r\n"), std::string("[DRIVER_KV2200"), bueno.substr(0, 21),
          bueno.substr(0, 30), std::string("[DRIVER_KV2200]\r\nVER=0\r\nEscucha_Solo_Lectura=")}) {
        archivos.poner(ruta, malo);
        EXPECT_EQ(ver(), "15") << malo;
        EXPECT_NE(conReloj.defecto(), "") << malo;
        bucle.avanzar(60'000);
        EXPECT_EQ(ver(), "15") << malo;
        EXPECT_EQ(archivos.contenido(ruta), malo);
    }
    archivos.borrar(ruta);
    EXPECT_EQ(ver(), "15");
    EXPECT_FALSE(archivos.existe(ruta)) << "it has gone, and may come back";
    EXPECT_EQ(conReloj.defecto(), "ya no está");
    // A whole one counts at once; what it lacks is only written when it has stayed so.
    archivos.poner(ruta, "[DRIVER_KV2200]\r\nVER=0");
    conReloj.vueltaNueva();
    EXPECT_EQ(conReloj.leerConfiguracion("VER", "1") + conReloj.leerConfiguracion("Nueva", "5"),
              "05");
    EXPECT_EQ(archivos.contenido(ruta), "[DRIVER_KV2200]\r\nVER=0");
    bucle.avanzar(5000);
    EXPECT_EQ(conReloj.leerConfiguracion("Nueva", "5"), "5");
    EXPECT_EQ(conReloj.leerConfiguracion("Otra", "6"), "6") << "our own writing starts no wait";
    EXPECT_EQ(archivos.contenido(ruta), "[DRIVER_KV2200]\r\nVER=0\r\nNueva=5\r\nOtra=6\r\n");
}

TEST_F(AjustesPrueba, UnDiscoQueNiegaNoSeIntentaEnCadaTic) {
    archivos.poner(ruta, "[DRIVER_KV2200]\r\n");
    archivos.negarEscrituras(true);
    EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "0");
    const auto lecturas = archivos.lecturas();
    for (int i = 0; i < 10; ++i) {
        ajustes.vueltaNueva();
        EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "0");
    }
    EXPECT_EQ(archivos.lecturas(), lecturas);
    archivos.negarEscrituras(false);
    archivos.poner(ruta, "[DRIVER_KV2200]\r\nX=1\r\n");
    ajustes.vueltaNueva();
    EXPECT_EQ(ajustes.leerConfiguracion("VER", "0"), "0");
    EXPECT_EQ(archivos.contenido(ruta), "[DRIVER_KV2200]\r\nX=1\r\nVER=0\r\n");
    ajustes.noEscribir();
    EXPECT_EQ(ajustes.leerConfiguracion("Nueva", "5"), "5");
    EXPECT_EQ(archivos.contenido(ruta), "[DRIVER_KV2200]\r\nX=1\r\nVER=0\r\n");
}

TEST_F(AjustesPrueba, UnTiempoMaloDaElUltimoBuenoYSeAvisaUnaVez) {
    std::vector<std::string> avisos;
    const auto leer = [&](const std::string& texto) {
        archivos.poner(ruta, "[DRIVER_KV2200]\r\nTiempo_Entre_poleo=" + texto + "\r\n");
        ajustes.vueltaNueva();
        return ajustes.leerNumero(
            kTiempoEntrePoleo, [&](std::string_view, const std::string& t, double usado) {
                avisos.push_back(t + ">" + std::to_string(static_cast<int>(usado)));
            });
    };
    EXPECT_EQ(leer("pronto"), 800);
    EXPECT_EQ(leer("pronto"), 800);
    EXPECT_EQ(leer("0"), 0); // a pause of nothing is good
    EXPECT_EQ(leer("250"), 250);
    for (const char* malo : {"-1", "1000000000", "1,5", "1e400"})
        EXPECT_EQ(leer(malo), 250) << malo;
    EXPECT_EQ(avisos, (std::vector<std::string>{"pronto>800", "-1>250", "1000000000>250", "1,5>250",
                                                "1e400>250"}));
    EXPECT_EQ(ajustes.leerNumero(kBaseKeepAlive, {}), 5000);
}

} // namespace kv
