// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "engine/arranque.h"
#include "mundo/cliente.h"
#include "mundo/corrida.h"
#include "mundo/regla_actualidad.h"
#include "mundo/regla_auditoria.h"
#include "mundo/regla_escrituras.h"
#include "mundo/regla_limites.h"
#include "mundo/regla_porque.h"
#include "mundo/regla_reparto.h"
#include "mundo/regla_turno.h"
#include "mundo/regla_valores.h"
#include "platform/simulated/archivos_simulados.h"

#include <functional>
#include <map>
#include <memory>

namespace kv::mundo {

/// A plant, its driver, its client and the rules, living through a history.
class Mundo final : private AlEnviar {
  public:
    explicit Mundo(const Plan& plan, SalidaDeTraza* trazas = nullptr);
    [[nodiscard]] Resultado vivir(const std::vector<Episodio>& historia);

  private:
    using Indices = std::vector<std::size_t>;

    // The life (mundo.cpp).
    void levantar();
    void alEnviar(std::size_t zocalo, std::span<const std::uint8_t> bytes) override;
    void alPedirEnlace(std::size_t zocalo) override;
    void alTerminarSuceso();
    void avanzarHasta(std::int64_t us);
    void barrer();
    void calmar();
    void terminar();
    [[nodiscard]] bool enCalma();
    [[nodiscard]] std::int64_t plazoDeCalmaUs() const;

    // What happens (episodios.cpp).
    void ocurrir(const Episodio& s);
    void enLinea(const Episodio& s, Linea& linea);
    void enCliente(const Episodio& s);
    void enMaquina(const Episodio& s);
    void recargar(std::uint32_t version);
    void mirarConmutados();
    void enOperador(const Episodio& s);
    void escribirClientes(const Episodio& s);
    void escribir(ReglaDeEscrituras::Escritor& e, std::uint32_t b);
    void ajustar(std::uint32_t cual, std::uint32_t texto);
    void forzar(const Episodio& s);
    void forzarNivel(std::uint32_t nivel, int veces);
    void encender(Indice bloque, bool encendido);
    /// Later, unless the calm comes first: then at once.
    void luego(std::int64_t ms, std::function<void()> accion);
    /// One of those of a source, whatever the number; null if the source writes no register.
    [[nodiscard]] ReglaDeEscrituras::Escritor* escritor(Fuente fuente, std::size_t cual);

    const Plan& plan_;
    BucleEspia bucle_;
    ArchivosSimulados archivos_;
    ProcesosSimulados procesos_;
    Motor motor_;
    std::optional<TrazaAlMomento> trazas_;
    Arranque arranque_;
    Contexto c_;
    std::vector<std::unique_ptr<Linea>> lineas_; ///< by connection of the plan
    ReglaDeTurno turno_;
    ReglaDeValores valores_;
    ReglaDeActualidad actualidad_;
    ReglaDeAuditoria auditoria_;
    ReglaDeEscrituras escrituras_;
    ReglaDeReparto reparto_;
    ReglaDePorQue porque_;
    ReglaDeLimites limites_;
    Cliente cliente_;
    Cliente otro_;
    Resultado r_;
    std::multimap<std::int64_t, std::function<void()>> luego_;
    std::vector<const Episodio*> enMedio_; ///< wait for a handler to happen in
    std::vector<std::string> forzables_;
    std::vector<bool> prendidos_; ///< by block, as configured
    bool recargando_ = false;
    std::int64_t inicioUs_ = 0;
    std::int64_t proximaBarridaUs_ = 0;
    std::int64_t instanteUs_ = 0;
    std::uint64_t enElInstante_ = 0;
    std::uint64_t barridas_ = 0;
};

} // namespace kv::mundo
