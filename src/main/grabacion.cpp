// SPDX-License-Identifier: Apache-2.0
#include "main/grabacion.h"

#include "cli/version.h"
#include "engine/reproduccion.h"
#include "main/salida_de_traza.h"
#include "text/nombre_del_programa.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <utility>

namespace kv {
namespace {

constexpr int kReproducida = 0;
constexpr int kNoReproducida = 1;

std::string programa() { return conVersion(kNombreDelPrograma); }

/// Moves an earlier recording aside, as it may be the only trace of a fault. False: it is still in
/// the way.
bool apartar(const std::string& archivo) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (!fs::is_regular_file(fs::symlink_status(archivo, error))) return true;
    const auto deAntes = [&archivo](int n) { return archivo + "." + std::to_string(n); };
    for (int n = kGrabacionesDeAntes; n > 1; --n)
        fs::rename(deAntes(n - 1), deAntes(n), error);
    fs::rename(archivo, deAntes(1), error);
    const bool apartado = !error;
    // Earlier versions of this program let everybody read them.
    for (int n = 1; n <= kGrabacionesDeAntes; ++n)
        fs::permissions(deAntes(n), fs::perms::owner_read | fs::perms::owner_write, error);
    return apartado;
}

int mostrar(std::string contenido, std::ostream& errores) {
    DriverReproducido driver(std::move(contenido));
    if (driver.programa() != programa())
        errores << "Grabado con " << driver.programa() << ", esto es " << programa() << '\n';
    SalidaDeTraza salida(true);
    driver.motor().vista.observar(&salida);
    const TrazaAlMomento traza(driver.motor().sucesos, driver.motor().tablas, salida);
    driver.bucle().alFinalDeVuelta([&salida] { salida.volcarTodo(); }); // nobody else waits here
    if (!driver.correr()) errores << "La grabacion termina a mitad de una entrada\n";
    driver.motor().vista.observar(nullptr);
    return kReproducida;
}

} // namespace

Grabacion::Grabacion(Bucle& bucle, Archivos& archivos, ComoGrabar como, const std::string& carpeta)
    : bucle_(bucle), archivos_(archivos), como_(std::move(como)) {
    if (como_.archivo.empty()) return;
    cinta_.emplace(como_.maximo);
    cinta_->texto(programa()).texto(carpeta);
    grabador_.emplace(bucle_, *cinta_);
    grabados_.emplace(archivos_, *grabador_);
}

Bucle& Grabacion::bucle() { return grabador_ ? *grabador_ : bucle_; }

Archivos& Grabacion::archivos() { return grabados_ ? *grabados_ : archivos_; }

std::shared_ptr<vbscript::Disk> Grabacion::disco(std::shared_ptr<vbscript::Disk> disco) {
    if (!grabador_ || !disco) return disco;
    return std::make_shared<DiscoGrabado>(std::move(disco), *grabador_, respuestas_);
}

void Grabacion::empezar() {
    if (!grabador_) return;
    if (!apartar(como_.archivo) || !cinta_->abrir(como_.archivo)) cinta_->abandonar();
    grabador_->empezarTramo();
}

void Grabacion::empezada() {
    if (grabador_) grabador_->terminarTramo();
}

std::string Grabacion::novedad() {
    if (!cinta_ || !cinta_->llena() || std::exchange(dicho_, true)) return {};
    if (cinta_->sinDisco()) return "no se puede escribir en " + como_.archivo + ": no se graba";
    return como_.archivo + (pideOtra() ? " llena: sigue en otra" : " llena: no sigue");
}

bool Grabacion::pideOtra() const {
    return cinta_ && como_.enAnillo && cinta_->llena() && !cinta_->sinDisco();
}

int reproducir(const std::string& archivo, std::ostream& errores) {
    std::ifstream entrada(archivo, std::ios::binary);
    std::error_code error;
    if (!entrada || std::filesystem::is_directory(archivo, error)) {
        errores << archivo << ": no se puede leer\n";
        return kNoReproducida;
    }
    try {
        return mostrar({std::istreambuf_iterator<char>(entrada), {}}, errores);
    } catch (const CintaCortada&) {
        errores << archivo << ": la grabacion termina a mitad de una entrada\n";
    } catch (const CintaMala& mala) {
        errores << archivo << ": " << mala.que << '\n';
    }
    return kNoReproducida;
}

} // namespace kv
