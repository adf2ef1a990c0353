// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/bucle_epoll.h"

#include "platform/epoll/resolutor.h"
#include "platform/epoll/zocalo_epoll.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <sys/epoll.h>
#include <sys/resource.h>
#include <sys/signalfd.h>
#include <sys/timerfd.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kMemoria = std::size_t{64} * 1024; // the most that one arrival may bring
constexpr rlim_t kReservados = 64;
constexpr int kSucesosPorMirada = 256;
constexpr std::int64_t kEntreMiradasUs = 1000; // a yield asks the kernel at most once a millisecond
// All blocks of a plant may be due at once: what the network brings does not wait for all of them.
constexpr std::int64_t kEntreTicsUs = 5000;
constexpr int kTicsPorMirada = 16; // at the clock, if nobody else looks at it

[[noreturn]] void fallar(const char* que) {
    throw std::system_error(errno, std::generic_category(), que);
}

} // namespace

std::int64_t RelojReal::monotonicoUs() const {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC, &t);
    return vistoUs_ = std::int64_t{t.tv_sec} * 1'000'000 + t.tv_nsec / 1000;
}

FechaHora RelojReal::ahora() const {
    if (vigente_) return ahora_;
    timespec t{};
    clock_gettime(CLOCK_REALTIME, &t);
    // Time zones change at whole minutes, so the zone's rules are consulted once a minute.
    const std::int64_t minuto = t.tv_sec / 60;
    if (minuto != minutoEpoca_) {
        const time_t segundos = minuto * 60;
        tm local{};
        localtime_r(&segundos, &local);
        minuto_ = {local.tm_year + 1900,
                   local.tm_mon + 1,
                   local.tm_mday,
                   local.tm_hour,
                   local.tm_min,
                   0,
                   0};
        minutoEpoca_ = minuto;
    }
    ahora_ = minuto_;
    ahora_.segundo = static_cast<int>(t.tv_sec % 60);
    ahora_.milisegundo = static_cast<int>(t.tv_nsec / 1'000'000);
    instante_ = empaquetar(ahora_);
    vigente_ = true;
    return ahora_;
}

std::int64_t RelojReal::instante() const {
    if (!vigente_) static_cast<void>(ahora());
    return instante_;
}

class BucleEpoll::Senales final : public Atendido {
  public:
    Senales(BucleEpoll& bucle, std::span<const int> senales, std::function<void(int)> alLlegar)
        : bucle_(bucle), alLlegar_(std::move(alLlegar)) {
        sigset_t conjunto;
        sigemptyset(&conjunto);
        for (const int s : senales)
            sigaddset(&conjunto, s);
        sigprocmask(SIG_BLOCK, &conjunto, nullptr);
        descriptor_ = signalfd(-1, &conjunto, SFD_NONBLOCK | SFD_CLOEXEC);
        if (descriptor_ < 0) fallar("signalfd");
        registro_ = bucle_.registrar(descriptor_, EPOLLIN, *this);
        if (registro_ == kNoRegistrado) fallar("epoll_ctl");
    }
    ~Senales() override {
        bucle_.olvidar(registro_, descriptor_);
        close(descriptor_);
    }
    void alOcurrir(std::uint32_t /*sucesos*/) override {
        signalfd_siginfo info{};
        if (read(descriptor_, &info, sizeof info) == static_cast<ssize_t>(sizeof info))
            alLlegar_(static_cast<int>(info.ssi_signo));
    }

  private:
    BucleEpoll& bucle_;
    std::function<void(int)> alLlegar_;
    int descriptor_ = -1;
    Registro registro_ = 0;
};

BucleEpoll::BucleEpoll()
    : cola_([this] { return reloj_.monotonicoUs(); }),
      propios_([this] { return reloj_.monotonicoUs(); }) {
    epoll_ = epoll_create1(EPOLL_CLOEXEC);
    if (epoll_ < 0) fallar("epoll_create1");
    for (auto& m : memoria_)
        m.resize(kMemoria);
}

