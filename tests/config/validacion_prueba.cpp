// SPDX-License-Identifier: Apache-2.0
#include "config/validacion.h"
#include "text/direccion_de_red.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

/// A plant put together record by record; the line of a record is its place in its list.
struct Planta {
    ListasDeConfiguracion listas;
    Problemas problemas;

    Planta& puerto(double numero, double tiempoFuera = 5) {
        listas.puertos.push_back({numero, tiempoFuera, 5, 3, 30, 5, true});
        listas.lineasDePuertos.push_back({static_cast<std::uint32_t>(listas.puertos.size())});
        return *this;
    }
    Planta& estacion(int puerto, int numero, int indice, std::string ip = "10.0.0.1",
                     std::string tcp = "502") {
        Estacion e;
        e.puerto = static_cast<std::int16_t>(puerto);
        e.numero = static_cast<std::int16_t>(numero);
        e.indice = static_cast<std::int16_t>(indice);
        e.ip = std::move(ip);
        e.puertoTCP = std::move(tcp);
        listas.estaciones.push_back(std::move(e));
        listas.lineasDeEstaciones.push_back(static_cast<std::uint32_t>(listas.estaciones.size()));
        return *this;
    }
    Planta& bloque(int puerto, double plc, std::string direccion, double cantidad = 1,
                   double scan = 1, double nivel = 0) {
        listas.bloques.push_back({"", std::move(direccion), nivel, cantidad, plc, 0, scan,
                                  static_cast<std::int16_t>(puerto), true});
        listas.lineasDeBloques.push_back(static_cast<std::uint32_t>(listas.bloques.size()));
        return *this;
    }
    /// One letter a record: "n" not built, "s" built, "b" built and BAD for ever.
    std::string suertes() {
        const Validacion v = validar(listas, problemas);
        std::string t;
        const auto letras = [&t](const std::vector<Suerte>& s) {
            for (const Suerte x : s)
                t += x == Suerte::NoConstruir ? 'n' : x == Suerte::Construir ? 's' : 'b';
            t += ' ';
        };
        letras(v.puertos);
        letras(v.estaciones);
        letras(v.bloques);
        return t;
    }
};

} // namespace

TEST(Validacion, PuertosFueraDeSuLugar) {
    Planta p;
    p.puerto(2).puerto(1).puerto(0).puerto(1.5).puerto(40000).puerto(2);
    p.estacion(2, 1, 1).estacion(0, 5, 1);
    p.bloque(2, 1, "1F");
    EXPECT_EQ(p.suertes(), "ssnnns sn s ");
    ASSERT_EQ(p.problemas.lista().size(), 6U);
    EXPECT_EQ(p.problemas.lista()[0].que,
              "el puerto 2 está en el lugar 1 y debe estar en el lugar de su número");
    EXPECT_EQ(p.problemas.lista()[5].que, "el puerto 2 está repetido");
    // A port without a record at its number's place gives its blocks no times.
    Planta sola;
    sola.puerto(3).estacion(3, 1, 1).bloque(3, 1, "1F");
    EXPECT_EQ(sola.suertes(), "s s n ");
}

TEST(Validacion, TiemposDeUnPuertoQuePararianUnTemporizador) {
    Planta p;
    p.puerto(1, 0).puerto(2, 1e9).puerto(3, 0.5);
    p.listas.puertos[1].reintentosMax = -1;
    p.listas.puertos[1].segReconeccion = 0;
    p.listas.puertos[1].scanPorDefecto = -5;
    p.listas.lineasDePuertos[1] = {2, 21, 22, 23, 24};
    EXPECT_EQ(p.suertes(), "sss   ");
    EXPECT_EQ(p.listas.puertos[0].tiempoFuera, 5);
    const Puerto& dos = p.listas.puertos[1];
    EXPECT_EQ(
        std::tuple(dos.tiempoFuera, dos.reintentosMax, dos.segReconeccion, dos.scanPorDefecto),
        std::tuple(5, 3, 30, 5));
    EXPECT_EQ(p.listas.puertos[2].tiempoFuera, 0.5);
    std::string lineas;
    for (const Problema& problema : p.problemas.lista())
        lineas += std::to_string(problema.linea) + " ";
    EXPECT_EQ(lineas, "1 21 22 23 24 ") << "each where its own setting stands";
}

