// SPDX-License-Identifier: Apache-2.0
#include "link/explorador.h"

#include "wire/ensamblado.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::uint8_t kOrdenDeLectura = 0x52;
constexpr std::int64_t kPausa = 1;
constexpr std::int64_t kPronto = 2;
constexpr std::array<std::uint8_t, Linea::kRegistros> kEstacion{1, 1, 2};
// A register whose number is the marker of answers: its request's echo looks like the beginning of
// one.
constexpr std::array<std::uint8_t, Linea::kRegistros> kRegistro{0x07, 0x11, 0x07};

RespuestasDebidas::Registro claveDe(int registro) {
    const auto r = static_cast<std::size_t>(registro);
    return 0x520000U | RespuestasDebidas::Registro{kEstacion[r]} << 8 | kRegistro[r];
}
Solicitud solicitudDe(int registro) {
    const auto r = static_cast<std::size_t>(registro);
    Solicitud s{kOrdenDeLectura, kEstacion[r], 0, kRegistro[r], 0, 0, 0};
    s.back() = sumaDeControl(std::span(s).first(6));
    return s;
}
std::uint16_t valorDe(int registro) { return static_cast<std::uint16_t>(100 + registro); }

RespuestasDebidas::Respuesta vista(const Respuesta& r) {
    return {std::uint32_t{r[1]} << 24 | std::uint32_t{r[2]} << 16 | std::uint32_t{r[3]} << 8 | r[4],
            static_cast<std::uint16_t>(r[5] << 8 | r[6])};
}

std::int64_t tardanza(Desenlace d) {
    switch (d) {
    case Desenlace::TardeUnoCoMaTres:
    case Desenlace::DobleJuntaTarde:
        return 13;
    case Desenlace::TardeDos:
        return 20;
    case Desenlace::TardeCasiTres:
        return 29;
    default:
        return kPronto;
    }
}

} // namespace

Respuesta Linea::respuestaDe(int registro, bool mentida) {
    const auto r = static_cast<std::size_t>(registro);
    const auto otro = (r + 1) % kRegistros;
    const std::uint8_t e = kEstacion[mentida ? otro : r];
    const std::uint8_t n = kRegistro[mentida ? otro : r];
    std::array<std::uint8_t, 4> libres{};
    switch (habito_) {
    case Habito::RepiteTodo:
    case Habito::MienteUnaVez:
        libres = {e, 0, n, 0};
        break;
    case Habito::SoloEstacion:
        libres = {e, 0, 0, 0};
        break;
    case Habito::SoloRegistro:
        libres = {0, 0, n, 0};
        break;
    case Habito::Constante:
        libres = {9, 9, 9, 9};
        break;
    case Habito::Contador:
        libres = {0, 0, 0, ++contador_};
        break;
    case Habito::CambiaDeTodoAConstante:
        if (cambiado_) {
            libres = {9, 9, 9, 9};
        } else {
            libres = {e, 0, n, 0};
        }
        break;
    case Habito::CambiaDeOrden:
        if (cambiado_) {
            libres = {n, 0, e, 0};
        } else {
            libres = {e, 0, n, 0};
        }
        break;
    }
    Respuesta t{kMarcaRespuesta,
                libres[0],
                libres[1],
                libres[2],
                libres[3],
                0,
                static_cast<std::uint8_t>(valorDe(registro)),
                0};
    t.back() = sumaDeControl(std::span(t).subspan(1, 6));
    return t;
}

void Linea::poner(std::int64_t dentroDe, int registro, std::span<const std::uint8_t> bytes,
                  bool copia) {
    EnCamino e{ahora_ + dentroDe,
               static_cast<std::uint8_t>(registro),
               copia,
               static_cast<std::uint8_t>(bytes.size()),
               {}};
    std::copy(bytes.begin(), bytes.end(), e.bytes.begin());
    const auto lugar = std::upper_bound(
        enCamino_.begin(), enCamino_.end(), e.cuando,
        [](std::int64_t cuando, const EnCamino& otro) { return cuando < otro.cuando; });
    enCamino_.insert(lugar, e);
}

/// The station has the request.
void Linea::contestar(int registro, Desenlace como) {
    if (como == Desenlace::Perdida) return;
    Respuesta r = respuestaDe(registro, como == Desenlace::MentidaEnTiempo);
    const std::int64_t tarda = tardanza(como);
    const std::array<std::uint8_t, 8> ruido{0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55, 0x55};
    switch (como) {
    case Desenlace::Danada:
        r.back() ^= 1;
        return poner(tarda, registro, r);
    case Desenlace::EnDosPiezas:
        poner(tarda, registro, std::span(r).first(4));
        return poner(kTiempoFuera + 3, registro, std::span(r).subspan(4));
    case Desenlace::TrasRuido:
        poner(1, registro, ruido);
        break;
    case Desenlace::TrasMarcaYEco:
        poner(0, registro, std::span(&kMarcaRespuesta, 1));
        [[fallthrough]];
    case Desenlace::TrasSuEco:
        poner(1, registro, solicitudDe(registro));
        break;
    default:
        break;
    }
    poner(tarda, registro, r);
    if (como == Desenlace::DobleJunta || como == Desenlace::DobleJuntaTarde)
        poner(tarda, registro, r);
    if (como == Desenlace::DobleEnLaPausa) poner(tarda + kPausa, registro, r, true);
    if (como == Desenlace::DobleTarde) poner(tarda + kTiempoFuera + 3, registro, r, true);
}

