#pragma once

#include "apoyo/estaciones.h"
#include "core/start/arranque.h"
#include "core/start/motor.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"

#include <memory>
#include <string>
#include <string_view>

namespace kv {

struct PuertoDePrueba {
    std::string timeOut = "5";
    std::string reintentos = "3";
    std::string reconexion = "30";
};

/// Text of a driver configuration, built up port by port.
class Configuracion {
  public:
    using Puerto = PuertoDePrueba;
    Configuracion& puerto(const Puerto& p = {}) {
        cerrarPuerto();
        ++puertos_;
        seccion_ = "[PUERTO" + std::to_string(puertos_) + "]\nNUMERO=" + std::to_string(puertos_) +
                   "\nTIME_OUT=" + p.timeOut + "\nREINTENTOS_MAX=" + p.reintentos +
                   "\nSEG_RECONECCION=" + p.reconexion + "\n";
        return *this;
    }
    Configuracion& estacion(int numero, const std::string& ip, int indice,
                            const std::string& puertoTCP = "502") {
        const std::string e = "Esclavo" + std::to_string(estaciones_++);
        seccion_ += e + "_Numero=" + std::to_string(numero) + "\n" + e + "_Ip=" + ip + "\n" + e +
                    "_Puerto=" + puertoTCP + "\n" + e + "_Indice=" + std::to_string(indice) + "\n";
        ++enPuerto_;
        return *this;
    }
    Configuracion& bloque(int plc, const std::string& direccion, const std::string& scan,
                          bool activo = true, int cantidad = 1, int nivel = 1) {
        const std::string b = "Bloque" + std::to_string(bloques_++);
        seccion_ += b + "_PLC=" + std::to_string(plc) + "\n" + b +
                    "_Quantity=" + std::to_string(cantidad) + "\n" + b +
                    "_StarAdrees=" + direccion + "\n" + b + "_ScanTime=" + scan + "\n" + b +
                    "_Nivel=" + std::to_string(nivel) + "\n" + b +
                    "_ActiveDefault=" + (activo ? "1" : "0") + "\n";
        ++bloquesEnPuerto_;
        return *this;
    }
    [[nodiscard]] std::string texto() {
        cerrarPuerto();
        return "[CONFIG]\nCANT_PUERTOS=" + std::to_string(puertos_) + "\n" + hecho_;
    }

  private:
    void cerrarPuerto() {
        if (seccion_.empty()) return;
        hecho_ += seccion_ + "CantEsclavos=" + std::to_string(enPuerto_) +
                  "\nCantBloques=" + std::to_string(bloquesEnPuerto_) + "\n";
        seccion_.clear();
        enPuerto_ = bloquesEnPuerto_ = 0;
    }
    std::string hecho_, seccion_;
    int puertos_ = 0, estaciones_ = 0, bloques_ = 0, enPuerto_ = 0, bloquesEnPuerto_ = 0;
};

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
    [[nodiscard]] double valor(std::size_t i) { return bloque(i).valores[0]; }
    [[nodiscard]] bool ok(std::size_t i) { return bloque(i).estados[0] == 6; }
    [[nodiscard]] std::string fila(const Lista& lista, std::uint32_t f, std::size_t columna) const {
        return std::string(lista.texto(f, columna));
    }
    [[nodiscard]] bool tramasTiene(std::string_view texto) const {
        return motor.vista.txtTramas.texto().find(texto) != std::string::npos;
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
