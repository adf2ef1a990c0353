// SPDX-License-Identifier: Apache-2.0
// A driver that dies, or whose disk fails, at any step of writing files.

#include "apoyo.h"

#include "apoyo/configuracion.h"
#include "extremo/programas.h"

#include <array>
#include <csignal>
#include <iostream>
#include <sstream>

namespace kv::fallas {
namespace {

#ifdef KV_CON_SANITIZADORES // starts take them three times as long; the night tries every step
constexpr long kMuertes = 30;
#else
constexpr long kMuertes = 200;
#endif
constexpr std::array kFallas{1, 2, 5, 10, 17}; // the calls of each kind that fail

/// A driver's short day that writes all it ever writes: missing defaults, log entries about bad
/// settings and a bad configuration, and orders of a client that are refused and put on record.
class Dia : public testing::Test {
  protected:
    Dia() {
        vaciar();
        EXPECT_TRUE(vivir(""));
        ajustesAlFinal_ = casa_.leer("sis_config.ini");
        registros_ = registrosDe(casa_);
        EXPECT_TRUE(ajustesAlFinal_.starts_with(ajustes_));
        EXPECT_GE(registros_.size(), 3U) << "two logs and the record of writes";
    }
    void vaciar() const {
        std::filesystem::remove_all(casa_.ruta() + "/LOGS_DRIVER");
        std::filesystem::remove(casa_.ruta() + "/sis_config.ini.nuevo");
        casa_.escribir("sis_config.ini", ajustes_);
    }
    /// False when the driver did not get to the end of it.
    bool vivir(const std::string& fallas) {
        Proceso driver(conFallas(casa_.correr(), fallas, cuenta()));
        bool entero = !driver.lineaCon("lblCantidadDePuntos").empty();
        entero = entero && visitar(casa_.escucha(), "[Write]1.9.1;1[/Write][Write]no;2[/Write]",
                                   "[WRITE_OK][WRITE_OK]");
        return driver.terminar(SIGTERM) == 0 && entero;
    }
    /// Steps of writing, opens and so on of the last day that ended in order.
    [[nodiscard]] long pasos() const { return std::stol(casa_.leer("cuenta")); }

    void ajustesEnteros(const std::string& donde) const {
        const std::string hay = casa_.leer("sis_config.ini");
        EXPECT_TRUE(ajustesAlFinal_.starts_with(hay) && hay.size() >= ajustes_.size() &&
                    hay.ends_with("\r\n"))
            << donde << " left\n"
            << hay;
    }
    /// The same when some defaults could not be written: what was set stays set, and every line
    /// that was added is whole.
    void ajustesDeLosDebidos(const std::string& donde) const {
        const std::string hay = casa_.leer("sis_config.ini");
        EXPECT_TRUE(hay.starts_with(ajustes_)) << donde << " left\n" << hay;
        const auto debidas = lineas(ajustesAlFinal_);
        for (const std::string& l : lineas(hay))
            EXPECT_TRUE(debidas.contains(l)) << donde << " left\n" << hay;
    }
    /// Every line is there in its turn, the last one of a file perhaps broken off.
    void registrosEnteros(const std::string& donde) const {
        for (const auto& [nombre, hay] : registrosDe(casa_))
            EXPECT_TRUE(registros_.at(nombre).starts_with(hay)) << donde << " left\n" << hay;
    }
    /// A driver that starts from what is there lives a whole day and ends with all in place.
    void otroDia(const std::string& donde) {
        auto debidos = registrosDe(casa_);
        for (const auto& [nombre, dia] : registros_) {
            std::string& d = debidos[nombre];
            if (!d.empty() && d.back() != '\n') d += "\r\n";
            d += dia;
        }
        EXPECT_TRUE(vivir("")) << donde;
        EXPECT_EQ(lineas(casa_.leer("sis_config.ini")), lineas(ajustesAlFinal_)) << donde;
        EXPECT_EQ(registrosDe(casa_), debidos) << donde;
        EXPECT_FALSE(casa_.nombres().contains("sis_config.ini.nuevo")) << donde;
    }

    const extremo::Instalacion casa_{configuracion()};
    // The keep-alive's would be added on a day that lasts, as one does on a busy machine.
    const std::string ajustes_ = "[DRIVER_KV2200]\r\nVER=0\r\nMaximos_Keep_ALive=7\r\n"
                                 "BaseTiempoMilisegundos_KeepALive=5000\r\n"
                                 "Intervalos_Para_KeepALive=2\r\n"
                                 "Tiempo_Entre_poleo=mucho\r\nIdioma=ninguno\r\nPuertoEscucha=" +
                                 std::to_string(casa_.escucha()) + "\r\n";

