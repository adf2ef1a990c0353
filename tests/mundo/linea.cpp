// SPDX-License-Identifier: Apache-2.0
#include "mundo/linea.h"

#include <algorithm>
#include <cerrno>
#include <utility>

namespace kv::mundo {
namespace {

constexpr std::size_t kEnviadosQueSeRecuerdan = 200;
constexpr std::uint32_t kLecturasPorCambio = 3;
constexpr std::uint32_t kCambiosPorComun = 4; // then it has the value that others have too
constexpr std::uint16_t kComun = 77;
constexpr std::int64_t kLatenciaUs = 200;
constexpr std::uint8_t kEscribir = 0x57;

std::uint32_t clave(std::uint8_t estacion, std::uint8_t direccion) {
    return std::uint32_t{estacion} << 8 | direccion;
}

std::uint8_t revuelto(std::uint32_t n) {
    n = (n ^ n >> 16) * 0x7FEB352DU;
    n = (n ^ n >> 15) * 0x846CA68BU;
    return static_cast<std::uint8_t>(n >> 16);
}

} // namespace

Registro& Linea::registro(std::uint8_t estacion, std::uint8_t direccion) {
    return registros_[clave(estacion, direccion)];
}

void Linea::darBanda(std::uint8_t estacion, std::uint8_t direccion, std::uint16_t base,
                     std::uint16_t mascara, Fuente fuente) {
    if (std::find(estaciones_.begin(), estaciones_.end(), estacion) == estaciones_.end())
        estaciones_.push_back(estacion);
    Registro& r = registro(estacion, direccion);
    r.base = r.valor = base;
    r.mascara = mascara;
    r.fuente = fuente;
}

void Linea::alConectar(IdEnlace enlace) {
    enlace_ = enlace;
    guardada_ = {};
    llegan_.clear();
    ruidoUs_ = retenidaUs_ = -1;
    pasan_.fill(0);
    for (auto& [k, r] : registros_)
        r.enviados.clear();
}

void Linea::alCortarse(IdEnlace enlace) {
    entradas_.erase(enlace);
    if (enlace == enlace_) enlace_ = 0;
}

/// Whoever sent it, and whatever became of its link: a station does what it is asked.
void Linea::alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) {
    std::vector<std::uint8_t>& entrada = entradas_[enlace];
    entrada.insert(entrada.end(), bytes.begin(), bytes.end());
    std::size_t i = 0;
    for (; i + kLargoSolicitud <= entrada.size(); i += kLargoSolicitud) {
        Solicitud s{};
        std::copy_n(entrada.begin() + static_cast<std::ptrdiff_t>(i), s.size(), s.begin());
        Registro& r = registro(s[1], s[3]);
        if (s[0] == kEscribir) {
            const auto palabra = static_cast<std::uint16_t>(s[4] << 8 | s[5]);
            alEscribirse({enlace, s[1], s[3], palabra, r.valor});
            // Of the exchanges that get lost every other is lost before the station does anything.
            if (perderProximas_ % 2 == 0) r.valor = palabra;
        }
        if (enlace == enlace_) atender(s);
    }
    entrada.erase(entrada.begin(), entrada.begin() + static_cast<std::ptrdiff_t>(i));
}

/// The plant goes on by itself.
void Linea::cambiar(Registro& r, const Solicitud& s) {
    if (s[0] == kEscribir || r.mascara == 0 || ++r.version % kLecturasPorCambio != 0) return;
    const std::uint32_t vez = r.version / kLecturasPorCambio;
    if (r.fuente == Fuente::Bit) {
        r.valor ^= static_cast<std::uint16_t>(0x10U << vez % 12);
    } else if (r.fuente == Fuente::Nadie) {
        r.valor = vez % kCambiosPorComun == 0
                      ? kComun
                      : static_cast<std::uint16_t>(r.base + (r.version & r.mascara));
    } else {
        return;
    }
    r.cambioUs = reloj_.monotonicoUs();
}

