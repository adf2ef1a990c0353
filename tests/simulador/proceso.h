#pragma once

#include <csignal>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace kv::simulador {

/// A program that runs beside the test and prints to it. Killed at the end if it still runs.
class Proceso {
  public:
    explicit Proceso(std::vector<std::string> argumentos) {
        int tubo[2] = {-1, -1};
        if (pipe(tubo) != 0) return;
        pid_ = fork();
        if (pid_ == 0) {
            dup2(tubo[1], STDOUT_FILENO);
            close(tubo[0]);
            close(tubo[1]);
            std::vector<char*> argv;
            for (std::string& a : argumentos)
                argv.push_back(a.data());
            argv.push_back(nullptr);
            execv(argv[0], argv.data());
            _exit(127);
        }
        close(tubo[1]);
        salida_ = tubo[0];
    }
    ~Proceso() {
        if (pid_ > 0) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        close(salida_);
    }
    Proceso(const Proceso&) = delete;
    Proceso& operator=(const Proceso&) = delete;

    /// The next line that the program prints; empty when it prints no more.
    std::string linea() {
        std::size_t fin = 0;
        while ((fin = leido_.find('\n')) == std::string::npos) {
            char trozo[4096];
            const ssize_t n = read(salida_, trozo, sizeof trozo);
            if (n <= 0) return std::exchange(leido_, {});
            leido_.append(trozo, static_cast<std::size_t>(n));
        }
        std::string l = leido_.substr(0, fin);
        leido_.erase(0, fin + 1);
        return l;
    }
    /// Sends the signal and waits for the end; the exit code, or -1 when a signal ended it.
    int terminar(int senal) {
        kill(pid_, senal);
        int estado = 0;
        waitpid(std::exchange(pid_, -1), &estado, 0);
        return WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
    }

  private:
    pid_t pid_ = -1;
    int salida_ = -1;
    std::string leido_;
};

} // namespace kv::simulador
