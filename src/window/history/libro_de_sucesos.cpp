// SPDX-License-Identifier: Apache-2.0
#include "window/history/libro_de_sucesos.h"

#include "events/rechazo.h"
#include "events/redaccion.h"
#include "text/fecha.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "window/controls/control.h"
#include "window/controls/idioma.h"

#include <QCoreApplication>

#include <array>
#include <optional>

namespace kv {
namespace {

/// Nothing for the traffic of a plant that works.
std::optional<Gravedad> gravedadDe(const Suceso& s) {
    if (s.callado) return std::nullopt;
    switch (s.que) {
    case Que::EnlaceAbajo:
    case Que::EnlaceNoLevanta:
    case Que::EstacionMuda:
    case Que::FallaDelGuion:
    case Que::GuionDetenido:
    case Que::ClienteSale:
        return Gravedad::Alarma;
    case Que::LineaNoCalla:
    case Que::EnlaceCortado:
    case Que::BloqueDeshabilitado:
    case Que::EscrituraRechazada:
    case Que::SinPuertoNiPlc:
    case Que::ForzarSinTrama:
    case Que::ForzarSinConexion:
    case Que::AltaFueraDeTrama:
    case Que::AltaSinLugar:
    case Que::AltaSinPuerto:
        return Gravedad::Aviso;
    case Que::EscrituraTerminada: // those that were carried out have a record of their own
        if (static_cast<FinDeEscritura>(s.detalle) == FinDeEscritura::Confirmada)
            return std::nullopt;
        return Gravedad::Aviso;
    case Que::EnlaceArriba:
    case Que::EstacionContesta:
    case Que::BloqueHabilitado:
    case Que::BloqueConmutado:
    case Que::BloqueDadoDeAlta:
    case Que::GuionSigue:
    case Que::ClienteEntra:
        return Gravedad::Nota;
    default:
        return std::nullopt;
    }
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

/// In Spanish; empty where more is to be said.
const char* fraseFija(const Suceso& s) {
    switch (s.que) {
    case Que::EnlaceArriba:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "Enlace arriba");
    case Que::EnlaceAbajo:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "Enlace caido");
    case Que::EnlaceCortado:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "Se corta el enlace: lo que no llego ya no sale");
    case Que::LineaNoCalla:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "La linea no calla: se cierra el enlace");
    case Que::EstacionMuda:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "La estacion no contesta");
    case Que::EstacionContesta:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "La estacion contesta de nuevo");
    case Que::BloqueDeshabilitado:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "El bloque descansa: no hubo respuesta");
    case Que::BloqueHabilitado:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "El bloque se pregunta de nuevo");
    case Que::EnlaceNoLevanta:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "El enlace no levanta");
    case Que::BloqueConmutado:
        return s.detalle != 0 ? QT_TRANSLATE_NOOP("kv::Sucesos", "Bloque prendido")
                              : QT_TRANSLATE_NOOP("kv::Sucesos", "Bloque apagado");
    case Que::GuionSigue:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "El guion corre de nuevo");
    case Que::ForzarSinTrama:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "No se puede forzar: el bloque no se puede polear");
    case Que::ForzarSinConexion:
        return QT_TRANSLATE_NOOP("kv::Sucesos", "No se puede forzar: sin conexion con la estacion");
    default:
        return nullptr;
    }
}

/// How writes end, for whoever translates it.
[[maybe_unused]] constexpr std::array kFines = {
    QT_TRANSLATE_NOOP("kv::Sucesos", "sin respuesta"),
    QT_TRANSLATE_NOOP("kv::Sucesos", "conexion perdida"),
    QT_TRANSLATE_NOOP("kv::Sucesos", "no se pudo leer la palabra del bit"),
    QT_TRANSLATE_NOOP("kv::Sucesos", "espero demasiado"),
    QT_TRANSLATE_NOOP("kv::Sucesos", "termino el programa"),
    QT_TRANSLATE_NOOP("kv::Sucesos", "ya no esta configurado"),
};

QString traducida(const char* frase) { return QCoreApplication::translate("kv::Sucesos", frase); }

} // namespace

LibroDeSucesos::LibroDeSucesos(Sucesos& sucesos) : sucesos_(sucesos) {
    constexpr auto fallida = static_cast<std::int16_t>(FinDeEscritura::SinRespuesta);
    sucesos_.avisarA(this, quesCon([](Que que) {
                         return gravedadDe({.que = que, .detalle = fallida}).has_value();
                     }));
}

LibroDeSucesos::~LibroDeSucesos() { sucesos_.dejarDeAvisarA(this); }

void LibroDeSucesos::alSuceder(const Suceso& suceso, std::string_view texto) {
    const auto gravedad = gravedadDe(suceso);
    if (!gravedad) return;
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
    lineas_.push_back({suceso, suceso.instante, 1, *gravedad, false, cortado(suceso, texto)});
    if (*gravedad != Gravedad::Nota) ++sinReconocer_;
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
    if (const char* fija = fraseFija(s); fija != nullptr) return traducida(fija);
    const QString texto = enQt(anotacion.texto);
    switch (s.que) {
    case Que::FallaDelGuion:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "Falla del guion: %1")).arg(texto);
    case Que::GuionDetenido:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "El guion se detiene: %1")).arg(texto);
    case Que::ClienteEntra:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "Entra el cliente %1")).arg(texto);
    case Que::ClienteSale:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "Sale el cliente %1")).arg(texto);
    case Que::EscrituraTerminada:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "Escritura de %1 = %2: %3"))
            .arg(enQt(direccionEscrita(tablas, s)), enQt(textoDeNumero(s.numero)),
                 traducida(std::string(palabras(static_cast<FinDeEscritura>(s.detalle))).c_str()));
    case Que::EscrituraRechazada: {
        const auto r = TextoDeRechazo::partir(anotacion.texto);
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "Escritura rechazada: %1 = %2: %3"))
            .arg(enQt(r.direccion), enQt(textoDeNumero(s.numero)),
                 enQt(rechazoEn(enIngles() ? Idioma::Ingles : Idioma::Castellano, r.motivo)));
    }
    case Que::SinPuertoNiPlc:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "No existe ese puerto o PLC: %1"))
            .arg(texto);
    case Que::BloqueDadoDeAlta:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "Bloque dado de alta a pedido: %1"))
            .arg(texto);
    default:
        return traducida(QT_TRANSLATE_NOOP("kv::Sucesos", "No se pudo dar de alta el bloque: %1"))
            .arg(texto);
    }
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
    return c.ip + ":" + c.puertoTCP;
}

std::string horaDe(std::int64_t instante) { return formatoDeSello(desempaquetar(instante)); }

} // namespace kv
