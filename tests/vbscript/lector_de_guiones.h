// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

namespace vbscript {

/// A test script: lines to run, with what is expected of them beside them. See README.md.
class Guion {
  public:
    explicit Guion(const std::string& ruta);
    /// What went otherwise than expected; empty: nothing.
    std::vector<std::string> ejecutar();

  private:
    void leerLinea(std::string linea);
    void leerEncabezado(const std::string& linea);
    void correr();
    void correrFragmento(std::size_t linea, const std::string& codigo, const std::string& esperado);
    void comparar(std::size_t linea, const std::string& obtenido);

    struct Esperado {
        std::vector<std::string> textos;
        std::size_t vistos = 0;
    };
    std::string texto_;
    std::size_t lineas_ = 0;
    std::map<std::size_t, Esperado> esperados_;
    std::vector<std::string> quejas_;
    std::string fin_; ///< "compile 1002 3:5", "run 13 4:1", "budget 28"; empty: without an error.
    std::string idioma_ = "es-AR";
    int veces_ = 1;
    bool fragmentos_ = false;
    std::vector<std::pair<std::size_t, std::string>> crudas_;
};

} // namespace vbscript
