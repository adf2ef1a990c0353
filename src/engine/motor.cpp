// SPDX-License-Identifier: Apache-2.0
#include "engine/motor.h"

#include <exception>

namespace kv {

Motor::Motor(Bucle& bucle_, Archivos& archivos_, const std::string& carpeta,
             const std::string& programa)
    : bucle(bucle_), archivos(archivos_), ajustes(archivos_, carpeta, &bucle_.reloj()),
      sello(bucle_.reloj()), log(archivos_, bucle_.reloj(), carpeta, programa),
      sucesos(bucle_.reloj()), contadores(sucesos, tablas),
      bitacora(sucesos, tablas, bucle_.reloj(), log), trazas(sucesos, tablas),
      scriptControl(bucle_.reloj(), vista, *this), publicacion(tablas, scriptControl, vista, sello),
      guion(bucle_, archivos_, scriptControl, publicacion, vista, sucesos, log),
      logDelGuion(log, bucle_.reloj()),
      relojDeBloques(bucle_, tablas, publicacion, sucesos, vista, sello,
                     [this](Indice bloque) { alTocarleA(bloque); }),
      turnos(bucle_, tablas, sucesos, log, *this),
      recepcion(tablas, turnos, bucle_, sucesos, log, [this] { guion.ejectutarScript(); }),
      conexiones(bucle_, tablas, turnos, recepcion, sucesos, vista, *this, *this),
      modelo(tablas, conexiones, publicacion, relojDeBloques, vista),
      mudas(tablas, turnos, publicacion, relojDeBloques, sucesos),
      lectura(bucle_, tablas, turnos, publicacion, mudas, relojDeBloques, sucesos),
      auditoria(sucesos, tablas, archivos_, bucle_.reloj(), carpeta, programa),
      ejecucion(bucle_, tablas, turnos, publicacion, mudas, sucesos),
      poleo(bucle_, tablas, turnos, lectura, mudas, relojDeBloques, ejecucion, sucesos),
      solicitudes(tablas, turnos, ejecucion, sucesos),
      forzado(tablas, turnos, publicacion, poleo, mudas, relojDeBloques, modelo, sucesos),
      servidor(bucle_, tablas, ajustes, vista, sucesos, log, *this),
      porQue(tablas, turnos, conexiones, relojDeBloques, contadores, bucle_.reloj()),
      recarga({bucle_,
               ajustes,
               guion,
               vista,
               log,
               descripciones,
               {tablas, modelo, conexiones, turnos, publicacion, relojDeBloques, mudas, poleo,
                ejecucion, forzado}}),
      operador({tablas, turnos, recepcion, forzado, solicitudes, ajustes, archivos_, vista, sello,
                bucle_.reloj(), log, contadores, porQue, recarga, descripciones}),
      puertaLocal({bucle_, archivos_, ajustes, tablas, turnos, sucesos, publicacion, vista,
                   solicitudes, ejecucion, forzado, porQue, log},
                  Formas(tablas, turnos, conexiones, relojDeBloques, sucesos, contadores, porQue)) {
    fijar([](const AjusteNumerico& cual) { return cual.porDefecto; });
    bucle.alFinalDeVuelta([this] {
        ajustes.vueltaNueva();
        bitacora.alPasarElTiempo();
        log.alPasarElTiempo();
        auditoria.volcar();
    });
}

double Motor::ajuste(const AjusteNumerico& cual) {
    return ajustes.leerNumero(
        cual, [this](std::string_view clave, const std::string& texto, double usado) {
            log.escribir(
                {"DRIVER", "Ajustes", enElLog(clave, texto, usado), {}, Novedad::AjusteNoValido});
        });
}

void Motor::fijar(const std::function<double(const AjusteNumerico&)>& valor) {
    scriptControl.fijarPresupuesto({valor(kTiempoDelGuion), valor(kHonduraDelGuion),
                                    valor(kMemoriaDelGuion), valor(kPasosDelGuion)});
    guion.fijarReintento(valor(kReintentoDelGuion));
    turnos.fijarPausa(valor(kTiempoEntrePoleo));
    ejecucion.fijarReclamo(valor(kReclamoDeEscrituras));
    ejecucion.fijarVigencia(valor(kVigenciaDeEscrituras));
    mudas.fijarLimite(valor(kEstacionMuda));
    forzado.fijarAPedido(valor(kBloquesAPedido));
}

void Motor::aplicarAjustes() {
    fijar([this](const AjusteNumerico& cual) { return ajuste(cual); });
    const std::string idioma = ajustes.leerConfiguracion(kIdioma);
    if (idioma == idioma_) return;
    idioma_ = idioma;
    if (!scriptControl.fijarIdioma(idioma))
        log.escribir({"DRIVER",
                      "Ajustes",
                      "Idioma=" + idioma + ": no es es-AR ni en-US",
                      {},
                      Novedad::AjusteNoValido});
}

void Motor::alTocarleA(Indice bloque) {
    try {
        // On a free connection nothing else waits, except writes, which go first.
        poleo.buscoSiguienteAPolear(tablas.bloques[bloque].idConexion);
    } catch (const std::exception& falla) {
        log.escribirLog("DRIVER", "TimerDeBloque", tablas.bloques[bloque].clave, falla.what());
    }
}

void Motor::alQuedarLibre(Indice conexion) { poleo.alQuedarLibre(conexion); }

void Motor::activarPoling_En_Socket(Indice conexion) { poleo.activarPoling_En_Socket(conexion); }

void Motor::desActivarPoling_En_Socket(Indice conexion) {
    poleo.desActivarPoling_En_Socket(conexion);
    ejecucion.alPerderConexion(conexion);
}

void Motor::establecerBAD_En_Socket(Indice conexion) {
    publicacion.establecerBAD_En_Socket(conexion);
}

double Motor::hacer(const PedidoDelGuion& p) {
    using enum OperacionDeMw;
    const auto [a, b] = p.numeros;
    switch (p.miembro.operacion) {
    case writeMW:
    case OperacionDeMw::escribirDireccion:
        return solicitudes.escribirDireccion(p.direccion(), a, kOrigenGuion);
    case READBLOQ:
    case OperacionDeMw::forzarPoleo:
        forzado.forzarPoleo(p.direccion(), nombreDe(Ordenante::Guion));
        break;
    case forzarBloque_porID:
        if (tablas.bloques.vive(a))
            forzado.forzarBloque_porID(static_cast<Indice>(a), nombreDe(Ordenante::Guion));
        break;
    case forzarBloque_porNivel:
        forzado.forzarBloque_porNivel(a);
        break;
    case OperacionDeMw::forzarBloque_porNivel_NVeces:
        forzado.forzarBloque_porNivel_NVeces(a, b, nombreDe(Ordenante::Guion));
        break;
    case Activar_Desactivar_Bloque_Por_Solicitud:
        if (tablas.bloques.vive(a))
            forzado.Activar_Desactivar_Bloque_Por_Solicitud(static_cast<Indice>(a), b != 0,
                                                            nombreDe(Ordenante::Guion));
        break;
    case Activar_Dir:
        forzado.Activar_Dir(p.direccion(), a != 0, nombreDe(Ordenante::Guion));
        break;
    case ModificarScanDeBloque:
        forzado.ModificarScanDeBloque(a, b, nombreDe(Ordenante::Guion));
        break;
    case Log:
        logDelGuion.anotar(p.texto);
        break;
    }
    return 0;
}

void Motor::escribirDireccion(std::string_view direccion, double valor, std::string_view origen) {
    solicitudes.escribirDireccion(direccion, valor, origen);
}

void Motor::rechazarEscritura(std::string_view direccion, double valor, std::string_view origen,
                              std::string_view motivo) {
    solicitudes.rechazar({direccion, motivo, origen}, valor);
}

void Motor::terminar() {
    log.terminar(); // there is place for what the parts have to say
    servidor.terminar();
    ejecucion.alTerminarElPrograma();
    puertaLocal.cerrar();
    auditoria.cerrar();
    log.terminar();
    bitacora.terminar();
    log.terminar();
}

void Motor::forzarBloque_porNivel_NVeces(double nivel, double veces, std::string_view quien) {
    forzado.forzarBloque_porNivel_NVeces(nivel, veces, quien);
}

void Motor::forzarPoleo(const std::string& direccion, std::string_view quien) {
    forzado.forzarPoleo(direccion, quien);
}

void Motor::alFallar(std::string_view procedimiento, const char* que) {
    log.escribirLog("DRIVER", procedimiento, "guion", que);
}

double Motor::tiempoEntrePoleo() { return ajuste(kTiempoEntrePoleo); }
double Motor::baseDeSolicitudes() { return ajuste(kBaseSolicitarConexiones); }
double Motor::intervalosEnEstadoConectando() { return ajuste(kIntervalosConectando); }
double Motor::intervalosDeConectarSeguidos() { return ajuste(kIntervalosDeConectar); }
double Motor::intervalosTiempoFuera() { return ajuste(kIntervalosFuera); }

std::string carpetaDelGuion(Ajustes& ajustes, Archivos& archivos) {
    const std::string nombre = ajustes.leerConfiguracion(kCarpetaDeGuion);
    if (nombre.find_first_of("/\\") != std::string::npos || nombre.find("..") != std::string::npos)
        return {};
    std::string carpeta = ajustes.carpeta() + "/" + nombre;
    archivos.crearCarpeta(carpeta);
    return carpeta;
}

} // namespace kv
