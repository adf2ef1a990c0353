// SPDX-License-Identifier: Apache-2.0
#include "wire/Modulo_Tramas_KV2200.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

namespace kv {
namespace {

std::string hex(const std::optional<Solicitud>& trama) {
    return trama ? trazaDeTrama(*trama) : "nada";
}

/// The frame that a line of docs/stations.md shows behind those words, as "[52][01]".
std::string documentada(const std::string& que) {
    std::ostringstream todo;
    todo << std::ifstream(KV_FUENTES "/docs/stations.md").rdbuf();
    const std::string doc = todo.str();
    const auto fila = doc.find("| " + que + " | `");
    if (fila == std::string::npos) return "no such line";
    const auto desde = doc.find('`', fila) + 1;
    std::istringstream bytes(doc.substr(desde, doc.find('`', desde) - desde));
    std::vector<std::uint8_t> trama;
    for (std::string byte; bytes >> byte;)
        trama.push_back(static_cast<std::uint8_t>(std::stoi(byte, nullptr, 16)));
    if (que.starts_with("answer") && verificarTramaRespuesta(trama) && trama.size() == 8)
        return std::to_string(valorDeRespuesta(std::span<const std::uint8_t, 8>(trama)));
    return trazaDeTrama(trama);
}

} // namespace

TEST(Tramas, LasDeLosDocumentosSonLasQueSeMandanYSeEntienden) {
    EXPECT_EQ(documentada("read register 1F of station 1"), hex(armarTramaLectura("1F", "1")));
    EXPECT_EQ(documentada("read register 10 of station 25"), hex(armarTramaLectura("10", "25")));
    EXPECT_EQ(documentada("write 1000 to register 0A of station 12"),
              hex(armarTramaEscritura("0A", "12", 1000)));
    EXPECT_EQ(documentada("write -2 to register 10 of station 1"),
              hex(armarTramaEscritura("10", "1", -2)));
    EXPECT_EQ(documentada("answer 261"), "261");
    EXPECT_EQ(documentada("answer -2"), "-2");
}

TEST(Tramas, SolicitudDeLectura) {
    const auto t = armarTramaLectura("1F", "1");
    EXPECT_EQ(*t, (Solicitud{0x52, 0x01, 0x00, 0x1F, 0x00, 0x00, 0x72}));
    EXPECT_EQ(trazaDeTrama(*t), "[52][01][00][1F][00][00][72]");
    EXPECT_EQ((*armarTramaLectura("0a", "25"))[1], 0x25);
    EXPECT_EQ(trazaDeTrama(*armarTramaLectura("0a", "25")), "[52][25][00][A][00][00][81]");
    EXPECT_EQ((*armarTramaLectura("FF", "99"))[1], 0x99);
}

TEST(Tramas, SolicitudDeEscritura) {
    EXPECT_EQ(*armarTramaEscritura("0A", "12", 1000),
              (Solicitud{0x57, 0x12, 0x00, 0x0A, 0x03, 0xE8, 0x5E}));
    const auto valor = [](double v) {
        const auto t = armarTramaEscritura("1", "1", v);
        return t ? (*t)[4] * 256 + (*t)[5] : -1;
    };
    EXPECT_EQ(valor(255), 0x00FF);
    EXPECT_EQ(valor(4095), 0x0FFF);
    EXPECT_EQ(valor(65535), 0xFFFF);
    EXPECT_EQ(valor(-2), 0xFFFE);
    for (const double malo : {65536.0, -32769.0, 1.5, 1e300})
        EXPECT_EQ(valor(malo), -1) << malo;
}

TEST(Tramas, LoQueNoCabeEnUnaTramaNoSeArma) {
    for (const char* d : {"", "100", "G", "-1", "1.5", "40001"})
        EXPECT_EQ(hex(armarTramaLectura(d, "1")), "nada") << d;
    for (const char* e : {"100", "-1", "", "1.5", "A"})
        EXPECT_EQ(hex(armarTramaLectura("10", e)), "nada") << e;
}

TEST(Tramas, VerificaRespuestas) {
    Respuesta r{0x07, 0x01, 0x00, 0x1F, 0x00, 0x01, 0x05, 0x26};
    EXPECT_TRUE(verificarTramaRespuesta(r));
    EXPECT_EQ(valorDeRespuesta(r), 261);
    r[0] = 0x06;
    EXPECT_FALSE(verificarTramaRespuesta(r));
    EXPECT_TRUE(verificarTramaRespuesta(Respuesta{0x07, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(verificarTramaRespuesta(Respuesta{0x07, 0xFF, 0xA4, 0, 0, 0, 0, 0xA3}));
    EXPECT_FALSE(verificarTramaRespuesta(Respuesta{0x07, 0xFF, 0xA4, 0, 0, 0, 0, 0xA4}));
    EXPECT_EQ(valorDeRespuesta(Respuesta{7, 0, 0, 0, 0, 0xFF, 0xFE, 0}), -2);
    EXPECT_EQ(valorDeRespuesta(Respuesta{7, 0, 0, 0, 0, 0x80, 0x00, 0}), -32768);
}

} // namespace kv
