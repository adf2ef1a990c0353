// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

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

} // namespace kv
