// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "engine/arranque.h"
#include "engine/motor.h"
#include "platform/simulated/archivos_simulados.h"
#include "recording/discos.h"
#include "recording/reproductor.h"

#include <functional>
#include <string>
#include <utility>

namespace kv {

/// Everything that an operator would have seen.
class Testigo final : public Observador, public LectorDeTrazas {
  public:
    void alAgregar(std::string_view caja, std::int64_t indice, std::string_view texto) override {
        todo += std::string(caja) + std::to_string(indice) + ":" + std::string(texto) + "\n";
    }
    void alCambiarEtiqueta(std::string_view etiqueta, std::string_view texto) override {
        todo += std::string(etiqueta) + "=" + std::string(texto) + "\n";
    }
    void alCambiarColor(std::string_view etiqueta, Color color) override {
        todo += std::string(etiqueta) + std::to_string(static_cast<int>(color)) + "\n";
    }
    void alMostrarMensaje(std::string_view titulo, std::string_view texto) override {
        todo += std::string(titulo) + "!" + std::string(texto) + "\n";
    }
    std::string todo;
};

/// A driver and what it showed.
struct Driver {
    Driver(Bucle& bucle, Archivos& archivos) : motor(bucle, archivos, "/kv") {
        motor.vista.observar(&testigo);
    }
    void arrancar() {
        arranque.arrancar();
        arranque.abrirServidor();
    }
    [[nodiscard]] std::string valores() const {
        std::string s;
        const Lista& l = motor.vista.lstViewVariables;
        for (std::uint32_t f = 0; f < l.filas(); ++f)
            for (std::size_t c = 0; c < l.columnas().size(); ++c)
                s += std::string(l.texto(f, c)) + (c + 1 < l.columnas().size() ? " " : "\n");
        return s;
    }
    Testigo testigo;
    ProcesosSimulados procesos;
    Motor motor;
    TrazaAlMomento traza{motor.sucesos, motor.tablas, testigo};
    Arranque arranque{motor, procesos};
};

/// What a recording shows, and the last values.
inline std::pair<std::string, std::string>
repetir(std::string contenido, bool* entera = nullptr,
        const std::function<void(Driver&)>& alFinal = {}) {
    CintaLeida leida(std::move(contenido));
    Reproductor bucle(leida);
    ArchivosReproducidos archivos(bucle);
    Driver d(bucle, archivos);
    RespuestasDeDisco respuestas;
    d.motor.scriptControl.fijarDisco(
        [&] { return std::make_shared<DiscoReproducido>(bucle, respuestas); });
    bucle.alOrdenar([&d](std::string_view texto) { d.motor.operador.hacer(*ordenDeTexto(texto)); });
    bucle.empezar();
    d.arrancar();
    const bool bien = bucle.correr();
    if (entera != nullptr) *entera = bien;
    if (alFinal) alFinal(d);
    return {d.testigo.todo, d.valores()};
}

} // namespace kv
