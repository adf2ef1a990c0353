// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ClienteKV2200/enlace.h"
#include "ClienteKV2200/lector.h"
#include "ClienteKV2200/linea_de_orden.h"
#include "ClienteKV2200/salida.h"
#include "platform/epoll/bucle_epoll.h"

#include <iosfwd>
#include <memory>
#include <set>
#include <string>

namespace kv::cliente {

/// One order carried out with a driver: connects (again and again for a while, because a driver
/// listens a moment after its last client only), logs in, asks, tells what came, and ends the loop.
/// To watch never ends by itself: a driver that cannot be reached is reported, and tried again.
class Conversacion final : private OyenteDeZocalo {
  public:
    /// `terminal`: `salida` is one, on which a table may be redrawn. All must outlive this.
    Conversacion(BucleEpoll& bucle, const Orden& orden, std::ostream& salida, std::ostream& errores,
                 bool terminal);
    /// Runs the loop to the end of the order; the exit code.
    [[nodiscard]] int correr();

  private:
    void alConectar(std::size_t indice) override;
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override;
    void alCortarse(std::size_t indice) override;

    // The link and the login (conversacion.cpp).
    void conectar();
    void identificarse();
    void alVencer();
    void alLatir();
    void perder(const std::string& porque, std::int64_t reintentoMs);
    void enviar(std::string_view bytes);
    void esperar(double segundos);
    void decirError(const std::string& texto, const Variable& v = {});
    void fallar(const std::string& que);
    void terminar(int codigo);
    void volcar();

    // What was asked for, and what comes (conversacion_orden.cpp).
    void empezar();
    void vencerOrden();
    void atender(const Mensaje& m);
    void atenderDatos(const Mensaje& m);
    void alEco();
    void leerSiguiente();
    void alSaber(const Variable& v);
    void alLeer(const Variable& v);
    void alConfirmar(const Variable& v);
    void mostrar(const Variable& v);
    void terminarLectura();
    void preguntar();
    void alTerminarSincronismo();
    void mostrarCambios(const std::vector<std::size_t>& filas);
    void dibujar();
    [[nodiscard]] Variable pedida() const;
    [[nodiscard]] std::string leida() const;
    [[nodiscard]] std::string hora() const;

    BucleEpoll& bucle_;
    const Orden& orden_;
    std::ostream& salida_;
    std::ostream& errores_;
    bool terminal_;
    Lector lector_;
    Tabla tabla_;
    std::vector<Variable> sincronismo_; ///< since the last one ended
    Enlace enlace_;
    std::unique_ptr<Temporizador> limite_;
    std::unique_ptr<Temporizador> reintento_;
    std::unique_ptr<Temporizador> latido_;
    std::unique_ptr<Temporizador> fin_;
    std::unique_ptr<Temporizador> dibujo_;
    bool conectado_ = false;
    bool identificado_ = false;
    bool servido_ = false;         ///< a driver has answered to a watch
    bool callado_ = false;         ///< nothing came since it was asked whether it is there
    bool escrita_ = false;         ///< the driver has the write
    int claves_ = 0;               ///< passwords sent on this link
    std::size_t leyendo_ = 0;      ///< address that is being read
    bool esperaValor_ = false;     ///< the driver did not know the address and asks its station now
    Variable ultima_;              ///< what the driver last sent of it, not what is waited for
    std::string aviso_;            ///< why there is no driver just now
    std::set<std::string> dichos_; ///< reasons that were printed since there was a driver
    bool sucia_ = false;           ///< the table changed since it was drawn
    bool terminada_ = false;
    int codigo_ = kHecho;
};

} // namespace kv::cliente
