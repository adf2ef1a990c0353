// SPDX-License-Identifier: Apache-2.0
#include "engine/arranque.h"

#include "config/cambios_de_ajustes.h"
#include "config/desconocidas.h"
#include "config/proyecto.h"
#include "operator/revision_de_guion.h"
#include "text/numeros.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr std::int64_t kVerMs = 5000;
// Of the entries that the log takes in a second some are left for what else a start has to say.
constexpr std::size_t kProblemasEnElLog = ArchivoLog::kPorSegundo - 10;

} // namespace

void levantarConfiguracion(Modelo& modelo, const ListasDeConfiguracion& listas,
                           const Validacion& validacion) {
    const auto sirve = [](const std::vector<Suerte>& suertes, std::size_t i) {
        return i >= suertes.size() || suertes[i] != Suerte::NoConstruir;
    };
    // A port's place in the table is its number, so the ports are raised as they stand.
    for (const Puerto& p : listas.puertos) {
        if (p.numero > 0) modelo.levantarPuerto(p);
    }
    for (std::size_t i = 0; i < listas.estaciones.size(); ++i) {
        const Estacion& e = listas.estaciones[i];
        if (e.puerto > 0 && sirve(validacion.estaciones, i)) modelo.levantarEstacion(e);
    }
    for (std::size_t i = 0; i < listas.bloques.size(); ++i) {
        const ConfiguracionDeBloque& b = listas.bloques[i];
        if (b.puerto > 0 && sirve(validacion.bloques, i))
            modelo.levantarBloquePoleo(b.puerto, b.plc, b.direccion, b.cantidad, b.scanSegundos,
                                       b.activoPorDefecto, b.nivel);
    }
}

Arranque::Arranque(Motor& motor, Procesos& procesos)
    : motor_(motor), procesos_(procesos),
      Timer_VER_(motor.bucle.crearTemporizador([this] { Timer_VER_Timer(); })) {
    Timer_VER_->fijarIntervalo(kVerMs);
    motor_.recarga.alAdoptar(
        [this](const std::string& ruta) { procesos_.atenderConfiguracion(ruta); });
}

bool Arranque::soyElUnico() {
    if (procesos_.tomarCarpeta(motor_.ajustes.carpeta())) return true;
    motor_.vista.mostrarMensaje("Programa en ejecucion");
    // One that is missing was lost by the driver that runs, and is not for us to make.
    Ajustes& ajustes = motor_.ajustes;
    if (ajustes.existeArchivo(ajustes.archivoDeAjustes()))
        ajustes.escribirConfiguracion(kVer.clave, "1");
    return false;
}

void Arranque::arrancar() {
    Motor& m = motor_;
    m.vista.Label1.poner(m.sello.ahora());
    ConfiguracionLeida leida = leerConfiguracionUbicada(
        m.ajustes, [&m](std::string_view texto) { m.vista.mostrarMensaje(texto); });
    m.vista.lblProyecto.poner(leida.ubicacion.nombreProyecto);
    procesos_.atenderConfiguracion(leida.ubicacion.rutaConfiguracion);
    m.guion.fijarRuta(rutaDelGuion(leida.ubicacion.rutaConfiguracion));
    anotarAjustes();
    m.aplicarAjustes();
    const Validacion validacion = validar(leida.listas, leida.problemas);
    m.descripciones = std::move(leida.listas.descripciones);
    levantarConfiguracion(m.modelo, leida.listas, validacion);
    m.recarga.conocer(leida.problemas, leida.listas.ignoradas);
    leida.problemas.agregar(leida.listas.ignoradas);
    revisarRepetidasDeAjustes(m.ajustes.contenido(), m.ajustes.archivoDeAjustes(), leida.problemas);
    informar(leida.problemas);
    m.vista.lblCantidadDePuntos.poner(textoDeNumero(m.tablas.cantidadDePuntos));
    m.bucle.dejarCorrerPendientes();
    m.conexiones.estadoConexiones();
    m.conexiones.habilitarSupervision();
    Timer_VER_->habilitar(true);
}

void Arranque::abrirServidor() {
    motor_.publicacion.avisarA(&motor_.servidor);
    motor_.servidor.Form_Load();
    motor_.puertaLocal.abrir();
    anotarPlanta();
}

/// What has been built, in figures.
void Arranque::anotarPlanta() {
    const Tablas& t = motor_.tablas;
    const auto n = [](double cuantos) { return textoDeNumero(cuantos); };
    motor_.log.escribir({"DRIVER",
                         "Planta",
                         motor_.vista.lblProyecto.texto() + ": " +
                             n(static_cast<double>(t.puertos.limiteSuperior())) + " puertos, " +
                             n(static_cast<double>(t.conexiones.limiteSuperior())) +
                             " conexiones, " + n(t.cantidadDeEstaciones) + " estaciones, " +
                             n(t.cantidadDePuntos) +
                             " variables; problemas de configuracion: " + n(problemas_) +
                             "; cliente: " + motor_.vista.servidor.lblPuertoServidor.texto() +
                             "; guion: " + queGuionHay(motor_.archivos, motor_.guion.ruta()),
                         {},
                         Novedad::Planta});
}

/// The first look only learns what the settings are.
void Arranque::anotarAjustes() {
    Ajustes& ajustes = motor_.ajustes;
    if (!ajustes.conocidos() ||
        std::exchange(ajustesVistos_, ajustes.cambios()) == ajustes.cambios())
        return;
    const std::string antes = std::exchange(ajustesAntes_, ajustes.contenido());
    if (!std::exchange(ajustesLeidos_, true)) return;
    for (const std::string& cambio : cambiosDeAjustes(antes, ajustesAntes_))
        motor_.log.escribir({"DRIVER", "Ajuste cambiado", cambio, {}, Novedad::AjusteCambiado});
}

void Arranque::informar(const Problemas& problemas) {
    const auto& lista = problemas.lista();
    problemas_ = static_cast<double>(lista.size() + problemas.demas());
    const std::size_t escritos = std::min(lista.size(), kProblemasEnElLog);
    for (std::size_t i = 0; i < escritos; ++i)
        motor_.log.escribir(
            {"DRIVER", "Configuracion", textoDeProblema(lista[i]), {}, Novedad::Configuracion});
    const std::size_t callados = problemas.demas() + lista.size() - escritos;
    if (callados > 0)
        motor_.log.escribir({"DRIVER",
                             "Configuracion",
                             "y " + textoDeNumero(static_cast<double>(callados)) +
                                 " problemas mas; vea --comprobar",
                             {},
                             Novedad::Configuracion});
}

void Arranque::Timer_VER_Timer() {
    anotarAjustes();
    motor_.aplicarAjustes();
    const bool ver = motor_.ajustes.leerConfiguracion(kVer) == "1";
    motor_.vista.Form1Visible = ver;
    if (!ver) motor_.vista.FrmServerTCPVisible = false;
}

} // namespace kv
