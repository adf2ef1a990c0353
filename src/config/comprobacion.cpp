#include "config/comprobacion.h"

#include "config/escucha.h"
#include "plant/bases.h"

#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kMaximoDePuertosListados = 100;
constexpr std::size_t kMaximoDeConexiones = 1000;
constexpr std::size_t kMaximoDeEstaciones = 100; // of each connection
constexpr std::size_t kMaximoDeBloques = 10'000; // of the plant

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

/// Bytes of a field file inside a line of the report.
std::string sinComillas(std::string_view utf8) {
    const std::string cita = citar(windows1252DesdeUtf8(utf8));
    return cita.substr(1, cita.size() - 2);
}

/// The connections with their stations and these with their blocks.
class Listado {
  public:
    Listado(std::string& informe, const ListasDeConfiguracion& listas, const Validacion& v)
        : informe_(informe), listas_(listas), v_(v), bloques_(listas.estaciones.size()) {
        for (std::size_t i = 0; i < v.bloques.size(); ++i) {
            if (v.bloques[i] != Suerte::NoConstruir) bloques_[v.estacionDeBloque[i]].push_back(i);
        }
    }

    void conexion(const ConexionPrevista& c) {
        informe_ += "Conexión " + sinComillas(c.ip + ":" + c.puertoTCP) + " (puerto " +
                    std::to_string(c.puerto) + "): " +
                    cuantos(static_cast<double>(c.estaciones.size()), "estación", "estaciones") +
                    ", " + cuantos(static_cast<double>(c.bloques), "bloque", "bloques") + ", " +
                    cuantos(c.variables, "variable", "variables") + "\n";
        const std::size_t n = std::min(c.estaciones.size(), kMaximoDeEstaciones);
        for (std::size_t i = 0; i < n; ++i)
            estacion(c.estaciones[i]);
        yMas(informe_, c.estaciones.size(), kMaximoDeEstaciones, "  ");
    }

  private:
    void estacion(std::size_t cual) {
        const Estacion& e = listas_.estaciones[cual];
        const bool sondea = v_.estaciones[cual] != Suerte::SinSondeo;
        informe_ += "  PLC " + std::to_string(e.numero) + " - Indice " + std::to_string(e.indice) +
                    (sondea ? "\n" : " (sin sondeo)\n");
        std::size_t todas = 0;
        std::size_t escritas = 0;
        for (const std::size_t i : bloques_[cual]) {
            const ConfiguracionDeBloque& b = listas_.bloques[i];
            for (const std::string& registro : registrosDeBloque(b.direccion, b.cantidad)) {
                ++todas;
                if (escritos_ == kMaximoDeBloques) continue;
                ++escritos_;
                ++escritas;
                bloque(b, registro, v_.bloques[i]);
            }
        }
        yMas(informe_, todas, escritas, "    ");
    }
    void bloque(const ConfiguracionDeBloque& b, const std::string& registro, Suerte suerte) {
        const std::string clave = claveDeBloque(b.puerto, b.plc, registro);
        const auto numero = hexadecimal(registro);
        const std::string nombre = nombreDeScript(clave);
        informe_ += "    " + sinComillas(clave) + ": registro ";
        if (numero && *numero <= 0xFF)
            agregarHexadecimal(informe_, static_cast<std::uint8_t>(*numero));
        else
            informe_ += "ninguno";
        informe_ += ", nivel " + textoDeNumero(b.nivel) + ", " +
                    (b.scanSegundos == 0 ? "scan 0: se lee al conectar y al forzarlo"
                                         : "scan " + textoDeNumero(b.scanSegundos) + " s") +
                    (b.activoPorDefecto ? ", activo, " : ", inactivo, ") +
                    (nombrePublicable(nombre) ? nombre : "sin nombre en el guión") +
                    (suerte == Suerte::SinSondeo ? " (sin sondeo)\n" : "\n");
    }

    std::string& informe_;
    const ListasDeConfiguracion& listas_;
    const Validacion& v_;
    std::vector<std::vector<std::size_t>> bloques_; ///< by station
    std::size_t escritos_ = 0;
};

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
    Listado listado(informe, listas, v);
    for (std::size_t i = 0; i < std::min(v.conexiones.size(), kMaximoDeConexiones); ++i)
        listado.conexion(v.conexiones[i]);
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
    if (const auto defecto = ajustes.defecto(); !defecto.empty())
        problemas.agregar(ajustes.archivoDeAjustes(), 0, "el archivo " + std::string(defecto),
                          "no se admite a ningún cliente, se usan los valores por defecto y no se "
                          "escribe en él");
    std::vector<QuejaDeEscucha> quejas;
    static_cast<void>(escuchaDe(clavesDeEscucha(ajustes.contenido()), quejas));
    for (QuejaDeEscucha& q : quejas)
        problemas.agregar(ajustes.archivoDeAjustes(), q.linea, std::move(q.que),
                          std::move(q.consecuencia));
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

DireccionesDePlanta direccionesDe(const ListasDeConfiguracion& listas,
                                  const Validacion& validacion) {
    DireccionesDePlanta planta;
    for (std::size_t i = 0; i < listas.estaciones.size(); ++i) {
        const Estacion& e = listas.estaciones[i];
        if (validacion.estaciones[i] != Suerte::NoConstruir)
            planta.agregarEstacion(e.puerto, e.numero);
    }
    for (std::size_t i = 0; i < listas.bloques.size(); ++i) {
        const ConfiguracionDeBloque& b = listas.bloques[i];
        if (validacion.bloques[i] == Suerte::NoConstruir) continue;
        for (const std::string& registro : registrosDeBloque(b.direccion, b.cantidad))
            planta.agregarRegistro(b.puerto, b.plc, registro);
    }
    return planta;
}

std::optional<DireccionesDePlanta> direccionesConfiguradas(Ajustes& ajustes) {
    ajustes.noEscribir();
    ConfiguracionLeida c = leerConfiguracionUbicada(ajustes, {});
    if (!ajustes.existeArchivo(c.listas.archivo)) return std::nullopt;
    const Validacion v = validar(c.listas, c.problemas);
    return direccionesDe(c.listas, v);
}

Comprobacion comprobar(Ajustes& ajustes, const OtraRevision& otra) {
    ajustes.noEscribir();
    ConfiguracionLeida c = leerConfiguracionUbicada(ajustes, {});
    revisarAjustes(ajustes, c.problemas);
    const Validacion v = validar(c.listas, c.problemas);
    if (otra) otra(c, v, c.problemas);
    return {informeDe(c, v), c.problemas.ninguno() ? 0 : 1};
}

} // namespace kv
