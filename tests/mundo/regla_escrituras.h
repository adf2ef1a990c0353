// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/fin_de_escritura.h"
#include "mundo/contexto.h"
#include "mundo/regla_auditoria.h"

#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>

namespace kv::mundo {

/// Every write asked for is refused or merged at once, or waits in its connection's line: those of
/// a connection leave and end in the order in which they were asked for, each ends once, and no
/// write leaves after its end, or over a link that came up after it was asked for, or too old. What
/// was given up reaches no station. Only one that has not left is merged with. A bit's register is
/// read before, and no other bit is changed. All of it stands in the record.
class ReglaDeEscrituras final : public OyenteDeSucesos {
  public:
    /// A register that an operator, a client or the script writes.
    struct Escritor {
        std::uint16_t base = 0, mascara = 0;
        Fuente fuente = Fuente::Nadie;
        std::size_t conexion = 0;
        std::string direccion;
        std::uint64_t pedidas = 0;
        /// The next value to write: every third is the one before again.
        [[nodiscard]] std::uint16_t siguiente() {
            const std::uint64_t k = ++pedidas;
            return static_cast<std::uint16_t>(base + ((2 * k + 2) / 3 & mascara));
        }
    };

    ReglaDeEscrituras(Contexto& c, ReglaDeAuditoria& auditoria) : c_(c), auditoria_(auditoria) {}

    Escritor& agregar(Escritor escritor, std::uint8_t estacion, std::uint8_t registro);
    [[nodiscard]] std::vector<Escritor*>& de(Fuente fuente) {
        return porFuente_[static_cast<std::size_t>(fuente)];
    }
    /// An operator writes `valor` to an address.
    void escribirAMano(const std::string& direccion, double valor);
    /// A confirmed write, or the read of a bit's register: its block was answered.
    std::function<void(Indice)> alContestar = [](Indice) {};
    /// A write of a connection has ended.
    std::function<void(std::size_t)> alAcabar = [](std::size_t) {};

    void alEnviar(std::size_t n, const Solicitud& trama);
    void alLlegar(std::size_t n, const EscrituraLlegada& llegada);
    void alSuceder(const kv::Suceso& s, std::string_view texto) override;
    /// After every event.
    void mirar();
    void barrer();

  private:
    void alSalir(const BloqueEscritura& e, const std::string& direccion);
    void alTerminar(const BloqueEscritura& b, const std::string& direccion, FinDeEscritura fin);
    void alUnir(const BloqueEscritura& e, const std::string& direccion, std::string_view origen);
    /// How a write ended; its frames that are still on their way know of it.
    struct Suerte {
        std::optional<FinDeEscritura> fin;
        std::int64_t finUs = 0;
    };
    struct Pedida {
        Indice indice = kNinguno;
        std::uint8_t estacion = 0, registro = 0;
        int bit = -1;
        double pedido = 0;
        std::uint64_t enlace = 0; ///< on which it was asked for
        std::int64_t pedidaUs = 0;
        std::int64_t primeraUs = -1; ///< first of its line, and not under way
        std::int64_t leyoUs = -1;    ///< a bit's register was asked for
        std::int64_t leidaMs = 0;    ///< and was answered, as the driver says
        std::int64_t envioUs = -1;
        std::uint16_t palabra = 0; ///< that left
        int envios = 0;            ///< of it
        bool seDijo = false;       ///< that it left
        std::string anterior;
        std::shared_ptr<Suerte> suerte = std::make_shared<Suerte>();
    };
    /// The bits of its register that a write is about: when a bit is read back the others are the
    /// plant's.
    [[nodiscard]] static std::uint16_t escritos(const Pedida& p) {
        return static_cast<std::uint16_t>(p.bit < 0 ? 0xFFFF : 1U << p.bit);
    }
    struct EnCamino {
        std::uint8_t estacion, registro;
        std::uint16_t palabra, delBit; ///< `delBit`: the one bit it may change, or all
        std::int64_t leyoUs;
        bool comoSeLeyo; ///< the other bits are those that its station answered
        std::shared_ptr<Suerte> suerte;
    };
    [[nodiscard]] std::deque<Pedida>& cola(std::size_t n);
    void aprender(std::size_t n);
    [[nodiscard]] double vigenciaUs() const;
    void saleLaPalabra(std::size_t n, Pedida& p, std::uint16_t palabra);
    [[nodiscard]] std::string anteriorDe(const BloqueEscritura& e) const;

    Contexto& c_;
    ReglaDeAuditoria& auditoria_;
    std::unordered_map<std::uint64_t, Escritor> escritores_;
    std::array<std::vector<Escritor*>, 5> porFuente_;
    std::vector<std::deque<Pedida>> colas_; ///< by connection: what waits or is under way
    std::map<IdEnlace, std::deque<EnCamino>> enCamino_;
    std::uint64_t rechazadas_ = 0, fundidas_ = 0, aceptadas_ = 0;
    std::size_t masEnEspera_ = 0;           ///< writes that ever waited at the same time
    std::vector<std::int64_t> sinEnlaceUs_; ///< by connection: writes wait and there is no link
};

} // namespace kv::mundo
