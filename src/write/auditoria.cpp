// SPDX-License-Identifier: Apache-2.0
#include "write/auditoria.h"

#include "events/fin_de_escritura.h"
#include "events/rechazo.h"
#include "events/redaccion.h"
#include "platform/ruta.h"
#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kMaximoDeCampo = 200;
constexpr std::int64_t kEntreIntentosMs = 5000;

/// A field as it stands in a line: cut, without control characters and separators.
void agregarCampo(std::string& salida, std::string_view texto) {
    const auto especial = [](char c) {
        const auto b = static_cast<std::uint8_t>(c);
        return b < 32 || b == 127 || c == ';' || c == '\\';
    };
    const std::string_view cabe = texto.substr(0, kMaximoDeCampo);
    for (const auto* c = cabe.begin();; ++c) {
        const auto* const desde = c;
        c = std::find_if(c, cabe.end(), especial);
        salida.append(desde, c);
        if (c == cabe.end()) break;
        salida += '\\';
        agregarDosCifras(salida, static_cast<std::uint8_t>(*c));
    }
    if (texto.size() > kMaximoDeCampo) salida += "...";
}

std::string anteriorDe(const BloqueEscritura& e) {
    return e.seConociaAnterior ? textoDeNumero(e.valorAnterior) : std::string("?");
}

} // namespace

Auditoria::Auditoria(Sucesos& sucesos, const Tablas& tablas, Archivos& archivos, const Reloj& reloj,
                     const std::string& carpetaDelPrograma, std::string programa)
    : sucesos_(sucesos), tablas_(tablas), archivos_(archivos), reloj_(reloj),
      carpeta_(unirRuta(carpetaDelPrograma, "LOGS_DRIVER")), programa_(std::move(programa)) {
    sucesos_.avisarA(this, {Que::EscrituraSale, Que::EscrituraTerminada, Que::EscrituraUnida,
                            Que::EscrituraRechazada});
}

Auditoria::~Auditoria() { sucesos_.dejarDeAvisarA(this); }

void Auditoria::alSuceder(const Suceso& s, std::string_view texto) {
    const auto deEscritura = [&](std::string_view que) {
        const BloqueEscritura& e = tablas_.escrituras[s.escritura];
        anotar(e.origen, direccionEscrita(tablas_, s), anteriorDe(e), e.pedido, que, escrituras_,
               kEscriturasPorSegundo);
    };
    switch (s.que) {
    case Que::EscrituraSale:
        return deEscritura("enviada");
    case Que::EscrituraTerminada:
        return deEscritura(palabras(static_cast<FinDeEscritura>(s.detalle)));
    case Que::EscrituraUnida:
        return anotar(texto, direccionEscrita(tablas_, s), "?", s.numero, kYaEsperaUnaIgual,
                      rechazos_, kRechazosPorSegundo);
    case Que::EscrituraRechazada: {
        const auto r = TextoDeRechazo::partir(texto);
        return anotar(r.origen, r.direccion, "?", s.numero, "rechazada: " + std::string(r.motivo),
                      rechazos_, kRechazosPorSegundo);
    }
    default:
        return;
    }
}

void Auditoria::anotar(std::string_view origen, std::string_view direccion,
                       const std::string& anterior, double valor, std::string_view fin, Cupo& cupo,
                       std::uint32_t maximo) {
    pasarElTiempo();
    cuerpo_.clear();
    agregarCampo(cuerpo_, origen);
    agregarCampo(cuerpo_ += ';', direccion);
    (cuerpo_ += ';').append(anterior) += ';';
    agregarNumero(cuerpo_, valor);
    agregarCampo(cuerpo_ += ';', fin);
    if (cuerpo_ == ultimo_) {
        if (repetidas_++ == 0) repetidasDesdeMs_ = reloj_.monotonicoMs();
        return;
    }
    if (!cupo.tomar(reloj_.monotonicoMs(), maximo)) return;
    cerrarRepetidas();
    agregarLinea(cuerpo_);
    ultimo_.swap(cuerpo_);
}

void Auditoria::agregarLinea(std::string_view cuerpo, std::uint64_t cuenta) {
    pendiente_ += formatoGeneral(reloj_.ahora()) + ";";
    pendiente_ += cuerpo;
    pendiente_ += "\r\n";
    enPendiente_ += cuenta;
}

void Auditoria::cerrarRepetidas() {
    if (repetidas_ == 0) return;
    agregarLinea(";;;;la anterior " + std::to_string(repetidas_) + " veces mas", repetidas_);
    repetidas_ = 0;
}

void Auditoria::contarPerdidas(std::uint64_t cuantas) {
    if (cuantas > 0)
        agregarLinea(";;;;" + std::to_string(cuantas) + " lineas mas sin anotar", cuantas);
}

/// Writes the counts that are due when a second, a minute or a day is over.
void Auditoria::pasarElTiempo() {
    const std::int64_t ahora = reloj_.monotonicoMs();
    contarPerdidas(rechazos_.negados(ahora) + escrituras_.negados(ahora));
    if (repetidas_ > 0 && ahora - repetidasDesdeMs_ >= kUnMinutoMs) cerrarRepetidas();
    std::string hoy = formatoDeDia(reloj_.ahora());
    if (hoy == dia_) return;
    // What was gathered, and a count, belong to the day of what they tell.
    cerrarRepetidas();
    if (!pendiente_.empty()) escribirPendiente();
    ultimo_.clear();
    dia_ = std::move(hoy);
}

void Auditoria::volcar() {
    if (rechazos_.hayNegados() || escrituras_.hayNegados() || repetidas_ > 0) pasarElTiempo();
    // The count of what the disk did not take is written as soon as it takes lines again, whether
    // or not there are new ones.
    const bool probar =
        sinDisco_ > 0 && reloj_.monotonicoMs() - ultimoIntentoMs_ >= kEntreIntentosMs;
    if (!pendiente_.empty() || probar) escribirPendiente();
}

void Auditoria::escribirPendiente() {
    ultimoIntentoMs_ = reloj_.monotonicoMs();
    std::string aviso;
    if (sinDisco_ > 0)
        aviso = formatoGeneral(reloj_.ahora()) + ";;;;;" + std::to_string(sinDisco_) +
                " lineas sin anotar: el disco no las tomo\r\n";
    if (escribir(aviso + pendiente_)) {
        sinDisco_ = 0;
    } else {
        // What is counted from now on would be read as repetitions of some older line.
        sinDisco_ += enPendiente_ + repetidas_;
        repetidas_ = 0;
        ultimo_.clear();
    }
    pendiente_.clear();
    enPendiente_ = 0;
}

bool Auditoria::escribir(const std::string& lineas) {
    if (!archivos_.existe(carpeta_)) archivos_.crearCarpeta(carpeta_);
    return archivos_.agregar(unirRuta(carpeta_, dia_ + " " + programa_ + " Escrituras.txt"),
                             windows1252DesdeUtf8(lineas));
}

void Auditoria::cerrar() {
    cerrarRepetidas();
    contarPerdidas(rechazos_.negadosYa() + escrituras_.negadosYa());
    volcar();
}

} // namespace kv
