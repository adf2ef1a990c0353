// SPDX-License-Identifier: Apache-2.0
// What happened is kept for as long as it fits, and read as text by whoever looks.

#include "events/rechazo.h"
#include "events/trazas.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kv {
namespace {

class Acontecer : public testing::Test {
  protected:
    [[nodiscard]] std::string desde(const Traza& traza, std::uint64_t numero) const {
        std::string texto;
        return traza.seguir(numero, texto) ? texto : "perdido";
    }
    BucleSimulado bucle;
    Tablas tablas;
    Sucesos sucesos{bucle.reloj(), 4096};
    Trazas trazas{sucesos, tablas};
};

} // namespace

TEST_F(Acontecer, LoViejoSeVaYSeSabe) {
    for (int i = 0; i < 5000; ++i)
        sucesos.decir({.que = Que::NivelSinBloques, .numero = double(i)});
    EXPECT_EQ(sucesos.siguiente(), 5000U);
    EXPECT_LE(sucesos.siguiente() - sucesos.primero(), 4096U);
    EXPECT_EQ(sucesos[sucesos.primero()].numero, static_cast<double>(sucesos.primero()));
    const Traza& caja = trazas.txtDemandaLecturaEscritura;
    EXPECT_EQ(desde(caja, 0), "perdido");
    // More than a box shows: what is gathered for it is what it shows.
    std::uint64_t visto = sucesos.primero() + 1;
    std::string todo;
    EXPECT_FALSE(caja.seguir(visto, todo));
    EXPECT_EQ(visto, 5000U);
    EXPECT_EQ(todo, caja.texto());
    EXPECT_TRUE(desde(caja, 4999).ends_with(" Ningun bloque tiene el nivel 4999\r\n"));
    EXPECT_EQ(desde(caja, 5000), "");
    const std::string mostrado = caja.texto();
    const std::size_t enPantalla =
        mostrado.size() - static_cast<std::size_t>(std::ranges::count(mostrado, '\r'));
    EXPECT_GE(enPantalla, Traza::kMaximo) << "the latest, and enough of them";
    EXPECT_LT(enPantalla, Traza::kMaximo + 200);
}

TEST_F(Acontecer, DespuesDeUnDiaSeVaAunqueQuepa) {
    Sucesos muchos(bucle.reloj());
    for (int hora = 0; hora < 100; ++hora) {
        for (int i = 0; i < 1024; ++i)
            muchos.decir({.que = Que::PausaEmpieza, .conexion = 0});
        bucle.avanzar(3'600'000);
    }
    EXPECT_GE(muchos.siguiente() - muchos.primero(), 24U * 1024);
    EXPECT_LE(muchos.siguiente() - muchos.primero(), 27U * 1024);
}

TEST_F(Acontecer, ElRuidoNoEchaLoPedido) {
    sucesos.decir({.que = Que::Forzado}, "1.1.10");
    const std::string ruido(500, '\x05');
    for (int i = 0; i < 5000; ++i)
        sucesos.decir({.que = Que::Descarte, .conexion = 0}, ruido);
    EXPECT_TRUE(trazas.txtDemandaLecturaEscritura.texto().ends_with(" Forzado OK 1.1.10\r\n"));
    EXPECT_EQ(sucesos.textoDe(sucesos[sucesos.primero()]), "") << "the first had to go";
    EXPECT_EQ(sucesos.textoDe(sucesos[5000]), ruido);
    // A line of it does not show more than 512 bytes of what came.
    sucesos.decir({.que = Que::LlegaronBytes, .conexion = 0, .numero = 7},
                  std::string(513, '\x0A'));
    const std::string linea = desde(trazas.txtTramas, 5001);
    EXPECT_TRUE(linea.ends_with("[A][A]...¦ Cantidad: 7\r\n"));
    EXPECT_EQ(linea.size(), std::string("00:00:00 01-01-1970  Obteniendo bytes <- ").size() +
                                std::size_t{512} * 3 + std::string("...¦ Cantidad: 7\r\n").size());
}

TEST_F(Acontecer, LoQueTieneCajaPropiaSobreviveAlTrafico) {
    const auto trafico = [&] {
        for (int i = 0; i < 10'000; ++i)
            sucesos.decir({.que = Que::PausaEmpieza, .conexion = 0});
    };
    sucesos.decir({.que = Que::Forzado}, "1.1.10");
    sucesos.decir({.que = Que::Descarte, .conexion = 0});
    sucesos.decir({.que = Que::AlCliente}, "uno");
    trafico();
    ASSERT_GT(sucesos.primero(), 3U);
    sucesos.decir({.que = Que::Forzado}, "1.1.11");
    const std::string pedido = desde(trazas.txtDemandaLecturaEscritura, 0);
    EXPECT_LT(pedido.find("Forzado OK 1.1.10\r\n"), pedido.find("Forzado OK 1.1.11\r\n"));
    EXPECT_EQ(std::ranges::count(pedido, '\n'), 2);
    EXPECT_NE(desde(trazas.txtTramasDescartadas, 0).find("*Descarte*"), std::string::npos);
    EXPECT_EQ(desde(trazas.Text1, 0), "uno\r\n");
    EXPECT_EQ(desde(trazas.Text1, 3), "") << "that one has been seen";
    EXPECT_EQ(desde(trazas.txtTramas, 0), "perdido");
    // What no box shows takes no place among what they show.
    for (std::size_t i = 0; i < Apartados::kMaximo; ++i)
        sucesos.decir({.que = Que::Descarte, .conexion = 0, .callado = true});
    trafico();
    EXPECT_NE(desde(trazas.txtTramasDescartadas, 0).find("*Descarte*"), std::string::npos);
    // Not for ever: then it is known that something is missing.
    for (std::size_t i = 0; i < Apartados::kMaximo; ++i)
        sucesos.decir({.que = Que::AlCliente}, "");
    trafico();
    EXPECT_EQ(desde(trazas.Text1, 0), "perdido");
    EXPECT_EQ(desde(trazas.Text1, 3).size(), 2 * Apartados::kMaximo) << "an end of line each";
}

TEST_F(Acontecer, LosTextosTienenSuLimite) {
    TextosDeSucesos textos;
    for (int i = 0; i < 100'000; ++i)
        (void)textos.guardar("x");
    EXPECT_LE(textos.cuantos() * sizeof(std::string), TextosDeSucesos::kMaximo);
    // What has no text, or one that no box shows, takes nobody else's room.
    sucesos.decir({.que = Que::Forzado}, "1.1.10");
    for (int i = 0; i < 20'000; ++i) {
        sucesos.decir({.que = Que::NivelSinBloques, .numero = 1}, "");
        sucesos.decir({.que = Que::EscrituraRechazada, .callado = true}, "de un guion");
    }
    EXPECT_EQ(sucesos.textoDe({.que = Que::Forzado, .texto = 1}), "1.1.10");
}

TEST_F(Acontecer, LoQueUnaDireccionTraeNoConfundeSusPartes) {
    const std::string mala("1.1.\0x;\0", 8);
    const std::string texto = TextoDeRechazo{mala, "direccion no valida", "ventana"}.unir();
    const auto partes = TextoDeRechazo::partir(texto);
    EXPECT_EQ(partes.direccion, mala);
    EXPECT_EQ(partes.motivo, "direccion no valida");
    EXPECT_EQ(partes.origen, "ventana");
    EXPECT_EQ(partes.clave, "");
    sucesos.decir({.que = Que::EscrituraRechazada, .callado = true, .numero = 5}, texto);
    EXPECT_EQ(trazas.txtDemandaLecturaEscritura.texto(), "") << "a script's";
}

} // namespace kv
