#include "engine/motor.h"

#include "text/numeros.h"

#include <exception>

namespace kv {

Motor::Motor(Bucle& bucle_, Archivos& archivos_, const std::string& carpeta,
             const std::string& programa)
    : bucle(bucle_), archivos(archivos_), ajustes(archivos_, carpeta, &bucle_.reloj()),
      sello(bucle_.reloj()), log(archivos_, bucle_.reloj(), carpeta, programa),
      scriptControl(bucle_.reloj(), vista),
      guion(bucle_, archivos_, scriptControl, vista, sello, log),
      publicacion(tablas, scriptControl, vista, sello), Timer1_Bloques(bucle_),
      turnos(bucle_, tablas, vista, sello), conexiones(bucle_, tablas, turnos, vista, *this),
      recepcion(tablas, turnos, bucle_, vista, sello, log),
      lectura(tablas, turnos, publicacion, vista, sello, Timer1_Bloques),
      modelo(tablas, conexiones, publicacion, vista, sello, Timer1_Bloques),
      mudas(tablas, turnos, publicacion, vista, sello, log, Timer1_Bloques),
      poleo(bucle_, tablas, turnos, publicacion, mudas, vista, sello, Timer1_Bloques),
      tiemposFuera(bucle_, tablas, turnos, publicacion, mudas, vista, sello, Timer1_Bloques),
      auditoria(archivos_, bucle_.reloj(), carpeta, programa),
      cajaDePedidos(vista, sello, auditoria),
      ejecucion(bucle_, tablas, turnos, publicacion, mudas, cajaDePedidos, vista, sello),
      solicitudes(tablas, turnos, ejecucion, cajaDePedidos, log),
      forzado(tablas, turnos, publicacion, poleo, mudas, modelo, vista, sello, log, Timer1_Bloques),
      servidor(bucle_, tablas, ajustes, vista, log, *this),
      operador({tablas, turnos, recepcion, forzado, solicitudes, ajustes, archivos_, vista, sello,
                bucle_.reloj(), log}) {
    poleo.escribirCon(&ejecucion);
    scriptControl.obedecerA(this);
    turnos.avisarA(this);
    conexiones.avisarA(this);
    conexiones.recibirCon(&recepcion);
    recepcion.interpretarCon(this);
    Timer1_Bloques.alTic([this](std::size_t bloque) {
        try {
            poleo.Timer1_Bloques_Timer(bloque);
        } catch (const std::exception& falla) {
            log.escribirLog("DRIVER", "TimerDeBloque", tablas.bloques[bloque].clave, falla.what());
        }
    });
    lectura.avisarA(this);
    bucle.alFinalDeVuelta([this] {
        ajustes.vueltaNueva();
        log.alPasarElTiempo();
        auditoria.volcar();
    });
}

double Motor::ajuste(const AjusteNumerico& cual) {
    return ajustes.leerTiempo(
        cual, [this](std::string_view clave, const std::string& texto, double usado) {
            log.escribirLog("DRIVER", "Ajustes",
                            std::string(clave) + "=" + texto + ": valor no valido, se usa " +
                                textoDeNumero(usado));
        });
}

void Motor::aplicarAjustes() {
    scriptControl.fijarPresupuesto({ajuste(kTiempoDelGuion), ajuste(kHonduraDelGuion),
                                    ajuste(kMemoriaDelGuion), ajuste(kPasosDelGuion)});
    guion.fijarReintento(ajuste(kReintentoDelGuion));
    ejecucion.fijarReclamo(ajuste(kReclamoDeEscrituras));
    ejecucion.fijarVigencia(ajuste(kVigenciaDeEscrituras));
    mudas.fijarLimite(ajuste(kEstacionMuda));
    forzado.fijarAPedido(ajuste(kBloquesAPedido));
    const std::string idioma = ajustes.leerConfiguracion(kIdioma);
    if (idioma == idioma_) return;
    idioma_ = idioma;
    if (!scriptControl.fijarIdioma(idioma))
        log.escribirLog("DRIVER", "Ajustes", "Idioma=" + idioma + ": no es es-AR ni en-US");
}

void Motor::alVencerTiempoFuera(Indice conexion) {
    if (tablas.conexiones[conexion].escribiendo) return ejecucion.ticDeEscritura(conexion);
    tiemposFuera.ticDeLectura(conexion);
}

void Motor::alQuedarLibre(Indice conexion) { poleo.alTerminarPausa(conexion); }

void Motor::alFallar(Indice conexion, const char* que) {
    log.escribirLog("DRIVER", "Turno de conexion",
                    tablas.conexiones[conexion].ip + ":" + tablas.conexiones[conexion].puertoTCP,
                    que);
}

void Motor::interpretarTramaRecepcionada_OK(Indice conexion) {
    lectura.interpretarTramaRecepcionada_OK(conexion);
}

void Motor::interpretarTramaRecepcionada_PorEscritura(Indice conexion) {
    ejecucion.interpretarTramaRecepcionada_PorEscritura(conexion);
}

void Motor::respuestaDudosa(Indice conexion) {
    if (tablas.conexiones[conexion].escribiendo) return ejecucion.respuestaDudosa(conexion);
    tiemposFuera.respuestaDudosa(conexion);
}

void Motor::alCompletarseUnaLlegada() { guion.ejectutarScript(); }

void Motor::alContestar(Indice bloque) { mudas.alContestar(bloque); }

void Motor::activarPoling_En_Socket(Indice conexion) { poleo.activarPoling_En_Socket(conexion); }

void Motor::desActivarPoling_En_Socket(Indice conexion) {
    poleo.desActivarPoling_En_Socket(conexion);
    ejecucion.alPerderConexion(conexion);
}

void Motor::establecerBAD_En_Socket(Indice conexion) {
    publicacion.establecerBAD_En_Socket(conexion);
}

void Motor::escribirDireccion(const std::string& direccion, double valor) {
    solicitudes.escribirDireccion(direccion, valor, kOrigenGuion);
}

void Motor::escribirDireccion(std::string_view direccion, double valor, std::string_view origen) {
    solicitudes.escribirDireccion(direccion, valor, origen);
}

void Motor::rechazarEscritura(std::string_view direccion, double valor, std::string_view origen,
                              std::string_view motivo) {
    solicitudes.rechazar({direccion, valor, origen, motivo, {}});
}

void Motor::terminar() {
    ejecucion.alTerminarElPrograma();
    auditoria.cerrar();
}

void Motor::forzarBloque_porNivel_NVeces(double nivel, double veces) {
    forzado.forzarBloque_porNivel_NVeces(nivel, veces);
}

void Motor::forzarPoleo(const std::string& direccion) { forzado.forzarPoleo(direccion); }

void Motor::alFallar(std::string_view procedimiento, const char* que) {
    log.escribirLog("DRIVER", procedimiento, "guion", que);
}

double Motor::tiempoEntrePoleo() { return ajuste(kTiempoEntrePoleo); }
double Motor::baseDeSolicitudes() { return ajuste(kBaseSolicitarConexiones); }
double Motor::intervalosEnEstadoConectando() { return ajuste(kIntervalosConectando); }
double Motor::intervalosDeConectarSeguidos() { return ajuste(kIntervalosDeConectar); }
double Motor::intervalosTiempoFuera() { return ajuste(kIntervalosFuera); }

std::string carpetaDelGuion(Motor& motor, Archivos& archivos) {
    const std::string nombre = motor.ajustes.leerConfiguracion(kCarpetaDeGuion);
    if (nombre.find_first_of("/\\") != std::string::npos || nombre.find("..") != std::string::npos)
        return {};
    std::string carpeta = motor.ajustes.carpeta() + "/" + nombre;
    archivos.crearCarpeta(carpeta);
    return carpeta;
}

} // namespace kv
