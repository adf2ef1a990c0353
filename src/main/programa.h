// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/problema.h"
#include "engine/arranque.h"
#include "engine/motor.h"
#include "main/grabacion.h"
#include "main/salida_de_traza.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/diario_real.h"
#include "platform/epoll/servicio.h"
#include "platform/epoll/sistema.h"

#include <functional>
#include <optional>
#include <string>

namespace kv {

inline constexpr int kOrdenado = 0;
inline constexpr int kYaCorre = 1;
/// No exit code: the program is to be started once more in its own place.
inline constexpr int kDeNuevo = -1;

struct Opciones {
    std::string carpeta = carpetaDelPrograma();
    bool sinVentana = false;
    bool traza = false;
    bool comprobar = false;
    bool alcanzar = false; ///< with `comprobar`, as the next
    bool json = false;
    std::string exportar;     ///< table to write, empty: do not export
    std::string importar;     ///< table to read, empty: do not import
    std::string explicar;     ///< number of an entry, empty: not asked for
    std::string evidencia;    ///< archive to make of the plant, empty: do not gather
    std::string conGrabacion; ///< with `evidencia`: a recording that goes into it
    ComoGrabar grabar;
    std::string reproducir; ///< recording to play, empty: the driver runs
};

/// Adds which of the plant's folder and its LOGS_DRIVER cannot be written to, and what is lost by
/// it.
void revisarEscritura(Archivos& archivos, const std::string& carpeta, Problemas& problemas);

/// The driver on the real platform, with everything but windows.
class Programa {
  public:
    /// `terminar` is called in the loop when a signal asks the program to end. Threads that are
    /// started afterwards leave those signals to the loop.
    Programa(const Opciones& opciones, std::function<void()> terminar);
    ~Programa();
    Programa(const Programa&) = delete;
    Programa& operator=(const Programa&) = delete;

    /// The whole start-up, once it is known that no other instance runs.
    void arrancar();
    /// The loop has ended: what is still open in the plant and its records is closed.
    void cerrar();
    /// Why the loop ended: kOrdenado or kDeNuevo.
    [[nodiscard]] int resultado() const { return resultado_.value_or(kOrdenado); }

    BucleEpoll bucle;
    AvisosDeServicio servicio{bucle};
    ArchivosReales archivos;
    ProcesosReales procesos;
    SalidaDeTraza salida;
    Grabacion grabacion;
    Motor motor;
    Arranque arranque;

  private:
    void mirarCarpetas();
    void recargar();
    void mirarGrabacion();
    void mirarDescriptores();
    void mirarRegistro();

    std::optional<DiarioReal> diario_;
    std::optional<TrazaAlMomento> traza_;
    std::function<void()> terminar_;
    /// For what the platform has to say. Apart from the engine's, whose every look may be recorded.
    ArchivoLog log_;
    std::uint64_t faltaronDescriptores_ = 0; ///< already reported
    std::int64_t faltaronMs_ = 0;            ///< when
    bool pierde_ = false;                    ///< entries of the log are lost, as a message said
    std::int64_t pierdeMs_ = 0;              ///< when the message was sent
    std::optional<int> resultado_;
};

} // namespace kv
