#pragma once

#include "platform/epoll/bucle_epoll.h"
#include "platform/zocalo.h"

#include <functional>
#include <poll.h>
#include <string>
#include <string_view>

namespace kv {

/// Gathers what a socket tells, and can be told what to do about it.
class Oyente final : public OyenteDeZocalo {
  public:
    void alConectar(std::size_t /*indice*/) override { suceso += "conectado;"; }
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override {
        const std::string texto(bytes.begin(), bytes.end());
        datos += texto;
        if (alLlegar) alLlegar(indice, texto);
    }
    void alCortarse(std::size_t /*indice*/) override { suceso += "cortado;"; }
    void alPedirConexion(std::size_t /*indice*/, std::string_view /*remoto*/) override {
        suceso += "pedido;";
        if (alPedir) alPedir();
    }
    std::string datos, suceso;
    std::function<void(std::size_t, const std::string&)> alLlegar;
    std::function<void()> alPedir;
};

inline std::span<const std::uint8_t> bytes(std::string_view texto) {
    return {reinterpret_cast<const std::uint8_t*>(texto.data()), texto.size()}; // NOLINT
}

inline void esperar(BucleEpoll& bucle) {
    pollfd p{bucle.descriptor(), POLLIN, 0};
    poll(&p, 1, -1);
}

/// Turns a real loop inside another one until `listo` says so; a test that never gets there fails
/// by its time limit.
template <class F>
void atenderHasta(BucleEpoll& bucle, F listo) {
    for (bucle.atender(); !listo(); bucle.atender())
        esperar(bucle);
}

} // namespace kv
