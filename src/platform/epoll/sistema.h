// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archivos.h"
#include "platform/procesos.h"

namespace kv {

/// The files of the machine.
class ArchivosReales final : public Archivos {
  public:
    [[nodiscard]] std::string comoEsta(const std::string& ruta) override;
    [[nodiscard]] bool existe(const std::string& ruta) override;
    [[nodiscard]] HuellaDeArchivo huella(const std::string& ruta) override;
    [[nodiscard]] std::optional<std::string> leer(const std::string& ruta,
                                                  std::size_t maximo) override;
    bool reemplazar(const std::string& ruta, std::string_view contenido) override;
    bool agregar(const std::string& ruta, std::string_view lineas) override;
    bool crearCarpeta(const std::string& ruta) override;
};

/// The processes of the machine. The folder is held by a lock of the kernel, which goes with the
/// process however it ends.
class ProcesosReales final : public Procesos {
  public:
    ProcesosReales() = default;
    ~ProcesosReales() override;
    ProcesosReales(const ProcesosReales&) = delete;
    ProcesosReales& operator=(const ProcesosReales&) = delete;
    [[nodiscard]] bool tomarCarpeta(const std::string& carpeta) override;
    void atenderConfiguracion(const std::string& ruta) override;

  private:
    int cerrojo_ = -1;
    int atendida_ = -1;
};

/// Whether another process serves the configuration that this path leads to.
[[nodiscard]] bool configuracionAtendida(const std::string& ruta);

/// Why this process cannot write a new file in a folder, in Spanish, or nothing if it can. It is
/// tried, and nothing is left of it.
[[nodiscard]] std::string porQueNoSeEscribeEn(const std::string& carpeta);

/// Descriptors that this process may have from now on: as many as it may give itself.
void pedirDescriptores();

/// Folder of the running program's file.
[[nodiscard]] std::string carpetaDelPrograma();

/// Name of that file without extension, empty when the system does not say.
[[nodiscard]] std::string nombreDelPrograma();

/// Puts the program's file, as it is on the disk now, in the place of this process, which keeps its
/// number. Throws std::system_error when that cannot be.
[[noreturn]] void empezarDeNuevo(char** argumentos);

/// Sees to it that memory comes in large pages where the system has them: a large plant lies on
/// thousands of small ones, and on a virtual machine finding one that has not been touched for a
/// second costs more than asking a station. That is decided where a program begins, so it is begun
/// anew; comes back when that has been done, when whoever started it has decided about its memory,
/// or when it cannot be.
void usarPaginasGrandes(char** argumentos);

} // namespace kv
