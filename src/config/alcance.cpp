// SPDX-License-Identifier: Apache-2.0
#include "config/alcance.h"

#include "plant/duraciones.h"
#include "text/direccion_de_red.h"
#include "text/texto.h"
#include "wire/ensamblado.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kALaVez = 64;
constexpr std::size_t kListadas = 1000; // connections, and stations of each
constexpr double kPacienciaMinima = 1;  // seconds
constexpr double kPacienciaMaxima = 30; // nobody waits for an hour at a check

} // namespace

/// One connection: connects, asks its stations, closes.
class SondeoDeAlcance::Sonda final : public OyenteDeZocalo {
  public:
    Sonda(SondeoDeAlcance& todo, std::size_t conexion)
        : todo_(todo), prevista_(todo.v_.conexiones[conexion]), r_(todo.resultados_[conexion]),
          reloj_(todo.bucle_.crearTemporizador([this] { alVencer(); })),
          zocalo_(todo.bucle_.crearZocalo(*this, conexion)) {
        double paciencia = 0;
        for (std::size_t i = 0; i < todo.listas_.puertos.size(); ++i) {
            const Puerto& p = todo.listas_.puertos[i];
            if (p.numero == prevista_.puerto) paciencia = std::max(paciencia, p.tiempoFuera);
        }
        pacienciaMs_ = milisegundos(std::clamp(paciencia, kPacienciaMinima, kPacienciaMaxima));
    }

    void conectar() {
        const auto puerto = puertoTcpDeTexto(recortar(prevista_.puertoTCP));
        estado_ = Estado::Conectando;
        tenidos_.clear();
        desdeMs_ = ahora();
        reloj_->rearmar(pacienciaMs_);
        zocalo_->conectar(std::string(recortar(prevista_.ip)), puerto.value_or(0));
        if (zocalo_->estado() == EstadoZocalo::Error) alCortarse(0);
    }

    void alConectar(std::size_t) override { preguntar(); }
    void alCortarse(std::size_t) override {
        const std::string motivo = zocalo_->motivo();
        noHayEnlace(motivo.empty() ? "la otra punta cerró el enlace" : motivo);
    }
    void alLlegarDatos(std::size_t, std::span<const std::uint8_t> bytes) override {
        if (estado_ != Estado::Preguntada) return;
        Ensamblado llego;
        ensamblar(tenidos_, bytes, llego);
        for (const Ensamblado::Hallada& h : llego.respuestas) {
            if (esEco(h, pedido_)) continue;
            AlcanceDeEstacion& e = r_.estaciones.back();
            e.responde = true;
            e.valor = valorDeRespuesta(h.trama);
            e.ms = ahora() - desdeMs_;
            estado_ = Estado::EnPausa;
            return reloj_->rearmar(static_cast<std::int64_t>(todo_.pausaMs_) + 1);
        }
    }

  private:
    enum class Estado : std::uint8_t { Conectando, Preguntada, EnPausa, Terminada };

    [[nodiscard]] std::int64_t ahora() const { return todo_.bucle_.reloj().monotonicoMs(); }

    /// Asks the next station, passing over those that cannot be asked.
    void preguntar() {
        while (siguiente_ < prevista_.estaciones.size()) {
            const std::size_t cual = prevista_.estaciones[siguiente_++];
            AlcanceDeEstacion e;
            e.estacion = cual;
            const auto& registros = todo_.registros_[cual];
            const auto indice = std::to_string(todo_.listas_.estaciones[cual].indice);
            const auto pedido =
                registros.empty() ? std::nullopt : armarTramaLectura(registros.front(), indice);
            if (pedido) e.registro = registros.front();
            r_.estaciones.push_back(e);
            if (!pedido) continue;
            pedido_ = *pedido;
            estado_ = Estado::Preguntada;
            desdeMs_ = ahora();
            reloj_->rearmar(pacienciaMs_);
            zocalo_->enviar(pedido_);
            return;
        }
        terminar();
    }
    void alVencer() {
        if (estado_ == Estado::EnPausa) return preguntar();
        if (estado_ == Estado::Conectando)
            return noHayEnlace("no contesta en " +
                               conComa(static_cast<double>(pacienciaMs_) / 1000) + " s");
        otroEnlace();
    }
    /// What is still to be asked is asked on another link.
    void otroEnlace() {
        zocalo_->abortar();
        if (siguiente_ < prevista_.estaciones.size()) return conectar();
        terminar();
    }
    void noHayEnlace(const std::string& motivo) {
        if (estado_ == Estado::Terminada) return;
        // One that was lost over a question says nothing about the others.
        if (estado_ != Estado::Conectando) return otroEnlace();
        r_.motivo = motivo;
        terminar();
    }
    void terminar() {
        estado_ = Estado::Terminada;
        reloj_->habilitar(false);
        zocalo_->cerrar();
        todo_.terminoUna();
    }

