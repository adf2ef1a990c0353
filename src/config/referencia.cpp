// SPDX-License-Identifier: Apache-2.0
#include "config/referencia.h"

#include "config/claves.h"
#include "config/descripciones.h"
#include "config/exportacion.h"
#include "config/tabla_de_ajustes.h"
#include "plant/limites.h"
#include "text/numeros.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

namespace kv {
namespace {

/// What a reader's table of names does not say of a key.
struct Explicacion {
    std::string porDefecto;
    std::string rango;
    std::string_view que;
};

std::string n(double numero) { return textoDeNumero(numero); }
std::string de(double desde, double hasta) { return n(desde) + " a " + n(hasta); }
std::string entero(double desde, double hasta) { return de(desde, hasta) + ", entero"; }
std::string tiempo(double hasta = limite::kTiempo) { return de(limite::kTiempoMinimo, hasta); }
std::string scan() { return "0, o " + tiempo(); }
std::string corto() {
    using Corto = std::numeric_limits<std::int16_t>;
    return de(Corto::min(), Corto::max());
}
std::string letras(std::size_t cuantas) {
    return "hasta " + std::to_string(cuantas) + " caracteres";
}

// Each in the order of the names of its reader; one too few or too many does not compile.
std::array<Explicacion, kCamposDePuerto.size()> dePuerto() {
    return std::to_array<Explicacion>({
        {"su orden menos 1, que es otro puerto o ninguno",
         de(1, std::numeric_limits<std::int16_t>::max()),
         "Número del puerto; debe ser el de su orden: 1, 2, …"},
        {n(de_puerto::kScan), scan(),
         "Scan, en segundos, de los bloques que una lectura forzada crea."},
        {"1", "0 o 1", "Se lee; no cambia nada."},
        {n(de_puerto::kReintentos), entero(0, limite::kReintentos),
         "Veces que se vuelve a pedir lo que no se respondió."},
        {n(de_puerto::kTiempoFuera), tiempo(limite::kTiempoFuera),
         "Segundos que se espera cada respuesta."},
        {n(de_puerto::kTipoPlc), "número", "Se lee; no cambia nada."},
        {n(de_puerto::kReconeccion), tiempo(),
         "Segundos que descansa un bloque cuya estación no respondió."},
        {"0", "0 o más",
         "Cuántas estaciones (Esclavo*N*_…) son del puerto; la cuenta de N sigue de un "
         "puerto al otro."},
        {"0", "0 o más",
         "Cuántos bloques (Bloque*N*_…) son del puerto; la cuenta de N sigue de un "
         "puerto al otro."},
    });
}
std::array<Explicacion, kCamposDeEsclavo.size()> deEsclavo() {
    return std::to_array<Explicacion>({
        {"0", corto(), "Número de PLC con que la nombran bloques, guiones y clientes."},
        {std::string(de_estacion::kIp), "IPv4, IPv6 o nombre", "Máquina a la que se conecta."},
        {std::string(de_estacion::kPuertoTcp), "1 a 65535",
         "Puerto TCP. Estaciones con la misma Ip y el mismo Puerto comparten una "
         "conexión."},
        {"0", de(0, kUltimoIndice),
         "Byte de la estación en la trama; distinto en cada una de una conexión."},
        {"0", corto(), "Se lee; no cambia nada."},
    });
}
std::array<Explicacion, kCamposDeBloque.size()> deBloque() {
    return std::to_array<Explicacion>({
        {"vacío", "texto", "Nombre; se lee y no cambia nada."},
        {"obligatoria", "el Numero de una estación del puerto", "A qué estación se le pide."},
        {"obligatoria", entero(1, limite::kCantidad),
         "Cuántos registros; cada uno es un bloque de poleo."},
        {"vacío", "00 a FF", "Primer registro, en hexadecimal."},
        {"obligatoria", scan(),
         "Cada cuántos segundos se lee; 0: al conectar y al "
         "forzarlo."},
        {"0", entero(0, limite::kNivel), "Nivel con el que se lo fuerza junto con otros."},
        {"0", "número", "Se lee; no cambia nada."},
        {"1", "0 o 1", "1: se lee desde el arranque."},
    });
}
constexpr std::array<std::string_view, kCamposDePuertoExportado.size()> kComoPuerto = {
    "NUMERO",         "DEFAULT_SCAN_TIME", "SEG_RECONECCION", "READ_AFTER_WRITE",
    "REINTENTOS_MAX", "TIME_OUT",          "TIPO_PLC_DEFAULT"};
constexpr std::array<std::string_view, kCamposDeEstacionExportada.size()> kComoEsclavo = {
    "Numero", "Digitos", "Indice", "Ip", "Puerto"};
constexpr std::array<std::string_view, kCamposDeBloqueExportado.size()> kComoBloque = {
    "Bloque", "PLC", "Quantity", "ScanTime", "StarAdrees", "Nivel", "ActiveDefault"};

constexpr std::string_view kCabezaDeTabla =
    "\n| clave | si falta | valores | qué es |\n|---|---|---|---|\n";

/// A text inside a cell of a table.
std::string celda(std::string_view texto) {
    std::string c;
    for (const char x : texto)
        c += x == '|' ? std::string("\\|") : std::string(1, x);
    return c;
}

void fila(std::string& doc, std::string_view clave, std::string_view porDefecto,
          std::string_view rango, std::string_view que) {
    doc += "| `" + std::string(clave) + "` | " + celda(porDefecto) + " | " + celda(rango) + " | " +
           celda(que) + " |\n";
}

void ajustes(std::string& doc) {
    for (const std::string_view seccion : {kSeccionDeAjustes, kSeccionDeProyecto}) {
        doc += "\n### [" + std::string(seccion) + "]\n" + std::string(kCabezaDeTabla);
        for (const AjusteNumerico& a : ajustesNumericos()) {
            if (seccion == kSeccionDeAjustes)
                fila(doc, a.clave, textoDeNumero(a.porDefecto),
                     textoDeNumero(a.minimo) + " a " + textoDeNumero(a.maximo), a.que);
        }
        for (const AjusteDeTexto& a : ajustesDeTexto()) {
            if (a.seccion == seccion)
                fila(doc, a.clave,
                     a.porDefecto.empty() ? "vacía" : "`" + std::string(a.porDefecto) + "`",
                     a.valores.empty() ? "texto" : a.valores, a.que);
        }
    }
}

void campos(std::string& doc, std::span<const std::string_view> nombres,
            std::span<const Explicacion> explicaciones, std::string_view prefijo) {
    doc += kCabezaDeTabla;
    for (std::size_t i = 0; i < nombres.size(); ++i)
        fila(doc, std::string(prefijo) + std::string(nombres[i]), explicaciones[i].porDefecto,
             explicaciones[i].rango, explicaciones[i].que);
}

void exportados(std::string& doc, std::span<const std::string_view> nombres,
                std::span<const std::string_view> como, std::string_view registro) {
    doc += "\nRegistro de " + std::string(registro) + ":\n\n| campo | como |\n|---|---|\n";
    for (std::size_t i = 0; i < nombres.size(); ++i)
        doc += "| `" + std::string(nombres[i]) + "` | `" + std::string(como[i]) + "` |\n";
}

} // namespace

std::string referenciaDeClaves() {
    std::string doc =
        "# Claves de los archivos\n\n"
        "Este documento se hace de las tablas que el programa lee; una prueba los compara. Los "
        "archivos son Windows-1252. Ni las claves ni las secciones distinguen mayúsculas; de las "
        "repetidas vale la primera. `DriverKV2200 --comprobar` dice cada una que no conoce, con la "
        "más parecida, y cada una repetida que no cuenta.\n\n"
        "## Ajustes: `sis_config.ini`\n\n"
        "Se leen todo el tiempo: un cambio vale sin reiniciar, salvo donde se dice. Una clave que "
        "falta se escribe con su valor, salvo donde dice que nunca; un número fuera de sus límites "
        "no vale, y sigue el último "
        "bueno. Los números se escriben con punto decimal. Una clave `Escucha_` que no se "
        "entiende cierra la puerta: no entra ningún cliente (vea protocolo-cliente.md).\n";
    ajustes(doc);
    doc += "\n## Configuración: `" + std::string(kArchivoDeConfiguracion) +
           "`\n\n"
           "Se lee al arrancar y al recargar. Los números pueden llevar una coma por punto.\n\n"
           "### [CONFIG]\n";
    doc += kCabezaDeTabla;
    fila(doc, kCantPuertos, "obligatoria", de(0, kMaximoDePuertos),
         "Cuántas secciones [PUERTO1], [PUERTO2], … se leen.");
    doc += "\n### [PUERTO*n*]\n";
    campos(doc, kCamposDePuerto, dePuerto(), "");
    doc += "\nEstaciones del puerto, contadas desde 0:\n";
    campos(doc, kCamposDeEsclavo, deEsclavo(), std::string(kPrefijoDeEsclavo) + "N_");
    doc += "\nBloques del puerto, contados desde 0:\n";
    campos(doc, kCamposDeBloque, deBloque(), std::string(kPrefijoDeBloque) + "N_");
    doc += "\n## Exportación del proyecto: `*.KalmorKV2200_Conf`\n\n"
           "Lo mismo en registros de una línea, cada campo como la clave que se nombra al lado. "
           "Todos son obligatorios en su registro, menos los de texto.\n";
    exportados(doc, kCamposDePuertoExportado, kComoPuerto, "puerto");
    exportados(doc, kCamposDeEstacionExportada, kComoEsclavo, "estación");
    exportados(doc, kCamposDeBloqueExportado, kComoBloque, "bloque");
    doc +=
        "\n## Descripciones: `" + std::string(kArchivoDeDescripciones) +
        "`\n\n"
        "Si está, junto a la configuración: cómo se llaman las variables y en qué unidad se "
        "miden. Se lee al arrancar y al recargar. Una planilla CSV (`;`, `,` o tabulador; UTF-8 o "
        "Windows-1252), una fila por variable que tenga descripción, con los nombres de las "
        "columnas en la primera fila. `--exportar` e `--importar` la llevan y la traen con la "
        "configuración.\n" +
        std::string(kCabezaDeTabla);
    fila(doc, "direccion", "obligatoria", "`1.1.10`, `1.1.10.3`",
         "Registro (puerto.PLC.registro) o uno de sus bits; los ceros de adelante y la caja de las "
         "letras no cuentan.");
    fila(doc, "descripcion", "vacía", letras(kMaximoDeDescripcion), "Nombre para quien la mira.");
    fila(doc, "unidad", "vacía", letras(kMaximoDeUnidad), "En qué se mide: `m³/h`, `°C`, `%`.");
    return doc + "\n<!-- SPDX-License-Identifier: Apache-2.0 -->\n";
}

} // namespace kv