BucleEpoll::~BucleEpoll() {
    senales_.reset();
    resolutor_.reset();
    if (despertador_ >= 0) close(despertador_);
    close(epoll_);
}

std::unique_ptr<Zocalo> BucleEpoll::crearZocalo(OyenteDeZocalo& oyente, std::size_t indice) {
    return std::make_unique<ZocaloEpoll>(*this, oyente, indice);
}

void BucleEpoll::alRecibirSenal(std::span<const int> senales, std::function<void(int)> alLlegar) {
    senales_ = std::make_unique<Senales>(*this, senales, std::move(alLlegar));
}

Resolutor* BucleEpoll::resolutor() {
    try {
        if (!resolutor_)
            resolutor_ = std::make_unique<Resolutor>(
                *this, consulta_ ? consulta_ : ConsultaDeNombre(resolverConElSistema));
    } catch (const std::system_error&) { // at the next one, perhaps
    }
    return resolutor_.get();
}

void BucleEpoll::correr() {
    while (!detenido_)
        vuelta(esperaHastaElProximo());
    detenido_ = false;
}

void BucleEpoll::atender() {
    detenido_ = false; // the outer loop decides
    if (despertador_ < 0) crearDespertador();
    try {
        vuelta(0);
    } catch (...) {
        ponerDespertador(); // the outer loop may go on
        throw;
    }
    ponerDespertador();
}

void BucleEpoll::crearDespertador() {
    despertador_ = timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC);
    if (despertador_ < 0) fallar("timerfd_create");
    epoll_event e{};
    e.events = EPOLLIN;
    e.data.u64 = kNoRegistrado; // no slot: it only makes the descriptor readable
    epoll_ctl(epoll_, EPOLL_CTL_ADD, despertador_, &e);
}

void BucleEpoll::ponerDespertador() {
    const std::int64_t proximo = proximoVencimiento();
    if (proximo == despertadorUs_ && proximo > reloj_.monotonicoUs()) return;
    despertadorUs_ = proximo;
    itimerspec cuando{};
    if (proximo >= 0) {
        cuando.it_value.tv_sec = proximo / 1'000'000;
        cuando.it_value.tv_nsec = proximo % 1'000'000 * 1000 + 1; // zero would disarm it
    }
    timerfd_settime(despertador_, TFD_TIMER_ABSTIME, &cuando, nullptr);
}

std::int64_t BucleEpoll::proximoVencimiento() {
    const std::int64_t a = cola_.proximo();
    const std::int64_t b = propios_.proximo();
    return a < 0 || b < 0 ? std::max(a, b) : std::min(a, b);
}

int BucleEpoll::esperaHastaElProximo() {
    const std::int64_t proximo = proximoVencimiento();
    if (proximo < 0) return -1;
    const std::int64_t faltaUs = proximo - reloj_.monotonicoUs();
    if (faltaUs <= 0) return 0;
    return static_cast<int>(std::min<std::int64_t>((faltaUs + 999) / 1000, 3'600'000));
}

void BucleEpoll::vuelta(int esperaMs) {
    {
        const Vuelta::Nivel nivel(vuelta_);
        esperar(esperaMs);
        atenderSucesos();
        ticarVencidos(reloj_.monotonicoUs());
    }
    vuelta_.terminar();
}

void BucleEpoll::dejarCorrerPendientes() {
    if (!vuelta_.admiteOtroNivel()) return;
    const Vuelta::Nivel nivel(vuelta_);
    atenderSucesos();
    // Whoever yields has just looked at the clock, as a rule: to look once more at each of the
    // yields of an exchange would cost more than the yields.
    if (std::exchange(cedidoUs_, reloj_.vistoUs()) == reloj_.vistoUs())
        cedidoUs_ = reloj_.monotonicoUs();
    if (reloj_.vistoUs() - miradoUs_ >= kEntreMiradasUs) {
        esperar(0);
        atenderSucesos();
    }
    ticarVencidos(reloj_.vistoUs());
}

