// SPDX-License-Identifier: Apache-2.0
#include "config/ini.h"

#include <gtest/gtest.h>

namespace kv {
namespace {

std::string valor(const Ini& ini, std::string_view seccion, std::string_view clave) {
    const auto h = ini.buscar(seccion, clave);
    return h ? std::string(h->valor) : "(nada)";
}

} // namespace

TEST(Ini, ReglasDeLectura) {
    const Ini ini("antes=1\r\n[ Uno ]\r\n;clave=comentario\r\n  clave =  dos palabras \t\r\n"
                  "Clave=segunda\r\ncitada=\" con blancos \"\r\nmedia=\"abierta\r\nsola=\"\r\n"
                  "vacia=\r\nigual=a=b;c\r\nsin valor\r\n[dos\r\nclave=2\r\n[UNO]\r\n"
                  "nueva=no se ve\r\n[tres]\nclave=3");
    EXPECT_EQ(valor(ini, "uno", "CLAVE"), "dos palabras");
    EXPECT_EQ(ini.buscar("uno", "clave")->linea, 4U);
    EXPECT_EQ(valor(ini, "Uno", "citada"), " con blancos ");
    EXPECT_EQ(valor(ini, "Uno", "media"), "\"abierta");
    EXPECT_EQ(valor(ini, "Uno", "sola"), "\"");
    EXPECT_EQ(valor(ini, "Uno", "vacia"), "");
    EXPECT_EQ(valor(ini, "Uno", "igual"), "a=b;c");
    EXPECT_EQ(valor(ini, "Uno", "sin valor"), "(nada)");
    EXPECT_EQ(valor(ini, "Uno", ";clave"), "(nada)");
    EXPECT_EQ(valor(ini, "Uno", "nueva"), "(nada)"); // only the first section of a name
    EXPECT_EQ(valor(ini, "", "antes"), "(nada)");
    EXPECT_EQ(valor(ini, "dos", "clave"), "2"); // the "]" is missing
    EXPECT_EQ(valor(ini, "tres", "clave"), "3");
    EXPECT_EQ(valor(Ini("\xEF\xBB\xBF[a]\nb=c"), "a", "b"), "c");
}

TEST(Ini, UnValorSeCortaA254Caracteres) {
    const std::string largo(300, 'x');
    EXPECT_EQ(valor(Ini("[s]\nc=" + largo), "s", "c"), largo.substr(0, 254));
    EXPECT_EQ(valor(Ini("[s]\nc=\"" + largo + "\""), "s", "c"), largo.substr(0, 254));
}

TEST(Ini, UnMillonDeClaves) {
    std::string contenido = "[s]\n";
    for (int i = 0; i < 1'100'000; ++i)
        contenido += "k" + std::to_string(i) + "=" + std::to_string(i % 7) + "\n";
    contenido += "k3=repetida\n[t]\nultima=9\n";
    const Ini ini(std::move(contenido));
    EXPECT_EQ(valor(ini, "s", "k0"), "0");
    EXPECT_EQ(valor(ini, "s", "k3"), "3");
    EXPECT_EQ(valor(ini, "S", "K1099999"), std::to_string(1099999 % 7));
    EXPECT_EQ(valor(ini, "t", "ultima"), "9");
    EXPECT_EQ(valor(ini, "t", "k0"), "(nada)");
}

TEST(Ini, EscribeEnSuLugar) {
    const auto escrito = [](std::string_view contenido, std::string_view valor) {
        return iniConClave(contenido, "S", "Clave", valor);
    };
    // An existing key: everything else byte for byte, whatever the line ends.
    EXPECT_EQ(escrito("; c\r\n[s]\r\n\tclave = 1 \r\nz=\xE1\r\n", "22"),
              "; c\r\n[s]\r\n\tclave = 22\r\nz=\xE1\r\n");
    EXPECT_EQ(escrito("[s]\nCLAVE=1", "2"), "[s]\nCLAVE=2");
    EXPECT_EQ(escrito("[s]\nclave=\nclave=3\n", "2"), "[s]\nclave=2\nclave=3\n");
    // A new key: at the end of its section, before the blank lines that follow it.
    EXPECT_EQ(escrito("[s]\r\na=1\r\n\r\n[t]\r\nclave=0\r\n", "2"),
              "[s]\r\na=1\r\nClave=2\r\n\r\n[t]\r\nclave=0\r\n");
    EXPECT_EQ(escrito("[s]\na=1", "2"), "[s]\na=1\nClave=2\n");
    EXPECT_EQ(escrito("[t]\n[s]\n[s]\nclave=1\n", "2"), "[t]\n[s]\nClave=2\n[s]\nclave=1\n");
    // A new section: at the end of the file.
    EXPECT_EQ(escrito("[t]\r\na=1", "2"), "[t]\r\na=1\r\n[S]\r\nClave=2\r\n");
    EXPECT_EQ(escrito("", "2"), "[S]\r\nClave=2\r\n");
}

TEST(Ini, UnaLineaDeCienMegabytes) {
    std::string contenido = "[s]\na=" + std::string(100'000'000, 'x') + "\n[s2]\nb=1\n";
    const Ini ini(std::move(contenido));
    EXPECT_EQ(valor(ini, "s", "a").size(), 254U);
    EXPECT_EQ(valor(ini, "s2", "b"), "1");
}

} // namespace kv
