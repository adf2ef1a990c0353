// SPDX-License-Identifier: Apache-2.0
// What happened is kept for as long as it fits, and read as text by whoever looks.

#include "events/rechazo.h"
#include "events/trazas.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

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
    // More than a box shows: what it is told is what it shows.
    std::uint64_t visto = sucesos.primero() + 1;
    std::string todo;
    EXPECT_FALSE(caja.seguir(visto, todo));
    EXPECT_EQ(visto, 5000U);
    EXPECT_EQ(todo, caja.texto());
    EXPECT_TRUE(desde(caja, 4999).ends_with(" Ningun bloque tiene el nivel 4999\r\n"));
    EXPECT_EQ(desde(caja, 5000), "");
    EXPECT_GE(caja.texto().size(), Traza::kMaximo) << "the latest, and enough of them";
    EXPECT_LT(caja.texto().size(), Traza::kMaximo + 200);
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
    for (int i = 0; i < 1000; ++i)
        sucesos.decir({.que = Que::Descarte, .conexion = 0}, ruido);
    EXPECT_TRUE(trazas.txtDemandaLecturaEscritura.texto().ends_with(" Forzado OK 1.1.10\r\n"));
    EXPECT_EQ(sucesos.textoDe(sucesos[1]), "") << "the first of the noise had to go";
    EXPECT_EQ(sucesos.textoDe(sucesos[1000]), ruido);
    // A line of it does not show more than 512 bytes of what came.
    sucesos.decir({.que = Que::LlegaronBytes, .conexion = 0, .numero = 7},
                  std::string(513, '\x0A'));
    const std::string linea = desde(trazas.txtTramas, 1001);
    EXPECT_TRUE(linea.ends_with("[A][A]...¦ Cantidad: 7\r\n"));
    EXPECT_EQ(linea.size(), std::string("00:00:00 01-01-1970  Obteniendo bytes <- ").size() +
                                512 * 3 + std::string("...¦ Cantidad: 7\r\n").size());
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
