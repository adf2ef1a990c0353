// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "log/cupo.h"
#include "plant/tablas.h"
#include "platform/archivos.h"
#include "platform/reloj.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// The daily record of writes, beside the logs: who wanted what written where, what was there
/// before, and what came of it. A write has a line when its frame leaves and one when it ends, so
/// that a driver that is killed leaves a trace; refused and merged requests have one. Each is
///
///     dd/mm/yyyy hh:mm:ss;source;address;old value;new value;outcome
///
/// Lines are gathered and appended once per turn of the loop. What comes from outside is cut and
/// its control characters and separators are escaped, so a line is always one line of six fields. A
/// line that only repeats the one before is counted, and the count written at the latest after a
/// minute. What a second has too many of, and what a full disk did not take, is counted and
/// written.
class Auditoria final : public OyenteDeSucesos {
  public:
    /// All must outlive it.
    Auditoria(Sucesos& sucesos, const Tablas& tablas, Archivos& archivos, const Reloj& reloj,
              const std::string& carpetaDelPrograma, std::string programa);
    ~Auditoria() override;
    Auditoria(const Auditoria&) = delete;
    Auditoria& operator=(const Auditoria&) = delete;

    void alSuceder(const Suceso& suceso, std::string_view texto) override;
    /// Appends what was gathered. Called at the end of every turn.
    void volcar();
    /// The program ends: tells the counts that are still open, and appends.
    void cerrar();

    /// Lines of one second about requests that became no write: whoever may ask can ask without
    /// end.
    static constexpr std::uint32_t kRechazosPorSegundo = 100;
    /// Lines of one second about writes, whose number the stations bound.
    static constexpr std::uint32_t kEscriturasPorSegundo = 20'000;

  private:
    void anotar(std::string_view origen, std::string_view direccion, const std::string& anterior,
                double valor, std::string_view fin, Cupo& cupo, std::uint32_t maximo);
    /// `cuenta`: so many lines are lost with it if the disk does not take it.
    void agregarLinea(std::string_view cuerpo, std::uint64_t cuenta = 1);
    void cerrarRepetidas();
    /// Lines that a second had too many.
    void contarPerdidas(std::uint64_t cuantas);
    void pasarElTiempo();
    void escribirPendiente();
    bool escribir(const std::string& lineas);

    Sucesos& sucesos_;
    const Tablas& tablas_;
    Archivos& archivos_;
    const Reloj& reloj_;
    std::string carpeta_;
    std::string programa_;
    std::string dia_; ///< of the last line
    std::string pendiente_;
    std::uint64_t enPendiente_ = 0; ///< lines, those counted included
    std::string ultimo_;            ///< the last line without its time
    std::string cuerpo_;            ///< of the line that is being made
    std::uint64_t repetidas_ = 0;
    std::int64_t repetidasDesdeMs_ = 0;
    Cupo rechazos_{kUnSegundoMs}, escrituras_{kUnSegundoMs};
    std::int64_t ultimoIntentoMs_ = 0;
    std::uint64_t sinDisco_ = 0; ///< lines that the disk did not take
};

} // namespace kv
