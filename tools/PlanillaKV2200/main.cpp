// SPDX-License-Identifier: Apache-2.0
// Prints the first sheet of a workbook as CSV. The driver runs it to import one: bytes from outside
// are taken apart in a process of their own, which may need so much memory and time and no more,
// and whose library the driver need not have.

#include "cli/castellano.h"
#include "cli/salida_entera.h"
#include "hoja.h"
#include "platform/epoll/sistema.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <sys/resource.h>

namespace {

constexpr std::string_view kNombre = "PlanillaKV2200";
constexpr std::size_t kMaximoDeLibro = std::size_t{64} << 20;
constexpr rlim_t kTiempo = 60; ///< seconds of work

void limitar() {
    const rlimit tiempo{kTiempo, kTiempo};
    const rlimit nada{0, 0};
#ifndef KV_CON_SANITIZADORES                     // which want terabytes of addresses
    constexpr rlim_t kMemoria = rlim_t{1} << 30; // bytes
    const rlimit memoria{kMemoria, kMemoria};
    setrlimit(RLIMIT_AS, &memoria);
#endif
    setrlimit(RLIMIT_CPU, &tiempo);
    setrlimit(RLIMIT_CORE, &nada);
}

int convertir(const std::string& archivo) {
    const auto mal = [&archivo](std::string_view que) {
        std::cerr << archivo << ": " << que << '\n';
        return 1;
    };
    kv::ArchivosReales archivos;
    const auto libro = archivos.leer(archivo, kMaximoDeLibro);
    if (!libro) return mal("no se puede leer, o tiene más de 64 MB");
    try {
        std::cout << kv::primeraHojaComoCsv(*libro);
    } catch (const std::bad_alloc&) {
        return mal("pide demasiada memoria");
    } catch (const std::exception& falla) {
        return mal(std::string("no es una planilla .xlsx que se pueda leer: ") + falla.what());
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    CLI::App app{"Escribe en la salida, como CSV, la primera hoja de una planilla .xlsx",
                 std::string(kNombre)};
    kv::ponerEnCastellano(app);
    std::string archivo;
    app.add_option("archivo", archivo, "La planilla")->required()->type_name("ARCHIVO.xlsx");
    int fin = 0;
    try {
        app.parse(argc, argv);
        limitar();
        fin = convertir(archivo);
    } catch (const CLI::ParseError& e) {
        fin = kv::terminarLinea(app, e, std::cout, std::cerr);
    }
    return kv::conSalidaEntera(fin, kNombre, std::cout, std::cerr);
}