    SondeoDeAlcance& todo_;
    const ConexionPrevista& prevista_;
    AlcanceDeConexion& r_;
    std::unique_ptr<Temporizador> reloj_;
    std::unique_ptr<Zocalo> zocalo_;
    std::vector<std::uint8_t> tenidos_;
    Solicitud pedido_{};
    std::size_t siguiente_ = 0;
    std::int64_t pacienciaMs_ = 0;
    std::int64_t desdeMs_ = 0;
    Estado estado_ = Estado::Conectando;
};

SondeoDeAlcance::SondeoDeAlcance(Bucle& bucle, const ListasDeConfiguracion& listas,
                                 const Validacion& validacion, double pausaMs)
    : bucle_(bucle), listas_(listas), v_(validacion), pausaMs_(pausaMs),
      registros_(listas.estaciones.size()), resultados_(validacion.conexiones.size()) {
    for (std::size_t i = 0; i < v_.bloques.size(); ++i) {
        if (v_.bloques[i] != Suerte::Construir) continue;
        auto& suyos = registros_[v_.estacionDeBloque[i]];
        if (suyos.empty()) suyos.push_back(listas.bloques[i].direccion);
    }
}

SondeoDeAlcance::~SondeoDeAlcance() = default;

void SondeoDeAlcance::empezar(std::function<void()> alTerminar) {
    alTerminar_ = std::move(alTerminar);
    seguir();
}

/// Starts as many as may run, and tells the end.
void SondeoDeAlcance::seguir() {
    if (std::exchange(siguiendo_, true)) return; // one that ended at once is seen by the loop below
    while (corriendo_ < kALaVez && sondas_.size() < resultados_.size()) {
        ++corriendo_;
        sondas_.push_back(std::make_unique<Sonda>(*this, sondas_.size()));
        sondas_.back()->conectar();
    }
    siguiendo_ = false;
    if (corriendo_ == 0 && sondas_.size() == resultados_.size() && alTerminar_)
        std::exchange(alTerminar_, {})();
}

void SondeoDeAlcance::terminoUna() {
    --corriendo_;
    seguir();
}

namespace {

std::string lineaDe(const AlcanceDeEstacion& e) {
    if (e.registro.empty()) return "no tiene qué preguntarle";
    if (!e.responde) return "no responde";
    return "responde en " + std::to_string(e.ms) + " ms, registro " + e.registro + " = " +
           std::to_string(e.valor);
}

std::string plcDe(const ListasDeConfiguracion& listas, const AlcanceDeEstacion& e) {
    return "PLC " + std::to_string(listas.estaciones[e.estacion].numero);
}

} // namespace

void listarAlcance(const ListasDeConfiguracion& listas, const Validacion& v,
                   const std::vector<AlcanceDeConexion>& resultados, std::string& informe) {
    for (std::size_t c = 0; c < std::min(resultados.size(), kListadas); ++c) {
        const AlcanceDeConexion& r = resultados[c];
        informe += "Alcance de " + direccionDe(v.conexiones[c]) + ": " +
                   (r.motivo.empty() ? "conecta" : "no conecta: " + r.motivo) + "\n";
        for (std::size_t i = 0; i < std::min(r.estaciones.size(), kListadas); ++i)
            informe +=
                "  " + plcDe(listas, r.estaciones[i]) + ": " + lineaDe(r.estaciones[i]) + "\n";
    }
}

void revisarAlcance(const ListasDeConfiguracion& listas, const Validacion& v,
                    const std::vector<AlcanceDeConexion>& resultados, Problemas& problemas) {
    constexpr const char* kConsecuencia = "mientras siga así sus bloques quedan BAD";
    for (std::size_t c = 0; c < resultados.size(); ++c) {
        const AlcanceDeConexion& r = resultados[c];
        const std::string donde = direccionDe(v.conexiones[c]);
        if (!r.motivo.empty())
            problemas.agregar(listas.archivo,
                              listas.lineasDeEstaciones[v.conexiones[c].estaciones.front()],
                              "no se llega a " + donde + ": " + r.motivo, kConsecuencia);
        for (const AlcanceDeEstacion& e : r.estaciones) {
            if (e.registro.empty() || e.responde) continue;
            problemas.agregar(listas.archivo, listas.lineasDeEstaciones[e.estacion],
                              "la estación " + plcDe(listas, e) + " de " + donde +
                                  " no responde a la lectura del registro " + e.registro,
                              kConsecuencia);
        }
    }
}

} // namespace kv
