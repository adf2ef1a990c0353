// SPDX-License-Identifier: Apache-2.0
// Every line of every trace box, to the blank: programs of plants look for them.

#include "events/fin_de_escritura.h"
#include "events/rechazo.h"
#include "events/trazas.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace kv {
namespace {

class Palabras : public testing::Test {
  protected:
    Palabras() {
        ConexionIP c;
        c.ip = "10.0.0.1";
        c.puertoTCP = "502";
        Estacion e;
        e.numero = 1;
        e.indice = 2;
        c.estaciones.agregar(e);
        tablas.conexiones.agregar(std::move(c));
        BloqueLectura b;
        b.indice = b.idConexion = b.idEstacion = 0;
        b.clave = "1.1.1F";
        tablas.bloques.agregar(std::move(b));
    }
    /// What the boxes say of an event of that block: the name of each and its text, "@" for the
    /// stamp, "$" for an end of line.
    std::string dice(Suceso s, std::initializer_list<std::uint8_t> bytes = {},
                     std::string_view texto = {}) {
        s.conexion = 0;
        if (s.que < Que::SinPuertoNiPlc) s.bloque = 0;
        s.poner(std::vector(bytes));
        std::uint64_t desde = sucesos.siguiente();
        sucesos.decir(s, texto);
        std::string todo;
        for (const Traza& caja :
             {trazas.txtTramas, trazas.txtTramasDescartadas, trazas.txtDemandaLecturaEscritura,
              trazas.txtTimer(0), trazas.txtTimerIpPuerto(0), trazas.txtTimerEscritura,
              trazas.Text1, trazas.Text2}) {
            std::string lineas;
            std::uint64_t visto = desde;
            EXPECT_TRUE(caja.seguir(visto, lineas));
            if (!lineas.empty()) todo.append(caja.nombre()).append(":").append(lineas);
        }
        for (const auto& [esto, por] :
             {std::pair{"07:05:10 16-11-2025", "@"}, {"16/11/2025 07:05:10", "@"}, {"\r\n", "$"}}) {
            for (auto i = todo.find(esto); i != std::string::npos; i = todo.find(esto))
                todo.replace(i, std::string_view(esto).size(), por);
        }
        return todo;
    }
    std::string rechazo(ClaseDeRechazo clase) {
        return dice({.que = Que::EscrituraRechazada,
                     .detalle = static_cast<std::int16_t>(clase),
                     .numero = 7},
                    {}, TextoDeRechazo{"1.1.1F", "sin lugar", "ventana", "1.1.1F"}.unir());
    }
    BucleSimulado bucle;
    Tablas tablas;
    Sucesos sucesos{bucle.reloj()};
    Trazas trazas{sucesos, tablas};
};

} // namespace

TEST_F(Palabras, DeCadaSuceso) {
    // A connection and its turns.
    EXPECT_EQ(dice({.que = Que::PausaEmpieza}), "txtTimerIpPuerto:@ACTIVACION DE TIMER $");
    EXPECT_EQ(dice({.que = Que::PausaTermina}), "txtTimerIpPuerto:@HABILITACION A SIGUIENTE POOL$");
    EXPECT_EQ(dice({.que = Que::LineaRetenida}),
              "txtTimerIpPuerto:@ En espera de respuestas atrasadas $");
    EXPECT_EQ(dice({.que = Que::LineaNoCalla}),
              "txtTimerIpPuerto:@ La linea no calla: se cierra $");
    EXPECT_EQ(dice({.que = Que::EnlaceCortado}),
              "txtTimerIpPuerto:@ Se corta el enlace: lo que no llego ya no sale $");
    // What came from a station.
    EXPECT_EQ(dice({.que = Que::LlegaronBytes, .numero = 2}, {7, 0xE8}),
              "txtTramas:@  Obteniendo bytes <- [7][E8]¦ Cantidad: 2$");
    EXPECT_EQ(dice({.que = Que::Descarte, .numero = 2}, {7, 0xE8}),
              "txtTramas:@  *Descarte CheSum* <- [7][E8]¦ Cantidad: 7$"
              "txtTramasDescartadas:@  *Descarte* <- [7][E8]¦ Cantidad: 7$");
    EXPECT_EQ(dice({.que = Que::Sobrante}, {7, 0xE8}),
              "txtTramas:@  *Descarte* <- [7][E8]¦ Cantidad: 7$"
              "txtTramasDescartadas:@  *Descarte* <- [7][E8]¦ Cantidad: 7$");
    EXPECT_EQ(dice({.que = Que::Recepcion}, {7, 0xE8}), "txtTramas:@  Recepcion <- [7][E8]$");
    // Reads.
    EXPECT_EQ(dice({.que = Que::Envio}, {0x52, 2}),
              "txtTramas:@  Bloque: 1.1.1F Envio -> [52][02]$");
    EXPECT_EQ(dice({.que = Que::Reintento, .detalle = 2}, {0x52, 2}),
              "txtTramas:@ REINTENTO 2 Bloque: 1.1.1F Envio -> [52][02]$");
    EXPECT_EQ(dice({.que = Que::TicDeBloque}),
              "txtTimer:Tic Timer Bloque @ : 1.1.1F$ ----> En Tiempo de poleo @ : 1.1.1F$");
    EXPECT_EQ(dice({.que = Que::FinDelDescanso}), "txtTimer:Tic Timer Bloque @ : 1.1.1F$");
    EXPECT_EQ(dice({.que = Que::BloqueHabilitado}), "txtTimerIpPuerto:@ HABILITACION de 1.1.1F$");
    EXPECT_EQ(dice({.que = Que::BloqueDeshabilitado}),
              "txtTramas:@ Deshabilitacion de 1.1.1F$"
              "txtTimerIpPuerto:@ Deshabilitacion de 1.1.1F$");
    EXPECT_EQ(dice({.que = Que::TiempoFuera}), "txtTimerIpPuerto:@ Tic Timer Time Out 1.1.1F$");
    EXPECT_EQ(dice({.que = Que::EstacionMuda}),
              "txtTramas:@ Estacion sin respuesta [PLC 1 - Indice 2] 10.0.0.1:502$");
    EXPECT_EQ(dice({.que = Que::EstacionContesta}),
              "txtTramas:@ Estacion contesta [PLC 1 - Indice 2] 10.0.0.1:502$");
}

