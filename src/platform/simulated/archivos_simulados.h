// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archivos.h"
#include "platform/procesos.h"

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// Files in memory, with the faults that disks have.
class ArchivosSimulados final : public Archivos {
  public:
    [[nodiscard]] bool existe(const std::string& ruta) override;
    [[nodiscard]] HuellaDeArchivo huella(const std::string& ruta) override;
    [[nodiscard]] std::optional<std::string> leer(const std::string& ruta,
                                                  std::size_t maximo) override;
    bool reemplazar(const std::string& ruta, std::string_view contenido) override;
    bool agregar(const std::string& ruta, std::string_view contenido) override;
    bool crearCarpeta(const std::string& ruta) override;

    /// What another program or an editor does; not subject to the faults below.
    void poner(const std::string& ruta, std::string contenido);
    void borrar(const std::string& ruta);
    /// Every write fails from now on: a full or a read-only disk.
    void negarEscrituras(bool negar) { niegaTodas_ = negar, negado_.clear(); }
    /// The same for what lies in one folder; empty: nowhere.
    void negarEscriturasEn(std::string_view carpeta) { negado_ = clave(carpeta); }
    /// The paths of the files in a folder and below, in lower case.
    [[nodiscard]] std::vector<std::string> en(std::string_view carpeta) const;
    [[nodiscard]] std::string contenido(const std::string& ruta);
    /// How often a file was opened or looked at, for tests of what a tick costs.
    [[nodiscard]] std::size_t lecturas() const { return lecturas_; }

  private:
    struct Archivo {
        std::string contenido;
        std::int64_t version = 0;
    };
    [[nodiscard]] static std::string clave(std::string_view ruta);

    std::map<std::string, Archivo> archivos_;
    std::set<std::string> carpetas_;
    std::int64_t version_ = 0;
    std::size_t lecturas_ = 0;
    [[nodiscard]] bool niega(const std::string& ruta) const {
        return niegaTodas_ || (!negado_.empty() && clave(ruta).starts_with(negado_));
    }
    bool niegaTodas_ = false;
    std::string negado_; ///< where no write succeeds
};

/// Processes as a test wants them.
class ProcesosSimulados final : public Procesos {
  public:
    [[nodiscard]] bool tomarCarpeta(const std::string& /*carpeta*/) override { return libre; }

    bool libre = true;
};

} // namespace kv