void Linea::atender(const Solicitud& s) {
    const std::int64_t ahora = reloj_.monotonicoUs();
    Registro& r = registro(s[1], s[3]);
    while (!llegan_.empty() && llegan_.front() < ahora - kLatenciaUs)
        llegan_.pop_front();
    if (plan_.eco && !sana_) mandar(s, 0, false);
    const auto callada = calladas_.find(s[1]);
    const bool muerta =
        plan_.muertos > 0 && !sana_ && estaciones_.size() > 1 && s[1] == estaciones_[1];
    const bool calla = muerta || (callada != calladas_.end() && ahora < callada->second);
    if (!calla && perderProximas_ > 0) {
        --perderProximas_;
    } else if (!calla) {
        responder(s, r);
    }
    cambiar(r, s);
}

Respuesta Linea::respuestaA(const Solicitud& s, std::uint16_t valor) {
    const auto cual = std::find(estaciones_.begin(), estaciones_.end(), s[1]) - estaciones_.begin();
    const auto& habitos = plan_.habitos;
    const auto k = ++contador_;
    const std::array<std::uint8_t, 2> v{static_cast<std::uint8_t>(valor >> 8),
                                        static_cast<std::uint8_t>(valor)};
    Respuesta a{kMarcaRespuesta, 0, 0, 0, 0, v[0], v[1], 0};
    switch (habitos[static_cast<std::size_t>(cual) % habitos.size()]) {
    case Habito::RepiteTodo:
        std::copy_n(s.begin(), 4, a.begin() + 1);
        break;
    case Habito::RepiteSinOrden:
        a[1] = s[1], a[3] = s[3];
        break;
    case Habito::SoloEstacion:
        a[1] = s[1];
        break;
    case Habito::SoloRegistro:
        a[3] = s[3];
        break;
    case Habito::Constante:
        a[1] = a[2] = a[3] = a[4] = 0xEE;
        break;
    case Habito::AlAzar:
        for (std::uint32_t n = 0; n < 4; ++n)
            a[1 + n] = revuelto(4 * k + n);
        break;
    case Habito::Contador:
        a[4] = static_cast<std::uint8_t>(k);
        break;
    case Habito::Cuantos:
        break;
    }
    a.back() = sumaDeControl(std::span(a).subspan(1, 6));
    return a;
}

std::int64_t Linea::demoraDe() {
    std::int64_t us = plan_.demoraUs;
    if (!sana_ && plan_.tardanza > 0) us = plan_.tiempoFueraMs * plan_.tardanza;
    if (demorarProximas_ == 0) return us;
    --demorarProximas_;
    return std::min(us + extraUs_, tardeUs() - plan_.demoraUs);
}

void Linea::danar(Respuesta& a) {
    const std::uint32_t bit = danarProximas_ > 0 ? bit_ : revuelto(3 * contador_);
    danarProximas_ -= danarProximas_ > 0 ? 1 : 0;
    a[bit / 8 % a.size()] ^= static_cast<std::uint8_t>(1U << bit % 8);
}

void Linea::mentir(Respuesta& a, const Solicitud& s, std::int64_t us) {
    miente_ = false;
    mintio_ = true;
    const auto otro = std::find_if(registros_.begin(), registros_.end(),
                                   [&s](const auto& r) { return r.first != clave(s[1], s[3]); });
    if (otro == registros_.end()) return;
    Solicitud de = s;
    de[1] = static_cast<std::uint8_t>(otro->first >> 8);
    de[3] = static_cast<std::uint8_t>(otro->first);
    a = respuestaA(de, static_cast<std::uint16_t>(a[5] << 8 | a[6]));
    mentiraUs_ = reloj_.monotonicoUs() + us + kLatenciaUs;
}

void Linea::responder(const Solicitud& s, Registro& r) {
    ++respuestas_;
    const std::int64_t ahora = reloj_.monotonicoUs();
    const bool aTiempo = demorarProximas_ == 0 && (sana_ || plan_.tardanza == 0) &&
                         llegan_.empty() && retenidaUs_ < 0 && guardada_.de == nullptr;
    const std::int64_t us = demoraDe();
    Respuesta a = respuestaA(s, r.valor);
    if (danarProximas_ > 0 || (plan_.danaTercera && !sana_ && revuelto(contador_) % 3 == 0)) {
        danar(a);
        mandar(a, us, false);
        return;
    }
    if (trocar_) {
        trocar_ = false;
        guardada_ = {a, &r, ahora};
        return;
    }
    const bool miente = miente_ && aTiempo;
    if (miente) mentir(a, s, us);
    const bool repite = !miente && (duplicarProximas_ > 0 || (plan_.repite && !sana_));
    if (duplicarProximas_ > 0 && !miente) --duplicarProximas_;
    if (repite && !(aparte_ && aTiempo)) {
        // Where stations count their answers the second is another frame.
        emitirDoble(a, respuestaA(s, r.valor), us, r);
    } else {
        emitir(a, us, r);
        if (repite)
            r.enviados.back().llegaUs =
                mandar(a, us + static_cast<std::int64_t>(pausaMs() * 500), true);
    }
    soltarGuardada(us);
}

