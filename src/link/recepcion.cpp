#include "link/recepcion.h"

#include "text/numeros.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <exception>

namespace kv {
namespace {

// A trace line shows so many bytes of one arrival; a station that sends garbage at full speed must
// not cost a screen of text for every packet.
constexpr std::size_t kBytesEnTraza = 512;
constexpr std::size_t kSobrantesEnTraza = 16;

void agregarEntreCorchetes(std::string& texto, std::uint8_t byte) {
    texto += '[';
    agregarHexadecimal(texto, byte);
    texto += ']';
}

/// "[7][E8]" for the first bytes of many.
void agregarBytes(std::string& texto, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t b : bytes.first(std::min(bytes.size(), kBytesEnTraza)))
        agregarEntreCorchetes(texto, b);
    if (bytes.size() > kBytesEnTraza) texto += "...";
}

RespuestasDebidas::Respuesta comoSeVe(const Respuesta& r) {
    return {std::uint32_t{r[1]} << 24 | std::uint32_t{r[2]} << 16 | std::uint32_t{r[3]} << 8 | r[4],
            static_cast<std::uint16_t>(r[5] << 8 | r[6])};
}

} // namespace

Recepcion::Recepcion(Tablas& tablas, Turnos& turnos, Bucle& bucle, Vista& vista, Sello& sello,
                     ArchivoLog& log)
    : tablas_(tablas), turnos_(turnos), bucle_(bucle), vista_(vista), sello_(sello), log_(log) {}

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
    if (completa) interpretes_->alCompletarseUnaLlegada();
    turnos_.terminarPausaCumplida(n);
}

/// True when at least eight bytes were held.
bool Recepcion::recibir(Indice n, std::span<const std::uint8_t> bytes) {
    ConexionIP& c = tablas_.conexiones[n];
    agregarBytes(c.recepcionTexto, bytes);
    const bool completa = c.recepcion.size() + bytes.size() >= kLargoRespuesta;
    ensamblar(c.recepcion, bytes, llego_);
    std::string linea = sello_.ahora();
    linea += "  Obteniendo bytes <- ";
    linea += c.recepcionTexto;
    linea += "¦ Cantidad: ";
    agregarNumero(linea, completa ? 7 : static_cast<double>(c.recepcion.size()));
    linea += "\r\n";
    vista_.txtTramas.agregar(linea);
    // Without its beginning an answer can no more be one.
    if (std::find(c.recepcion.begin(), c.recepcion.end(), kMarcaRespuesta) != c.recepcion.end())
        c.debidas.alEmpezarOtra(bucle_.reloj().monotonicoMs());
    if (!completa) return false;
    std::erase_if(llego_.respuestas, [&](const Ensamblado::Hallada& h) {
        const bool eco = esEco(h, c.tramaEnCurso);
        if (eco) llego_.basura += kLargoRespuesta;
        return eco;
    });
    if (llego_.basura > 0) descartar(n);
    c.recepcionTexto.clear();
    agregarBytes(c.recepcionTexto, c.recepcion);
    if (!llego_.respuestas.empty()) entregar(n);
    return true;
}

/// Valid answers came, all of them in one arrival.
void Recepcion::entregar(Indice n) {
    ConexionIP& c = tablas_.conexiones[n];
    vistas_.clear();
    for (const auto& hallada : llego_.respuestas)
        vistas_.push_back(comoSeVe(hallada.trama));
    const std::int64_t ahora = bucle_.reloj().monotonicoMs();
    using De = RespuestasDebidas::Veredicto::De;
    RespuestasDebidas::Veredicto veredicto;
    const bool esperaba = c.turno == EstadoDeTurno::Esperando;
    if (esperaba) {
        veredicto = c.debidas.alRecibir(vistas_, ahora);
    } else {
        c.debidas.alSobrar(vistas_, ahora);
    }
    const bool acepta = veredicto.de == De::LoPedido;
    sobrantes_ += llego_.respuestas.size() - (acepta ? 1 : 0);
    for (std::size_t k = 0; k < std::min(llego_.respuestas.size(), kSobrantesEnTraza); ++k) {
        if (!acepta || k != veredicto.cual) sobrar(llego_.respuestas[k].trama);
    }
    if (acepta) return aceptar(n, llego_.respuestas[veredicto.cual].trama);
    if (veredicto.de == De::NoSeSabe) return interpretes_->respuestaDudosa(n);
    if (!esperaba) turnos_.revisarRetencion(n);
}

void Recepcion::aceptar(Indice n, const Respuesta& trama) {
    ConexionIP& c = tablas_.conexiones[n];
    ++respuestas_;
    c.recepcion.assign(trama.begin(), trama.end());
    c.recepcionTexto.clear();
    agregarBytes(c.recepcionTexto, trama);
    if (c.escribiendo) {
        interpretes_->interpretarTramaRecepcionada_PorEscritura(n);
    } else {
        interpretes_->interpretarTramaRecepcionada_OK(n);
    }
}

/// One line for all that an arrival brought of what is no answer: noise must not cost more than
/// answers do.
void Recepcion::descartar(Indice n) {
    ++descartadas_;
    const std::string cola = tablas_.conexiones[n].recepcionTexto + "¦ Cantidad: 7\r\n";
    vista_.txtTramas.agregar(sello_.ahora() + "  *Descarte CheSum* <- " + cola);
    vista_.txtTramasDescartadas.agregar(sello_.ahora() + "  *Descarte* <- " + cola);
}

void Recepcion::sobrar(const Respuesta& trama) {
    std::string linea = sello_.ahora() + "  *Descarte* <- ";
    agregarBytes(linea, trama);
    linea += "¦ Cantidad: 7\r\n";
    vista_.txtTramas.agregar(linea);
    vista_.txtTramasDescartadas.agregar(linea);
}

} // namespace kv
