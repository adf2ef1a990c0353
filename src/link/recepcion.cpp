// SPDX-License-Identifier: Apache-2.0
#include "link/recepcion.h"

#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <exception>

namespace kv {
namespace {

constexpr std::size_t kSobrantesEnTraza = 15; // one by one, of one arrival

RespuestasDebidas::Respuesta comoSeVe(const Respuesta& r) {
    return {std::uint32_t{r[1]} << 24 | std::uint32_t{r[2]} << 16 | std::uint32_t{r[3]} << 8 | r[4],
            static_cast<std::uint16_t>(r[5] << 8 | r[6])};
}

} // namespace

Recepcion::Recepcion(Tablas& tablas, Turnos& turnos, Bucle& bucle, Sucesos& sucesos,
                     ArchivoLog& log, std::function<void()> alCompletarse)
    : tablas_(tablas), turnos_(turnos), bucle_(bucle), sucesos_(sucesos), log_(log),
      alCompletarse_(std::move(alCompletarse)) {}

void Recepcion::alConectar(std::size_t indice) { turnos_.olvidar(static_cast<Indice>(indice)); }

void Recepcion::alCortarse(std::size_t indice) {
    turnos_.vaciarRecepcion(static_cast<Indice>(indice));
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
    if (completa) alCompletarse_();
    turnos_.terminarPausaCumplida(n);
}

/// True when at least eight bytes were held.
bool Recepcion::recibir(Indice n, std::span<const std::uint8_t> bytes) {
    ConexionIP& c = tablas_.conexiones[n];
    tenidos_ = c.recepcion;
    const bool completa = c.recepcion.size() + bytes.size() >= kLargoRespuesta;
    ensamblar(c.recepcion, bytes, llego_);
    decirLlegada(Que::LlegaronBytes, n, bytes,
                 completa ? 7 : static_cast<double>(c.recepcion.size()));
    // Without its beginning an answer can no more be one.
    if (std::find(c.recepcion.begin(), c.recepcion.end(), kMarcaRespuesta) != c.recepcion.end())
        c.debidas.alEmpezarOtra(bucle_.reloj().monotonicoMs());
    if (!completa) return false;
    std::erase_if(llego_.respuestas, [&](const Ensamblado::Hallada& h) {
        const bool eco = esEco(h, c.tramaEnCurso);
        if (eco) llego_.basura += kLargoRespuesta;
        return eco;
    });
    if (llego_.basura > 0) {
        c.llegoBasura = true;
        decirLlegada(Que::Descarte, n, bytes, static_cast<double>(llego_.basura));
    }
    if (!llego_.respuestas.empty()) entregar(n);
    return true;
}

/// Valid answers came, all of them in one arrival.
void Recepcion::entregar(Indice n) {
    ConexionIP& c = tablas_.conexiones[n];
    vistas_.clear();
    for (const auto& hallada : llego_.respuestas)
        vistas_.push_back(comoSeVe(hallada.trama));
    c.recibidoUs = bucle_.reloj().monotonicoUs();
    const std::int64_t ahora = c.recibidoUs / 1000;
    using De = RespuestasDebidas::Veredicto::De;
    RespuestasDebidas::Veredicto veredicto;
    const bool esperaba = c.turno == EstadoDeTurno::Esperando;
    if (esperaba) {
        veredicto = c.debidas.alRecibir(vistas_, ahora);
    } else {
        c.debidas.alSobrar(vistas_, ahora);
    }
    const bool acepta = veredicto.de == De::LoPedido;
    std::size_t cuantas = llego_.respuestas.size() - (acepta ? 1 : 0);
    for (std::size_t k = 0; cuantas > 0; ++k) {
        if (acepta && k == veredicto.cual) continue;
        // The last one that is shown stands for those behind it.
        const std::size_t vale = k < kSobrantesEnTraza ? 1 : cuantas;
        cuantas -= vale;
        Suceso sobra{.que = Que::Sobrante, .conexion = n, .numero = static_cast<double>(vale)};
        sobra.poner(llego_.respuestas[k].trama);
        sucesos_.decir(sobra);
    }
    Transaccion* de = turnos_.enCurso(n);
    if (de != nullptr && acepta) {
        ++respuestas_;
        turnos_.vaciarRecepcion(n);
        const Respuesta trama =
            llego_.respuestas[veredicto.cual].trama; // others may come meanwhile
        return de->contestada(n, trama);
    }
    if (de != nullptr && veredicto.de == De::NoSeSabe) return de->dudosa(n);
    if (!esperaba) turnos_.revisarRetencion(n);
}

/// One event for all that an arrival brought: noise must not cost more than answers do.
void Recepcion::decirLlegada(Que que, Indice n, std::span<const std::uint8_t> bytes,
                             double cuantos) {
    Suceso s{.que = que, .conexion = n, .numero = cuantos};
    s.poner(tenidos_);
    if (tenidos_.size() + bytes.size() <= s.bytes.size()) {
        std::copy(bytes.begin(), bytes.end(), s.bytes.begin() + s.cuantos);
        s.cuantos = static_cast<std::uint8_t>(s.cuantos + bytes.size());
        return sucesos_.decir(s);
    }
    // One more than the words show, so that they tell that there were more.
    const auto vistos = bytes.first(std::min(bytes.size(), kBytesEnTraza + 1));
    texto_.assign(tenidos_.begin(), tenidos_.end());
    texto_.append(vistos.begin(), vistos.end());
    sucesos_.decir(s, texto_);
}

} // namespace kv
