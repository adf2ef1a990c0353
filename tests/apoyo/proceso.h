// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kv {

/// A program that runs beside the test. What it prints is read line by line, and nothing is waited
/// for longer than the deadline, which is there to fail a test that would hang and long enough
/// never to fail another. Killed at the end if it still runs, also when the test itself dies.
///
/// No test that runs one can go on for ever, whatever it waits for: the test program is ended by an
/// alarm when it has started no program for kLimite and still has some, and a program that prints
/// without end is killed.
class Proceso {
  public:
    static constexpr std::chrono::seconds kPlazo{120};
    static constexpr std::chrono::seconds kLimite{600};
    static constexpr std::size_t kMasTexto = std::size_t{256} << 20;
    static constexpr int kNoTermino = -2;

    explicit Proceso(std::vector<std::string> argumentos) {
        ++cuantos_;
        alarm(static_cast<unsigned>(kLimite.count()));
        std::array<std::array<int, 2>, 2> tubos{};
        for (auto& t : tubos) {
            if (pipe2(t.data(), O_CLOEXEC) != 0) return;
        }
        pid_ = fork();
        if (pid_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            dup2(tubos[0][1], STDOUT_FILENO);
            dup2(tubos[1][1], STDERR_FILENO);
            std::vector<char*> argv;
            for (std::string& a : argumentos)
                argv.push_back(a.data());
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
        for (std::size_t i = 0; i < tubos.size(); ++i) {
            close(tubos[i][1]);
            lados_[i].tubo = tubos[i][0];
        }
    }
    ~Proceso() {
        if (pid_ > 0) matar();
        for (Lado& l : lados_)
            cerrar(l);
        if (--cuantos_ == 0) alarm(0);
    }
    Proceso(const Proceso&) = delete;
    Proceso& operator=(const Proceso&) = delete;

    /// The next line that the program prints; empty when it prints no more.
    std::string linea() {
        std::string& leido = lados_[0].leido;
        const Momento hasta = Reloj::now() + kPlazo;
        std::size_t fin = 0;
        while ((fin = leido.find('\n')) == std::string::npos) {
            if (!leer(hasta)) return std::exchange(leido, {});
        }
        std::string l = leido.substr(0, fin);
        leido.erase(0, fin + 1);
        return l;
    }
    /// The next line that has `parte` in it, those before it being dropped; empty when no such line
    /// comes.
    std::string lineaCon(std::string_view parte) {
        const Momento hasta = Reloj::now() + kPlazo;
        while (Reloj::now() < hasta) {
            std::string l = linea();
            if (l.empty() && lados_[0].tubo < 0) break;
            if (l.find(parte) != std::string::npos) return l;
        }
        return {};
    }
    /// All that is still to be printed, until the program ends.
    std::string resto() {
        const Momento hasta = Reloj::now() + kPlazo;
        while (leer(hasta)) {
        }
        return std::exchange(lados_[0].leido, {});
    }
    /// -1 once it has ended.
    [[nodiscard]] pid_t pid() const { return pid_; }
    /// What it has printed on standard error until now; after `resto` or `terminar`, all of it.
    [[nodiscard]] const std::string& errores() const { return lados_[1].leido; }

    /// Sends the signal, if it is not 0, and waits for the end. The exit code; -1 when a signal
    /// ended it, kNoTermino when it had to be killed.
    int terminar(int senal = 0) {
        kill(pid_, senal);
        // Both pipes are closed by the end of the program; until then its output must be taken.
        const Momento hasta = Reloj::now() + kPlazo;
        while (leer(hasta)) {
        }
        if (Reloj::now() >= hasta) {
            matar();
            return kNoTermino;
        }
        int estado = 0;
        waitpid(std::exchange(pid_, -1), &estado, 0);
        return WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
    }

  private:
    using Reloj = std::chrono::steady_clock;
    using Momento = Reloj::time_point;
    struct Lado {
        int tubo = -1;
        std::string leido;
    };

    static void cerrar(Lado& l) {
        if (l.tubo >= 0) close(std::exchange(l.tubo, -1));
    }
    void matar() {
        kill(pid_, SIGKILL);
        waitpid(std::exchange(pid_, -1), nullptr, 0);
    }
    /// Takes what there is, waiting for it until `hasta`; false at the deadline or when both pipes
    /// have ended.
    bool leer(Momento hasta) {
        const auto faltan =
            std::chrono::duration_cast<std::chrono::milliseconds>(hasta - Reloj::now()).count();
        std::array<pollfd, 2> d{};
        for (std::size_t i = 0; i < d.size(); ++i)
            d[i] = {lados_[i].tubo, POLLIN, 0};
        if ((d[0].fd < 0 && d[1].fd < 0) || faltan <= 0) return false;
        if (::poll(d.data(), d.size(), static_cast<int>(faltan)) <= 0) return false;
        for (std::size_t i = 0; i < d.size(); ++i) {
            if (d[i].revents == 0) continue;
            std::array<char, 65536> trozo; // NOLINT: filled by read
            const ssize_t n = read(d[i].fd, trozo.data(), trozo.size());
            if (n <= 0) cerrar(lados_[i]);
            if (n <= 0 || lados_[i].leido.size() > kMasTexto) continue;
            lados_[i].leido.append(trozo.data(), static_cast<std::size_t>(n));
            if (lados_[i].leido.size() > kMasTexto && pid_ > 0) kill(pid_, SIGKILL);
        }
        return true;
    }

    static inline int cuantos_ = 0;
    pid_t pid_ = -1;
    std::array<Lado, 2> lados_;
};

} // namespace kv