void Linea::soltar() {
    detenida_ = false;
    for (EnCamino& e : enCamino_)
        e.cuando = std::max(e.cuando, ahora_);
    for (const Detenido& d : detenidos_)
        contestar(d.registro, d.desenlace);
    detenidos_.clear();
}

std::int64_t Linea::proximo() const {
    return detenida_ || enCamino_.empty() ? INT64_MAX : enCamino_.front().cuando;
}

/// What comes at this moment comes in one arrival.
std::optional<Linea::Fin> Linea::entregar(int esperado) {
    std::vector<std::uint8_t> bytes;
    bool copia = false;
    while (!enCamino_.empty() && enCamino_.front().cuando <= ahora_) {
        const EnCamino& e = enCamino_.front();
        bytes.insert(bytes.end(), e.bytes.begin(), e.bytes.begin() + e.largo);
        copia = copia || e.copia;
        enCamino_.erase(enCamino_.begin());
    }
    Ensamblado llego;
    ensamblar(tenidos_, bytes, llego);
    if (!tenidos_.empty()) regla_.alEmpezarOtra(ahora_);
    std::vector<RespuestasDebidas::Respuesta> vistas;
    for (const auto& r : llego.respuestas) {
        if (esperado < 0 || !esEco(r, solicitudDe(esperado))) vistas.push_back(vista(r.trama));
    }
    if (vistas.empty()) return std::nullopt;
    pasoUna_ = true;
    if (esperado < 0) {
        regla_.alSobrar(vistas, ahora_);
        return std::nullopt;
    }
    const auto veredicto = regla_.alRecibir(vistas, ahora_);
    using De = RespuestasDebidas::Veredicto::De;
    if (veredicto.de == De::Otro) return std::nullopt;
    if (veredicto.de == De::NoSeSabe) return Fin::EnDuda;
    ++aceptadas_;
    eraCopia_ = copia;
    if (vistas[veredicto.cual].valor != valorDe(esperado)) {
        enOtroLugar_ = true;
        eraRuido_ = true;
        for (int r = 0; r < kRegistros; ++r)
            eraRuido_ = eraRuido_ && vistas[veredicto.cual].valor != valorDe(r);
    }
    return Fin::Contestado;
}

void Linea::dejarPasar(std::int64_t hasta) {
    while (proximo() <= hasta) {
        ahora_ = std::max(ahora_, proximo());
        (void)entregar(-1);
    }
    ahora_ = hasta;
}

/// As the turns of a connection do: it is held back until the register may be asked, and closed
/// when it does not fall silent. False in the latter case.
bool Linea::esperarTurno(int registro) {
    for (;;) {
        const bool llego = !detenida_ || detenidos_.empty();
        const auto permiso = regla_.permiso(claveDe(registro), ahora_, llego);
        if (permiso.esperaMs == 0) {
            aPrueba_ = permiso.cuenta ? -1 : registro;
            return true;
        }
        regla_.alRetener(ahora_);
        if (ahora_ - regla_.retenidaDesde() > 12 * regla_.paciencia()) {
            regla_.vaciar();
            tenidos_.clear();
            enCamino_.clear();
            detenidos_.clear();
            detenida_ = false;
            return false;
        }
        dejarPasar(ahora_ + permiso.esperaMs);
    }
}

Linea::Fin Linea::esperar(int registro, std::optional<std::int64_t> soltarA) {
    const std::int64_t vence = ahora_ + kTiempoFuera;
    for (;;) {
        const std::int64_t suelta = soltarA.value_or(INT64_MAX);
        const std::int64_t cuando = std::min(proximo(), suelta);
        if (cuando >= vence) break;
        ahora_ = std::max(ahora_, cuando);
        if (cuando == suelta) {
            soltar();
            soltarA.reset();
        }
        if (proximo() > ahora_) continue;
        if (const auto fin = entregar(registro)) return *fin;
    }
    ahora_ = vence;
    return Fin::Vencido;
}

