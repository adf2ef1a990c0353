// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "log/cupo.h"
#include "log/novedades.h"
#include "platform/archivos.h"
#include "platform/diario.h"
#include "platform/reloj.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// One entry. Its texts are UTF-8; those below the description are known to the system's journal
/// only, as fields of their own, being in the message already.
struct EntradaDeLog {
    std::string_view origen;
    std::string_view procedimiento;
    std::string_view mensaje;
    std::string_view descripcion = {};
    Novedad novedad = Novedad::Ninguna;
    std::string_view conexion = {}; ///< "address:port"
    std::string_view estacion = {};
    std::string_view bloque = {};
    std::string_view motivo = {};
};

/// The daily log files in the folder LOGS_DRIVER beside the program: one of the program's own, and
/// one shared by all programs of the folder. Never disturbs its caller: what cannot be written is
/// lost, and counted in each file as soon as it takes lines again.
class ArchivoLog {
  public:
    /// Longest text of one entry in bytes; what is longer is cut, so that bytes from outside cannot
    /// fill a disk with one message.
    static constexpr std::size_t kMaximo = 4096;
    /// Entries of one second. More are counted and not written: an entry opens and closes two
    /// files, and a flood of refused orders must not keep the stations waiting.
    static constexpr int kPorSegundo = 100;

    ArchivoLog(Archivos& archivos, const Reloj& reloj, const std::string& carpetaDelPrograma,
               std::string programa);
    /// Appends one line to the program's file of the day and to the shared one. Line breaks in the
    /// texts become blanks. On disk when it returns, unless it is one too many of its second.
    void escribirLog(std::string_view origen, std::string_view procedimiento,
                     std::string_view mensaje, std::string_view descripcionError = {}) {
        escribir({origen, procedimiento, mensaje, descripcionError});
    }
    /// The same; an entry whose `novedad` has a code ends with that code.
    void escribir(const EntradaDeLog& entrada);
    /// From now on the system's journal gets each entry that is written, too.
    void avisarA(DiarioDelSistema* diario) { diario_ = diario; }
    /// To be called at every turn of the loop: tells how many entries a second lost, once it is
    /// over, and the disk, once it takes lines again.
    void alPasarElTiempo();
    /// Whether the last entry was lost in one of the files.
    [[nodiscard]] bool pierde() const { return destinos_[0].perdidas + destinos_[1].perdidas > 0; }
    [[nodiscard]] const std::string& carpeta() const { return carpeta_; }
    /// The program ends: entries of this second that had no place are counted, and there is place
    /// for the last ones.
    void terminar();

  private:
    struct Destino {
        std::string nombre;         ///< behind the day
        std::uint64_t perdidas = 0; ///< entries since it takes none
    };
    void avisarAlDiario(const EntradaDeLog& entrada);
    void contarCalladas(std::uint64_t cuantas);
    void agregar(std::string_view cuerpo, std::uint64_t cuantas = 1);
    [[nodiscard]] std::string linea(std::string_view cuerpo) const;

    Archivos& archivos_;
    const Reloj& reloj_;
    std::string carpeta_;
    std::string programa_;
    std::string carpetaDelPrograma_;
    DiarioDelSistema* diario_ = nullptr;
    Cupo cupo_{kUnSegundoMs};
    std::array<Destino, 2> destinos_;
    std::int64_t perdidaMs_ = 0; ///< when one of them took nothing
};

} // namespace kv
