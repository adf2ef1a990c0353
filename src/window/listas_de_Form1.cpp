// SPDX-License-Identifier: Apache-2.0
#include "window/listas_de_Form1.h"

#include "view/columnas.h"
#include "window/controls/control.h"

#include <QCoreApplication>

namespace kv {
namespace {

constexpr int kLetrasDeEdad = 13;
constexpr int kLetrasDeHora = 20;
constexpr int kLetrasDeDescripcion = 20; // at least: it gets what is left over

/// The block of a row of the variables.
Indice bloqueDe(const Vista& vista, const Tablas& tablas, std::uint32_t fila) {
    const std::int64_t indice = vista.lstViewVariables.etiqueta(fila);
    return indice >= 0 && tablas.bloques.vive(static_cast<double>(indice))
               ? static_cast<Indice>(indice)
               : kNinguno;
}

} // namespace

Anexos anexosDeVariables(const PartesDeVentana& partes) {
    const PorQue& porQue = partes.operador.porQue();
    const auto bloque = [&vista = partes.vista, &tablas = partes.tablas](std::uint32_t fila) {
        return bloqueDe(vista, tablas, fila);
    };
    const auto edad = [bloque, &porQue](std::uint32_t fila) {
        const Indice b = bloque(fila);
        return b == kNinguno ? Edad{} : porQue.edad(b);
    };
    Anexos anexos;
    anexos.columnas.push_back(
        {QCoreApplication::translate("kv::Form1", "Última lectura"), kLetrasDeEdad,
         [edad, &porQue](std::uint32_t fila) {
             const Edad e = edad(fila);
             return e.leidaMs < 0 ? QCoreApplication::translate("kv::Form1", "nunca")
                                  : enQt(porQue.hace(e.leidaMs));
         },
         [edad](std::uint32_t fila) { return -static_cast<double>(edad(fila).leidaMs); }, true});
    anexos.columnas.push_back(
        {QCoreApplication::translate("kv::Form1", "En este estado desde"), kLetrasDeHora,
         [edad, &porQue](std::uint32_t fila) { return enQt(porQue.hora(edad(fila).desdeMs)); },
         [edad](std::uint32_t fila) { return static_cast<double>(edad(fila).desdeMs); }});
    anexos.columnas.push_back(
        {.titulo = QCoreApplication::translate("kv::Form1", "Descripción"),
         .ancho = kLetrasDeDescripcion,
         .texto =
             [&vista = partes.vista, &operador = partes.operador](std::uint32_t fila) {
                 const Descripcion* d = operador.descripcionDe(
                     vista.lstViewVariables.texto(fila, de_variables::kDireccion));
                 if (d == nullptr) return QString();
                 return enQt(d->unidad.empty() ? d->texto : d->texto + " [" + d->unidad + "]");
             },
         .filtrable = true});
    anexos.reparo = [edad](std::uint32_t fila) {
        return edad(fila).vieja
                   ? std::optional(Reparo{EstadoDeFila::Vieja,
                                          QCoreApplication::translate("kv::Form1", " (viejo)")})
                   : std::nullopt;
    };
    anexos.ayuda = [bloque, &porQue](std::uint32_t fila) {
        const Indice b = bloque(fila);
        return b == kNinguno ? QString() : enQt(porQue.porQueVariable(b));
    };
    return anexos;
}

Anexos anexosDeBloques(const PartesDeVentana& partes) {
    Anexos anexos;
    anexos.reparo = [&vista = partes.vista,
                     &tablas = partes.tablas](std::uint32_t fila) -> std::optional<Reparo> {
        const std::int64_t indice = vista.lstViewEstadoDeBloques.etiqueta(fila);
        if (indice < 0 || !tablas.bloques.vive(static_cast<double>(indice)) ||
            tablas.bloques[static_cast<std::size_t>(indice)].habilitadoPorRespuestas)
            return std::nullopt;
        return Reparo{EstadoDeFila::Descansa, {}}; // the row's own text says why
    };
    return anexos;
}

Anexos anexosDeConexiones(const PartesDeVentana& partes, const Recuento& recuento) {
    Anexos anexos;
    anexos.reparo = [&tablas = partes.tablas,
                     &recuento](std::uint32_t fila) -> std::optional<Reparo> {
        const Indice conexion = conexionDeFila(tablas, fila);
        const std::string que = conexion == kNinguno ? "" : recuento.sinRespuesta(conexion);
        if (que.empty()) return std::nullopt;
        return Reparo{EstadoDeFila::Descansa, enQt(", " + que)};
    };
    anexos.ayuda = [&tablas = partes.tablas,
                    &porQue = partes.operador.porQue()](std::uint32_t fila) {
        const Indice conexion = conexionDeFila(tablas, fila);
        return conexion == kNinguno ? QString() : enQt(porQue.porQueConexion(conexion));
    };
    return anexos;
}

Indice conexionDeFila(const Tablas& tablas, std::uint32_t fila) {
    const std::size_t cuantas = tablas.conexiones.limiteSuperior();
    if (fila < cuantas && tablas.conexiones[fila].filaLista == fila) return fila;
    for (Indice i = 0; i < cuantas; ++i) {
        if (tablas.conexiones[i].filaLista == fila) return i;
    }
    return kNinguno;
}

} // namespace kv
