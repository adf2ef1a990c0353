// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apoyo/proceso.h"

#include "apoyo/carpeta.h"
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

/// A client's end of a link.
class Enlace {
  public:
    explicit Enlace(int puerto) : descriptor_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_port = htons(static_cast<std::uint16_t>(puerto));
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const timeval plazo{Proceso::kPlazo.count(), 0};
        setsockopt(descriptor_, SOL_SOCKET, SO_RCVTIMEO, &plazo, sizeof plazo);
        const auto* generica = reinterpret_cast<const sockaddr*>(&a); // NOLINT
        vivo_ = connect(descriptor_, generica, sizeof a) == 0;
    }
    ~Enlace() { close(descriptor_); }
    Enlace(const Enlace&) = delete;
    Enlace& operator=(const Enlace&) = delete;

    /// Sends, and takes what comes until the answer is in it; false when the link ends before.
    bool decir(const std::string& que, const std::string& espera) {
        vivo_ = vivo_ && send(descriptor_, que.data(), que.size(), MSG_NOSIGNAL) > 0;
        std::array<char, 4096> memoria{};
        while (vivo_ && recibido_.find(espera) == std::string::npos) {
            const ssize_t n = recv(descriptor_, memoria.data(), memoria.size(), 0);
            vivo_ = n > 0;
            if (vivo_) recibido_.append(memoria.data(), static_cast<std::size_t>(n));
        }
        return vivo_;
    }

  private:
    int descriptor_;
    bool vivo_ = false;
    std::string recibido_;
};

/// A client's whole visit: it identifies itself, asks, and stays until the answer has come. False
/// when it was let down.
inline bool visitar(int puerto, const std::string& pedido, const std::string& respuesta) {
    Enlace cliente(puerto);
    return cliente.decir(claveDeAhora(), "PassOK") && cliente.decir(pedido, respuesta);
}

/// 9 for every digit: what two runs wrote compares.
inline std::string sinFechas(std::string texto) {
    for (char& c : texto) {
        if (c >= '0' && c <= '9') c = '9';
    }
    return texto;
}

/// The log and audit files of a driver by name, without their dates.
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