void Linea::emitir(const Respuesta& a, std::int64_t us, Registro& de) {
    const std::uint32_t pedazos = partirProximas_ > 0 ? pedazos_ : 1;
    partirProximas_ -= partirProximas_ > 0 ? 1 : 0;
    const std::size_t largo = (a.size() + pedazos - 1) / pedazos;
    std::int64_t llega = 0;
    for (std::size_t i = 0; i < a.size(); i += largo) {
        const std::size_t n = std::min(largo, a.size() - i);
        llega = mandar(std::span(a).subspan(i, n), us, i + n == a.size());
        us += plan_.demoraUs / 10;
    }
    anotar(a, llega, de);
}

/// Both in one arrival.
void Linea::emitirDoble(const Respuesta& a, const Respuesta& b, std::int64_t us, Registro& de) {
    std::array<std::uint8_t, 2 * kLargoRespuesta> dos{};
    std::copy(a.begin(), a.end(), dos.begin());
    std::copy(b.begin(), b.end(), dos.begin() + kLargoRespuesta);
    anotar(a, mandar(dos, us, true), de);
}

void Linea::anotar(const Respuesta& a, std::int64_t llegaUs, Registro& de) {
    if (de.enviados.size() == kEnviadosQueSeRecuerdan) de.enviados.pop_front();
    de.enviados.push_back({static_cast<std::int16_t>(a[5] << 8 | a[6]), llegaUs});
}

/// It comes behind the present one, or never.
void Linea::soltarGuardada(std::int64_t us) {
    const Guardada g = std::exchange(guardada_, {});
    if (g.de != nullptr && reloj_.monotonicoUs() + us < g.us + tardeUs())
        emitir(g.trama, us, *g.de);
}

void Linea::mandarSuelto(std::span<const std::uint8_t> bytes) { mandar(bytes, 0, false); }

std::int64_t Linea::mandar(std::span<const std::uint8_t> bytes, std::int64_t us, bool deVeras) {
    const std::int64_t ultima = llegan_.empty() ? 0 : llegan_.back();
    llegan_.push_back(std::max(ultima, reloj_.monotonicoUs() + us + kLatenciaUs));
    if (enlace_ == 0) return llegan_.back();
    mirarPasar(bytes, deVeras);
    red_.enviar(enlace_, bytes, us);
    return llegan_.back();
}

/// Every eight bytes in a row that are a valid frame may be taken for one, but only those that a
/// station meant to send are one. `deVeras`: one or two of them end with these bytes.
void Linea::mirarPasar(std::span<const std::uint8_t> bytes, bool deVeras) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        std::copy(pasan_.begin() + 1, pasan_.end(), pasan_.begin());
        pasan_.back() = bytes[i];
        if (pasan_.front() != kMarcaRespuesta ||
            (deVeras && (bytes.size() - i - 1) % kLargoRespuesta == 0))
            continue;
        if (verificarTramaRespuesta(pasan_)) ruidoUs_ = llegan_.back();
    }
}

bool Linea::disculpada() {
    const bool hace = ruidoUs_ >= 0 &&
                      (retenidaUs_ >= 0 ||
                       reloj_.monotonicoUs() <= ruidoUs_ + tardeUs() + plan_.tiempoFueraMs * 1000);
    disculpas_ += hace ? 1 : 0;
    return hace;
}

bool Linea::respondio(std::uint8_t estacion, std::uint8_t direccion, std::uint16_t valor,
                      std::int64_t desdeUs, std::uint16_t mascara) {
    const auto& enviados = registro(estacion, direccion).enviados;
    return std::any_of(enviados.begin(), enviados.end(), [&](const Registro::Enviado& e) {
        return e.llegaUs >= desdeUs &&
               ((static_cast<std::uint16_t>(e.valor) ^ valor) & mascara) == 0;
    });
}

