// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "log/archivo_log.h"
#include "plant/tablas.h"
#include "platform/reloj.h"

#include <cstdint>
#include <string>
#include <unordered_map>

namespace kv {

/// Puts what happens in the plant and matters into the log. What repeats itself without end, as a
/// link that flaps, is counted: some entries of its kind and place are written as they come, then
/// one with their number and how it stands, when it has been quiet for a while, or after a time
/// that grows for as long as it goes on.
class Bitacora final : public OyenteDeSucesos {
  public:
    static constexpr std::int64_t kVentanaMs = 60'000; ///< also how long quiet lasts
    static constexpr std::int64_t kVentanaMayorMs = 3'600'000;

    /// All must outlive this.
    Bitacora(Sucesos& sucesos, const Tablas& tablas, const Reloj& reloj, ArchivoLog& log);
    ~Bitacora() override { sucesos_.dejarDeAvisarA(this); }
    Bitacora(const Bitacora&) = delete;
    Bitacora& operator=(const Bitacora&) = delete;

    void alSuceder(const Suceso& suceso, std::string_view texto) override;
    /// To be called at every turn of the loop.
    void alPasarElTiempo();
    /// The program ends: what has only been counted is said.
    void terminar();

  private:
    enum class Clase : std::uint8_t {
        Enlace,
        Estacion,
        Bloque,
        Escritura,
        Forzado,
        Guion,
        Cliente
    };
    /// Entries of one kind and place, since the first of them.
    struct Ventana {
        std::int64_t desdeMs = 0;
        std::int64_t ultimoMs = 0;
        std::int64_t largoMs = kVentanaMs;
        std::uint32_t sueltas = 0; ///< written as they came
        std::uint64_t calladas = 0;
        std::string ultima; ///< what the last of those not written would have said, and where
        std::string conexion;
        std::string estacion;
    };

    void anotar(Clase clase, std::uint64_t cual, const EntradaDeLog& entrada);
    /// Whether the window is over.
    [[nodiscard]] bool cerrar(std::uint64_t clave, Ventana& v, std::int64_t ahora);
    void contarCalladas(std::uint64_t clave, const Ventana& v, std::int64_t ahora);
    void enlace(const Suceso& s);
    void estacion(const Suceso& s);
    void bloque(const Suceso& s);
    void rechazo(const Suceso& s, std::string_view texto);
    void abandono(const Suceso& s);
    void sinDestino(const Suceso& s, std::string_view direccion);
    void guion(const Suceso& s, std::string_view texto);
    void cliente(const Suceso& s, std::string_view texto);

    Sucesos& sucesos_;
    const Tablas& tablas_;
    const Reloj& reloj_;
    ArchivoLog& log_;
    std::unordered_map<std::uint64_t, Ventana> ventanas_;
    std::int64_t miradasMs_ = 0;
};

} // namespace kv
