// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/conexiones.h"
#include "model/modelo.h"
#include "operator/diferencia.h"
#include "plant/tablas.h"
#include "platform/trabajo.h"
#include "poll/estaciones_mudas.h"
#include "poll/poleo.h"
#include "poll/reloj_de_bloques.h"
#include "script/publicacion.h"
#include "write/ejecucion.h"
#include "write/forzado.h"

#include <array>
#include <cstddef>
#include <map>
#include <string>

namespace kv {

/// Makes a running plant what a configuration asks for, record by record: between two portions
/// each is wholly as it was or wholly as it will be, and whatever may happen to a plant may happen.
/// What went is published as BAD and found no more; what came is published and due at once.
class Traspaso {
  public:
    /// All of them must outlive it.
    struct Partes {
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
    };
    /// What was done; variables.
    struct Hecho {
        std::size_t nuevas = 0;
        std::size_t retiradas = 0;
        std::size_t cambiadas = 0;
        std::size_t iguales = 0;
        bool puertos = false;
    };
    Traspaso(const Partes& partes, Porciones& porciones) : p_(partes), porciones_(porciones) {}

    /// All must outlive the work. Lets events run.
    Trabajo hacer(const ListasDeConfiguracion& listas, const Diferencia& d, Hecho& hecho);
    /// Takes one block away, at once.
    void retirar(Indice bloque);

  private:
    Trabajo puertos(const ListasDeConfiguracion& listas, Hecho& hecho);
    Trabajo retirarBloques(const Diferencia& d);
    Trabajo retirarEstaciones(const Diferencia& d);
    Trabajo ordenarNiveles();
    Trabajo levantar(const ListasDeConfiguracion& listas, const Diferencia& d, Hecho& hecho);
    [[nodiscard]] bool adoptar(const ConfiguracionDeBloque& pedido, const Diferencia::Nuevo& n,
                               Indice conexion, Indice desde, Hecho& hecho);
    void levantarBloque(const ConfiguracionDeBloque& b, const std::string& registro,
                        double cantidad, Hecho& hecho);
    [[nodiscard]] Porciones::Paso siguiente(Indice conexion, std::int64_t costo);
    void retirarBloque(Indice bloque);
    void ordenar(Indice conexion);
    void cambiar(Indice bloque, const ConfiguracionDeBloque& pedido);

    Partes p_;
    Porciones& porciones_;
    /// By key, the bits that a script or a person had asked for of blocks that went: they are
    /// expected of the block that takes its place, as where a station moves to another address.
    std::map<std::string, std::array<bool, 16>> bits_;
};

} // namespace kv
