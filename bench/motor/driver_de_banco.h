// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "engine/arranque.h"
#include "engine/motor.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/sistema.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace kv::banco {

/// A folder of its own for a driver, gone at the end.
class Carpeta {
  public:
    Carpeta() {
        std::string plantilla = (std::filesystem::temp_directory_path() / "kvbancoXXXXXX").string();
        ruta_ = mkdtemp(plantilla.data());
    }
    ~Carpeta() { std::filesystem::remove_all(ruta_); }
    Carpeta(const Carpeta&) = delete;
    Carpeta& operator=(const Carpeta&) = delete;
    [[nodiscard]] const std::string& ruta() const { return ruta_; }
    void escribir(const std::string& nombre, const std::string& contenido) const {
        std::ofstream(ruta_ + "/" + nombre) << contenido;
    }

  private:
    std::string ruta_;
};

/// Stations from 127.0.0.1 on, each with a connection and `bloques` blocks of its own.
[[nodiscard]] std::string configuracion(std::uint16_t puerto, int conexiones, int bloques,
                                        double scan);

/// Where a client finds it.
inline constexpr std::uint16_t kEscucha = 21335;

/// A driver without a window on real sockets.
class Driver {
  public:
    Driver(std::uint16_t puerto, int conexiones, int bloques, double scan, int pausaMs,
           const std::string& guion)
        : motor_(bucle_, archivos_, carpeta_.ruta()), arranque_(motor_, procesos_) {
        carpeta_.escribir("sis_config.ini",
                          "[DRIVER_KV2200]\nTiempo_Entre_poleo=" + std::to_string(pausaMs) +
                              "\nBase_Tiempo_Solicitar_Conexiones_Milisegundos=100\n"
                              "PuertoEscucha=" +
                              std::to_string(kEscucha) + "\n");
        carpeta_.escribir("DRIVER_KV2200_Config.ini",
                          configuracion(puerto, conexiones, bloques, scan));
        carpeta_.escribir("DRIVER_KV2200_Config.MDrivScrip", guion);
        arranque_.arrancar();
        correr(6.5); // every connection is up after the second supervision
    }
    /// A client is listened for from now on.
    void servir() { arranque_.abrirServidor(); }
    void correr(double segundos) {
        const auto fin = bucle_.crearTemporizador([this] { bucle_.detener(); });
        fin->rearmar(static_cast<std::int64_t>(segundos * 1000));
        bucle_.correr();
    }
    [[nodiscard]] std::uint64_t intercambios() const { return motor_.recepcion.respuestas(); }
    [[nodiscard]] BucleEpoll& bucle() { return bucle_; }
    [[nodiscard]] Motor& motor() { return motor_; }

  private:
    Carpeta carpeta_;
    BucleEpoll bucle_;
    ArchivosReales archivos_;
    ProcesosReales procesos_;
    Motor motor_;
    Arranque arranque_;
};

} // namespace kv::banco
