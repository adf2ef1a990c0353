// SPDX-License-Identifier: Apache-2.0
#include "config/comprobacion.h"

#include "config/desconocidas.h"
#include "config/descripciones.h"
#include "plant/claves_de_bloque.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "wire/Modulo_Tramas_KV2200.h"

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
                   conComa(p.tiempoFuera) + " s, " +
                   cuantos(p.reintentosMax, "reintento", "reintentos") + ", reconexión " +
                   conComa(p.segReconeccion) + " s, scan por defecto " + conComa(p.scanPorDefecto) +
                   " s\n";
    }
    yMas(informe, construidos, kMaximoDePuertosListados, "");
}

/// The connections with their stations and these with their blocks.
class Listado {
  public:
    Listado(std::string& informe, const Revision& r)
        : informe_(informe), listas_(r.configuracion.listas), v_(r.validacion),
          bloques_(listas_.estaciones.size()) {
        for (std::size_t i = 0; i < v_.bloques.size(); ++i) {
            if (v_.bloques[i] != Suerte::NoConstruir) bloques_[v_.estacionDeBloque[i]].push_back(i);
        }
    }

    void conexion(const ConexionPrevista& c, const Presupuesto& p) {
        informe_ +=
            "Conexión " + direccionDe(c) + " (puerto " + std::to_string(c.puerto) +
            "): " + cuantos(static_cast<double>(c.estaciones.size()), "estación", "estaciones") +
            ", " + cuantos(static_cast<double>(c.bloques), "bloque", "bloques") + ", " +
            cuantos(c.variables, "variable", "variables") + ", pide " + porSegundo(p.pedidas) +
            " lecturas/s y se le permite " + porSegundo(p.permite) + "\n";
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
        const auto numero = byteDeRegistro(registro);
        const std::string nombre = nombreDeScript(clave);
        informe_ += "    " + sinComillas(clave) + ": registro ";
        if (numero)
            agregarHexadecimal(informe_, *numero);
        else
            informe_ += "ninguno";
        informe_ += ", nivel " + textoDeNumero(b.nivel) + ", " +
                    (b.scanSegundos == 0 ? "scan 0: se lee al conectar y al forzarlo"
                                         : "scan " + conComa(b.scanSegundos) + " s") +
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

void problemasAlFinal(std::string& informe, const Revision& r) {
    const Problemas& problemas = r.configuracion.problemas;
    if (problemas.ninguno()) {
        informe += "Sin problemas\n";
    } else {
        informe +=
            "Problemas: " + std::to_string(problemas.lista().size() + problemas.demas()) + "\n";
        for (const Problema& p : problemas.lista())
            informe += textoDeProblema(p) + "\n";
        yMas(informe, problemas.lista().size() + problemas.demas(), problemas.lista().size(), "");
    }
    for (const std::string& i : r.impedimentos)
        informe += "Así el driver no atiende a la planta: " + i + "\n";
}

/// What a door that cannot be opened, or settings that cannot be read, come to.
void impedimentosDe(Ajustes& ajustes, Revision& r) {
    if (!ajustes.defecto().empty())
        r.impedimentos.emplace_back("los ajustes no se pueden usar");
    else if (r.escucha.cerrada)
        r.impedimentos.emplace_back("la puerta queda cerrada a todos los clientes");
    if (r.validacion.conexiones.empty())
        r.impedimentos.emplace_back("no hay ninguna estación que leer");
}

/// Those of the door are its own to tell.
bool esDeLaPuerta(std::string_view clave) { return clave.starts_with(kPrefijoDeEscucha); }

void revisarTextos(Ajustes& ajustes, Problemas& problemas) {
    const std::string& archivo = ajustes.archivoDeAjustes();
    for (const AjusteDeTexto& a : ajustesDeTexto()) {
        if (a.valores.empty() || esDeLaPuerta(a.clave)) continue;
        const std::string texto = ajustes.leerIni(archivo, a.seccion, a.clave, a.porDefecto);
        const auto valores = partir(a.valores, '|');
        if (texto.empty() || std::find(valores.begin(), valores.end(), texto) != valores.end())
            continue;
        std::string cuales;
        for (const std::string_view v : valores)
            cuales += (cuales.empty() ? "" : " ni ") + std::string(v);
        problemas.agregar(archivo, ajustes.lineaDe(archivo, a.seccion, a.clave),
                          std::string(a.clave) + "=" + citarUtf8(texto) + " no es " + cuales,
                          "rige " +
                              std::string(a.porDefecto.empty() ? valores.front() : a.porDefecto));
    }
}

/// Descriptions of what the plant does not have: most likely an address that was mistyped.
void revisarDescripciones(Revision& r) {
    const ListasDeConfiguracion& listas = r.configuracion.listas;
    if (listas.descripciones.ninguna()) return;
    const DireccionesDePlanta planta = direccionesDe(listas, r.validacion);
    const std::string ruta = rutaDeDescripciones(r.configuracion.ubicacion.rutaConfiguracion);
    listas.descripciones.recorrer([&](const std::string& direccion, const Descripcion& d) {
        DireccionPartida partes;
        if (!partirDireccion(direccion, partes) ||
            planta.hayRegistro(partes.puerto, partes.plc, partes.registro))
            return;
        r.configuracion.problemas.agregar(ruta, d.fila, "ningún bloque lee " + citarUtf8(direccion),
                                          "su descripción no se ve, salvo que se lo lea a pedido");
    });
}

} // namespace

int Revision::resultado() const {
    if (!impedimentos.empty()) return 2;
    return configuracion.problemas.ninguno() ? 0 : 1;
}

std::string informeDe(const Revision& r) {
    const ListasDeConfiguracion& listas = r.configuracion.listas;
    const Validacion& v = r.validacion;
    std::string informe = "Configuración: " + rutaLegible(listas.archivo) + "\n";
    informe += "Proyecto: " + r.configuracion.ubicacion.nombreProyecto + "\n";
    if (!r.guion.empty()) informe += "Guion: " + r.guion + "\n";
    informe += "Escucha: " +
               (r.escucha.cerrada ? "a nadie"
                                  : r.escucha.direccion + ":" + textoDeNumero(r.puertoEscucha)) +
               "\n";
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
    Listado listado(informe, r);
    for (std::size_t i = 0; i < std::min(v.conexiones.size(), kMaximoDeConexiones); ++i)
        listado.conexion(v.conexiones[i], r.presupuestos[i]);
    yMas(informe, v.conexiones.size(), kMaximoDeConexiones, "");
    listarAlcance(listas, v, r.alcance, informe);
    problemasAlFinal(informe, r);
    return informe;
}

void revisarAjustes(Ajustes& ajustes, Problemas& problemas) {
    if (const auto defecto = ajustes.defecto(); !defecto.empty())
        problemas.agregar(ajustes.archivoDeAjustes(), 0, "el archivo " + std::string(defecto),
                          "no se admite a ningún cliente, se usan los valores por defecto y no se "
                          "escribe en él");
    for (const AjusteNumerico& a : ajustesNumericos()) {
        if (esDeLaPuerta(a.clave)) continue;
        static_cast<void>(ajustes.leerNumero(a, [&](std::string_view clave,
                                                    const std::string& texto, double n) {
            const std::string& archivo = ajustes.archivoDeAjustes();
            problemas.agregar(archivo, ajustes.lineaDe(archivo, kSeccionDeAjustes, clave),
                              std::string(clave) + "=" + citarUtf8(texto) + " no es un número de " +
                                  textoDeNumero(a.minimo) + " a " + textoDeNumero(a.maximo),
                              "se usa " + textoDeNumero(n));
        }));
    }
    revisarTextos(ajustes, problemas);
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

Revision revisarListas(ConfiguracionLeida configuracion, double pausaMs) {
    Revision r;
    r.configuracion = std::move(configuracion);
    r.pausaMs = pausaMs;
    ListasDeConfiguracion& listas = r.configuracion.listas;
    r.validacion = validar(listas, r.configuracion.problemas);
    r.presupuestos = presupuestos(listas, r.validacion, pausaMs);
    revisarPresupuestos(listas, r.validacion, r.presupuestos, pausaMs, r.configuracion.problemas);
    return r;
}

Revision revisar(Ajustes& ajustes) {
    ajustes.noEscribir();
    ConfiguracionLeida c = leerConfiguracionUbicada(ajustes, {});
    revisarAjustes(ajustes, c.problemas);
    std::vector<QuejaDeEscucha> quejas;
    const Escucha escucha = escuchaDe(clavesDeEscucha(ajustes.contenido()), quejas);
    for (QuejaDeEscucha& q : quejas)
        c.problemas.agregar(ajustes.archivoDeAjustes(), q.linea, std::move(q.que),
                            std::move(q.consecuencia));
    revisarRepetidasDeAjustes(ajustes.contenido(), ajustes.archivoDeAjustes(), c.problemas);
    revisarNombresDeAjustes(ajustes.contenido(), ajustes.archivoDeAjustes(), c.problemas);
    c.problemas.agregar(c.listas.ignoradas);
    Revision r = revisarListas(std::move(c), ajustes.leerNumero(kTiempoEntrePoleo, {}));
    revisarDescripciones(r);
    r.escucha = escucha;
    r.puertoEscucha = ajustes.leerNumero(kPuertoEscucha, {});
    impedimentosDe(ajustes, r);
    return r;
}

void revisarEscucha(Bucle& bucle, Ajustes& ajustes, Revision& r) {
    struct Nadie final : OyenteDeZocalo {
        void alLlegarDatos(std::size_t, std::span<const std::uint8_t>) override {}
    } nadie;
    if (r.escucha.cerrada) return;
    const auto zocalo = bucle.crearZocalo(nadie, 0);
    zocalo->escuchar(r.escucha.direccion, 0); // any port: only the address is tried
    if (zocalo->estado() != EstadoZocalo::Error) return;
    const std::string que =
        "no se puede escuchar en la dirección " + r.escucha.direccion + ": " + zocalo->motivo();
    const std::string& archivo = ajustes.archivoDeAjustes();
    r.configuracion.problemas.agregar(
        archivo, ajustes.lineaDe(archivo, kSeccionDeAjustes, kEscuchaDireccion.clave), que,
        "no entra ningún cliente");
    r.impedimentos.push_back(que);
}

} // namespace kv
