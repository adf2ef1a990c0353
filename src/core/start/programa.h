#pragma once

#include "core/start/arranque.h"
#include "core/start/grabacion.h"
#include "core/start/motor.h"
#include "core/start/salida_de_traza.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/servicio.h"
#include "platform/epoll/sistema.h"

#include <functional>
#include <string>

namespace kv {

inline constexpr int kOrdenado = 0;
inline constexpr int kYaCorre = 1;
inline constexpr int kMalaLinea = 2;

struct Opciones {
    std::string carpeta = carpetaDelPrograma();
    bool sinVentana = false;
    bool traza = false;
    bool comprobar = false;
    std::string grabar;     ///< file to record in, empty: nothing is recorded
    std::string reproducir; ///< recording to play, empty: the driver runs
};

/// The driver on the real platform, with everything but windows.
class Programa {
  public:
    /// `terminar` is called in the loop when the program is told to end by a signal. Threads that
    /// are started afterwards leave those signals to the loop.
    Programa(const Opciones& opciones, std::function<void()> terminar);
    ~Programa();
    Programa(const Programa&) = delete;
    Programa& operator=(const Programa&) = delete;

    /// The whole start-up, once it is known that no other instance runs.
    void arrancar();

    BucleEpoll bucle;
    AvisosDeServicio servicio{bucle};
    ArchivosReales archivos;
    ProcesosReales procesos;
    SalidaDeTraza salida;
    Grabacion grabacion;
    Motor motor;
    Arranque arranque;
};

} // namespace kv
