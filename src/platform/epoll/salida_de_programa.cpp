// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/salida_de_programa.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kv {
namespace {

/// Starts it with its standard output in `salida`; 0 when that cannot be.
pid_t empezar(std::vector<std::string>& argumentos, int salida) {
    std::vector<char*> argv;
    argv.reserve(argumentos.size() + 1);
    for (std::string& a : argumentos)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t acciones;
    posix_spawn_file_actions_init(&acciones);
    posix_spawn_file_actions_adddup2(&acciones, salida, STDOUT_FILENO);
    pid_t hijo = 0;
    const bool mal = posix_spawn(&hijo, argv[0], &acciones, nullptr, argv.data(), environ) != 0;
    posix_spawn_file_actions_destroy(&acciones);
    return mal ? 0 : hijo;
}

/// All that comes until the other end is closed; nothing when it is too much.
std::optional<std::string> leerTodo(int tubo, std::size_t maximo) {
    std::string todo;
    std::array<char, 65536> trozo; // NOLINT: filled by read
    for (;;) {
        const ssize_t n = read(tubo, trozo.data(), trozo.size());
        if (n < 0 && errno == EINTR) continue;
        if (n < 0 || todo.size() + static_cast<std::size_t>(n) > maximo) return std::nullopt;
        if (n == 0) return todo;
        todo.append(trozo.data(), static_cast<std::size_t>(n));
    }
}

} // namespace

std::optional<std::string> salidaDePrograma(std::vector<std::string> argumentos,
                                            std::size_t maximo) {
    std::array<int, 2> tubo{};
    if (argumentos.empty() || pipe2(tubo.data(), O_CLOEXEC) != 0) return std::nullopt;
    const pid_t hijo = empezar(argumentos, tubo[1]);
    close(tubo[1]);
    std::optional<std::string> salida;
    if (hijo > 0) salida = leerTodo(tubo[0], maximo);
    close(tubo[0]);
    if (hijo <= 0) return std::nullopt;
    if (!salida) kill(hijo, SIGKILL);
    int estado = 0;
    while (waitpid(hijo, &estado, 0) < 0 && errno == EINTR) {
    }
    if (!WIFEXITED(estado) || WEXITSTATUS(estado) != 0) return std::nullopt;
    return salida;
}

} // namespace kv
