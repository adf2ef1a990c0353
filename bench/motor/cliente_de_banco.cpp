// SPDX-License-Identifier: Apache-2.0
#include "cliente_de_banco.h"

#include "server/cifrado.h"
#include "server/mensajes.h"

#include <csignal>
#include <ctime>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace kv::banco {
namespace {

constexpr std::size_t kLlegada = std::size_t{60} * 1024;

void dormirMs(int ms) { poll(nullptr, 0, ms); }

std::string clave() {
    const std::time_t ahora = std::time(nullptr);
    std::tm local{};
    localtime_r(&ahora, &local);
    char hora[16];
    std::strftime(hora, sizeof hora, "%Y%m%d%H", &local);
    double u = 0;
    return cifrar(textoDeClave(hora), [&u] { return u = u > 0.9 ? 0 : u + 0.07; });
}

std::string repetida(std::string_view parte) {
    std::string s;
    while (s.size() + parte.size() <= kLlegada)
        s += parte;
    return s;
}

/// What the client sends without end.
std::string llegada(Conducta conducta) {
    if (conducta == Conducta::Basura) return repetida("[Write][/Wri;Read;SINKxx[[;;");
    if (conducta == Conducta::Goteo) return "[Write]1.1.10;";
    std::string s;
    if (conducta == Conducta::Anidadas) {
        const std::string larga = "[Write]" + std::string(kLlegada / 4, 'a') + "[/Write]";
        s = larga;
        while (s.size() + 40 < kLlegada)
            s += "[Write]b[Write]" + std::to_string(s.size() % 97) + "[/Write]c[/Write]";
    }
    for (int i = 0; conducta == Conducta::Negadas && s.size() + 40 < kLlegada; ++i)
        s += "[Write]1.1." + std::to_string(50000 + i) + ";1[/Write]";
    for (int i = 0; conducta == Conducta::Escrituras && s.size() + 40 < kLlegada; ++i)
        s += "[Write]1.1.10;" + std::to_string(i) + "[/Write]";
    return s;
}

bool mandar(int d, std::string_view bytes) {
    return send(d, bytes.data(), bytes.size(), MSG_NOSIGNAL) > 0;
}

void leerTodo(int d) {
    std::vector<char> memoria(1U << 20);
    for (;;) {
        const ssize_t n = read(d, memoria.data(), memoria.size());
        if (n <= 0) return;
        const std::string_view texto(memoria.data(), static_cast<std::size_t>(n));
        if (texto.find(kKeepAliveDelDriver) != std::string_view::npos)
            mandar(d, kKeepAliveDelDriver);
    }
}

void portarse(int d, Conducta conducta) {
    mandar(d, clave());
    if (conducta == Conducta::Lee) return leerTodo(d);
    dormirMs(50); // the login is an arrival of its own
    if (conducta == Conducta::NoLee) {
        while (mandar(d, kSincronizar))
            dormirMs(100);
        return;
    }
    const std::string bytes = llegada(conducta);
    if (conducta == Conducta::Goteo) {
        for (std::size_t i = 0; mandar(d, std::string_view(bytes).substr(i % bytes.size(), 1)); ++i)
            dormirMs(1);
        return;
    }
    while (mandar(d, bytes)) {
        std::vector<char> memoria(1U << 16);
        while (recv(d, memoria.data(), memoria.size(), MSG_DONTWAIT) > 0) {
        }
    }
}

[[noreturn]] void vivir(std::uint16_t puerto, Conducta conducta) {
    for (;;) {
        const int d = socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(puerto);
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const int si = 1;
        setsockopt(d, IPPROTO_TCP, TCP_NODELAY, &si, sizeof si);
        const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
        if (connect(d, generica, sizeof a) == 0 && conducta != Conducta::VaYViene)
            portarse(d, conducta);
        close(d);
        dormirMs(conducta == Conducta::VaYViene ? 1 : 100);
    }
}

} // namespace

ClienteDeBanco::ClienteDeBanco(std::uint16_t puerto, Conducta conducta) {
    hijo_ = fork();
    if (hijo_ == 0) vivir(puerto, conducta);
}

ClienteDeBanco::~ClienteDeBanco() {
    kill(hijo_, SIGKILL);
    waitpid(hijo_, nullptr, 0);
}

} // namespace kv::banco
