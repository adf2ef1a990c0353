// SPDX-License-Identifier: Apache-2.0
#include "log/archivo_log.h"

#include "platform/ruta.h"
#include "text/texto.h"
#include "text/windows1252.h"

namespace kv {
namespace {

constexpr std::int64_t kEntreIntentosMs = 5000;

} // namespace

ArchivoLog::ArchivoLog(Archivos& archivos, const Reloj& reloj,
                       const std::string& carpetaDelPrograma, std::string programa)
    : archivos_(archivos), reloj_(reloj), carpeta_(unirRuta(carpetaDelPrograma, "LOGS_DRIVER")),
      programa_(std::move(programa)),
      carpetaDelPrograma_(carpetaDelPrograma), destinos_{{{" Archivo_Log_Global.txt"},
                                                          {" " + programa_ + " ArchivoLog.txt"}}} {}

std::string ArchivoLog::linea(std::string_view cuerpo) const {
    std::string l = "Log: " + formatoGeneral(reloj_.ahora()) + "," + programa_ + ",";
    l += cuerpo;
    return windows1252DesdeUtf8(l) + "\r\n";
}

void ArchivoLog::escribir(const EntradaDeLog& e) {
    alPasarElTiempo();
    if (!cupo_.tomar(reloj_.monotonicoMs(), kPorSegundo)) return;
    std::string cuerpo(e.origen);
    cuerpo += '>' + enUnaLinea(e.procedimiento);
    cuerpo += '>' + enUnaLinea(e.mensaje.substr(0, kMaximo));
    cuerpo += ", DescError:" + enUnaLinea(e.descripcion.substr(0, kMaximo));
    if (e.novedad != Novedad::Ninguna)
        cuerpo += (e.descripcion.empty() ? "" : " ") + codigoDe(e.novedad);
    agregar(cuerpo);
    if (diario_ != nullptr) avisarAlDiario(e);
}

void ArchivoLog::avisarAlDiario(const EntradaDeLog& e) {
    constexpr int kDeUnaFalla = 3;
    std::string mensaje(e.procedimiento);
    mensaje += ": ";
    mensaje += e.mensaje.substr(0, kMaximo);
    if (!e.descripcion.empty()) mensaje.append(" - ").append(e.descripcion.substr(0, kMaximo));
    const FichaDeNovedad* ficha = fichaDe(e.novedad);
    const std::string numero =
        ficha != nullptr ? std::to_string(static_cast<unsigned>(ficha->cual)) : std::string();
    const std::string prioridad = std::to_string(ficha != nullptr ? ficha->prioridad : kDeUnaFalla);
    diario_->anotar(std::to_array<CampoDeDiario>({{"MESSAGE", mensaje},
                                                  {"PRIORITY", prioridad},
                                                  {"SYSLOG_IDENTIFIER", programa_},
                                                  {"KV_NUMERO", numero},
                                                  {"KV_CONEXION", e.conexion},
                                                  {"KV_ESTACION", e.estacion},
                                                  {"KV_BLOQUE", e.bloque},
                                                  {"KV_MOTIVO", e.motivo},
                                                  {"KV_CARPETA", carpetaDelPrograma_}}));
}

void ArchivoLog::alPasarElTiempo() {
    if (cupo_.hayNegados()) contarCalladas(cupo_.negados(reloj_.monotonicoMs()));
    if (pierde() && reloj_.monotonicoMs() - perdidaMs_ >= kEntreIntentosMs) agregar({}, 0);
}

void ArchivoLog::terminar() {
    contarCalladas(cupo_.negadosYa());
    cupo_.vaciar();
    if (pierde()) agregar({}, 0);
}

void ArchivoLog::contarCalladas(std::uint64_t cuantas) {
    if (cuantas > 0)
        agregar("DRIVER>Registro>y " + std::to_string(cuantas) +
                    " entradas mas en el mismo segundo, DescError:",
                cuantas);
}

/// Without a body, for no entry: what was lost.
void ArchivoLog::agregar(std::string_view cuerpo, std::uint64_t cuantas) {
    if (!archivos_.existe(carpeta_)) archivos_.crearCarpeta(carpeta_);
    const std::string dia = formatoDeDia(reloj_.ahora());
    for (Destino& d : destinos_) {
        std::string lineas;
        if (d.perdidas > 0)
            lineas = linea("DRIVER>Registro>" + std::to_string(d.perdidas) +
                           " entradas sin anotar: el disco no las tomo, DescError:" +
                           codigoDe(Novedad::EntradasPerdidas));
        if (!cuerpo.empty()) lineas += linea(cuerpo);
        if (lineas.empty()) continue;
        if (archivos_.agregar(unirRuta(carpeta_, dia + d.nombre), lineas)) {
            d.perdidas = 0;
        } else {
            d.perdidas += cuantas;
            perdidaMs_ = reloj_.monotonicoMs();
        }
    }
}

} // namespace kv