bool Linea::pudoLlegar(std::uint8_t estacion, std::uint8_t direccion, std::int16_t valor) {
    auto& enviados = registro(estacion, direccion).enviados;
    const auto este = std::find_if(enviados.begin(), enviados.end(),
                                   [valor](const auto& e) { return e.valor == valor; });
    if (este == enviados.end()) return false;
    enviados.erase(enviados.begin(), este); // it stays: a repetition of it may come again
    return true;
}

void Linea::cambiarHabito(Habito a) {
    if (std::exchange(cambio_, true)) return;
    plan_.habitos.assign(1, a);
}

void Linea::reiniciar() {
    cortar();
    for (auto& [k, r] : registros_) {
        if (r.fuente == Fuente::Nadie) r.valor = r.base;
    }
}

void Linea::cortar() {
    fines_.cerroUs = reloj_.monotonicoUs();
    red_.cortar(enlace_);
}

void Linea::cortarDeGolpe() {
    fines_.reinicioUs = reloj_.monotonicoUs();
    red_.romper(enlace_, ECONNRESET);
}

void Linea::soltar(IdEnlace enlace) {
    fines_.cerroUs = reloj_.monotonicoUs();
    red_.cortar(enlace);
}

void Linea::recibir(Llegada como) {
    constexpr std::int64_t kNadieLaTieneUs = 3'000'000;
    constexpr std::int64_t kElNucleoSeCansaUs = 127'000'000;
    const std::string& ip = plan_.ip;
    const std::uint32_t puerto = plan_.puertoTCP;
    if (llegada_ == Llegada::SinNombre) red_.nombrar(ip, ip);
    llegada_ = como;
    switch (como) {
    case Llegada::Rechazada:
        return red_.rechazar(ip, puerto);
    case Llegada::SinRuta:
        return red_.negar(ip, puerto, EHOSTUNREACH, 0);
    case Llegada::SinRutaLuego:
        return red_.negar(ip, puerto, EHOSTUNREACH, kNadieLaTieneUs);
    case Llegada::SinRed:
        return red_.negar(ip, puerto, ENETUNREACH, 0);
    case Llegada::Reiniciada:
        return red_.negar(ip, puerto, ECONNRESET, 300);
    case Llegada::SinRespuesta:
        return red_.negar(ip, puerto, ETIMEDOUT, kElNucleoSeCansaUs);
    case Llegada::Muda:
        return red_.enmudecer(ip, puerto);
    case Llegada::SinNombre:
        return red_.nombrar(ip, "");
    default:
        return red_.atender(ip, puerto, *this);
    }
}

bool Linea::interrumpir() {
    const std::int64_t ahora = reloj_.monotonicoUs();
    const bool enCamino = !llegan_.empty() && llegan_.back() >= ahora;
    const bool paso = !llegan_.empty() && llegan_.front() <= ahora;
    if ((paso && enCamino) || ahora <= mentiraUs_) return false;
    if (retenidaUs_ < 0) retenidaUs_ = ahora;
    fines_.retuvoUs = ahora;
    red_.interrumpir(enlace_);
    return true;
}

void Linea::reanudar(IdEnlace enlace) {
    red_.reanudar(enlace);
    if (enlace != enlace_ || retenidaUs_ < 0) return;
    // What was held back arrives now.
    const std::int64_t llega = reloj_.monotonicoUs() + kLatenciaUs;
    for (auto& [k, r] : registros_) {
        for (auto e = r.enviados.rbegin(); e != r.enviados.rend() && e->llegaUs >= retenidaUs_; ++e)
            e->llegaUs = std::max(e->llegaUs, llega);
    }
    for (std::int64_t& l : llegan_) {
        if (l >= retenidaUs_) l = std::max(l, llega);
    }
    if (ruidoUs_ >= retenidaUs_) ruidoUs_ = std::max(ruidoUs_, llega);
    retenidaUs_ = -1;
}

void Linea::sanar() {
    demorarProximas_ = perderProximas_ = partirProximas_ = 0;
    duplicarProximas_ = danarProximas_ = 0;
    trocar_ = miente_ = false;
    sana_ = true;
    calladas_.clear();
    guardada_ = {};
}

} // namespace kv::mundo
