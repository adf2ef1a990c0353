// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/idioma.h"

/// What PorQue says, both languages side by side. Parts of sentences begin with small letters: they
/// stand behind a colon or a semicolon.
namespace kv::dicho {

// Of a variable: how it stands, when it was read, and the cause.
inline constexpr Frase kBad{"BAD desde %1, %2: %3", "BAD since %1, %2: %3"};
inline constexpr Frase kOk{"OK, %1", "OK, %1"};
inline constexpr Frase kVieja{"OK pero vieja, %1 (se espera a lo sumo cada %2)",
                              "OK but old, %1 (expected within %2)"};
inline constexpr Frase kNuncaLeida{"nunca leida", "never read"};
inline constexpr Frase kLeidaHace{"leida por ultima vez hace %1", "last read %1 ago"};

// A block that is not polled.
inline constexpr Frase kRetirado{"ya no esta en la configuracion",
                                 "it is no longer in the configuration"};
inline constexpr Frase kNoSePolea{
    "no se puede polear: la direccion o el indice de la estacion no caben en un pedido",
    "it cannot be polled: the address or the station's index does not fit a request"};
inline constexpr Frase kApagadoPorConfiguracion{"el bloque esta apagado por la configuracion",
                                                "the block is switched off by the configuration"};
inline constexpr Frase kApagado{"el bloque esta apagado desde %1 por %2",
                                "the block has been switched off since %1 by %2"};

// A connection without its link.
inline constexpr Frase kConexion{"la conexion %1", "the connection %1"};
inline constexpr Frase kAcabaDeEstablecerse{
    "%1 acaba de establecerse y se usa desde la proxima supervision",
    "%1 has just come up and is used from the next supervision on"};
inline constexpr Frase kAcabaDePerderse{"%1 se acaba de perder (estaba conectada desde %2)",
                                        "%1 has just been lost (it had been up since %2)"};
inline constexpr Frase kCaida{"%1 esta caida desde %2", "%1 has been down since %2"};
inline constexpr Frase kFugaz{"%1 se establece y se pierde antes de usarse",
                              "%1 comes up and is lost before it is used"};
inline constexpr Frase kNuncaEstablecida{"%1 no se establecio nunca", "%1 never came up"};
inline constexpr Frase kSeIntenta{"%1; se esta intentando ahora", "%1; it is being tried now"};
inline constexpr Frase kProximoIntento{"%1; proximo intento %2", "%1; next attempt %2"};

// When an attempt or a request is due.
inline constexpr Frase kYa{"ya", "now"};
inline constexpr Frase kDentroDe{"dentro de %1", "in %1"};

// How tries failed.
inline constexpr Frase kNoHuboRespuesta{"no hubo respuesta", "no answer"};
inline constexpr Frase kSinRespuesta{"sin respuesta", "no answer"};
inline constexpr Frase kSinRespuestaDesde{"sin respuesta desde %1", "no answer since %1"};
inline constexpr Frase kUnIntento{"1 intento", "1 try"};
inline constexpr Frase kIntentos{"%1 intentos", "%1 tries"};
inline constexpr Frase kSinNada{"%1 sin nada", "%1 without anything"};
inline constexpr Frase kConOtraCosa{"%1 con bytes que no son respuesta",
                                    "%1 with bytes that are no answer"};
inline constexpr Frase kDudosa{"%1 con respuesta dudosa", "%1 with a doubtful answer"};

// A block that rests, and its station that is silent.
inline constexpr Frase kDescansa{"%1; descansa hasta %2, proximo intento %3",
                                 "%1; it rests until %2, next attempt %3"};
inline constexpr Frase kEstacionCallada{"la estacion %1 esta %2", "the station %1 has given %2"};
inline constexpr Frase kSePregunta{"%1; se esta preguntando por ella", "%1; it is being asked now"};
inline constexpr Frase kEsteBloqueSondea{"%1; este bloque pregunta por todos %2",
                                         "%1; this block asks for all of them %2"};
inline constexpr Frase kOtroBloqueSondea{"%1; el bloque %2 pregunta por todos %3",
                                         "%1; the block %2 asks for all of them %3"};

// A block that is asked in its turn.
inline constexpr Frase kLineaRetenida{"la linea espera a que no lleguen respuestas atrasadas",
                                      "the line waits until no late answers come any more"};
inline constexpr Frase kSeLePregunta{"se le esta preguntando ahora", "it is being asked now"};
inline constexpr Frase kDetrasDeEstacion{"espera su turno detras de la estacion %1, %2",
                                         "it waits its turn behind the station %1, which has given "
                                         "%2"};
inline constexpr Frase kDetrasDeEscritura{"espera su turno detras de una escritura",
                                          "it waits its turn behind a write"};
inline constexpr Frase kEsperaSolo{"espera su turno, uno de 1 bloque",
                                   "it waits its turn, one of 1 block"};
inline constexpr Frase kEspera{"espera su turno, uno de %1 bloques",
                               "it waits its turn, one of %1 blocks"};
inline constexpr Frase kCada{"se le pregunta cada %1, otra vez %2",
                             "it is asked every %1, again %2"};
inline constexpr Frase kScanCero{"tiene scan 0: se lee solo al conectar y cuando se lo fuerza",
                                 "its scan is 0: it is read only on connecting and when forced"};
inline constexpr Frase kNoLeToca{"espera que le toque", "it waits until it is due"};

// Of a station, behind its name, and of a connection that is up.
inline constexpr Frase kSondeaElBloque{"%1; pregunta %2 %3", "%1; %2 asks %3"};
inline constexpr Frase kSinPreguntar{"todavia no se le pregunto", "it has not been asked yet"};
inline constexpr Frase kSinBloques{"no tiene bloques que se poleen",
                                   "it has no blocks that are polled"};
inline constexpr Frase kContesta{"contesta; ultima respuesta hace %1, en %2 ms",
                                 "it answers; last answer %1 ago, in %2 ms"};
inline constexpr Frase kConectada{"La conexion %1 esta conectada desde %2",
                                  "The connection %1 has been up since %2"};
inline constexpr Frase kEstacionDeElla{"; PLC %1 %2", "; PLC %1 has given %2"};

} // namespace kv::dicho