TEST_F(Palabras, DeLasEscrituras) {
    const auto enLasDos = [](const std::string& linea) {
        return "txtTramas:" + linea + "txtTimerEscritura:" + linea;
    };
    EXPECT_EQ(dice({.que = Que::EscrituraLee, .bit = 3, .numero = 1}, {0x52, 2}),
              enLasDos("@Escritura de BIT: Lectura Primaria: 1.1.1F[Dir 1F : Valor 1] Envio -> "
                       "[52][02]$"));
    EXPECT_EQ(dice({.que = Que::EscrituraSale, .numero = -5}, {0x57, 2}),
              enLasDos("@Escritura: 1.1.1F[Dir 1F : Valor -5] Envio -> [57][02]$"));
    EXPECT_EQ(dice({.que = Que::EscrituraLeeOtraVez, .detalle = 1, .numero = 1}, {0x52, 2}),
              enLasDos("@ REINTENTO LECTURA PRIMARIA 1 Bloque: 1.1.1F[Dir 1F: Valor 1] Envio -> "
                       "[52][02]$"));
    EXPECT_EQ(dice({.que = Que::EscrituraRelee, .detalle = 1, .numero = 5}, {0x52, 2}),
              enLasDos("@ PEDIDO DE CONFIRMACION 1 Bloque: 1.1.1F[Dir 1F: Valor 5] Envio -> "
                       "[52][02]$"));
    EXPECT_EQ(dice({.que = Que::EscrituraRepite, .detalle = 1, .numero = 5}, {0x57, 2}),
              enLasDos("@ REINTENTO ESCRITURA1 Bloque: 1.1.1F[Dir 1F: Valor 5] Envio -> "
                       "[57][02]$"));
    EXPECT_EQ(dice({.que = Que::TiempoFueraDeEscritura}),
              "txtTimerIpPuerto:@ Tic Timer Time Out ESCRITURA $"
              "txtTimerEscritura:@ Tic Timer Time Out ESCRITURA $");
    using enum FinDeEscritura;
    for (const auto& [fin, motivo, palabra] :
         {std::tuple{SinRespuesta, "", "sin respuesta"},
          {ConexionPerdida, " Sin conexion", "conexion perdida"},
          {PalabraDesconocida, " No se conoce la palabra del bit",
           "no se pudo leer la palabra del bit"},
          {Vencida, " Espero demasiado", "espero demasiado"},
          {ProgramaTerminado, "", "termino el programa"},
          {Retirada, " Ya no esta configurado", "ya no esta configurado"},
          {Confirmada, "", "confirmada"}}) {
        const auto detalle = static_cast<std::int16_t>(fin);
        const std::string linea =
            std::string("@ Deshabilitacion de ESCRITURA: 1.1.1F [1F Valor: 5]") + motivo + "$";
        if (fin != Confirmada) {
            EXPECT_EQ(dice({.que = Que::EscrituraAbandonada, .detalle = detalle, .numero = 5}),
                      "txtTramas:" + linea + "txtTimerIpPuerto:" + linea +
                          "txtTimerEscritura:" + linea);
        }
        EXPECT_EQ(dice({.que = Que::EscrituraTerminada, .detalle = detalle, .bit = 3, .numero = 1}),
                  std::string("txtDemandaLecturaEscritura:@ 1.1.1F.3 = 1: ") + palabra + "$");
    }
    EXPECT_EQ(dice({.que = Que::EscrituraUnida, .numero = 5}),
              "txtDemandaLecturaEscritura:@ 1.1.1F = 5: ya espera una igual$");
    const std::string caja = "txtDemandaLecturaEscritura:@ Imposible escribir.";
    EXPECT_EQ(rechazo(ClaseDeRechazo::Desborde), caja + " 1.1.1F = 7: sin lugar$");
    // These two have no end of line of their own: the box adds it.
    EXPECT_EQ(rechazo(ClaseDeRechazo::SinPlc), caja + "1.1.1F No se encuentra PLC$");
    EXPECT_EQ(rechazo(ClaseDeRechazo::SinConexion),
              caja + " Sin conexion con 10.0.0.1:502 Direccion: 1.1.1F$");
}

