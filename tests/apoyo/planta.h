// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apoyo/configuracion.h"
#include "apoyo/estaciones.h"
#include "engine/arranque.h"
#include "engine/motor.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"

#include <memory>
#include <string>
#include <string_view>

namespace kv {

/// A whole driver on the simulated platform, and the addresses it talks to.
class Planta {
  public:
    explicit Planta(Configuracion& configuracion) : Planta(configuracion.texto()) {}
    explicit Planta(std::string configuracion) {
        archivos.poner("/kv/DRIVER_KV2200_Config.ini", std::move(configuracion));
    }
    /// The stations of an address; served from the first call on.
    Estaciones& en(const std::string& ip, std::uint32_t puerto = 502) {
        auto& e = estaciones_[ip + ":" + std::to_string(puerto)];
        if (!e) {
            e = std::make_unique<Estaciones>(bucle.red(), bucle.reloj());
            bucle.red().atender(ip, puerto, *e);
        }
        return *e;
    }
    void ajuste(std::string_view clave, std::string_view valor) {
        motor.ajustes.escribirConfiguracion(clave, valor);
    }
    /// Starts the driver. Its connections are asked for 5 s later, and come up 5 s after that at
    /// the next supervision pass.
    void arrancar() {
        arranque.arrancar();
        inicioMs_ = ahoraMs();
    }
    void arrancarYConectar() {
        arrancar();
        avanzar(10'000);
    }
    void avanzar(double ms) { bucle.avanzarUs(static_cast<std::int64_t>(ms * 1000)); }
    [[nodiscard]] double ahoraMs() const {
        return static_cast<double>(bucle.reloj().monotonicoUs()) / 1000;
    }
    /// Time since the start, as pedidos of stations tell it.
    [[nodiscard]] double desdeInicio(double ms) const { return ms - inicioMs_; }

    [[nodiscard]] BloqueLectura& bloque(std::size_t i) { return motor.tablas.bloques[i]; }
    [[nodiscard]] ConexionIP& conexion(std::size_t i) { return motor.tablas.conexiones[i]; }
    [[nodiscard]] double valor(std::size_t i) { return bloque(i).valor; }
    [[nodiscard]] bool ok(std::size_t i) { return bloque(i).estado == 6; }
    [[nodiscard]] std::string fila(const Lista& lista, std::uint32_t f, std::size_t columna) const {
        return std::string(lista.texto(f, columna));
    }
    [[nodiscard]] bool tramasTiene(std::string_view texto) const {
        return motor.trazas.txtTramas.texto().find(texto) != std::string::npos;
    }

    BucleSimulado bucle;
    ArchivosSimulados archivos;
    ProcesosSimulados procesos;
    Motor motor{bucle, archivos, "/kv"};
    Arranque arranque{motor, procesos};

  private:
    std::map<std::string, std::unique_ptr<Estaciones>> estaciones_;
    double inicioMs_ = 0;
};

} // namespace kv
