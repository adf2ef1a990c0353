#pragma once

#include "extremo/programas.h"

#include "platform/epoll/bucle_epoll.h"
#include "server/cifrado.h"

#include <arpa/inet.h>
#include <cstdlib>
#include <map>

namespace kv::fallas {

/// A command line under faults (see interposicion.cpp for what they say).
inline std::vector<std::string> conFallas(const std::vector<std::string>& orden,
                                          const std::string& fallas,
                                          const std::string& cuenta = "/dev/null") {
    std::vector<std::string> toda{"/usr/bin/env", "LD_PRELOAD=" KV_INTERPOSICION,
                                  "ASAN_OPTIONS=verify_asan_link_order=0", "KV_FALLAS=" + fallas,
                                  "KV_CUENTA=" + cuenta};
    toda.insert(toda.end(), orden.begin(), orden.end());
    return toda;
}

/// The numbers from 1 to `total` to be tried: `cuantos` of them spread evenly, or with KV_TODO set
/// in the environment every one.
inline std::vector<long> muestras(long total, long cuantos) {
    if (std::getenv("KV_TODO") != nullptr) cuantos = total;
    std::vector<long> n;
    for (long k = 0; k < std::min(cuantos, total); ++k)
        n.push_back(1 + k * total / std::min(cuantos, total));
    return n;
}

inline std::string claveDeAhora() {
    return cifrar(textoDeClave(formatoDeHora(RelojReal().ahora())), [] { return 0.5; });
}

/// A client's whole visit: it identifies itself, and asks for `pedido` until `respuesta` has come.
/// False when it was let down.
inline bool visitar(int puerto, const std::string& pedido, const std::string& respuesta) {
    const int d = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_port = htons(static_cast<std::uint16_t>(puerto));
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    const timeval plazo{Proceso::kPlazo.count(), 0};
    setsockopt(d, SOL_SOCKET, SO_RCVTIMEO, &plazo, sizeof plazo);
    const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
    bool bien = connect(d, generica, sizeof a) == 0;
    std::string recibido;
    const auto decir = [&](const std::string& que, const std::string& espera) {
        bien = bien && send(d, que.data(), que.size(), MSG_NOSIGNAL) > 0;
        std::array<char, 4096> memoria{};
        while (bien && recibido.find(espera) == std::string::npos) {
            const ssize_t n = recv(d, memoria.data(), memoria.size(), 0);
            bien = n > 0;
            if (bien) recibido.append(memoria.data(), static_cast<std::size_t>(n));
        }
    };
    decir(claveDeAhora(), "PassOK");
    decir(pedido, respuesta);
    close(d);
    return bien;
}

/// The log and audit files of a driver by name, with 9 for every digit of their date stamps.
inline std::string sinFechas(std::string texto) {
    for (char& c : texto) {
        if (c >= '0' && c <= '9') c = '9';
    }
    return texto;
}

inline std::map<std::string, std::string> registrosDe(const Carpeta& casa) {
    std::map<std::string, std::string> todos;
    std::error_code error;
    for (const auto& e : std::filesystem::directory_iterator(casa.ruta() + "/LOGS_DRIVER", error)) {
        const std::string nombre = e.path().filename().string();
        todos[sinFechas(nombre)] += sinFechas(casa.leer("LOGS_DRIVER/" + nombre));
    }
    return todos;
}

} // namespace kv::fallas
