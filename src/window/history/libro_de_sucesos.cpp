// SPDX-License-Identifier: Apache-2.0
#include "window/history/libro_de_sucesos.h"

#include "events/fin_de_escritura.h"
#include "events/rechazo.h"
#include "events/redaccion.h"
#include "text/fecha.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "window/controls/control.h"
#include "window/controls/idioma.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace kv {
namespace {

/// What of all that happens is kept, how grave it is, and the words for it, in which "%1" is the
/// event's text; writes say more. Nothing of the traffic of a plant that works.
struct Renglon {
    Que que;
    Gravedad gravedad;
    const char* frase;
};
constexpr const char* kSinAlta =
    QT_TRANSLATE_NOOP("kv::Sucesos", "No se pudo dar de alta el bloque: %1");
constexpr std::array kRenglones = {
    Renglon{Que::EnlaceArriba, Gravedad::Nota, QT_TRANSLATE_NOOP("kv::Sucesos", "Enlace arriba")},
    Renglon{Que::EnlaceAbajo, Gravedad::Alarma, QT_TRANSLATE_NOOP("kv::Sucesos", "Enlace caido")},
    Renglon{Que::EnlaceNoLevanta, Gravedad::Alarma,
            QT_TRANSLATE_NOOP("kv::Sucesos", "El enlace no levanta")},
    Renglon{Que::EnlaceCortado, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Se corta el enlace: lo que no llego ya no sale")},
    Renglon{Que::LineaNoCalla, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "La linea no calla: se cierra el enlace")},
    Renglon{Que::EstacionMuda, Gravedad::Alarma,
            QT_TRANSLATE_NOOP("kv::Sucesos", "La estacion no contesta")},
    Renglon{Que::EstacionContesta, Gravedad::Nota,
            QT_TRANSLATE_NOOP("kv::Sucesos", "La estacion contesta de nuevo")},
    Renglon{Que::BloqueDeshabilitado, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "El bloque descansa: no hubo respuesta")},
    Renglon{Que::BloqueHabilitado, Gravedad::Nota,
            QT_TRANSLATE_NOOP("kv::Sucesos", "El bloque se pregunta de nuevo")},
    Renglon{Que::BloqueConmutado, Gravedad::Nota,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Bloque prendido")},
    Renglon{Que::BloqueDadoDeAlta, Gravedad::Nota,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Bloque dado de alta a pedido: %1")},
    Renglon{Que::EscrituraTerminada, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Escritura de %1 = %2: %3")},
    Renglon{Que::EscrituraRechazada, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Escritura rechazada: %1 = %2: %3")},
    Renglon{Que::SinPuertoNiPlc, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "No existe ese puerto o PLC: %1")},
    Renglon{Que::ForzarSinTrama, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "No se puede forzar: el bloque no se puede polear")},
    Renglon{Que::ForzarSinConexion, Gravedad::Aviso,
            QT_TRANSLATE_NOOP("kv::Sucesos", "No se puede forzar: sin conexion con la estacion")},
    Renglon{Que::AltaFueraDeTrama, Gravedad::Aviso, kSinAlta},
    Renglon{Que::AltaSinLugar, Gravedad::Aviso, kSinAlta},
    Renglon{Que::AltaSinPuerto, Gravedad::Aviso, kSinAlta},
    Renglon{Que::FallaDelGuion, Gravedad::Alarma,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Falla del guion: %1")},
    Renglon{Que::GuionDetenido, Gravedad::Alarma,
            QT_TRANSLATE_NOOP("kv::Sucesos", "El guion se detiene: %1")},
    Renglon{Que::GuionSigue, Gravedad::Nota,
            QT_TRANSLATE_NOOP("kv::Sucesos", "El guion corre de nuevo")},
    Renglon{Que::ClienteEntra, Gravedad::Nota,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Entra el cliente %1")},
    Renglon{Que::ClienteSale, Gravedad::Alarma,
            QT_TRANSLATE_NOOP("kv::Sucesos", "Sale el cliente %1")},
};

const Renglon* renglonDe(Que que) {
    const auto* const r = std::find_if(kRenglones.begin(), kRenglones.end(),
                                       [que](const Renglon& x) { return x.que == que; });
    return r == kRenglones.end() ? nullptr : r;
}

/// What makes two of them the same: writes of one register with different values are not.
std::uint64_t claveDe(const Suceso& s, std::string_view texto) {
    std::uint64_t clave = 0;
    for (const std::uint64_t parte :
         {static_cast<std::uint64_t>(s.que), std::uint64_t{s.conexion}, std::uint64_t{s.bloque},
          static_cast<std::uint64_t>(static_cast<std::uint16_t>(s.detalle)),
          static_cast<std::uint64_t>(std::hash<double>{}(s.numero)),
          static_cast<std::uint64_t>(s.bit + 1),
          static_cast<std::uint64_t>(std::hash<std::string_view>{}(texto))})
        clave = (clave ^ parte) * 0x9E3779B97F4A7C15U + (clave >> 29U);
    return clave;
}

/// As much of a text as is kept. A refusal has its parts one behind the other.
std::string cortado(const Suceso& s, std::string_view texto) {
    if (s.que != Que::EscrituraRechazada)
        return std::string(comienzo(texto, LibroDeSucesos::kTextoMaximo));
    const auto todo = TextoDeRechazo::partir(texto);
    constexpr std::size_t kParte = LibroDeSucesos::kTextoMaximo / 2;
    return TextoDeRechazo{comienzo(todo.direccion, kParte), comienzo(todo.motivo, kParte), {}}
        .unir();
}

std::int64_t msDe(std::int64_t instante) {
    const FechaHora f = desempaquetar(instante);
    return segundosDesdeFecha(f) * 1000 + f.milisegundo;
}

QString traducida(const char* frase) { return QCoreApplication::translate("kv::Sucesos", frase); }

} // namespace

LibroDeSucesos::LibroDeSucesos(Sucesos& sucesos) : sucesos_(sucesos) {
    sucesos_.avisarA(this, quesCon([](Que que) { return renglonDe(que) != nullptr; }));
}

LibroDeSucesos::~LibroDeSucesos() { sucesos_.dejarDeAvisarA(this); }

void LibroDeSucesos::alSuceder(const Suceso& suceso, std::string_view texto) {
    const Renglon* const renglon = renglonDe(suceso.que);
    // Writes that were carried out have a record of their own.
    if (renglon == nullptr || suceso.callado ||
        (suceso.que == Que::EstacionMuda && suceso.detalle != 0) ||
        (suceso.que == Que::EscrituraTerminada &&
         static_cast<FinDeEscritura>(suceso.detalle) == FinDeEscritura::Confirmada))
        return;
    const Gravedad gravedad = renglon->gravedad;
    ++version_;
    const std::uint64_t clave = claveDe(suceso, texto);
    const auto antes = ultimas_.find(clave);
    if (antes != ultimas_.end() && antes->second >= primera_) {
        Anotacion& a = lineas_[antes->second - primera_];
        const std::int64_t hace = msDe(suceso.instante) - msDe(a.primero);
        if (hace >= 0 && hace < kSeJuntanMs) {
            a.suceso = suceso;
            ++a.veces;
            if (a.reconocida && a.gravedad != Gravedad::Nota) ++sinReconocer_;
            a.reconocida = false;
            return;
        }
    }
    if (lineas_.size() >= kMaximo) olvidarLaPrimera();
    ultimas_[clave] = siguiente();
    lineas_.push_back({suceso, suceso.instante, 1, gravedad, false, cortado(suceso, texto)});
    if (gravedad != Gravedad::Nota) ++sinReconocer_;
}

void LibroDeSucesos::olvidarLaPrimera() {
    const Anotacion& a = lineas_.front();
    if (!a.reconocida && a.gravedad != Gravedad::Nota) --sinReconocer_;
    lineas_.pop_front();
    ++primera_;
    // Now and then: what is looked up stays no more than what can be found.
    if (ultimas_.size() > 2 * kMaximo)
        std::erase_if(ultimas_, [this](const auto& u) { return u.second < primera_; });
}

bool LibroDeSucesos::anteponer(Anotacion linea) {
    if (primera_ == 0 || lineas_.size() >= kMaximo) return false;
    if (!linea.reconocida && linea.gravedad != Gravedad::Nota) ++sinReconocer_;
    lineas_.push_front(std::move(linea));
    --primera_;
    ++version_;
    return true;
}

void LibroDeSucesos::reconocer(std::uint64_t numero) {
    if (numero < primera_ || numero >= siguiente()) return;
    Anotacion& a = lineas_[numero - primera_];
    if (a.reconocida) return;
    a.reconocida = true;
    if (a.gravedad != Gravedad::Nota) --sinReconocer_;
    ++version_;
}

void LibroDeSucesos::reconocerTodo() {
    for (std::uint64_t n = primera_; n < siguiente(); ++n)
        reconocer(n);
}

QString fraseDe(const Anotacion& anotacion, const Tablas& tablas) {
    if (anotacion.deAntes) return enQt(anotacion.deAntes->que);
    const Suceso& s = anotacion.suceso;
    const Renglon* const renglon = renglonDe(s.que);
    if (renglon == nullptr) return {};
    if (s.que == Que::BloqueConmutado && s.detalle == 0)
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "Bloque apagado"));
    const QString frase = traducida(renglon->frase);
    const Idioma idioma = enIngles() ? Idioma::Ingles : Idioma::Castellano;
    if (s.que == Que::EscrituraTerminada)
        return frase.arg(enQt(direccionEscrita(tablas, s)), enQt(textoDeNumero(s.numero)),
                         enQt(palabras(static_cast<FinDeEscritura>(s.detalle), idioma)));
    if (s.que == Que::EscrituraRechazada) {
        const auto r = TextoDeRechazo::partir(anotacion.texto);
        return frase.arg(enQt(r.direccion), enQt(textoDeNumero(s.numero)),
                         enQt(rechazoEn(idioma, r.motivo)));
    }
    return frase.contains("%1") ? frase.arg(enQt(anotacion.texto)) : frase;
}

std::string lugarDe(const Anotacion& anotacion, const Tablas& tablas) {
    if (anotacion.deAntes) return anotacion.deAntes->donde;
    const Suceso& suceso = anotacion.suceso;
    const bool deEstacion = suceso.que == Que::EstacionMuda || suceso.que == Que::EstacionContesta;
    if (suceso.bloque != kNinguno)
        return deEstacion ? nombreDeEstacion(tablas, suceso.bloque)
                          : tablas.bloques[suceso.bloque].clave;
    if (suceso.conexion == kNinguno) return {};
    const ConexionIP& c = tablas.conexiones[suceso.conexion];
    return direccionDe(c);
}

std::string horaDe(std::int64_t instante) { return formatoDeSello(desempaquetar(instante)); }

} // namespace kv
