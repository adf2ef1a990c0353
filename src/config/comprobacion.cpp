#include "config/comprobacion.h"

#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kMaximoDePuertosListados = 100;
constexpr std::size_t kMaximoDeConexiones = 1000;
constexpr std::size_t kMaximoDeEstaciones = 100; // of each connection

std::string cuantos(double n, const char* uno, const char* varios) {
    return textoDeNumero(n) + " " + (n == 1 ? uno : varios);
}

void yMas(std::string& informe, std::size_t total, std::size_t mostrados, const char* sangria) {
    if (total > mostrados)
        informe += sangria + ("... y " + std::to_string(total - mostrados) + " más\n");
}

void puertos(std::string& informe, const ListasDeConfiguracion& listas, const Validacion& v) {
    std::size_t construidos = 0;
    for (std::size_t i = 0; i < listas.puertos.size(); ++i) {
        if (v.puertos[i] == Suerte::NoConstruir) continue;
        if (++construidos > kMaximoDePuertosListados) continue;
        const Puerto& p = listas.puertos[i];
        informe += "Puerto " + textoDeNumero(p.numero) + ": tiempo fuera " +
                   textoDeNumero(p.tiempoFuera) + " s, " +
                   cuantos(p.reintentosMax, "reintento", "reintentos") + ", reconexión " +
                   textoDeNumero(p.segReconeccion) + " s, scan por defecto " +
                   textoDeNumero(p.scanPorDefecto) + " s\n";
    }
    yMas(informe, construidos, kMaximoDePuertosListados, "");
}

void conexion(std::string& informe, const ConexionPrevista& c, const ListasDeConfiguracion& listas,
              const Validacion& v) {
    const std::string direccion = citar(windows1252DesdeUtf8(c.ip + ":" + c.puertoTCP));
    informe += "Conexión " + direccion.substr(1, direccion.size() - 2) + " (puerto " +
               std::to_string(c.puerto) +
               "): " + cuantos(static_cast<double>(c.estaciones.size()), "estación", "estaciones") +
               ", " + cuantos(static_cast<double>(c.bloques), "bloque", "bloques") + ", " +
               cuantos(c.variables, "variable", "variables") + "\n";
    const std::size_t n = std::min(c.estaciones.size(), kMaximoDeEstaciones);
    for (std::size_t i = 0; i < n; ++i) {
        const Estacion& e = listas.estaciones[c.estaciones[i]];
        informe += "  PLC " + std::to_string(e.numero) + " - Indice " + std::to_string(e.indice);
        if (v.estaciones[c.estaciones[i]] == Suerte::SinSondeo) informe += " (sin sondeo)";
        informe += '\n';
    }
    yMas(informe, c.estaciones.size(), kMaximoDeEstaciones, "  ");
}

} // namespace

std::string informeDe(const ConfiguracionLeida& configuracion, const Validacion& v) {
    const ListasDeConfiguracion& listas = configuracion.listas;
    std::string informe = "Configuración: " + rutaLegible(listas.archivo) + "\n";
    informe += "Proyecto: " + configuracion.ubicacion.nombreProyecto + "\n";
    const auto hechos = [](const std::vector<Suerte>& suertes) {
        return static_cast<double>(suertes.size()) -
               static_cast<double>(std::count(suertes.begin(), suertes.end(), Suerte::NoConstruir));
    };
    informe += "Se construyen " + cuantos(hechos(v.puertos), "puerto", "puertos") + ", " +
               cuantos(static_cast<double>(v.conexiones.size()), "conexión", "conexiones") + ", " +
               cuantos(hechos(v.estaciones), "estación", "estaciones") + ", " +
               cuantos(static_cast<double>(v.bloquesConstruidos), "bloque", "bloques") + ", " +
               cuantos(v.variables, "variable", "variables") + "\n";
    puertos(informe, listas, v);
    for (std::size_t i = 0; i < std::min(v.conexiones.size(), kMaximoDeConexiones); ++i)
        conexion(informe, v.conexiones[i], listas, v);
    yMas(informe, v.conexiones.size(), kMaximoDeConexiones, "");
    const Problemas& problemas = configuracion.problemas;
    if (problemas.ninguno()) return informe + "Sin problemas\n";
    informe += "Problemas: " + std::to_string(problemas.lista().size() + problemas.demas()) + "\n";
    for (const Problema& p : problemas.lista())
        informe += textoDeProblema(p) + "\n";
    yMas(informe, problemas.lista().size() + problemas.demas(), problemas.lista().size(), "");
    return informe;
}

void revisarAjustes(Ajustes& ajustes, Problemas& problemas) {
    if (ajustes.ilegible(ajustes.archivoDeAjustes()))
        problemas.agregar(ajustes.archivoDeAjustes(), 0,
                          "el archivo no se puede leer o tiene más de 256 MiB",
                          "se usan los valores por defecto");
    for (const AjusteNumerico& a : ajustesNumericos()) {
        static_cast<void>(
            ajustes.leerTiempo(a, [&](std::string_view clave, const std::string& texto, double n) {
                const std::string& archivo = ajustes.archivoDeAjustes();
                problemas.agregar(archivo, ajustes.lineaDe(archivo, kSeccionDeAjustes, clave),
                                  std::string(clave) + "=" + citar(windows1252DesdeUtf8(texto)) +
                                      " no es un número de " + textoDeNumero(a.minimo) + " a " +
                                      textoDeNumero(a.maximo),
                                  "se usa " + textoDeNumero(n));
            }));
    }
}

Comprobacion comprobar(Ajustes& ajustes) {
    ajustes.noEscribir();
    ConfiguracionLeida c = leerConfiguracionUbicada(ajustes, {});
    revisarAjustes(ajustes, c.problemas);
    const Validacion v = validar(c.listas, c.problemas);
    return {informeDe(c, v), c.problemas.ninguno() ? 0 : 1};
}

} // namespace kv
