// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archivos.h"
#include "platform/bucle.h"
#include "platform/procesos.h"
#include "platform/vuelta.h"
#include "recording/cinta.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace kv {

class ZocaloReproducido;

/// A loop that gives a driver again what a recording holds, call by call and answer by answer, with
/// the clocks as they were. It opens no socket and waits for nothing.
class Reproductor final : public Bucle {
  public:
    /// The recording must outlive this. Throws CintaMala, as does everything below, when the
    /// recording makes no sense or the driver's next question is not the one it recorded.
    explicit Reproductor(CintaLeida& cinta);

    [[nodiscard]] const Reloj& reloj() const override { return reloj_; }
    [[nodiscard]] std::unique_ptr<Zocalo> crearZocalo(OyenteDeZocalo& oyente,
                                                      std::size_t indice) override;
    void dejarCorrerPendientes() override;
    void alFinalDeVuelta(std::function<void()> tarea) override {
        vuelta_.alFinalSiempre(std::move(tarea));
    }
    void detener() override { detenido_ = true; }
    [[nodiscard]] ColaDeTemporizadores& temporizadores() override { return cola_; }

    /// The driver's start begins: from now on what it asks is on the tape.
    void empezar() { trabaja_ = true; }
    /// Plays to the end, or until the driver stops the loop. False when the recording was cut off
    /// in the middle of an entry.
    bool correr();
    /// Called with what the operator asked for.
    void alOrdenar(std::function<void(std::string_view)> tarea) { orden_ = std::move(tarea); }

    // For what asks:
    /// Whether the next answer is for this question; then its parts follow on the tape.
    [[nodiscard]] bool toca(Entrada e);
    [[nodiscard]] CintaLeida& cinta() { return cinta_; }
    /// Throws CintaMala: the driver does not do what was recorded.
    [[noreturn]] void noCorresponde(const std::string& que) const;
    void olvidar(std::uint64_t zocalo) { zocalos_.erase(zocalo); }

  private:
    class RelojReproducido final : public Reloj {
      public:
        explicit RelojReproducido(Reproductor& r) : r_(r) {}
        [[nodiscard]] std::int64_t monotonicoUs() const override { return r_.mirarReloj(); }
        [[nodiscard]] FechaHora ahora() const override { return r_.mirarCalendario(); }

      private:
        Reproductor& r_;
    };
    [[nodiscard]] std::int64_t mirarReloj();
    [[nodiscard]] FechaHora mirarCalendario();
    void pasar(std::uint64_t us);
    /// One call from outside.
    void llamar();
    void entregar(Entrada e);
    void llamarZocalo(Entrada e, ZocaloReproducido& z);

    CintaLeida& cinta_;
    RelojReproducido reloj_{*this};
    std::int64_t us_ = 0;
    std::int64_t adelantoUs_ = 0;
    ColaDeTemporizadores cola_;
    std::uint64_t preguntas_ = 0; ///< since the entry before
    std::uint64_t faltan_ = 0;    ///< questions until the answer on the tape, 0 if not known
    std::uint64_t creados_ = 0;
    std::map<std::uint64_t, ZocaloReproducido*> zocalos_;
    Vuelta vuelta_; ///< a level for each yield
    std::function<void(std::string_view)> orden_;
    bool trabaja_ = false;
    bool enLlamada_ = false; ///< not at the end of a turn
    bool detenido_ = false;
};

/// The files of the recording. What is written goes nowhere.
class ArchivosReproducidos final : public Archivos {
  public:
    explicit ArchivosReproducidos(Reproductor& reproductor) : reproductor_(reproductor) {}
    [[nodiscard]] bool existe(const std::string& ruta) override;
    [[nodiscard]] HuellaDeArchivo huella(const std::string& ruta) override;
    [[nodiscard]] std::optional<std::string> leer(const std::string& ruta,
                                                  std::size_t maximo) override;
    bool reemplazar(const std::string& /*ruta*/, std::string_view /*contenido*/) override {
        return escrito();
    }
    bool agregar(const std::string& /*ruta*/, std::string_view /*contenido*/) override {
        return escrito();
    }
    bool crearCarpeta(const std::string& /*ruta*/) override { return escrito(); }

  private:
    bool escrito() { return !reproductor_.toca(Entrada::NoEscrito); }
    /// Whether the next answer is for this question about `ruta`.
    bool toca(Entrada e, const std::string& ruta);

    Reproductor& reproductor_;
    std::map<std::string, bool> existe_;
    std::map<std::string, HuellaDeArchivo> huellas_;
    std::map<std::pair<std::string, std::size_t>, std::optional<std::string>> contenidos_;
};

/// Nobody else runs where a recording is played.
class ProcesosReproducidos final : public Procesos {
  public:
    [[nodiscard]] bool tomarCarpeta(const std::string& /*carpeta*/) override { return true; }
};

} // namespace kv
