// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apoyo/carpeta.h"
#include "apoyo/configuracion.h"
#include "apoyo/proceso.h"
#include "apoyo/puerto_libre.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace kv::extremo {

inline const std::string kSimulador = std::string(KV_BIN) + "/SimuladorKV2200";
inline const std::string kDriver = std::string(KV_BIN) + "/DriverKV2200";

inline const std::string kCliente = std::string(KV_BIN) + "/ClienteKV2200";

/// Simulated stations on addresses of their own, one process.
class Simulador : public Proceso {
  public:
    /// Listens on the ports given, 0 for a free one. What it traces must be read, or it waits.
    Simulador(const std::vector<int>& puertos, const std::vector<std::string>& opciones,
              bool traza = true)
        : Proceso(argumentos(puertos, opciones, traza)) {
        for (std::size_t i = 0; i < puertos.size(); ++i) {
            const std::string l = linea();
            EXPECT_TRUE(l.starts_with("Escuchando 127.0.0.1:")) << l << errores();
            puertos_.push_back(l.substr(l.rfind(':') + 1));
        }
    }
    [[nodiscard]] const std::string& puerto(std::size_t i) const { return puertos_[i]; }

  private:
    static std::vector<std::string> argumentos(const std::vector<int>& puertos,
                                               const std::vector<std::string>& opciones,
                                               bool traza) {
        std::vector<std::string> a{kSimulador};
        if (traza) a.push_back("--traza");
        a.push_back("--escuchar");
        for (const int p : puertos)
            a.push_back("127.0.0.1:" + std::to_string(p));
        a.insert(a.end(), opciones.begin(), opciones.end());
        return a;
    }
    std::vector<std::string> puertos_;
};

/// The program's folder of a driver: a copy of the program, with a name of its own, and its
/// settings and configuration beside it.
class Instalacion : public Carpeta {
  public:
    explicit Instalacion(const std::string& configuracion = {}) {
        std::filesystem::copy_file(kDriver, programa());
        // Fast, so that nobody waits: these tests are not about how long a plant takes.
        escribir("sis_config.ini", "[DRIVER_KV2200]\r\nVER=0\r\nTiempo_Entre_poleo=20\r\n"
                                   "Base_Tiempo_Solicitar_Conexiones_Milisegundos=100\r\n"
                                   "PuertoEscucha=" +
                                       std::to_string(escucha_) + "\r\n");
        escribir("DRIVER_KV2200_Config.ini", configuracion);
    }
    /// One more line of the driver's settings.
    void agregarAjuste(const std::string& linea) const {
        escribir("sis_config.ini", leer("sis_config.ini") + linea + "\r\n");
    }
    [[nodiscard]] int escucha() const { return escucha_; }
    [[nodiscard]] std::string programa() const { return ruta() + "/driver"; }
    [[nodiscard]] std::vector<std::string> correr() const {
        return {programa(), "--sin-ventana", "--traza"};
    }
    /// A supervisory client of this driver that carries out one order.
    [[nodiscard]] std::vector<std::string> cliente(std::vector<std::string> orden) const {
        orden.insert(orden.begin(),
                     {kCliente, "--servidor", "127.0.0.1:" + std::to_string(escucha_)});
        return orden;
    }

  private:
    int escucha_ = puertoLibre();
};

/// The driver's daily log.
inline std::string registroDe(const Carpeta& planta) {
    std::string log;
    std::error_code todaviaNo;
    for (const auto& f :
         std::filesystem::directory_iterator(planta.ruta() + "/LOGS_DRIVER", todaviaNo)) {
        const std::string nombre = f.path().filename().string();
        if (nombre.ends_with(" driver ArchivoLog.txt")) log = planta.leer("LOGS_DRIVER/" + nombre);
    }
    return log;
}

/// Asked to end while it is being built, the program does not forget it. Its exit code.
inline int terminarAlArrancar(const Instalacion& casa, const std::vector<std::string>& orden) {
    Proceso driver(orden);
    for (int miradas = 0; miradas < 1'000'000; ++miradas) {
        if (registroDe(casa).find("Arranque") != std::string::npos) break;
    }
    const int codigo = driver.terminar(SIGTERM);
    EXPECT_NE(registroDe(casa).find("en orden"), std::string::npos) << driver.errores();
    return codigo;
}
/// A plant whose building takes a while.
inline std::string plantaGrande() {
    Configuracion c;
    c.puerto();
    for (int i = 1; i <= 100; ++i)
        c.estacion(i, "127.0.0.1", i, "1").bloque(i, "00", "3600", true, 200);
    return c.texto();
}

/// The value that the driver traces for the next answer of a station's register. Ends the test when
/// no value comes: whoever waits for a certain value would wait for ever.
inline int recibido(Proceso& driver, const std::string& estacion, const std::string& registro) {
    const std::string l =
        driver.lineaCon("  Recepcion <- [7][" + estacion + "][0][" + registro + "][0][");
    if (!l.starts_with("txtTramas: "))
        throw std::runtime_error("no answer of " + estacion + "." + registro + ": " +
                                 driver.errores());
    const auto cierre = l.rfind('[');
    const auto bajo = l.rfind('[', cierre - 1);
    const auto alto = l.rfind('[', bajo - 1);
    return static_cast<std::int16_t>(std::stoi(l.substr(alto + 1), nullptr, 16) << 8 |
                                     std::stoi(l.substr(bajo + 1), nullptr, 16));
}

} // namespace kv::extremo