Linea::Fin Linea::pedir(int registro, Desenlace desenlace, Red red) {
    const bool llego = !detenida_ || detenidos_.empty();
    tenidos_.clear();
    pasoUna_ = false;
    regla_.alEnviar(claveDe(registro), ahora_, kTiempoFuera, llego);
    if (detenida_) {
        detenidos_.push_back({static_cast<std::uint8_t>(registro), desenlace});
    } else {
        contestar(registro, desenlace);
    }
    if (red == Red::DetieneDespues) detener();
    const Fin fin =
        esperar(registro, red == Red::SueltaEsperando ? std::optional(ahora_ + kTiempoFuera / 2)
                                                      : std::nullopt);
    dejarPasar(ahora_ + kPausa);
    return fin;
}

bool Linea::hacer(const Orden& orden) {
    if (orden.desenlace == Desenlace::MentidaEnTiempo) {
        if (habito_ != Habito::MienteUnaVez || cambiado_ || detenida_ || orden.red != Red::Nada)
            return false;
        cambiado_ = true;
    }
    if (orden.red == Red::SueltaAntes || orden.red == Red::SueltaEsperando) {
        if (!detenida_) return false;
        if (orden.red == Red::SueltaAntes) soltar();
    } else if (orden.red != Red::Nada) {
        if (detenida_) return false;
        // What stands in docs/decisions.md as beyond telling: the network lets an answer through
        // and holds the next ones back for as long as the line has to be quiet.
        if (orden.red == Red::DetieneAntes && pasoUna_ && !enCamino_.empty()) return false;
        if (orden.red == Red::DetieneAntes) detener();
    }
    if (orden.registro < 0) {
        dejarPasar(ahora_ + 3 * kTiempoFuera);
        return true;
    }
    if (!esperarTurno(orden.registro)) return true;
    pedir(orden.registro, orden.desenlace, orden.red);
    return true;
}

void Linea::ensenar(int rondas) {
    for (int i = 0; i < rondas * kRegistros; ++i) {
        if (esperarTurno(i % kRegistros)) pedir(i % kRegistros, Desenlace::EnTiempo, Red::Nada);
    }
    if (habito_ != Habito::MienteUnaVez) cambiado_ = true;
    aceptadas_ = 0;
}

std::optional<int> Linea::sanar(int maximo) {
    if (detenida_) soltar();
    std::array<bool, kRegistros> hay{};
    int turno = 0, preferido = -1;
    for (int pedidos = 0; pedidos <= maximo; ++pedidos) {
        if (std::all_of(hay.begin(), hay.end(), [](bool h) { return h; })) return pedidos;
        const int registro = preferido >= 0 ? preferido : turno++ % kRegistros;
        preferido = -1;
        if (!esperarTurno(registro)) continue;
        const bool aPrueba = aPrueba_ >= 0;
        const Fin fin = pedir(registro, Desenlace::EnTiempo, Red::Nada);
        if (fin == Fin::Contestado) hay[static_cast<std::size_t>(registro)] = true;
        if (aPrueba && fin == Fin::EnDuda) preferido = registro;
    }
    return std::nullopt;
}

std::uint64_t Linea::huella() const {
    std::uint64_t h = 1469598103934665603U;
    const auto mezclar = [&h](std::int64_t n) {
        h = (h ^ static_cast<std::uint64_t>(n)) * 0x100000001B3U;
        h ^= h >> 29;
    };
    regla_.recorrer(ahora_, mezclar);
    for (const std::uint8_t b : tenidos_)
        mezclar(b);
    mezclar(-7);
    for (const EnCamino& e : enCamino_) {
        mezclar(std::max<std::int64_t>(e.cuando - ahora_, 0));
        for (const std::uint8_t b : e.bytes)
            mezclar(b);
        mezclar(e.largo * 2 + e.copia);
    }
    mezclar(-8);
    for (const Detenido& d : detenidos_)
        mezclar(d.registro * 100 + static_cast<int>(d.desenlace));
    mezclar(detenida_ * 4 + cambiado_ * 2 + pasoUna_);
    mezclar(contador_);
    return h;
}

std::string comoTexto(const std::vector<Orden>& ordenes) {
    static constexpr std::array kDesenlaces{
        "en tiempo",     "tarde 1,3",       "tarde 2",        "tarde 2,9",        "perdida",
        "doble junta",   "doble junta 1,3", "doble en pausa", "doble tarde",      "dañada",
        "en dos piezas", "tras ruido",      "tras su eco",    "tras marca y eco", "mentida"};
    static constexpr std::array kRedes{"", " red detenida antes", " red detenida despues",
                                       " red suelta antes", " red suelta esperando"};
    std::string texto;
    for (const Orden& o : ordenes) {
        texto += o.registro < 0 ? std::string("calla")
                                : std::string(1, "ABC"[o.registro]) + " " +
                                      kDesenlaces[static_cast<std::size_t>(o.desenlace)];
        texto += kRedes[static_cast<std::size_t>(o.red)];
        texto += "; ";
    }
    return texto;
}

} // namespace kv
