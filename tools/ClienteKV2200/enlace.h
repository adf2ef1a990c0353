// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/tabla_de_ajustes.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/zocalo.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace kv::cliente {

/// Where a driver listens: a name or address without brackets, and a TCP port.
struct Servidor {
    std::string nombre = "127.0.0.1";
    std::uint16_t puerto = static_cast<std::uint16_t>(kPuertoEscucha.porDefecto);
    /// As it is typed: an IPv6 address in brackets.
    [[nodiscard]] std::string texto() const;
};

/// The link to a driver. A name is looked up anew at every attempt, beside the loop, which goes on
/// meanwhile; its addresses are tried one after the other. Calls `oyente`, always with index 0,
/// when it is up, for what arrives, and when it ended or could not be made.
class Enlace final : private Atendido {
  public:
    Enlace(BucleEpoll& bucle, OyenteDeZocalo& oyente);
    ~Enlace() override;
    Enlace(const Enlace&) = delete;
    Enlace& operator=(const Enlace&) = delete;

    /// Closes what was open and tries again from the beginning.
    void conectar(const Servidor& servidor);
    void cerrar();
    /// Messages are short: a driver that does not even take them has ended the link.
    void enviar(std::string_view bytes);
    /// Why the last attempt, or the link, failed; in Spanish. Empty when the driver closed it.
    [[nodiscard]] const std::string& motivo() const { return motivo_; }

  private:
    struct Consulta;
    enum class Estado : std::uint8_t { Cerrado, Buscando, Conectando, Conectado };

    void alOcurrir(std::uint32_t sucesos) override;
    void alSaberDirecciones();
    void probarSiguiente();
    void terminarConexion();
    void recibir();
    void vigilar(int descriptor, Estado estado, std::uint32_t sucesos);
    void soltar();

    BucleEpoll& bucle_;
    OyenteDeZocalo& oyente_;
    Estado estado_ = Estado::Cerrado;
    int descriptor_ = -1;
    BucleEpoll::Registro registro_ = 0;
    std::shared_ptr<Consulta> consulta_; ///< the addresses, and how many of them were tried
    std::unique_ptr<Temporizador> paciencia_;
    std::string motivo_;
};

} // namespace kv::cliente
