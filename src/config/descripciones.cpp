// SPDX-License-Identifier: Apache-2.0
#include "config/descripciones.h"

#include "platform/ruta.h"
#include "text/utf8.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

constexpr std::size_t kMaximoDeBytes = 64UL * 1024 * 1024;

constexpr std::array<std::string_view, 3> kColumnasDeDescripciones = {"direccion", "descripcion",
                                                                      "unidad"};
enum : std::size_t { kDireccion, kTexto, kUnidad };

std::string celdaDeTexto(TablaCsv& tabla, std::size_t columna, std::size_t maximo) {
    std::string t = tabla.texto(columna);
    const auto letras =
        std::count_if(t.begin(), t.end(), [](char c) { return !esContinuacion(c); });
    if (static_cast<std::size_t>(letras) > maximo) {
        tabla.mal(columna, "tiene más de " + std::to_string(maximo) + " caracteres");
        return {};
    }
    if (std::any_of(t.begin(), t.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; })) {
        if (t.find_first_of("\r\n") == std::string::npos) // else it has been reported
            tabla.mal(columna, "tiene caracteres de control");
        return {};
    }
    return t;
}

} // namespace

std::string rutaDeDescripciones(std::string_view rutaConfiguracion) {
    const std::size_t nombre = nombreDeRuta(rutaConfiguracion).size();
    std::string ruta(rutaConfiguracion.substr(0, rutaConfiguracion.size() - nombre));
    return ruta.append(kArchivoDeDescripciones);
}

Descripcion leerDescripcion(TablaCsv& tabla, std::size_t texto, std::size_t unidad) {
    return {celdaDeTexto(tabla, texto, kMaximoDeDescripcion),
            celdaDeTexto(tabla, unidad, kMaximoDeUnidad), tabla.fila()};
}

void anotarDescripcion(Descripciones& descripciones, const std::string& direccion,
                       Descripcion descripcion, TablaCsv& tabla, std::size_t columna) {
    using enum Descripciones::Resultado;
    switch (descripciones.poner(direccion, std::move(descripcion))) {
    case Puesta:
        return;
    case NoEsDireccion:
        return tabla.mal(columna, citarUtf8(direccion) + " no es puerto.PLC.registro, ni con bit");
    case Repetida:
        return tabla.mal(columna, citarUtf8(direccion) + " ya tiene descripción");
    case Demasiadas:
        return tabla.mal("hay más de " + std::to_string(Descripciones::kMaximo) + " descripciones");
    }
}

Trabajo leerDescripciones(Archivos& archivos, std::string ruta, Descripciones& descripciones,
                          Problemas& problemas, Porciones& porciones) {
    constexpr std::int64_t kPorFila = 15;
    if (!archivos.existe(ruta)) co_return;
    const auto contenido = archivos.leer(ruta, kMaximoDeBytes);
    if (!contenido) {
        problemas.agregar(ruta, 0, "no se puede leer, o tiene más de 64 MB",
                          "ninguna variable tiene descripción");
        co_return;
    }
    TablaCsv tabla(*contenido, ruta, kColumnasDeDescripciones,
                   "sus variables no tienen descripción", problemas);
    co_await porciones.gastar(costoDeLeer(*contenido));
    if (!tabla.cabecera({kDireccion, kTexto})) co_return;
    while (tabla.siguiente()) {
        co_await porciones.gastar(kPorFila);
        const std::string direccion = tabla.texto(kDireccion);
        Descripcion d = leerDescripcion(tabla, kTexto, kUnidad);
        if (!d.vacia())
            anotarDescripcion(descripciones, direccion, std::move(d), tabla, kDireccion);
    }
}

std::string tablaDeDescripciones(const Descripciones& descripciones) {
    std::string tabla(kMarcaUtf8);
    tabla += "direccion;descripcion;unidad\r\n";
    descripciones.recorrer([&tabla](const std::string& direccion, const Descripcion& d) {
        tabla += celdaCsv(direccion) + ";" + celdaCsv(d.texto) + ";" + celdaCsv(d.unidad) + "\r\n";
    });
    return tabla;
}

} // namespace kv