TEST(Validacion, EstacionesQueCompartenDireccion) {
    Planta p;
    p.puerto(1).puerto(2);
    p.estacion(1, 1, 1, "host.a", "502").estacion(1, 2, 2, "HOST.A", "0502");
    p.estacion(1, 3, 1, "Host.A", " 502"); // the same indice again
    p.estacion(2, 4, 4, "host.a", "502");  // the connection belongs to port 1
    p.bloque(2, 4, "1F").bloque(1, 4, "1F").bloque(1, 3, "1F");
    const Validacion v = validar(p.listas, p.problemas);
    ASSERT_EQ(v.conexiones.size(), 1U);
    EXPECT_EQ(v.conexiones[0].estaciones, (std::vector<std::size_t>{0, 1, 3}));
    EXPECT_EQ(v.conexiones[0].bloques, 1U);
    EXPECT_EQ(v.bloques,
              (std::vector<Suerte>{Suerte::NoConstruir, Suerte::Construir, Suerte::NoConstruir}));
}

TEST(Validacion, ElPrimerPlcEnOrdenDeConexionesGana) {
    Planta p;
    p.puerto(1);
    p.estacion(1, 9, 1, "10.0.0.1").estacion(1, 1, 1, "10.0.0.2").estacion(1, 1, 2, "10.0.0.1");
    p.bloque(1, 1, "1F");
    const Validacion v = validar(p.listas, p.problemas);
    EXPECT_EQ(v.conexiones[0].bloques, 1U);
    EXPECT_EQ(v.conexiones[1].bloques, 0U);
    EXPECT_EQ(p.problemas.lista().size(), 1U);
}

TEST(Validacion, DireccionesQueNoSePuedenAlcanzar) {
    Planta p;
    p.puerto(1);
    p.estacion(1, 1, 100).estacion(1, 2, -1).estacion(1, 3, 99).estacion(1, 4, 0);
    p.estacion(1, 5, 5, "10.0.0.256").estacion(1, 6, 6, "10.0.0.1", "");
    p.estacion(1, 7, 7, "10.0.0.1", "65536").estacion(1, 8, 8, "10.0.0.1", "5e3");
    // Those of no machine of its own are told, and tried.
    p.estacion(1, 9, 9, "0.0.0.0").estacion(1, 10, 10, "224.0.0.1");
    p.estacion(1, 11, 11, "255.255.255.255").estacion(1, 12, 12, "223.255.255.255");
    p.bloque(1, 1, "1").bloque(1, 3, "FF").bloque(1, 4, "0a").bloque(1, 5, "1");
    p.bloque(1, 3, "100").bloque(1, 3, "").bloque(1, 3, "1h");
    EXPECT_EQ(p.suertes(), "s bbssbbbsssss bssbbbb ");
    // With an empty address the name ends in "_", which is an identifier all the same.
    EXPECT_EQ(p.problemas.lista().size(), 5U + 3U + 3U);
}

TEST(Validacion, BloquesQueSeRechazan) {
    Planta p;
    p.puerto(1).estacion(1, 1, 1);
    p.bloque(1, 1, "1", 0).bloque(1, 1, "2", -1).bloque(1, 1, "3", 1.5).bloque(1, 1, "4", 1e9);
    p.bloque(1, 1, "5", 1, -1).bloque(1, 1, "6", 1, 0).bloque(1, 1, "7", 1, 1e300);
    p.bloque(1, 1, "8", 1, 1, -1).bloque(1, 1, "9", 1, 1, 0.5).bloque(1, 1, "A", 1, 1, 2e9);
    p.bloque(1, 1, "B", 10000, 1, 10000).bloque(1, 2, "C").bloque(1, 1.5, "D");
    p.bloque(1, 1e300, "E").bloque(7, 1, "F").bloque(0, 1, "10");
    EXPECT_EQ(p.suertes(), "s s nnnnnsnnnnsnnnnn ");
    EXPECT_EQ(p.problemas.lista().size(), 14U);
    EXPECT_EQ(p.problemas.lista()[9].que, "el bloque \"1.1.B\" de 10000 registros pasa de FF");
    EXPECT_EQ(p.problemas.lista()[9].consecuencia,
              "se construyen los 245 que caben, y no los otros 9755");
}

