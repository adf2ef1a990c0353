// SPDX-License-Identifier: Apache-2.0
#include "config/tabla_de_ajustes.h"

#include <array>

namespace kv {
namespace {

constexpr std::array kNumericos = {
    kTiempoEntrePoleo,     kBaseSolicitarConexiones, kIntervalosConectando, kIntervalosDeConectar,
    kIntervalosFuera,      kBaseKeepAlive,           kMaximosKeepAlive,     kIntervalosKeepAlive,
    kPuertoEscucha,        kTiempoDelGuion,          kHonduraDelGuion,      kMemoriaDelGuion,
    kPasosDelGuion,        kReintentoDelGuion,       kReclamoDeEscrituras,  kEstacionMuda,
    kVigenciaDeEscrituras, kBloquesAPedido,          kEscuchaPlazo,         kEscuchaErradas,
    kEscuchaPausa,         kEscuchaEscrituras};

constexpr std::array kTextos = {kVer,
                                kPrimerSeparador,
                                kTramasSeparador,
                                kIdioma,
                                kIdiomaVentana,
                                kCandado,
                                kCarpetaDeGuion,
                                kEscuchaDireccion,
                                kEscuchaPermitidos,
                                kEscuchaLogin,
                                kEscuchaSoloLectura,
                                kPuertaLocal,
                                kPuertaLocalGrupo,
                                kPuertaLocalEscriben,
                                kRutaProyecto};

} // namespace

std::span<const AjusteNumerico> ajustesNumericos() { return kNumericos; }
std::span<const AjusteDeTexto> ajustesDeTexto() { return kTextos; }

} // namespace kv
