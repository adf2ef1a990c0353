// SPDX-License-Identifier: Apache-2.0
// Events become a capture: what was on the wire, once, in order, whatever the driver still held.

#include "evidence/captura.h"
#include "evidence/resumen.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace kv {
namespace {

struct Segmento {
    std::uint32_t de, para;
    unsigned puertoDe, puertoPara;
    std::uint32_t numero, acuse;
    std::string datos; ///< hexadecimal
};

class Eventos {
  public:
    void decir(const std::string& que, const std::string& bytes = {}, int tenidos = -1,
               const std::string& conexion = "10.0.0.7:502") {
        std::string falla;
        const auto j =
            leerJson(R"({"hora":"2026-11-16T07:05:20.100","suceso":")" + que + R"(","conexion":")" +
                         conexion + "\"" + (bytes.empty() ? "" : ",\"bytes\":\"" + bytes + "\"") +
                         (tenidos < 0 ? "" : ",\"tenidos\":" + std::to_string(tenidos)) + "}",
                     falla);
        ASSERT_TRUE(j) << falla;
        captura.agregar(*j);
    }
    /// What the file holds, which must be whole.
    [[nodiscard]] std::vector<Segmento> segmentos() const {
        std::vector<Segmento> todos;
        const std::string& b = captura.bytes();
        constexpr std::size_t kCabecera = 24;
        for (std::size_t i = kCabecera; i < b.size();) {
            const std::size_t largo = byte(i + 8) | byte(i + 9) << 8U;
            const std::size_t ip = i + 16;
            EXPECT_EQ(byte(ip + 2) << 8U | byte(ip + 3), largo);
            Segmento s{en(ip + 12, 4),
                       en(ip + 16, 4),
                       en(ip + 20, 2),
                       en(ip + 22, 2),
                       en(ip + 24, 4),
                       en(ip + 28, 4),
                       {}};
            for (std::size_t k = ip + 40; k < ip + largo; ++k) {
                s.datos += "0123456789ABCDEF"[byte(k) / 16];
                s.datos += "0123456789ABCDEF"[byte(k) % 16];
            }
            todos.push_back(std::move(s));
            i = ip + largo;
        }
        return todos;
    }
    [[nodiscard]] std::string datos() const {
        std::string todos;
        for (const Segmento& s : segmentos())
            todos += s.datos + " ";
        return todos;
    }
    Captura captura;

  private:
    [[nodiscard]] std::uint32_t byte(std::size_t i) const {
        return static_cast<std::uint8_t>(captura.bytes().at(i));
    }
    [[nodiscard]] std::uint32_t en(std::size_t i, std::size_t bytes) const {
        std::uint32_t n = 0;
        for (std::size_t k = 0; k < bytes; ++k)
            n = n << 8U | byte(i + k);
        return n;
    }
};

} // namespace

TEST(Captura, LoQueYaSeTeniaNoEstaDosVeces) {
    Eventos e;
    e.decir("Envio", "52010010000063");
    e.decir("LlegaronBytes", "070100");           // the beginning of an answer
    e.decir("LlegaronBytes", "0701001000007485"); // with what was held
    e.decir("Recepcion", "0701001000007485");
    e.decir("Envio", "52010010000063");
    e.decir("LlegaronBytes", "0701");
    e.decir("TiempoFuera");
    e.decir("Reintento", "52010010000063"); // what was held is given up
    e.decir("LlegaronBytes", "0701001000007485");
    e.decir("Recepcion", "0701001000007485");
    e.decir("LlegaronBytes", "FF07");
    e.decir("LlegaronBytes", "0701001000007485AA", 1); // too long: it says how many were held
    EXPECT_EQ(
        e.datos(),
        "52010010000063 070100 1000007485 52010010000063 0701 52010010000063 0701001000007485 "
        "FF07 01001000007485AA ");
    EXPECT_EQ(e.captura.tramas(), 9U);
}

TEST(Captura, LosNumerosSiguenYCadaEnlaceEsOtraConversacion) {
    Eventos e;
    e.decir("EnlaceArriba");
    e.decir("Envio", "52010010000063");
    e.decir("LlegaronBytes", "0701001000007485");
    e.decir("EscrituraSale", "5701001000012345");
    e.decir("EnlaceAbajo");
    e.decir("EnlaceArriba");
    e.decir("Envio", "52010010000063");
    e.decir("Envio", "52010010000063", -1, "plc-norte:5021");
    e.decir("Envio", "52010010000063", -1, "fe80::1:5021");
    const auto s = e.segmentos();
    ASSERT_EQ(s.size(), 6U);
    EXPECT_EQ(s[0].para, 0x0A000007U);
    EXPECT_EQ(s[0].puertoPara, 502U);
    EXPECT_EQ(s[1].de, s[0].para);
    EXPECT_EQ(s[1].acuse, s[0].numero + 7);
    EXPECT_EQ(s[2].numero, s[0].numero + 7);
    EXPECT_EQ(s[2].acuse, s[1].numero + 8);
    EXPECT_NE(s[3].puertoDe, s[0].puertoDe);
    EXPECT_NE(s[4].para, s[5].para) << "made up, but not the same";
    EXPECT_EQ(s[4].puertoPara, 5021U);
    EXPECT_EQ(e.captura.puertos(), (std::set<std::uint16_t>{502, 5021}));
}

TEST(Resumen, NuncaPasaDeVeinteRenglonesNiDeSuAncho) {
    const std::vector<std::string> muchos(40, std::string(500, 'x') + "\nsegundo");
    DatosDelResumen d;
    d.carpeta = d.configuracion = d.guion = d.arranque = muchos[0];
    d.avisos = d.grabaciones = d.faltan = muchos;
    Vivo v;
    std::string falla;
    v.estado = leerJson(R"({"ok":1,"proyecto":"p"})", falla).value();
    v.caidas = v.calladas = muchos;
    v.cuantasCalladas = 100;
    const std::string r = resumenDe(d, v);
    EXPECT_LE(std::count(r.begin(), r.end(), '\n'), 20);
    EXPECT_NE(r.find("(y 97 más)\n"), std::string::npos) << r;
    std::size_t desde = 0;
    for (std::size_t fin = 0; (fin = r.find('\n', desde)) != std::string::npos; desde = fin + 1)
        EXPECT_LE(fin - desde, 200U);
    EXPECT_NE(r.find("Error o aviso: "), std::string::npos) << "the last ones have room, too";
}

} // namespace kv