TEST(Validacion, ElTotalDeVariablesTieneUnLimite) {
    Planta p;
    p.puerto(1);
    for (int i = 0; i < 4000; ++i)
        p.estacion(1, i, i % 100, "10.0.0." + std::to_string(i / 100)).bloque(1, i, "0", 256);
    const Validacion v = validar(p.listas, p.problemas);
    EXPECT_EQ(v.bloquesConstruidos, 3906U);
    EXPECT_EQ(v.variables, 3906 * 256);
    ASSERT_EQ(v.bloques.size(), 4000U);
    EXPECT_EQ(v.bloques[3906], Suerte::NoConstruir);
    EXPECT_EQ(p.problemas.lista().back().consecuencia,
              "no se construyen este bloque ni los 93 siguientes");
}

TEST(Validacion, NombresYBloquesRepetidos) {
    Planta p;
    p.puerto(1).estacion(1, 1, 1).estacion(1, -1, 2);
    p.bloque(1, 1, "1.0").bloque(1, 1, "1+CreateObject(\"x\")").bloque(1, -1, "1F");
    p.bloque(1, 1, "1F").bloque(1, 1, "1F").bloque(1, 1, "1f").bloque(1, 1, "01F");
    p.bloque(1, 1, "1D", 4).bloque(1, 1, "1.0").bloque(1, -1, "1E").bloque(1, 1, "1C", 4);
    EXPECT_EQ(p.suertes(), "s ss bbssssssbss ");
    std::string que;
    for (const Problema& x : p.problemas.lista())
        que += std::to_string(x.linea) + " " + x.que + "\n";
    EXPECT_EQ(que, "1 la dirección \"1.0\" no es hexadecimal de 0 a FF\n"
                   "2 el nombre \"MW_1_1_1+CreateObject(\"x\")\" no sirve de variable del guión\n"
                   "2 la dirección \"1+CreateObject(\"x\")\" no es hexadecimal de 0 a FF\n"
                   "3 el nombre \"MW_1_-1_1F\" no sirve de variable del guión\n"
                   "5 el registro \"1.1.1F\" está repetido: ya lo pide la línea 4\n"
                   "6 el registro \"1.1.1f\" está repetido: ya lo pide la línea 4\n"
                   "7 el registro \"1.1.01F\" está repetido: ya lo pide la línea 4\n"
                   "8 el registro \"1.1.1F\" está repetido: ya lo pide la línea 4\n"
                   "9 el registro \"1.1.1.0\" está repetido: ya lo pide la línea 1\n"
                   "9 la dirección \"1.0\" no es hexadecimal de 0 a FF\n"
                   "10 el nombre \"MW_1_-1_1E\" no sirve de variable del guión\n"
                   "11 el registro \"1.1.1D\" y 2 más del bloque están repetidos: ya lo pide la "
                   "línea 8\n");
    EXPECT_FALSE(nombrePublicable("MW_1_1_" + std::string(250, 'A')));
}

TEST(Validacion, DireccionesIPv4) {
    for (const char* buena : {"0.0.0.0", "255.255.255.255", "10.1.2.3"})
        EXPECT_TRUE(esIPv4(buena)) << buena;
    for (const char* mala :
         {"", "1.2.3", "1.2.3.4.5", "1.2.3.256", "1.2.3.04", "1.2.3.", " 1.2.3.4", "1.2.3.4 ",
          "1.2.3.-4", "a.b.c.d", "100.100.100.1000", "::1"})
        EXPECT_FALSE(esIPv4(mala)) << mala;
}

} // namespace kv
