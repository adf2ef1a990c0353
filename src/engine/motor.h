// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "door/puerta_local.h"
#include "engine/bitacora.h"
#include "events/contadores.h"
#include "events/sucesos.h"
#include "events/trazas.h"
#include "link/conexiones.h"
#include "link/recepcion.h"
#include "link/turno.h"
#include "log/archivo_log.h"
#include "model/modelo.h"
#include "operator/operador.h"
#include "operator/porque.h"
#include "operator/recarga.h"
#include "plant/descripciones.h"
#include "plant/tablas.h"
#include "platform/archivos.h"
#include "platform/bucle.h"
#include "platform/sello.h"
#include "poll/estaciones_mudas.h"
#include "poll/lectura.h"
#include "poll/poleo.h"
#include "poll/reloj_de_bloques.h"
#include "script/ScriptControl.h"
#include "script/guion.h"
#include "script/log_de_guion.h"
#include "script/publicacion.h"
#include "server/servidor.h"
#include "text/nombre_del_programa.h"
#include "view/vista.h"
#include "write/auditoria.h"
#include "write/ejecucion.h"
#include "write/forzado.h"
#include "write/solicitudes.h"

#include <functional>
#include <string>

namespace kv {

/// The engine: every part of the driver that needs no window, made once and joined. It decides
/// nothing; it is the one place that knows who answers to whom.
class Motor final : private AlCambiarConexion,
                    private AlQuedarLibre,
                    private AjustesDeConexion,
                    private OrdenesDelGuion,
                    private OrdenesDelCliente {
  public:
    /// The loop and the files must outlive the engine. `carpeta` is the program's folder,
    /// `programa` what its log files are called after.
    Motor(Bucle& bucle, Archivos& archivos, const std::string& carpeta,
          const std::string& programa = std::string(kNombreDelPrograma));
    Motor(const Motor&) = delete;
    Motor& operator=(const Motor&) = delete;

    /// Reads a setting that is a number, logging what is wrong with it once.
    [[nodiscard]] double ajuste(const AjusteNumerico& cual);

    /// Takes over the settings that are read now and then: the script's language and budgets, the
    /// interval of the reclaim.
    void aplicarAjustes();

    /// The program ends: writes that wait or are under way end with it, and are recorded so.
    void terminar();

    // In the order of the road of a value, which is also the order in which they are made.
    Bucle& bucle;
    Archivos& archivos;
    Ajustes ajustes;
    Sello sello;
    ArchivoLog log;
    Vista vista;
    Tablas tablas;
    Descripciones descripciones; ///< of variables, for people
    Sucesos sucesos;
    Contadores contadores;
    Bitacora bitacora;
    Trazas trazas;
    ScriptControl scriptControl;
    Publicacion publicacion;
    Guion guion;
    LogDeGuion logDelGuion;
    RelojDeBloques relojDeBloques;
    Turnos turnos;
    Recepcion recepcion;
    GestorDeConexiones conexiones;
    Modelo modelo;
    EstacionesMudas mudas;
    Lectura lectura;
    Auditoria auditoria;
    EjecucionDeEscrituras ejecucion;
    Poleo poleo;
    SolicitudesDeEscritura solicitudes;
    Forzado forzado;
    FrmServerTCP servidor;
    PorQue porQue;
    Recarga recarga;
    Operador operador;
    PuertaLocal puertaLocal;

  private:
    std::string idioma_;

    void fijar(const std::function<double(const AjusteNumerico&)>& valor);
    void alTocarleA(Indice bloque);
    void activarPoling_En_Socket(Indice conexion) override;
    void desActivarPoling_En_Socket(Indice conexion) override;
    void establecerBAD_En_Socket(Indice conexion) override;
    void alQuedarLibre(Indice conexion) override;
    double tiempoEntrePoleo() override;
    double baseDeSolicitudes() override;
    double intervalosEnEstadoConectando() override;
    double intervalosDeConectarSeguidos() override;
    double intervalosTiempoFuera() override;
    double hacer(const PedidoDelGuion& pedido) override;
    void forzarPoleo(const std::string& direccion, std::string_view quien) override;
    void alFallar(std::string_view procedimiento, const char* que) override;
    void escribirDireccion(std::string_view direccion, double valor,
                           std::string_view origen) override;
    void rechazarEscritura(std::string_view direccion, double valor, std::string_view origen,
                           std::string_view motivo) override;
    void forzarBloque_porNivel_NVeces(double nivel, double veces, std::string_view quien) override;
};

/// The folder in which scripts may use files, below the program's, made if need be; a setting names
/// it. Empty when what the setting names could not lie below.
[[nodiscard]] std::string carpetaDelGuion(Ajustes& ajustes, Archivos& archivos);

} // namespace kv
