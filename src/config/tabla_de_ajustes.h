// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

namespace kv {

inline constexpr std::string_view kSeccionDeAjustes = "DRIVER_KV2200";
inline constexpr std::string_view kSeccionDeProyecto = "PROYECTO_PREDETERMINADO";
/// In the program's folder: what is read where no project is named, and the local door.
inline constexpr std::string_view kArchivoDeConfiguracion = "DRIVER_KV2200_Config.ini";
inline constexpr std::string_view kArchivoDePuertaLocal = "DriverKV2200.sock";
/// What begins the name of a key of the client's door.
inline constexpr std::string_view kPrefijoDeEscucha = "Escucha_";

// Every setting, each once: what the code reads, what a check of the file knows, and what the
// reference of keys is made from. `que` says in the operators' tongue what it is for.

/// A setting that is a number: what it is when the file says nothing, and the range outside which
/// it would stop a timer for ever, spin it or mean nothing.
struct AjusteNumerico {
    std::string_view clave;
    double porDefecto;
    double minimo;
    double maximo;
    std::string_view que;
};

/// A setting that is a text. `valores` are those that have a meaning, separated by "|"; empty where
/// it may be any text.
struct AjusteDeTexto {
    std::string_view clave;
    std::string_view porDefecto;
    std::string_view valores;
    std::string_view que;
    std::string_view seccion = kSeccionDeAjustes;
};

inline constexpr AjusteNumerico kTiempoEntrePoleo{
    "Tiempo_Entre_poleo", 800, 0, 3'600'000,
    "Pausa entre dos pedidos de una misma conexión, en milisegundos."};
inline constexpr AjusteNumerico kBaseSolicitarConexiones{
    "Base_Tiempo_Solicitar_Conexiones_Milisegundos", 5000, 10, 3'600'000,
    "Milisegundos de un intervalo de conexión: cada uno se mira si toca intentar conectar. De él "
    "son "
    "las tres claves que siguen."};
inline constexpr AjusteNumerico kIntervalosConectando{
    "Cantidad_Intervalos_En_Estado_Conectando", 3, 0, 1'000'000,
    "Intervalos que una conexión puede estar conectando antes de cerrarla."};
// The last attempt in a row is closed at once: with a single one no link would ever come up.
inline constexpr AjusteNumerico kIntervalosDeConectar{
    "Cantidad_Intervalos_De_Conectar_Seguidos", 5, 2, 1'000'000, "Intentos de conexión seguidos."};
inline constexpr AjusteNumerico kIntervalosFuera{
    "Luego_De_Intentar_Conectar_Cuantos_Intervalos_Tiempo_Fuera", 3, 0, 1'000'000,
    "Intervalos de descanso después de los intentos seguidos."};
inline constexpr AjusteNumerico kBaseKeepAlive{
    "BaseTiempoMilisegundos_KeepALive", 5000, 10, 3'600'000,
    "Intervalo, en milisegundos, de las dos claves que siguen."};
inline constexpr AjusteNumerico kMaximosKeepAlive{
    "Maximos_Keep_ALive", 6, 0, 1'000'000,
    "Mensajes de vida sin respuesta del cliente después de los que se lo desconecta."};
inline constexpr AjusteNumerico kIntervalosKeepAlive{"Intervalos_Para_KeepALive", 2, 0, 1'000'000,
                                                     "Intervalos entre dos mensajes de vida."};
inline constexpr AjusteNumerico kPuertoEscucha{
    "PuertoEscucha", 1334, 1, 65535,
    "Puerto TCP en el que se atiende al cliente; uno distinto para cada planta de una máquina."};

// What we add: the script's budgets and the care of the write table.
inline constexpr AjusteNumerico kTiempoDelGuion{
    "Guion_Tiempo_Maximo_Milisegundos", 10000, 10, 600'000,
    "Milisegundos que puede durar una ejecución del guión antes de detenerla."};
inline constexpr AjusteNumerico kHonduraDelGuion{"Guion_Llamadas_Anidadas_Maximo", 2000, 10, 10'000,
                                                 "Llamadas anidadas que el guión puede hacer."};
inline constexpr AjusteNumerico kMemoriaDelGuion{"Guion_Memoria_Maxima_KiB", 65'536, 256, 1'048'576,
                                                 "Memoria que el guión puede usar, en KiB."};
inline constexpr AjusteNumerico kPasosDelGuion{
    "Guion_Pasos_Maximos", 0, 0, 1e12,
    "Pasos que puede dar una ejecución del guión; 0: sin límite."};
inline constexpr AjusteNumerico kReintentoDelGuion{
    "Guion_Reintento_Segundos", 60, 1, 86'400,
    "Segundos que descansa un guión detenido, salvo que su archivo cambie."};
inline constexpr AjusteNumerico kReclamoDeEscrituras{
    "Intervalo_Reclamo_Escrituras_Milisegundos", 5000, 100, 3'600'000,
    "Cada cuántos milisegundos se liberan las escrituras terminadas."};
inline constexpr AjusteNumerico kEstacionMuda{
    "Estacion_Muda_Bloques", 2, 0, 1'000,
    "Bloques seguidos sin respuesta después de los que una estación se considera muda; 0: nunca."};
inline constexpr AjusteNumerico kBloquesAPedido{
    "Bloques_A_Pedido_Por_Estacion", 256, 0, 256,
    "Bloques de cada estación que las lecturas forzadas pueden crear."};
inline constexpr AjusteNumerico kVigenciaDeEscrituras{
    "Escritura_Vigencia_Segundos", 600, 0, 31'536'000,
    "Segundos que una escritura puede esperar su turno; 0: sin límite."};

inline constexpr AjusteNumerico kEscuchaPlazo{
    "Escucha_Plazo_De_Login_Segundos", 0, 0, 86'400,
    "Segundos que un cliente tiene para identificarse; 0: los que quiera. Nunca se escribe."};
inline constexpr AjusteNumerico kEscuchaErradas{
    "Escucha_Claves_Erradas_Por_Minuto", 10, 0, 1e6,
    "Claves erradas por minuto que se admiten de una dirección; 0: cualquier cantidad. Nunca se "
    "escribe."};
inline constexpr AjusteNumerico kEscuchaPausa{
    "Escucha_Pausa_Por_Claves_Segundos", 60, 0, 86'400,
    "Segundos que una dirección con demasiadas claves erradas queda afuera. Nunca se escribe."};
inline constexpr AjusteNumerico kEscuchaEscrituras{
    "Escucha_Escrituras_Por_Segundo", 0, 0, 1e6,
    "Escrituras por segundo que se aceptan del cliente; 0: todas. Nunca se escribe."};

inline constexpr AjusteDeTexto kVer{"VER", "0", "0|1",
                                    "1 muestra la ventana principal. La escribe el driver: 1 en un "
                                    "segundo arranque, 0 al ocultarla."};
inline constexpr AjusteDeTexto kPrimerSeparador{"primerSeparador", ";", "",
                                                "Separador de campos del protocolo del cliente."};
inline constexpr AjusteDeTexto kTramasSeparador{"tramasSeparador", "#", "",
                                                "Separador de mensajes del protocolo del cliente."};
inline constexpr AjusteDeTexto kIdioma{"Idioma", "es-AR", "es-AR|en-US",
                                       "Cómo escribe y lee el guión números y fechas."};
inline constexpr AjusteDeTexto kIdiomaVentana{"Idioma_Ventana", "", "es|en",
                                              "Idioma de la ventana; nunca se escribe. Vacío: es."};
inline constexpr AjusteDeTexto kCandado{
    "Candado_De_Ordenes", "", "0|1",
    "1: los botones de la ventana que actúan sobre la planta preguntan antes; nunca se escribe."};
inline constexpr AjusteDeTexto kCarpetaDeGuion{
    "Carpeta_De_Guion", "GUION", "",
    "Carpeta, dentro de la del programa, en la que el guión puede usar archivos. Un nombre con "
    "separadores o con \"..\" significa ninguna. Nunca se escribe."};
inline constexpr AjusteDeTexto kEscuchaDireccion{
    "Escucha_Direccion", "", "",
    "Dirección IPv4 de esta máquina en la que se escucha. Vacía: todas. Nunca se escribe."};
inline constexpr AjusteDeTexto kEscuchaPermitidos{
    "Escucha_Clientes_Permitidos", "", "",
    "Direcciones y redes IPv4 (10.0.0.0/24) que pueden entrar. Vacía: todas. Nunca se escribe."};
inline constexpr AjusteDeTexto kEscuchaLogin{
    "Escucha_Login_Antes_De_Todo", "", "0|1",
    "1: nada se atiende antes de identificarse. Nunca se escribe."};
inline constexpr AjusteDeTexto kEscuchaSoloLectura{
    "Escucha_Solo_Lectura", "", "0|1", "1: el cliente no puede escribir. Nunca se escribe."};
inline constexpr AjusteDeTexto kPuertaLocal{
    "Puerta_Local", "1", "0|1",
    "0: no se abre el zócalo DriverKV2200.sock de la carpeta, por el que los programas de esta "
    "máquina preguntan. Nunca se escribe; se lee al arrancar."};
inline constexpr AjusteDeTexto kPuertaLocalGrupo{
    "Puerta_Local_Grupo", "", "",
    "Grupo que también puede usar ese zócalo: un nombre de /etc/group o un número. Vacío: solo el "
    "usuario del driver. Nunca se escribe; se lee al arrancar."};
inline constexpr AjusteDeTexto kPuertaLocalEscriben{
    "Puerta_Local_Escriben", "", "",
    "Usuarios que pueden escribir y forzar por ese zócalo: nombres de /etc/passwd o números, "
    "separados por comas. Vacío: ninguno, tampoco root. Nunca se escribe."};
inline constexpr AjusteDeTexto kRutaProyecto{
    "RutaProyecto", "", "",
    "Proyecto de supervisión (.qmx) cuya configuración se usa, al arrancar y al recargar: un "
    "cambio "
    "no hace nada antes. Nunca se escribe. Vacía: DRIVER_KV2200_Config.ini de la carpeta.",
    kSeccionDeProyecto};

/// All of them, in the order of the reference.
[[nodiscard]] std::span<const AjusteNumerico> ajustesNumericos();
[[nodiscard]] std::span<const AjusteDeTexto> ajustesDeTexto();

} // namespace kv