TEST_F(Palabras, DeOrdenesGuionYCliente) {
    const std::string caja = "txtDemandaLecturaEscritura:@";
    const auto pedido = [&](Que que, double numero = 0, int detalle = 0, bool deBloque = false) {
        Suceso s{.que = que, .detalle = static_cast<std::int16_t>(detalle), .numero = numero};
        if (deBloque) s.bloque = 0;
        return dice(s, {}, deBloque ? "" : "1.1.7A");
    };
    EXPECT_EQ(pedido(Que::SinPuertoNiPlc), caja + " NO EXISTE PUERTO O PLC $");
    EXPECT_EQ(pedido(Que::ForzarSinTrama, 0, 0, true),
              caja + " Imposible FORZAR, el bloque no se puede polear: 1.1.1F$");
    EXPECT_EQ(pedido(Que::ForzarSinConexion, 0, 0, true),
              caja + " Imposible FORZAR, Sin conexion con estacion 10.0.0.1:502$");
    EXPECT_EQ(pedido(Que::ForzarEnDescanso, 0, 0, true),
              caja + " Imposible de forzar la lectura por deshabilitacion del bloque: 1.1.1F$");
    EXPECT_EQ(pedido(Que::ForzarEnDescanso, 0, 1, true),
              caja + " Imposible de forzar la lectura por deshabilitacion del bloque$");
    EXPECT_EQ(pedido(Que::Forzado), caja + " Forzado OK 1.1.7A$");
    const std::string alta = caja + " Error al dar de alta bloque, ";
    EXPECT_EQ(pedido(Que::AltaFueraDeTrama), alta + "Direccion fuera de trama. Bloque: 1.1.7A$");
    EXPECT_EQ(pedido(Que::AltaSinLugar, 256),
              alta + "La estacion ya tiene 256 a pedido. Bloque: 1.1.7A$");
    EXPECT_EQ(pedido(Que::AltaSinPuerto), alta + "No se encuentra Puerto y PLC. Bloque: 1.1.7A$");
    EXPECT_EQ(pedido(Que::BloqueDadoDeAlta, 2),
              caja + " Bloque 1.1.7A dado de alta. DefaultScan de 2 Segundos$");
    EXPECT_EQ(pedido(Que::NivelSinBloques, 3), caja + " Ningun bloque tiene el nivel 3$");
    EXPECT_EQ(dice({.que = Que::FallaDelGuion}, {}, "Linea 1"), "txtTramas:@  *Guion* Linea 1$");
    EXPECT_EQ(dice({.que = Que::AlCliente}, {}, "[DRI]#1#[/DRI]"), "Text1:[DRI]#1#[/DRI]$");
    EXPECT_EQ(dice({.que = Que::DelCliente}, {}, "Read;1;FinRead;"), "Text2:@[Read;1;FinRead;]$");
    EXPECT_EQ(dice({.que = Que::RepetidasDelCliente, .numero = 3}),
              "Text2:  3 escrituras repetidas en una llegada: se hacen una vez$");
    for (const Que callado :
         {Que::EnlaceArriba, Que::EnlaceAbajo, Que::EnlaceNoLevanta, Que::BloqueConmutado,
          Que::GuionDetenido, Que::GuionSigue, Que::ClienteEntra, Que::ClienteSale})
        EXPECT_EQ(dice({.que = callado}), "") << "no line in any box";
    EXPECT_EQ(dice({.que = Que::EscrituraTerminada, .callado = true}), "") << "a script's";
}

} // namespace kv
