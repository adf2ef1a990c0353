// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "config/listas.h"
#include "config/problema.h"
#include "link/conexiones.h"
#include "log/archivo_log.h"
#include "model/modelo.h"
#include "operator/diferencia.h"
#include "plant/descripciones.h"
#include "plant/tablas.h"
#include "poll/estaciones_mudas.h"
#include "poll/poleo.h"
#include "poll/reloj_de_bloques.h"
#include "script/guion.h"
#include "script/publicacion.h"
#include "view/vista.h"
#include "write/ejecucion.h"
#include "write/forzado.h"

#include <functional>
#include <string>
#include <unordered_set>
#include <utility>

namespace kv {

/// Takes over a changed configuration while the plant is served. What did not change is not
/// touched: its links stay, its reads come when they were due, its values stay as they are. What
/// went is BAD once more for whoever knew it, and gone; what came is asked at once. A file with a
/// fault that the last one taken over did not have changes nothing. What an operator switched or
/// set otherwise than configured stays so, unless the configuration of just that changed.
class Recarga {
  public:
    /// All of them must outlive it.
    struct Partes {
        Ajustes& ajustes;
        Tablas& tablas;
        Modelo& modelo;
        GestorDeConexiones& conexiones;
        Turnos& turnos;
        Publicacion& publicacion;
        RelojDeBloques& reloj;
        EstacionesMudas& mudas;
        Poleo& poleo;
        EjecucionDeEscrituras& ejecucion;
        Forzado& forzado;
        Guion& guion;
        Vista& vista;
        ArchivoLog& log;
        Descripciones& descripciones;
    };
    explicit Recarga(const Partes& partes) : p_(partes) {}

    /// The faults of the configuration that the driver started with.
    void conocer(const Problemas& problemas);
    /// Called with the path of each configuration that is taken over.
    void alAdoptar(std::function<void(const std::string&)> tarea) { alAdoptar_ = std::move(tarea); }
    /// Reads the configuration and takes it over; what came of it stands in the log, and a refusal
    /// is shown to the operator too. Lets events run at its end. Called meanwhile, it is done once
    /// more.
    void recargar();
    /// Takes away what was made because somebody asked for the register; nothing else.
    void olvidar(Indice bloque);

  private:
    void unaVez();
    [[nodiscard]] std::string queja(const ListasDeConfiguracion& listas,
                                    const Problemas& problemas) const;
    void rechazar(const std::string& porque);
    void aplicar(const ListasDeConfiguracion& listas, const Diferencia& d);
    [[nodiscard]] bool puertos(const ListasDeConfiguracion& listas);
    void retirar(const Diferencia& d);
    void levantar(const ListasDeConfiguracion& listas, const Diferencia& d);
    void empezar(Indice bloque);
    void cambiar(Indice bloque, const ConfiguracionDeBloque& pedido);

    Partes p_;
    std::unordered_set<std::string> conocidos_; ///< faults of the configuration in use
    std::function<void(const std::string&)> alAdoptar_;
    bool recargando_ = false;
    bool otraVez_ = false;
};

} // namespace kv
