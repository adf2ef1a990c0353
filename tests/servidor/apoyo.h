// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apoyo/planta.h"
#include "server/cifrado.h"
#include "server/servidor.h"
#include "text/numeros.h"

#include <functional>
#include <string>
#include <vector>

namespace kv {

/// A supervisory client on the simulated network, with a memory of what it was sent.
class ClienteSimulado final : public ExtremoSimulado {
  public:
    explicit ClienteSimulado(BucleSimulado& bucle, std::string remoto = "10.0.0.9:50000")
        : bucle_(bucle), remoto_(std::move(remoto)) {}
    void conectar(std::uint32_t puerto = 1334) {
        pedir(puerto);
        bucle_.avanzar(1);
    }
    /// The same from inside a handler, where the loop alone moves the time.
    void pedir(std::uint32_t puerto = 1334) {
        enlace_ = bucle_.red().conectarCliente(puerto, *this, remoto_);
    }
    /// One arrival at the driver, and what there is to see within a millisecond.
    void enviar(const std::string& bytes) {
        bucle_.red().enviar(enlace_,
                            {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
        bucle_.avanzar(1);
    }
    void cerrar() {
        bucle_.red().cortar(enlace_);
        bucle_.avanzar(1);
        conectado = false;
    }
    [[nodiscard]] std::string clave(int horasAntes = 0) const {
        const auto f = fechaDesdeSegundos(bucle_.relojSimulado().segundos() - 3600LL * horasAntes);
        double u = 0;
        return cifrar(textoDeClave(formatoDeHora(f)), [&u] { return u = u > 0.9 ? 0 : u + 0.07; });
    }
    /// What came since the last call.
    std::string tomar() { return std::exchange(recibido_, {}); }
    [[nodiscard]] IdEnlace enlace() const { return enlace_; }

    bool conectado = false;
    std::size_t envios = 0; ///< pieces in which what came was sent
    /// Answers keep-alives by itself.
    bool contesta = false;

  private:
    void alConectar(IdEnlace /*enlace*/) override { conectado = true; }
    void alCortarse(IdEnlace enlace) override {
        if (enlace == enlace_) conectado = false;
    }
    void alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) override {
        if (enlace != enlace_) return;
        ++envios;
        const std::string texto(bytes.begin(), bytes.end());
        recibido_ += texto;
        if (contesta && texto.find("[KEEP_DESDE_DRI]") != std::string::npos)
            bucle_.red().enviar(enlace_,
                                {reinterpret_cast<const std::uint8_t*>("[KEEP_DESDE_DRI]"), 16});
    }

    BucleSimulado& bucle_;
    std::string remoto_;
    IdEnlace enlace_ = 0;
    std::string recibido_;
};

/// Writes down what the plant was ordered to do.
class OrdenesDePrueba final : public OrdenesDelCliente {
  public:
    void escribirDireccion(std::string_view direccion, double valor,
                           std::string_view origen) override {
        hechas.push_back("escribir " + std::string(direccion) + " " + textoDeNumero(valor));
        ultimoOrigen = origen;
        if (alHacer) alHacer();
    }
    void rechazarEscritura(std::string_view direccion, double valor, std::string_view /*origen*/,
                           std::string_view motivo) override {
        hechas.push_back("rechazar " + std::string(direccion) + " " + textoDeNumero(valor) + ": " +
                         std::string(motivo));
    }
    void forzarBloque_porNivel_NVeces(double nivel, double veces,
                                      std::string_view /*quien*/) override {
        hechas.push_back("forzar " + textoDeNumero(nivel) + " " + textoDeNumero(veces));
        if (alHacer) alHacer();
    }
    void forzarPoleo(const std::string& direccion, std::string_view /*quien*/) override {
        hechas.push_back("polear " + direccion);
    }
    std::vector<std::string> tomar() { return std::exchange(hechas, {}); }

    std::vector<std::string> hechas;
    std::string ultimoOrigen;
    std::function<void()> alHacer; ///< called inside an order: the place to let events run
};

/// A driver with the client's server beside it, and one client.
struct PlantaConServidor {
    explicit PlantaConServidor(Configuracion configuracion) : planta(configuracion) {
        planta.motor.publicacion.avisarA(&servidor);
    }
    /// Starts everything; the first client is there and logged in, the first synchronisation gone.
    void arrancarConCliente() {
        arrancar();
        cliente.conectar();
        cliente.enviar(cliente.clave());
        planta.avanzar(1000);
        (void)cliente.tomar();
    }
    void arrancar() {
        planta.arrancar();
        servidor.Form_Load();
    }
    [[nodiscard]] std::string log() {
        return planta.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt");
    }
    [[nodiscard]] EstadoZocalo estado() const { return servidor.zocalo().estado(); }

    Planta planta;
    OrdenesDePrueba ordenes;
    FrmServerTCP servidor{planta.bucle,
                          planta.motor.tablas,
                          planta.motor.ajustes,
                          planta.motor.vista,
                          planta.motor.sucesos,
                          planta.motor.log,
                          ordenes};
    ClienteSimulado cliente{planta.bucle};
    ClienteSimulado otro{planta.bucle, "10.0.0.10:50001"};
};

inline Configuracion tresBloques() {
    return Configuracion()
        .puerto()
        .estacion(1, "10.0.0.1", 1)
        .bloque(1, "10", "2")
        .bloque(1, "11", "2")
        .bloque(1, "12", "2");
}

inline std::size_t veces(const std::string& texto, std::string_view parte) {
    std::size_t n = 0;
    for (auto i = texto.find(parte); i != std::string::npos; i = texto.find(parte, i + 1))
        ++n;
    return n;
}

using Textos = std::vector<std::string>;

} // namespace kv
