// SPDX-License-Identifier: Apache-2.0
#include "door/formas.h"

#include "events/nombres.h"
#include "plant/valor_y_estado.h"
#include "text/numeros.h"
#include "text/texto.h"

#include <array>
#include <cstdio>

namespace kv {

std::string enIso(const FechaHora& f) {
    std::array<char, 96> texto{};
    const int n = std::snprintf(texto.data(), texto.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03d",
                                f.anio, f.mes, f.dia, f.hora, f.minuto, f.segundo, f.milisegundo);
    return {texto.data(), static_cast<std::size_t>(n)};
}

std::optional<FechaHora> deIso(std::string_view texto, const FechaHora& ahora) {
    const std::string t(texto.substr(0, 40));
    FechaHora f = ahora;
    f.segundo = f.milisegundo = 0;
    int n = 0;
    const bool conDia =
        std::sscanf(t.c_str(), "%4d-%2d-%2d%*1[T ]%2d:%2d%n:%2d%n", &f.anio, &f.mes, // NOLINT
                    &f.dia, &f.hora, &f.minuto, &n, &f.segundo, &n) >= 5;
    if (!conDia) {
        f = ahora;
        f.segundo = f.milisegundo = 0;
        if (std::sscanf(t.c_str(), "%2d:%2d%n:%2d%n", &f.hora, &f.minuto, &n, &f.segundo, &n) <
            2) // NOLINT
            return std::nullopt;
    }
    const bool vale = f.anio >= 1970 && f.anio < 10000 && f.mes >= 1 && f.mes <= 12 && f.dia >= 1 &&
                      f.dia <= 31 && f.hora >= 0 && f.hora < 24 && f.minuto >= 0 && f.minuto < 60 &&
                      f.segundo >= 0 && f.segundo < 60;
    // A fraction of the second may follow, and says nothing.
    const std::string_view resto = std::string_view(t).substr(static_cast<std::size_t>(n));
    const bool entera =
        resto.empty() || (resto.front() == '.' &&
                          resto.find_first_not_of("0123456789", 1) == std::string_view::npos);
    if (!vale || !entera) return std::nullopt;
    const bool porVenir = !conDia && empaquetar(f) > empaquetar(ahora);
    return porVenir ? fechaDesdeSegundos(segundosDesdeFecha(f) - 86'400) : f;
}

std::string Formas::instante(std::int64_t ms) const {
    return ms < 0 ? "null" : enJson(enIso(porQue_.fecha(ms)));
}

void Formas::edad(Indice bloque, ObjetoJson& o) const {
    const Edad e = porQue_.edad(bloque);
    o.texto("estado", textoEstado(tablas_.bloques[bloque].estado))
        .crudo("desde", instante(e.desdeMs))
        .crudo("leida", instante(e.leidaMs))
        .crudo("esperada",
               e.esperadaMs > 0 ? enJson(static_cast<double>(e.esperadaMs) / 1000) : "null")
        .logico("vieja", e.vieja);
}

void Formas::variable(Indice bloque, int bit, ObjetoJson& o) const {
    const BloqueLectura& b = tablas_.bloques[bloque];
    const auto palabra = static_cast<std::uint32_t>(entero(b.valor).value_or(0));
    o.texto("direccion", bit < 0 ? b.clave : b.clave + "." + std::to_string(bit))
        .numero("valor", bit < 0 ? b.valor : static_cast<double>(palabra >> bit & 1));
    edad(bloque, o);
    o.logico("activa", b.activo);
}

void Formas::bloque(Indice bloque, ObjetoJson& o) const {
    const BloqueLectura& b = tablas_.bloques[bloque];
    const std::int64_t faltan = bloques_.faltanMs(bloque);
    o.texto("direccion", b.clave)
        .numero("bloque", bloque)
        .texto("conexion", direccionDe(tablas_.conexiones[b.idConexion]))
        .numero("nivel", b.nivel)
        .numero("scan", b.scanSegundos)
        .logico("activo", b.activo)
        .logico("seLePuedePreguntar", b.tieneTrama)
        .logico("descansa", !b.habilitadoPorRespuestas)
        .logico("esperaTurno", b.pendiente && b.sePuedePedir())
        .crudo("faltan", faltan < 0 ? "null" : enJson(static_cast<double>(faltan) / 1000))
        .numero("intentosSinRespuesta", b.fallidos.total());
}

std::string Formas::estaciones(Indice conexion) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    std::string texto;
    ListaJson lista(texto);
    for (const Indice k : c.estacionesEnUso()) {
        const Estacion& e = c.estaciones[k];
        ObjetoJson o(lista.elemento());
        o.numero("plc", e.numero)
            .numero("indice", e.indice)
            .logico("callada", porQue_.callada(e))
            .crudo("sinRespuestaDesde",
                   e.fallidos.desde.hay() ? instante(e.fallidos.desde.ms()) : "null")
            .numero("intentosSinRespuesta", e.fallidos.total())
            .fin();
    }
    lista.fin();
    return texto;
}

void Formas::conexion(Indice conexion, ObjetoJson& o) const {
    const ConexionIP& c = tablas_.conexiones[conexion];
    const bool arriba = turnos_.conectada(conexion);
    o.texto("direccion", direccionDe(tablas_.conexiones[conexion]))
        .logico("conectada", arriba)
        .crudo("desde", c.enlaceDesde.hay() ? instante(c.enlaceDesde.ms()) : "null")
        .crudo("proximoIntento",
               arriba ? "null"
                      : enJson(static_cast<double>(conexiones_.proximoIntentoMs(conexion)) / 1000))
        .numero("bloquesActivos", c.activos)
        .numero("escriturasEnEspera", static_cast<double>(c.escrituras.size()))
        .texto("porque", porQue_.porQueConexion(conexion))
        .crudo("estaciones", estaciones(conexion));
}

void Formas::unas(const Cuentas& c, ObjetoJson& o) {
    const auto ms = [](std::int64_t us) { return static_cast<double>(us) / 1000; };
    o.numero("pedidos", static_cast<double>(c.pedidos))
        .numero("respuestas", static_cast<double>(c.respuestas))
        .numero("vencidos", static_cast<double>(c.vencidos))
        .numero("reintentos", static_cast<double>(c.reintentos))
        .numero("dudosas", static_cast<double>(c.dudosas))
        .numero("sobrantes", static_cast<double>(c.sobrantes))
        .numero("descartes", static_cast<double>(c.descartes))
        .numero("bytesDescartados", static_cast<double>(c.bytesDescartados))
        .numero("msUltima", ms(c.ultimoUs))
        .numero("msMediana", ms(c.medianoUs))
        .numero("msPeor", ms(c.peorUs));
}

void Formas::cuentas(Indice conexion, ObjetoJson& o) const {
    const CuentasDeConexion c = contadores_.deConexion(conexion);
    o.texto("conexion", direccionDe(tablas_.conexiones[conexion]));
    unas(c, o);
    o.crudo("ultimaRespuesta", instante(c.ultimaRespuestaMs))
        .numero("caidas", static_cast<double>(c.caidas));
    const double total = static_cast<double>(std::max<std::int64_t>(1, c.reparto.total()));
    ObjetoJson r(o.valor("reparto"));
    r.numero("respuestas", static_cast<double>(c.reparto.respuestas) / total)
        .numero("silencio", static_cast<double>(c.reparto.silencio) / total)
        .numero("pausas", static_cast<double>(c.reparto.pausas) / total)
        .numero("libre", static_cast<double>(c.reparto.libre) / total)
        .fin();
    ListaJson lista(o.valor("estaciones"));
    const ConexionIP& suya = tablas_.conexiones[conexion];
    for (const Indice k : suya.estacionesEnUso()) {
        ObjetoJson una(lista.elemento());
        una.numero("plc", suya.estaciones[k].numero);
        unas(contadores_.deEstacion(conexion, k), una);
        una.fin();
    }
    lista.fin();
}

/// What was on the wire; where it is long, behind how many that were held from before.
void Formas::bytesDe(const Suceso& s, ObjetoJson& o) const {
    const std::string_view largo = s.que == Que::LlegaronBytes || s.que == Que::Descarte
                                       ? redaccion_.sucesos().textoDe(s)
                                       : std::string_view();
    if (largo.empty() && (s.cuantos == 0 || s.texto != 0))
        return; // it had no bytes, or they were given up for later ones
    std::string hexadecimales;
    if (largo.empty()) {
        for (const std::uint8_t b : s.losBytes())
            agregarDosCifras(hexadecimales, b);
    } else {
        for (const char c : largo)
            agregarDosCifras(hexadecimales, static_cast<std::uint8_t>(c));
        o.numero("tenidos", s.cuantos);
    }
    o.texto("bytes", hexadecimales);
}

void Formas::suceso(std::uint64_t numero, ObjetoJson& o) const {
    const Suceso& s = redaccion_.sucesos()[numero];
    o.numero("numero", static_cast<double>(numero))
        .texto("hora", enIso(desempaquetar(s.instante)))
        .texto("suceso", nombreDe(s.que));
    if (s.conexion != kNinguno) o.texto("conexion", direccionDe(tablas_.conexiones[s.conexion]));
    if (s.bloque != kNinguno) o.texto("bloque", tablas_.bloques[s.bloque].clave);
    bytesDe(s, o);
    std::string texto;
    const Caja caja = cajasDe(s).primera;
    if (caja != Caja::Ninguna) {
        redaccion_.redactar(s, caja, texto);
    } else {
        texto = redaccion_.sucesos().textoDe(s);
    }
    if (!texto.empty()) o.texto("texto", recortar(enUnaLinea(texto)));
}

} // namespace kv