void BucleEpoll::esperar(int esperaMs) {
    std::array<epoll_event, kSucesosPorMirada> sucesos; // NOLINT: filled by the kernel
    int n = epoll_wait(epoll_, sucesos.data(), kSucesosPorMirada, esperaMs);
    // Stopped and continued: what has come meanwhile is looked at before time-outs are counted.
    if (n < 0 && errno == EINTR) n = epoll_wait(epoll_, sucesos.data(), kSucesosPorMirada, 0);
    miradoUs_ = reloj_.monotonicoUs();
    reloj_.caducar();
    if (siguiente_ == listos_.size()) {
        listos_.clear();
        siguiente_ = 0;
    }
    for (int i = 0; i < n; ++i)
        listos_.push_back({sucesos[i].data.u64, sucesos[i].events});
}

void BucleEpoll::atenderSucesos() {
    while (siguiente_ < listos_.size()) {
        const Suceso s = listos_[siguiente_++];
        const auto puesto = static_cast<std::size_t>(s.registro >> 32);
        if (puesto >= puestos_.size()) { // the alarm of an embedded loop
            std::uint64_t veces = 0;
            despertadorUs_ = -1;
            [[maybe_unused]] const auto n = read(despertador_, &veces, sizeof veces);
            continue;
        }
        const Puesto& p = puestos_[puesto];
        // A slot may have changed hands since the kernel's report: then the event has no owner any
        // more.
        if (p.atendido != nullptr && p.generacion == static_cast<std::uint32_t>(s.registro))
            p.atendido->alOcurrir(s.sucesos);
    }
}

void BucleEpoll::ticarVencidos(std::int64_t ahoraUs) {
    for (int tics = 1; !detenido_ && cola_.ticar(ahoraUs); ++tics) {
        if (tics % kTicsPorMirada == 0) static_cast<void>(reloj_.monotonicoUs());
        if (reloj_.vistoUs() - miradoUs_ < kEntreTicsUs) continue;
        esperar(0);
        atenderSucesos();
    }
    while (propios_.ticar(ahoraUs)) {
    }
}

BucleEpoll::Registro BucleEpoll::registrar(int descriptor, std::uint32_t sucesos,
                                           Atendido& atendido) {
    if (libres_.empty()) {
        puestos_.emplace_back();
        libres_.reserve(puestos_.capacity()); // a destructor gives the slot back
        libres_.push_back(static_cast<std::uint32_t>(puestos_.size() - 1));
    }
    const std::uint32_t puesto = libres_.back();
    const Registro registro = Registro{puesto} << 32 | puestos_[puesto].generacion;
    epoll_event e{};
    e.events = sucesos;
    e.data.u64 = registro;
    if (epoll_ctl(epoll_, EPOLL_CTL_ADD, descriptor, &e) != 0) return kNoRegistrado;
    libres_.pop_back();
    puestos_[puesto].atendido = &atendido;
    return registro;
}

void BucleEpoll::cambiar(Registro registro, int descriptor, std::uint32_t sucesos) {
    epoll_event e{};
    e.events = sucesos;
    e.data.u64 = registro;
    epoll_ctl(epoll_, EPOLL_CTL_MOD, descriptor, &e);
}

void BucleEpoll::olvidar(Registro registro, int descriptor) {
    const auto puesto = static_cast<std::uint32_t>(registro >> 32);
    epoll_ctl(epoll_, EPOLL_CTL_DEL, descriptor, nullptr);
    puestos_[puesto].atendido = nullptr;
    ++puestos_[puesto].generacion;
    libres_.push_back(puesto);
}

bool BucleEpoll::alcanzaParaEstaciones(int descriptor) {
    rlimit limite{};
    if (getrlimit(RLIMIT_NOFILE, &limite) != 0 || limite.rlim_cur == RLIM_INFINITY) return true;
    // The lowest free number is given, so one that is near the limit says how many are left.
    return static_cast<rlim_t>(descriptor) <
           limite.rlim_cur - std::min(kReservados, limite.rlim_cur / 4);
}

std::span<std::uint8_t> BucleEpoll::memoriaDeRecepcion() {
    return memoria_[vuelta_.niveles() > 1 ? 1 : 0];
}

} // namespace kv
