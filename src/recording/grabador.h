// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archivos.h"
#include "platform/bucle.h"
#include "recording/cinta.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kv {

/// A loop that writes down what comes in through it. The driver runs on it as it would on the one
/// that is wrapped, but for the clocks: they move at calls from outside, and inside a handler by
/// steps of at least `kPasoUs`, so that not every look at them is an entry. What is asked while the
/// driver is not at work, as by a window, is answered and not recorded.
///
/// Once a second at most, what was gathered goes to the file: a driver that dies in a handler takes
/// along what came since.
class Grabador final : public Bucle {
  public:
    static constexpr std::int64_t kPasoUs = 5000;

    /// Both must outlive the recorder; the tape may hold what its maker wants to know again.
    Grabador(Bucle& bucle, CintaEscrita& cinta);
    ~Grabador() override;
    Grabador(const Grabador&) = delete;
    Grabador& operator=(const Grabador&) = delete;

    [[nodiscard]] const Reloj& reloj() const override { return reloj_; }
    [[nodiscard]] std::unique_ptr<Zocalo> crearZocalo(OyenteDeZocalo& oyente,
                                                      std::size_t indice) override;
    void dejarCorrerPendientes() override;
    void alFinalDeVuelta(std::function<void()> tarea) override;
    void detener() override { bucle_.detener(); }
    [[nodiscard]] ColaDeTemporizadores& temporizadores() override {
        return bucle_.temporizadores();
    }

    /// The driver is at work from now on, until `terminarTramo` or the end of a turn: its start.
    void empezarTramo() { trabaja_ = true; }
    void terminarTramo() { trabaja_ = false; }
    /// The same, for an order of the operator.
    void empezarOrden(std::string_view orden);

    // For what is wrapped:
    /// Begins the entry of a call from outside.
    CintaEscrita& llamada(Entrada e);
    /// The number that a socket which is made now has in the recording.
    [[nodiscard]] std::uint64_t numerarZocalo() { return zocalos_++; }
    /// Counts a question, the entry of whose answer is begun by `respuesta`; false when it is not a
    /// question of the driver.
    bool preguntar() {
        preguntas_ += trabaja_ ? 1U : 0U;
        return trabaja_;
    }
    CintaEscrita& respuesta(Entrada e);
    /// Ends an entry.
    void cerrar();

  private:
    class RelojGrabado final : public Reloj {
      public:
        explicit RelojGrabado(Grabador& g) : g_(g) {}
        [[nodiscard]] std::int64_t monotonicoUs() const override { return g_.mirarReloj(); }
        [[nodiscard]] FechaHora ahora() const override { return g_.mirarCalendario(); }

      private:
        Grabador& g_;
    };
    [[nodiscard]] std::int64_t mirarReloj();
    [[nodiscard]] FechaHora mirarCalendario();
    void terminarVuelta();

    Bucle& bucle_;
    CintaEscrita& cinta_;
    RelojGrabado reloj_{*this};
    std::int64_t us_;             ///< the clock as the driver last saw it
    std::int64_t adelantoUs_ = 0; ///< of the calendar over the clock
    std::uint64_t preguntas_ = 0; ///< since the entry before
    std::uint64_t zocalos_ = 0;
    std::int64_t volcadoUs_ = 0;
    bool enPendientes_ = false; ///< letting events run, and nothing came so far
    bool huboLlamadas_ = false; ///< in this turn
    bool trabaja_ = false;      ///< what is asked is asked by the driver
    std::vector<std::function<void()>> tareas_;
};

/// Files whose answers are written down when they differ from the last ones.
class ArchivosGrabados final : public Archivos {
  public:
    ArchivosGrabados(Archivos& archivos, Grabador& grabador)
        : archivos_(archivos), grabador_(grabador) {}
    [[nodiscard]] bool existe(const std::string& ruta) override;
    [[nodiscard]] HuellaDeArchivo huella(const std::string& ruta) override;
    [[nodiscard]] std::optional<std::string> leer(const std::string& ruta,
                                                  std::size_t maximo) override;
    bool reemplazar(const std::string& ruta, std::string_view contenido) override;
    bool agregar(const std::string& ruta, std::string_view contenido) override;
    bool crearCarpeta(const std::string& ruta) override;

  private:
    bool escrito(bool bien);

    Archivos& archivos_;
    Grabador& grabador_;
    std::map<std::string, bool> existe_;
    std::map<std::string, HuellaDeArchivo> huellas_;
    std::map<std::pair<std::string, std::size_t>, std::optional<std::string>> contenidos_;
};

/// The calendar as microseconds since 1970, in its own time zone.
[[nodiscard]] std::int64_t calendarioUs(const FechaHora& f);
[[nodiscard]] FechaHora calendarioDesdeUs(std::int64_t us);

} // namespace kv
