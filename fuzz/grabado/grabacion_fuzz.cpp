// SPDX-License-Identifier: Apache-2.0
// Any bytes as a recording: the driver plays them, or says why it cannot.

#include "engine/arranque.h"
#include "engine/motor.h"
#include "recording/discos.h"
#include "recording/reproductor.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    try {
        kv::CintaLeida cinta(std::string(kv::kMarcaDeCinta) +
                             std::string(reinterpret_cast<const char*>(datos), largo));
        kv::Reproductor bucle(cinta);
        kv::ArchivosReproducidos archivos(bucle);
        kv::ProcesosReproducidos procesos;
        kv::Motor motor(bucle, archivos, "/kv");
        kv::RespuestasDeDisco respuestas;
        motor.scriptControl.fijarDisco(
            [&] { return std::make_shared<kv::DiscoReproducido>(bucle, respuestas); });
        kv::Arranque arranque(motor, procesos);
        bucle.empezar();
        arranque.arrancar();
        arranque.abrirServidor();
        (void)bucle.correr();
    } catch (const kv::CintaMala&) {
    }
    return 0;
}
