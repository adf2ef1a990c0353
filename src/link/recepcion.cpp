#include "link/recepcion.h"

#include "link/Modulo_Tramas_KV2200.h"
#include "text/numeros.h"

#include <algorithm>
#include <exception>

namespace kv {
namespace {

// A trace line shows so many bytes of one arrival; a station that sends garbage at full speed must
// not cost a screen of text for every packet.
constexpr std::size_t kBytesEnTraza = 512;

void agregarEntreCorchetes(std::string& texto, std::uint8_t byte) {
    texto += '[';
    agregarHexadecimal(texto, byte);
    texto += ']';
}

/// Whole valid answers at the start of `bytes`.
std::size_t respuestasEn(std::span<const std::uint8_t> bytes) {
    std::size_t cuantas = 0;
    while (bytes.size() >= kLargoRespuesta &&
           verificarTramaRespuesta(bytes.first(kLargoRespuesta))) {
        bytes = bytes.subspan(kLargoRespuesta);
        ++cuantas;
    }
    return cuantas;
}

} // namespace

Recepcion::Recepcion(Tablas& tablas, Turnos& turnos, Bucle& bucle, Vista& vista, Sello& sello,
                     ArchivoLog& log, Guion& guion)
    : tablas_(tablas), turnos_(turnos), bucle_(bucle), vista_(vista), sello_(sello), log_(log),
      guion_(guion) {}

void Recepcion::alConectar(std::size_t indice) { turnos_.olvidar(static_cast<Indice>(indice)); }

void Recepcion::alCortarse(std::size_t indice) {
    Turnos::vaciarRecepcion(tablas_.conexiones[indice]);
}

void Recepcion::alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) {
    const auto n = static_cast<Indice>(indice);
    bool completa = false;
    try {
        completa = recibir(n, bytes);
    } catch (const std::exception& falla) {
        // Whatever failed, the connection goes on: its pause is what frees it.
        turnos_.pausar(n);
        log_.escribirLog("DRIVER", "DATAARRIVAL ", std::string("Error []      recepcion"),
                         falla.what());
        completa = true;
    }
    if (completa) guion_.ejectutarScript();
    turnos_.terminarPausaCumplida(n);
}

/// Takes the bytes that the frame under assembly lacks, and gives the rest. Traces the arrival.
std::span<const std::uint8_t> Recepcion::juntar(ConexionIP& c,
                                                std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t b : bytes.first(std::min(bytes.size(), kBytesEnTraza)))
        agregarEntreCorchetes(c.recepcionTexto, b);
    if (bytes.size() > kBytesEnTraza) c.recepcionTexto += "...";
    const std::size_t faltan = kLargoRespuesta - c.recepcion.size();
    const auto tomados = bytes.first(std::min(faltan, bytes.size()));
    c.recepcion.insert(c.recepcion.end(), tomados.begin(), tomados.end());
    const bool completa = c.recepcion.size() == kLargoRespuesta;
    std::string linea = sello_.ahora();
    linea += "  Obteniendo bytes <- ";
    linea += c.recepcionTexto;
    linea += "¦ Cantidad: ";
    agregarNumero(linea, completa ? 7 : static_cast<double>(c.recepcion.size()));
    linea += "\r\n";
    vista_.txtTramas.agregar(linea);
    return bytes.subspan(tomados.size());
}

/// True when at least one whole frame was held.
bool Recepcion::recibir(Indice n, std::span<const std::uint8_t> bytes) {
    ConexionIP& c = tablas_.conexiones[n];
    auto resto = juntar(c, bytes);
    if (c.recepcion.size() < kLargoRespuesta) return false;
    while (c.recepcion.size() == kLargoRespuesta && !verificarTramaRespuesta(c.recepcion)) {
        descartar(n);
        // The next marker, among the bytes held or those that came with them, begins a new frame.
        const std::size_t habia = c.recepcion.size() + resto.size();
        const auto marca = std::find(c.recepcion.begin() + 1, c.recepcion.end(), kMarcaRespuesta);
        c.recepcion.erase(c.recepcion.begin(), marca);
        if (c.recepcion.empty()) {
            const auto otra = std::find(resto.begin(), resto.end(), kMarcaRespuesta);
            resto = resto.subspan(static_cast<std::size_t>(otra - resto.begin()));
        }
        c.debidas.alDescartar(habia - c.recepcion.size() - resto.size(),
                              bucle_.reloj().monotonicoMs());
        const auto tomados =
            resto.first(std::min(kLargoRespuesta - c.recepcion.size(), resto.size()));
        c.recepcion.insert(c.recepcion.end(), tomados.begin(), tomados.end());
        resto = resto.subspan(tomados.size());
        c.recepcionTexto.clear();
        for (const std::uint8_t b : c.recepcion)
            agregarEntreCorchetes(c.recepcionTexto, b);
    }
    if (c.recepcion.size() < kLargoRespuesta) return true;
    entregar(n, resto);
    return true;
}

/// A valid frame is held; `resto` came behind it.
void Recepcion::entregar(Indice n, std::span<const std::uint8_t> resto) {
    ConexionIP& c = tablas_.conexiones[n];
    const std::size_t masRespuestas = respuestasEn(resto);
    const std::int64_t ahora = bucle_.reloj().monotonicoMs();
    const bool esperaba = c.turno == EstadoDeTurno::Esperando;
    // More answers than requests: which of them is the one cannot be told.
    const bool demasiadas = masRespuestas > 0 && masRespuestas >= c.debidas.debidas();
    const bool cierta = esperaba && !demasiadas && c.debidas.alRecibir(c.registroEnCurso, ahora);
    if (!esperaba || demasiadas) c.debidas.alSobrar(ahora);
    for (std::size_t k = 0; k < masRespuestas; ++k)
        c.debidas.alSobrar(ahora);
    c.debidas.alDescartar(resto.size() - masRespuestas * kLargoRespuesta, ahora);
    sobrantes_ += masRespuestas;
    if (!cierta) {
        sobrar(n);
        if (esperaba) return interpretes_->respuestaDudosa(n);
        return turnos_.revisarRetencion(n);
    }
    ++respuestas_;
    if (c.escribiendo) {
        interpretes_->interpretarTramaRecepcionada_PorEscritura(n);
    } else {
        interpretes_->interpretarTramaRecepcionada_OK(n);
    }
}

void Recepcion::descartar(Indice n) {
    ConexionIP& c = tablas_.conexiones[n];
    ++descartadas_;
    const std::string cola = c.recepcionTexto + "¦ Cantidad: 7\r\n";
    vista_.txtTramas.agregar(sello_.ahora() + "  *Descarte CheSum* <- " + cola);
    vista_.txtTramasDescartadas.agregar(sello_.ahora() + "  *Descarte* <- " + cola);
}

void Recepcion::sobrar(Indice n) {
    ConexionIP& c = tablas_.conexiones[n];
    ++sobrantes_;
    const std::string linea =
        sello_.ahora() + "  *Descarte* <- " + c.recepcionTexto + "¦ Cantidad: 7\r\n";
    vista_.txtTramas.agregar(linea);
    vista_.txtTramasDescartadas.agregar(linea);
    Turnos::vaciarRecepcion(c);
}

} // namespace kv
