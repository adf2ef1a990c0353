// SPDX-License-Identifier: Apache-2.0
#include "mundo/mundo.h"

#include "mundo/guiones.h"
#include "plant/valor_y_estado.h"
#include "text/numeros.h"

#include <algorithm>
#include <array>
#include <bit>

namespace kv::mundo {
namespace {

constexpr const char* kConfiguracion = "/kv/DRIVER_KV2200_Config.ini";
constexpr std::int64_t kEntreBarridasUs = 2'000'000;
constexpr std::uint64_t kSucesosPorInstante = 2'000'000;
constexpr std::int64_t kSegundoUs = 1'000'000;
constexpr std::uint64_t kBarridasPorLectura = 30; // of the record of writes

std::uint8_t comoDecimal(int indice) {
    return static_cast<std::uint8_t>(indice / 10 * 16 + indice % 10);
}

} // namespace

Mundo::Mundo(const Plan& plan, SalidaDeTraza* trazas)
    : plan_(plan), motor_(bucle_, archivos_, "/kv"),
      arranque_(motor_, procesos_), c_{bucle_, motor_, plan, {}, {}, 0, false}, turno_(c_),
      valores_(c_, motor_.servidor), actualidad_(c_, turno_), auditoria_(c_, archivos_),
      escrituras_(c_, auditoria_), reparto_(c_), porque_(c_), limites_(c_, archivos_),
      cliente_(c_, valores_, "10.99.0.9:50000"), otro_(c_, valores_, "10.99.0.66:50001") {
    for (const PlanDeConexion& p : plan.conexiones) {
        lineas_.push_back(std::make_unique<Linea>(bucle_.red(), bucle_.reloj(), p));
        lineas_.back()->pausaMs = [this] { return motor_.turnos.pausa(); };
        lineas_.back()->recibir(Llegada::Entra);
    }
    archivos_.poner(kConfiguracion, plan.configuracion(0));
    // Some reload at a stretch, some step by step: then they take seconds.
    motor_.recarga.fijarPorcion(std::array{1, 100, 20'000}[plan.semilla % 3]);
    for (const auto& [clave, valor] :
         {std::pair{"Guion_Pasos_Maximos", std::string("5000")},
          {"Guion_Memoria_Maxima_KiB", std::string("512")},
          {"Tiempo_Entre_poleo", std::to_string(plan.pausaMs)},
          {"Base_Tiempo_Solicitar_Conexiones_Milisegundos",
           std::to_string(plan.baseDeSolicitudesMs)},
          {"Escritura_Vigencia_Segundos", textoDeNumero(plan.vigenciaSegundos)},
          {"Escucha_Login_Antes_De_Todo", std::string(plan.exigeLogin ? "1" : "0")},
          {"Ajena", std::to_string(plan.semilla)}})
        motor_.ajustes.escribirConfiguracion(clave, valor);
    turno_.alTerminarLectura = [this](Indice b) { valores_.alTerminarLectura(b); };
    actualidad_.alLeer = [this](Indice b) { reparto_.alContestar(b); };
    motor_.sucesos.avisarA(&actualidad_);
    escrituras_.alContestar = [this](Indice b) { actualidad_.anotar(b); };
    escrituras_.alAcabar = [this](std::size_t n) { actualidad_.alTerminarEscritura(n); };
    motor_.sucesos.avisarA(&escrituras_);
    motor_.sucesos.avisarA(&porque_);
    if (trazas != nullptr) {
        motor_.vista.observar(trazas);
        trazas_.emplace(motor_.sucesos, motor_.tablas, *trazas);
    }
    levantar();
}

/// Starts the driver and tells everybody who is who.
void Mundo::levantar() {
    const auto ancho = static_cast<std::uint16_t>(
        std::bit_floor(65536 / std::max<std::size_t>(plan_.bloques.size(), 2)));
    arranque_.arrancar();
    arranque_.abrirServidor();
    motor_.publicacion.avisarA(&valores_);
    motor_.recarga.alAdoptar([this](const std::string&) { ++r_.recargas; });
    for (std::size_t n = 0; n < c_.conexiones(); ++n) {
        const auto suya = std::find_if(lineas_.begin(), lineas_.end(), [&](const auto& l) {
            return l->plan().ip == c_.conexion(n).ip;
        });
        c_.lineas.push_back(suya->get());
        (*suya)->alEscribirse = [this, n](const EscrituraLlegada& l) {
            escrituras_.alLlegar(n, l);
        };
    }
    std::uint32_t base = 0;
    for (const PlanDeBloque& b : plan_.bloques) {
        Linea& linea = *lineas_[b.conexion];
        const std::uint8_t estacion = comoDecimal(b.indice);
        const auto registro = static_cast<std::uint8_t>(b.registro);
        if (linea.registro(estacion, registro).mascara != 0) continue; // a second block of it
        const auto mascara = static_cast<std::uint16_t>(ancho - 1);
        linea.darBanda(estacion, registro, static_cast<std::uint16_t>(base), mascara, b.fuente);
        const auto n = static_cast<std::size_t>(
            std::find(c_.lineas.begin(), c_.lineas.end(), &linea) - c_.lineas.begin());
        if (b.fuente != Fuente::Nadie)
            escrituras_.agregar({.base = static_cast<std::uint16_t>(base),
                                 .mascara = mascara,
                                 .fuente = b.fuente,
                                 .conexion = n,
                                 .direccion = b.direccion()},
                                estacion, registro);
        if (!b.aparte && b.direccion().find_first_of("ABCDEF") == std::string::npos)
            forzables_.push_back(b.direccion());
        base += ancho;
    }
    archivos_.poner("/kv/DRIVER_KV2200_Config.MDrivScrip",
                    guion(13, escrituras_.de(Fuente::Guion), forzables_));
    bucle_.avisarA(this);
    bucle_.alTerminarCadaSuceso([this] { alTerminarSuceso(); });
    inicioUs_ = proximaBarridaUs_ = c_.ahoraUs();
    valores_.conocerBloques();
}

void Mundo::alEnviar(std::size_t zocalo, std::span<const std::uint8_t> bytes) {
    turno_.alEnviar(zocalo, bytes);
    if (!c_.fallo.empty()) return;
    Solicitud t{};
    std::copy(bytes.begin(), bytes.end(), t.begin());
    escrituras_.alEnviar(zocalo, t);
}

void Mundo::alPedirEnlace(std::size_t zocalo) { porque_.alPedirEnlace(zocalo); }

void Mundo::alTerminarSuceso() {
    ++r_.sucesos;
    if (c_.ahoraUs() != instanteUs_) {
        instanteUs_ = c_.ahoraUs();
        enElInstante_ = 0;
    }
    c_.exigir(++enElInstante_ < kSucesosPorInstante, "time goes on", 0);
    turno_.mirar();
    escrituras_.mirar();
    reparto_.mirar();
    if (std::exchange(recargando_, motor_.recarga.enCurso())) mirarConmutados();
    for (const Episodio* s : std::exchange(enMedio_, {}))
        ocurrir(*s);
}

void Mundo::avanzarHasta(std::int64_t us) {
    while (c_.fallo.empty()) {
        const std::int64_t accion = luego_.empty() ? us : luego_.begin()->first;
        const std::int64_t hasta = std::min({us, proximaBarridaUs_, accion});
        bucle_.avanzarUs(std::max<std::int64_t>(0, hasta - c_.ahoraUs()));
        if (!c_.fallo.empty()) return;
        while (!luego_.empty() && luego_.begin()->first <= c_.ahoraUs()) {
            const auto hacer = std::move(luego_.begin()->second);
            luego_.erase(luego_.begin());
            hacer();
        }
        if (c_.ahoraUs() >= proximaBarridaUs_) {
            barrer();
            proximaBarridaUs_ = c_.ahoraUs() + kEntreBarridasUs;
        }
        if (c_.ahoraUs() >= us) return;
    }
}

void Mundo::barrer() {
    turno_.barrer();
    valores_.barrer();
    actualidad_.barrer();
    escrituras_.barrer();
    if (++barridas_ % kBarridasPorLectura == 0) auditoria_.leer();
    porque_.mirar();
    limites_.barrer();
    cliente_.comparar();
    cliente_.paso();
    otro_.paso();
}

Resultado Mundo::vivir(const std::vector<Episodio>& historia) {
    for (const Episodio& s : historia) {
        avanzarHasta(inicioUs_ + s.us);
        if (!c_.fallo.empty()) break;
        ++r_.faltas;
        if (s.enMedio)
            enMedio_.push_back(&s);
        else
            ocurrir(s);
    }
    if (c_.fallo.empty()) avanzarHasta(inicioUs_ + plan_.duracionMs * 1000);
    if (c_.fallo.empty()) reparto_.alFinal();
    if (c_.fallo.empty()) calmar();
    r_.fallo = c_.fallo;
    r_.simuladoMs = (c_.ahoraUs() - inicioUs_) / 1000;
    r_.comprobadas = c_.comprobadas;
    for (const auto& l : lineas_)
        r_.intercambios += l->respuestas(), r_.disculpas += l->disculpas();
    return r_;
}

/// What did not change must not be touched by it; that it is not, the rules see.
void Mundo::recargar(std::uint32_t version) {
    std::string texto = plan_.configuracion(version);
    // Half a file changes nothing.
    if (version % 5 == 4) texto.resize(texto.size() / 2);
    archivos_.poner(kConfiguracion, texto);
    mirarConmutados();
    motor_.operador.recargar();
    mirarConmutados();
}

/// Who is switched by the configuration is read so many times no more.
void Mundo::mirarConmutados() {
    const auto& bloques = motor_.tablas.bloques;
    for (Indice i = 0; i < bloques.limiteSuperior(); ++i) {
        if (i == prendidos_.size()) prendidos_.push_back(bloques[i].activoPorDefecto);
        if (prendidos_[i] == bloques[i].activoPorDefecto) continue;
        prendidos_[i] = bloques[i].activoPorDefecto;
        actualidad_.forzar(i, 0);
    }
}

/// Nothing goes wrong any more. Everything has to be well within the time that the plant's own
/// figures allow.
void Mundo::calmar() {
    for (auto& [us, accion] : std::exchange(luego_, {}))
        accion();
    enMedio_.clear();
    archivos_.negarEscrituras(false);
    for (const auto& l : lineas_) {
        l->sanar();
        l->reanudar(l->enlace());
        l->recibir(Llegada::Entra);
    }
    motor_.ajustes.escribirConfiguracion("Tiempo_Entre_poleo", std::to_string(plan_.pausaMs));
    motor_.ajustes.escribirConfiguracion("Base_Tiempo_Solicitar_Conexiones_Milisegundos",
                                         std::to_string(plan_.baseDeSolicitudesMs));
    archivos_.poner("/kv/DRIVER_KV2200_Config.MDrivScrip", guion(0, {}, {}));
    recargar(0);
    while (c_.fallo.empty() && motor_.recarga.enCurso())
        avanzarHasta(c_.ahoraUs() + kSegundoUs);
    // A level that is being read so many times would be switched off after them.
    for (std::size_t nivel = 0; nivel < motor_.tablas.bloquesPorNivel.size(); ++nivel)
        forzarNivel(static_cast<std::uint32_t>(nivel), 0);
    for (Indice i = 0; i < motor_.tablas.bloques.limiteSuperior(); ++i)
        encender(i, true);
    cliente_.sanar();
    otro_.salir();
    const std::int64_t desde = c_.ahoraUs();
    const std::int64_t hasta = desde + plazoDeCalmaUs();
    while (c_.fallo.empty() && !enCalma() && c_.ahoraUs() < hasta)
        avanzarHasta(c_.ahoraUs() + 5 * kSegundoUs);
    r_.calmaMs = (c_.ahoraUs() - desde) / 1000;
    if (!c_.fallo.empty()) return;
    const Tablas& t = motor_.tablas;
    for (std::size_t i = 0; i < t.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& b = t.bloques[i];
        c_.exigir(!b.tieneTrama || b.retirado || b.estado == kOk,
                  "in the calm every block becomes OK", i);
    }
    c_.exigir(motor_.ejecucion.enEspera() == 0, "in the calm no write is left", 0);
    c_.exigir(cliente_.logueado() && cliente_.sincronizado(),
              "in the calm the client logs in and synchronises", 0);
    terminar();
}

/// The program ends with writes in its lines: they end too, and all of it is on the disk.
void Mundo::terminar() {
    for (const Fuente f : {Fuente::Operador, Fuente::Bit}) {
        for (ReglaDeEscrituras::Escritor* e : escrituras_.de(f))
            escribir(*e, 5);
    }
    motor_.terminar();
    escrituras_.mirar();
    c_.exigir(motor_.ejecucion.enEspera() == 0, "at the end no write is left", 0);
    auditoria_.alFinal();
    limites_.alFinal();
}

bool Mundo::enCalma() {
    const Tablas& t = motor_.tablas;
    for (std::size_t i = 0; i < t.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& b = t.bloques[i];
        if (b.tieneTrama && !b.retirado && b.estado != kOk) return false;
    }
    return motor_.ejecucion.enEspera() == 0 && cliente_.logueado() && cliente_.sincronizado();
}

/// A connection comes back after some requests and a pause; its blocks end their rest and are read
/// one by one; writes that wait go first; what is owed on a line is waited for.
std::int64_t Mundo::plazoDeCalmaUs() const {
    std::int64_t peorMs = 0;
    const std::int64_t turnoMs = plan_.pausaMs + 500;
    for (std::size_t n = 0; n < c_.conexiones(); ++n) {
        const PlanDeConexion& p = c_.lineas[n]->plan();
        const auto& c = c_.conexion(n);
        const auto turnos = static_cast<std::int64_t>(c.bloques.size() + c.escrituras.size());
        std::int64_t descansoMs = 0;
        for (const PlanDePuerto& puerto : plan_.puertos)
            descansoMs = std::max(descansoMs, puerto.reconexionMs + 60'000);
        peorMs = std::max(peorMs, 40 * p.tiempoFueraMs + descansoMs + 4 * turnos * turnoMs);
    }
    return (peorMs + 40 * plan_.baseDeSolicitudesMs + 120'000) * 1000;
}

Resultado vivir(const Plan& plan, const std::vector<Episodio>& historia, SalidaDeTraza* trazas) {
    return Mundo(plan, trazas).vivir(historia);
}

} // namespace kv::mundo
