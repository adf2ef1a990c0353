#pragma once

#include "ClienteKV2200/lector.h"
#include "ClienteKV2200/orden.h"
#include "ClienteKV2200/salida.h"
#include "platform/epoll/bucle_epoll.h"

#include <iosfwd>
#include <memory>
#include <string>

namespace kv::cliente {

/// One order carried out with a driver: connects (again and again for a while, because a driver
/// listens a moment after its last client only), logs in, asks, tells what came, and ends the loop.
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

    void conectar();
    void identificarse();
    void empezar();
    void leerSiguiente();
    void alVencer();
    void atender(const Mensaje& m);
    void atenderDatos(const Mensaje& m);
    void alEco();
    void mostrarCambios(const std::vector<std::size_t>& filas);
    void dibujar();
    void enviar(std::string_view bytes);
    void esperar(double segundos);
    void fallar(const std::string& que);
    void terminar(int codigo);

    BucleEpoll& bucle_;
    const Orden& orden_;
    std::ostream& salida_;
    std::ostream& errores_;
    bool terminal_;
    Lector lector_;
    Tabla tabla_;
    std::vector<Variable> sincronismo_; ///< since the last one ended
    std::unique_ptr<Zocalo> zocalo_;
    std::unique_ptr<Temporizador> limite_;
    std::unique_ptr<Temporizador> reintento_;
    std::unique_ptr<Temporizador> fin_;
    std::unique_ptr<Temporizador> dibujo_;
    bool conectado_ = false;
    bool identificado_ = false;
    int claves_ = 0;          ///< passwords sent
    std::size_t leyendo_ = 0; ///< address that is being read
    bool leida_ = false;      ///< its value came
    bool sucia_ = false;      ///< the table changed since it was drawn
    int codigo_ = kHecho;
};

} // namespace kv::cliente
