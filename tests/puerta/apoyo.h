// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apoyo/planta.h"
#include "text/json_leido.h"

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

namespace kv {

inline constexpr const char* kZocaloLocal = "/kv/DriverKV2200.sock";

/// A program of this machine at the local door.
class Vecino final : public ExtremoSimulado {
  public:
    explicit Vecino(Planta& p, std::string quien = "1000/77") : p_(p), quien_(std::move(quien)) {}
    void conectar() {
        enlace = p_.bucle.red().conectarCliente(p_.bucle.red().puertoDeRuta(kZocaloLocal), *this,
                                                quien_);
        p_.avanzar(1);
    }
    void alConectar(IdEnlace /*e*/) override { conectado = true; }
    void alRecibir(IdEnlace /*e*/, std::span<const std::uint8_t> bytes) override {
        recibido.append(bytes.begin(), bytes.end());
    }
    void alCortarse(IdEnlace /*e*/) override { conectado = false; }
    void enviar(std::string_view texto) {
        p_.bucle.red().enviar(
            enlace, {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()}); // NOLINT
    }
    /// Sends a request and gives the lines that come within a while; each must be a JSON object.
    std::vector<Json> pedir(const std::string& renglon, double ms = 200) {
        recibido.clear();
        enviar(renglon + "\n");
        p_.avanzar(ms);
        return tomar();
    }
    std::vector<Json> tomar() {
        std::vector<Json> renglones;
        for (std::size_t i = 0; i < recibido.size();) {
            const std::size_t fin = recibido.find('\n', i);
            std::string falla;
            auto j = leerJson(std::string_view(recibido).substr(i, fin - i), falla);
            if (!j || j->clase() != Json::Clase::Objeto) std::abort();
            renglones.push_back(std::move(*j));
            i = fin + 1;
        }
        recibido.clear();
        return renglones;
    }
    std::string recibido;
    IdEnlace enlace = 0;
    bool conectado = false;

  private:
    Planta& p_;
    std::string quien_;
};

/// What a member says, as text; "-" where it is missing.
inline std::string dice(const Json& j, std::string_view nombre) {
    const Json* m = j.miembro(nombre);
    if (m == nullptr) return "-";
    if (m->logico()) return *m->logico() ? "si" : "no";
    return m->clase() == Json::Clase::Nulo ? "null" : m->texto() ? *m->texto() : m->comoJson();
}

} // namespace kv
