// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/bucle.h"
#include "platform/epoll/extremos.h"
#include "platform/vuelta.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace kv {

/// The clocks of the machine; the calendar one in the machine's time zone. The calendar is read
/// once per look at the kernel: an exchange with a station wants many stamps.
class RelojReal final : public Reloj {
  public:
    [[nodiscard]] std::int64_t monotonicoUs() const override;
    [[nodiscard]] FechaHora ahora() const override;
    [[nodiscard]] std::int64_t instante() const override;
    /// What the clock that counts forward said when it was last looked at.
    [[nodiscard]] std::int64_t vistoUs() const { return vistoUs_; }

    /// The calendar is to be read again.
    void caducar() { vigente_ = false; }

  private:
    mutable bool vigente_ = false;
    mutable FechaHora ahora_;
    mutable std::int64_t instante_ = 0; ///< the same
    mutable std::int64_t vistoUs_ = 0;
    mutable std::int64_t minutoEpoca_ = -1; ///< the minute that `minuto_` is the local form of
    mutable FechaHora minuto_;
};

/// The owner of a descriptor that the loop watches.
class Atendido {
  public:
    virtual ~Atendido() = default;
    virtual void alOcurrir(std::uint32_t sucesos) = 0;
};

/// What became of a name: addresses, the one to be tried first in front, or the reason why there
/// are not any.
struct NombreResuelto {
    std::vector<Maquina> maquinas;
    std::string motivo;
};
using ConsultaDeNombre = std::function<NombreResuelto(const std::string&)>;

/// Who waits for a name.
class AlResolver {
  public:
    virtual ~AlResolver() = default;
    virtual void alResolver(const NombreResuelto& resuelto) = 0;
};

class Resolutor;

/// The real loop: one epoll, one heap of timers, one thread. Its descriptor can sit inside another
/// loop, which then calls `atender` whenever it is readable.
class BucleEpoll final : public Bucle {
  public:
    BucleEpoll();
    ~BucleEpoll() override;
    BucleEpoll(const BucleEpoll&) = delete;
    BucleEpoll& operator=(const BucleEpoll&) = delete;

    [[nodiscard]] const Reloj& reloj() const override { return reloj_; }
    [[nodiscard]] std::unique_ptr<Zocalo> crearZocalo(OyenteDeZocalo& oyente,
                                                      std::size_t indice) override;
    void dejarCorrerPendientes() override;
    void alFinalDeVuelta(std::function<void()> tarea) override {
        vuelta_.alFinalSiempre(std::move(tarea));
    }
    void detener() override { detenido_ = true; }

    /// Turns until `detener`. Sleeps while nothing is due.
    void correr();
    /// One turn that does not sleep, for an outer loop; arms the descriptor for the next due timer,
    /// also when a handler throws.
    void atender();
    [[nodiscard]] int descriptor() const { return epoll_; }
    /// Calls `alLlegar` in the loop when one of the signals arrives. At most once per loop.
    void alRecibirSenal(std::span<const int> senales, std::function<void(int)> alLlegar);

    /// Timers of the platform's own. They stand apart, so that the others' places depend on nothing
    /// but the driver.
    [[nodiscard]] ColaDeTemporizadores& propios() { return propios_; }
    /// Where names are looked up; null when the system has no descriptor for it.
    [[nodiscard]] Resolutor* resolutor();
    /// Names are looked up so from the first one on; the system is asked otherwise.
    void resolverCon(ConsultaDeNombre consulta) { consulta_ = std::move(consulta); }

    // For what the loop watches:
    using Registro = std::uint64_t;
    static constexpr Registro kNoRegistrado = static_cast<Registro>(-1);
    /// kNoRegistrado, with errno saying why, when the kernel watches no more descriptors.
    [[nodiscard]] Registro registrar(int descriptor, std::uint32_t sucesos, Atendido& atendido);
    void cambiar(Registro registro, int descriptor, std::uint32_t sucesos);
    void olvidar(Registro registro, int descriptor);
    /// Whether a descriptor that the system gave may be used for a station. The last ones are kept
    /// for clients, logs and settings, without which nobody would come to know.
    [[nodiscard]] static bool alcanzaParaEstaciones(int descriptor);
    /// A socket had to do without a descriptor, if that is what the error says.
    void falto(int error) { faltaron_ += error == EMFILE || error == ENFILE ? 1U : 0U; }
    /// How often that was.
    [[nodiscard]] std::uint64_t faltaronDescriptores() const { return faltaron_; }
    /// A receive buffer that no handler further out on the stack is using.
    [[nodiscard]] std::span<std::uint8_t> memoriaDeRecepcion();
    /// Calls `tarea` once, at the end of the present turn.
    void despuesDeEstaVuelta(std::function<void()> tarea) {
        vuelta_.alFinalUnaVez(std::move(tarea));
    }

    [[nodiscard]] ColaDeTemporizadores& temporizadores() override { return cola_; }

  private:
    struct Puesto {
        Atendido* atendido = nullptr;
        std::uint32_t generacion = 0;
    };
    struct Suceso {
        Registro registro;
        std::uint32_t sucesos;
    };
    class Senales;

    void vuelta(int esperaMs);
    void esperar(int esperaMs);
    void atenderSucesos();
    void ticarVencidos(std::int64_t ahoraUs);
    void crearDespertador();
    void ponerDespertador();
    [[nodiscard]] int esperaHastaElProximo();
    /// Due time of the next timer of either queue, -1 if no timer runs.
    [[nodiscard]] std::int64_t proximoVencimiento();

    RelojReal reloj_;
    ColaDeTemporizadores cola_;
    ColaDeTemporizadores propios_;
    int epoll_ = -1;
    int despertador_ = -1; ///< timerfd, made when the loop sits inside another
    std::int64_t despertadorUs_ = -1;
    std::vector<Puesto> puestos_;
    std::vector<std::uint32_t> libres_;
    std::vector<Suceso> listos_; ///< reported by the kernel and not yet handled: [siguiente_, size)
    std::size_t siguiente_ = 0;
    std::int64_t miradoUs_ = 0; ///< when the kernel was last asked
    std::int64_t cedidoUs_ = 0; ///< what the clock said at the last yield
    std::uint64_t faltaron_ = 0;
    bool detenido_ = false;
    Vuelta vuelta_;
    std::array<std::vector<std::uint8_t>, 2> memoria_;
    std::unique_ptr<Senales> senales_;
    ConsultaDeNombre consulta_;
    std::unique_ptr<Resolutor> resolutor_;
};

} // namespace kv