  private:
    static std::set<std::string> lineas(const std::string& texto) {
        std::set<std::string> todas;
        std::istringstream entrada(texto);
        for (std::string l; std::getline(entrada, l);)
            todas.insert(l);
        return todas;
    }
    /// Blocks of stations that do not exist, each of which leaves a log entry.
    static std::string configuracion() {
        Configuracion c;
        c.puerto({"no", "1", "1"});
        for (int i = 0; i < 16; ++i)
            c.bloque(i + 1, "10", "1");
        return c.texto();
    }
    [[nodiscard]] std::string cuenta() const { return casa_.ruta() + "/cuenta"; }
    std::string ajustesAlFinal_;
    std::map<std::string, std::string> registros_;
};

} // namespace

TEST_F(Dia, MuerteEnCualquierPaso) {
    const long total = pasos();
    EXPECT_GT(total, kMuertes);
    const auto pruebas = muestras(total, kMuertes);
    for (const long n : pruebas) {
        const std::string donde = "death at step " + std::to_string(n);
        vaciar();
        EXPECT_FALSE(vivir("matar:" + std::to_string(n))) << donde;
        ajustesEnteros(donde);
        registrosEnteros(donde);
        otroDia(donde);
        if (HasFailure()) break;
    }
    std::cout << pruebas.size() << " deaths in " << total << " steps of writing\n";
}

TEST_F(Dia, UnArchivoQueNoPuedeCrecerEsUnDiscoLleno) {
    vaciar();
    std::vector<std::string> orden{"/bin/sh", "-c", "ulimit -f 0 && exec \"$@\"", "sh"};
    const auto suya = casa_.correr();
    orden.insert(orden.end(), suya.begin(), suya.end());
    Proceso driver(orden);
    EXPECT_NE(driver.lineaCon("lblCantidadDePuntos"), "");
    EXPECT_TRUE(visitar(casa_.escucha(), "[Write]1.9.1;1[/Write]", "[WRITE_OK]"));
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_TRUE(casa_.leer("sis_config.ini").starts_with(ajustes_));
}

TEST_F(Dia, MuerteDeLaSegundaQueAvisaALaPrimera) {
    vaciar();
    Proceso primera(casa_.correr());
    ASSERT_NE(primera.lineaCon("lblCantidadDePuntos"), "");
    const std::string antes = casa_.leer("sis_config.ini");
    // The first one goes on writing defaults that are missing, at the end of the section.
    const auto entero = [&antes](std::string hay, const char* ver) {
        const auto lugar = hay.find(ver);
        if (lugar != std::string::npos) hay.replace(lugar, 5, "VER=0");
        return lugar != std::string::npos && hay.starts_with(antes) && hay.ends_with("\r\n");
    };
    long n = 0;
    while (Proceso(conFallas(casa_.correr(), "matar:" + std::to_string(++n))).terminar() != 1) {
        ASSERT_LT(n, 100);
        const std::string hay = casa_.leer("sis_config.ini");
        EXPECT_TRUE(entero(hay, "VER=0") || entero(hay, "VER=1")) << n << " left\n" << hay;
        casa_.escribir("sis_config.ini", antes);
    }
    EXPECT_GT(n, 5) << "no step was counted";
    EXPECT_TRUE(entero(casa_.leer("sis_config.ini"), "VER=1"));
    EXPECT_EQ(primera.terminar(SIGTERM), 0);
}

TEST_F(Dia, FallasDelDisco) {
    // Of every kind once, and from there on for good.
    for (const char* cual : {"write:ENOSPC", "write:EIO", "write:corto", "open:EMFILE", "open:EIO",
                             "rename:EIO", "mkdir:ENOSPC", "ftruncate:EIO"}) {
        for (const int n : kFallas) {
            for (const bool siempre : {false, true}) {
                const std::string desde = std::to_string(n);
                const std::string donde =
                    std::string(cual) + ":" + desde + ":" + (siempre ? "0" : desde) + ":1";
                vaciar();
                // Without descriptors or a readable disk nothing can be promised but order.
                const bool entero = vivir(donde);
                EXPECT_TRUE(entero || std::string(cual).starts_with("open")) << donde;
                ajustesDeLosDebidos(donde);
                otroDia(donde);
                if (HasFailure()) return;
            }
        }
    }
}

} // namespace kv::fallas
