#include "mundo/linea.h"

#include "apoyo/estaciones.h"

#include <algorithm>
#include <utility>

namespace kv::mundo {
namespace {

constexpr std::size_t kEnviadosQueSeRecuerdan = 200;
constexpr std::uint32_t kLecturasPorCambio = 3;

std::uint32_t clave(std::uint8_t estacion, std::uint8_t direccion) {
    return std::uint32_t{estacion} << 8 | direccion;
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
    entrada_.clear();
    guardada_.clear();
    vistos_.reset();
    pasan_.fill(0);
    for (auto& [k, r] : registros_)
        r.enviados.clear();
}

void Linea::alCortarse(IdEnlace enlace) {
    if (enlace == enlace_) enlace_ = 0;
}

void Linea::alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) {
    if (enlace != enlace_) return;
    entrada_.insert(entrada_.end(), bytes.begin(), bytes.end());
    std::size_t i = 0;
    for (; i + kLargoSolicitud <= entrada_.size(); i += kLargoSolicitud) {
        Solicitud s{};
        std::copy_n(entrada_.begin() + static_cast<std::ptrdiff_t>(i), s.size(), s.begin());
        atender(s);
    }
    entrada_.erase(entrada_.begin(), entrada_.begin() + static_cast<std::ptrdiff_t>(i));
}

void Linea::atender(const Solicitud& s) {
    Registro& r = registro(s[1], s[3]);
    if (s[0] == 0x57) {
        r.valor = static_cast<std::uint16_t>(s[4] << 8 | s[5]);
    } else if (r.fuente == Fuente::Nadie && r.mascara != 0 &&
               ++r.version % kLecturasPorCambio == 0) {
        r.valor = static_cast<std::uint16_t>(r.base + (r.version & r.mascara));
    }
    const auto callada = calladas_.find(s[1]);
    if (callada != calladas_.end() && reloj_.monotonicoUs() < callada->second) return;
    if (perderProximas_ > 0) {
        --perderProximas_;
        return;
    }
    responder(s, r);
}

void Linea::responder(const Solicitud& s, Registro& r) {
    ++respuestas_;
    Respuesta a = respuestaCon(r.valor, s[1], s[3]);
    std::int64_t us = plan_.demoraUs;
    if (demorarProximas_ > 0) {
        --demorarProximas_;
        us += extraUs_;
    }
    if (danarProximas_ > 0) {
        --danarProximas_;
        a[bit_ / 8 % a.size()] ^= static_cast<std::uint8_t>(1U << bit_ % 8);
    } else {
        if (r.enviados.size() == kEnviadosQueSeRecuerdan) r.enviados.pop_front();
        r.enviados.push_back(static_cast<std::int16_t>(r.valor));
    }
    if (trocar_) {
        trocar_ = false;
        guardada_.assign(a.begin(), a.end());
        return;
    }
    if (partirProximas_ > 0) {
        --partirProximas_;
        const std::size_t largo = (a.size() + pedazos_ - 1) / pedazos_;
        for (std::size_t i = 0; i < a.size(); i += largo) {
            mandar(std::span(a).subspan(i, std::min(largo, a.size() - i)), us);
            us += plan_.demoraUs / 4;
        }
    } else {
        mandar(a, us);
    }
    if (duplicarProximas_ > 0) {
        --duplicarProximas_;
        mandar(a, us);
    }
    if (!guardada_.empty()) mandar(std::exchange(guardada_, {}), us);
}

void Linea::mandarSuelto(std::span<const std::uint8_t> bytes) { mandar(bytes, 0); }

void Linea::mandar(std::span<const std::uint8_t> bytes, std::int64_t us) {
    if (enlace_ == 0) return;
    if (plan_.clase == Clase::ConBasura) mirarPasar(bytes);
    red_.enviar(enlace_, bytes, us);
}

/// Every eight bytes in a row that are a valid frame may be taken for one.
void Linea::mirarPasar(std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t b : bytes) {
        std::copy(pasan_.begin() + 1, pasan_.end(), pasan_.begin());
        pasan_.back() = b;
        if (verificarTramaRespuesta(pasan_))
            vistos_.set(static_cast<std::uint16_t>(valorDeRespuesta(pasan_)));
    }
}

bool Linea::respondio(std::uint8_t estacion, std::uint8_t direccion, std::int16_t valor) {
    if (plan_.clase == Clase::ConBasura) return vistos_.test(static_cast<std::uint16_t>(valor));
    const auto& enviados = registro(estacion, direccion).enviados;
    return std::find(enviados.begin(), enviados.end(), valor) != enviados.end();
}

bool Linea::pudoLlegar(std::uint8_t estacion, std::uint8_t direccion, std::int16_t valor) {
    if (plan_.clase == Clase::ConBasura) return vistos_.test(static_cast<std::uint16_t>(valor));
    auto& enviados = registro(estacion, direccion).enviados;
    const auto este = std::find(enviados.begin(), enviados.end(), valor);
    if (este == enviados.end()) return false;
    enviados.erase(enviados.begin(), este); // it stays: a repetition of it may be told of again
    return true;
}

void Linea::reiniciar() {
    cortar();
    for (auto& [k, r] : registros_) {
        if (r.fuente == Fuente::Nadie) r.valor = r.base;
    }
}

void Linea::sanar() {
    demorarProximas_ = perderProximas_ = partirProximas_ = 0;
    duplicarProximas_ = danarProximas_ = 0;
    trocar_ = false;
    calladas_.clear();
    if (!guardada_.empty()) mandar(std::exchange(guardada_, {}), 0);
}

} // namespace kv::mundo
