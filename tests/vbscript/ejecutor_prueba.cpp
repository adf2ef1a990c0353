// SPDX-License-Identifier: Apache-2.0
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>

// The runner as its user meets it: exit codes, where a mistake is, character sets.

namespace {

struct Salida {
    int codigo;
    std::string texto; ///< Standard output and error together.
};

Salida correr(const std::string& argumentos) {
    const std::string orden = std::string(KV_BIN) + "/GuionKV2200 " + argumentos + " 2>&1";
    Salida s{-1, {}};
    FILE* tubo = popen(orden.c_str(), "r");
    if (!tubo) return s;
    std::array<char, 4096> trozo{};
    while (std::size_t n = fread(trozo.data(), 1, trozo.size(), tubo))
        s.texto.append(trozo.data(), n);
    const int estado = pclose(tubo);
    s.codigo = WIFEXITED(estado) ? WEXITSTATUS(estado) : -1;
    return s;
}

class Ejecutor : public ::testing::Test {
  protected:
    void SetUp() override {
        const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
        carpeta_ =
            std::filesystem::temp_directory_path() / (std::string("kv_ejecutor_") + info->name());
        std::filesystem::create_directories(carpeta_);
    }
    void TearDown() override { std::filesystem::remove_all(carpeta_); }
    std::string guion(const std::string& bytes) { return archivo("g.vbs", bytes); }
    std::string archivo(const std::string& nombre, const std::string& bytes) {
        const auto ruta = (carpeta_ / nombre).string();
        std::ofstream(ruta, std::ios::binary) << bytes;
        return ruta;
    }
    std::filesystem::path carpeta_;
};

TEST_F(Ejecutor, ImprimeYPregunta) {
    const auto r = correr(guion("WScript.Echo \"n\xFA"
                                "mero\", 1.5\nmw.writeMW \"MW_1\", 3\nLabel.Caption = \"x\""));
    EXPECT_EQ(r.codigo, 0);
    EXPECT_EQ(r.texto, "número 1,5\nwriteMW MW_1 3\nLabel.Caption = x\n");
}

TEST_F(Ejecutor, LeeTambienUtf8) {
    const std::string g = guion("WScript.Echo _\nLen(\"ñandú\"), 1.5");
    const std::string aviso = g + "(2, 6): aviso: el archivo parece guardado como UTF-8 y debe ser "
                                  "Windows-1252\n";
    EXPECT_EQ(correr("--idioma en-US " + g).texto, aviso + "5 1.5\n") << "the driver would say 7";
    EXPECT_EQ(correr("--comprobar " + g).texto, aviso);
    // What no driver compiles, the desk does not run either.
    const std::string conMarca = guion("\xEF\xBB\xBFx = 1");
    for (const char* que : {"", "--comprobar "}) {
        const auto r = correr(que + conMarca);
        EXPECT_EQ(r.codigo, 1);
        EXPECT_EQ(r.texto, conMarca + "(1, 1): El archivo tiene la marca de UTF-8: hay que "
                                      "guardarlo como Windows-1252\n");
    }
}

TEST_F(Ejecutor, SenalaElError) {
    const std::string ruta = guion("x = 1\n  y = x / 0\n");
    const auto r = correr(ruta);
    EXPECT_EQ(r.codigo, 1);
    EXPECT_EQ(r.texto, ruta + "(2, 3): Division by zero\n");
    EXPECT_EQ(correr("--comprobar " + ruta).codigo, 0) << "it is only checked";
    const std::string otra = guion("x = 1\nExecuteGlobal \"y = 1\" & vbLf & \"z = x / 0\"\n");
    EXPECT_EQ(correr(otra).texto,
              otra + "(2, 1): Division by zero, at (2, 1) of the text that is run there: y = 1\n");
}

TEST_F(Ejecutor, ComprobarNoEjecuta) {
    EXPECT_EQ(correr("--comprobar " + guion("WScript.Echo 1")).texto, "");
    const auto r = correr("--comprobar " + guion("If x Then\n"));
    EXPECT_EQ(r.codigo, 1);
    EXPECT_NE(r.texto.find("(2, 1): Expected 'End'"), std::string::npos) << r.texto;
}

TEST_F(Ejecutor, LaLineaDeOrdenes) {
    for (const auto& [argumentos, que] :
         {std::pair{"", "falta la orden o alguno de sus argumentos"},
          {"--idioma fr x.vbs", "--idioma: debe ser es-AR o en-US"},
          {"x.vbs --nada", "argumento desconocido: --nada"}}) {
        const auto r = correr(argumentos);
        EXPECT_EQ(r.codigo, 2);
        EXPECT_EQ(r.texto, std::string("GuionKV2200: ") + que + "\nVea GuionKV2200 --help\n");
    }
    EXPECT_EQ(correr("--ayuda").codigo, 0);
    EXPECT_EQ(correr((carpeta_ / "no_hay.vbs").string()).codigo, 1);
    const std::string largo = guion(std::string((2U << 20) + 1, '\n'));
    EXPECT_EQ(correr(largo).texto, largo + ": El guion tiene más de 2 MiB\n");
}

TEST_F(Ejecutor, UnaSalidaQueNoSePuedeEscribirTerminaCon1) {
    const std::string ruta = guion("WScript.Echo 1");
    for (const std::string& que : {ruta + " >/dev/full", "--help " + ruta + " >/dev/full"})
        EXPECT_EQ(correr(que).codigo, 1) << que;
    EXPECT_EQ(correr("--comprobar " + ruta + " >/dev/full").codigo, 0) << "nothing to write";
}

TEST_F(Ejecutor, LosArchivosQuedanEnSuCarpeta) {
    const auto r = correr(
        guion("Set f = CreateObject(\"Scripting.FileSystemObject\")\n"
              "f.CreateTextFile(\"C:\\a.txt\").Write \"x\"\n"
              "On Error Resume Next\nf.CreateTextFile \"..\\b.txt\"\nWScript.Echo Err.Number"));
    EXPECT_EQ(r.texto, "70\n");
    // The folder that a driver there would give it, not that of the plant's own files.
    EXPECT_TRUE(std::filesystem::exists(carpeta_ / "GUION" / "a.txt"));
    EXPECT_FALSE(std::filesystem::exists(carpeta_ / "a.txt"));
    EXPECT_FALSE(std::filesystem::exists(carpeta_ / "b.txt"));
    const std::string crea = guion("CreateObject(\"Scripting.FileSystemObject\")"
                                   ".CreateTextFile \"c.txt\"");
    archivo("sis_config.ini", "[DRIVER_KV2200]\nCarpeta_De_Guion=otra\n");
    EXPECT_EQ(correr(crea).codigo, 0);
    EXPECT_TRUE(std::filesystem::exists(carpeta_ / "otra" / "c.txt"));
    archivo("sis_config.ini", "[DRIVER_KV2200]\nCarpeta_De_Guion=..\n");
    EXPECT_EQ(correr(crea).codigo, 1) << "none";
}

constexpr const char* kPlanta =
    "Dim veces\nveces = veces + 1\n"
    "If MW_1_1_10_STATUS = 6 And MW_1_1_10 > 5 Then\n"
    "  mw.writeMW \"MW_1_1_11\", MW_1_1_10 / 2\nEnd If\n"
    "If veces = 2 Then MsgBox \"dos\" : x = InputBox(\"?\", \"\", \"si\")\n"
    "If veces = 3 Then mw.READBLOQ \"MW_1_1_12\" : Label = \"tres\"\n"
    "a = Array(1, 2) : igual = Empty\n";

TEST_F(Ejecutor, CorreUnaVezPorFilaDeValoresYDiceQueCambio) {
    const std::string g = guion(kPlanta);
    const std::string csv = archivo("v.csv", "MW_1_1_10;MW_1_1_10_STATUS;otro\n\n' nada\n4;6;1\n"
                                             "7,5;;\n\"8\";13;2\n");
    auto r = correr("--valores " + csv + " " + g);
    EXPECT_EQ(r.codigo, 0);
    EXPECT_EQ(r.texto, "[fila 2]\nwriteMW MW_1_1_11 3.75\nMsgBox: dos\nInputBox: ?\n"
                       "[fila 3]\nREADBLOQ MW_1_1_12\nLabel.Caption = tres\n"
                       "Cambiaron:\n  veces = 3\n  x = \"si\"\n  a = matriz de 2 elementos\n"
                       "Corridas: 3, con error: 0\n");
    r = correr("--veces 2 --valores " + archivo("v.txt", "1.1.10 = 6\nveces=10") + " " + g);
    EXPECT_EQ(r.texto, "[vez 1]\nwriteMW MW_1_1_11 3\n[vez 2]\nwriteMW MW_1_1_11 3\n"
                       "Cambiaron:\n  veces = 11\n  a = matriz de 2 elementos\n"
                       "Corridas: 2, con error: 0\n")
        << "a register without a status is good; each run is given its row";
    r = correr("--veces 3 " + g);
    EXPECT_NE(r.texto.find("[vez 3]\nREADBLOQ MW_1_1_12"), std::string::npos) << r.texto;
    EXPECT_NE(r.texto.find("  veces = 3\n"), std::string::npos) << r.texto;
    // A row may begin with an empty cell.
    const std::string suma = guion("WScript.Echo a & \"/\" & b");
    for (const char* s : {";", "\t"}) {
        const std::string filas = "a" + (s + ("b\n1" + (s + ("2\n" + (s + std::string("7\n"))))));
        r = correr("--valores " + archivo("v.csv", filas) + " " + suma);
        EXPECT_EQ(r.texto.find("[fila 1]\n1/2\n[fila 2]\n1/7\n"), 0U) << r.texto;
    }
}

TEST_F(Ejecutor, UnErrorNoParaLasDemasFilasYSeDiceUnaVez) {
    const std::string g = guion("n = n + 1 : y = 1 / (MW_1_1_10 - 2)\n");
    const auto r = correr("--valores " + archivo("v.csv", "MW_1_1_10\n1\n2\n2\n3") + " " + g);
    EXPECT_EQ(r.codigo, 1);
    EXPECT_NE(r.texto.find("Corridas: 4, con error: 2\n"), std::string::npos) << r.texto;
    const auto primero = r.texto.find("(1, 13): Division by zero");
    ASSERT_NE(primero, std::string::npos) << r.texto;
    EXPECT_EQ(r.texto.find("Division", primero + 20), std::string::npos);
    const auto mal = correr("--veces 5 " + guion("n = 1\nIf"));
    EXPECT_NE(mal.texto.find("Corridas: 1, con error: 1\n"), std::string::npos)
        << "what does not compile is not run again: " << mal.texto;
}

TEST_F(Ejecutor, UnosValoresQueNoSeEntiendenSeDicenConSuRenglon) {
    const std::string g = guion("x = 1");
    for (const auto& [contenido, que] :
         {std::pair{"a;b\n1;2;3", ":2: hay más valores que nombres de columna"},
          {"a\n\nuno", ":3: \"uno\" no es un número"},
          {"a=1\nb", ":2: falta el signo ="},
          {"a=1\nA=2", ":2: \"A\" está dos veces"},
          {"un nombre\n1", ":1: \"un nombre\" no es un nombre de variable"},
          {"a;b", ":1: no hay ninguna fila debajo de los nombres"},
          {"\n' nada\n", ": no tiene valores"},
          {"KVGRAB1\n\x7F", ": la grabacion termina a mitad de una entrada"}}) {
        const std::string v = archivo("v", contenido);
        const auto r = correr("--valores " + v + " " + g);
        EXPECT_EQ(r.codigo, 1) << contenido;
        EXPECT_EQ(r.texto.find(v + que), 0U) << r.texto;
    }
    EXPECT_EQ(correr("--valores /no/hay " + g).codigo, 1);
    EXPECT_EQ(correr("--comprobar --valores v " + g).codigo, 2);
    EXPECT_EQ(correr("--veces 0 " + g).codigo, 2);
}

TEST_F(Ejecutor, ElPerfilDiceEnQueLineaSeVaElTiempo) {
    const auto r =
        correr("--perfil " + guion("poco = 1\nFor i = 1 To 200000 : s = s & \"x\" : Next\n"
                                   "If poco = 2 Then\n  nunca = 1\nEnd If\n"));
    EXPECT_EQ(r.codigo, 0);
    const auto perfil = r.texto.find("Perfil: ");
    ASSERT_NE(perfil, std::string::npos) << r.texto;
    const auto largo = r.texto.find("For i = 1 To 200000", perfil);
    const auto corto = r.texto.find("poco = 1\n", perfil);
    EXPECT_LT(largo, corto) << r.texto;
    EXPECT_NE(corto, std::string::npos) << r.texto;
    EXPECT_EQ(r.texto.find("nunca", perfil), std::string::npos) << "a line that never ran";
}

TEST_F(Ejecutor, ComprobarAvisaDeLoQueNoPareceAProposito) {
    const std::string g = guion("nivel = MW_1_1_10\nx = nivle\nmw.writMW \"MW_9_9_9\", 1\n");
    const std::string avisos = g +
                               "(2, 5): aviso: nada da valor a 'nivle', ni el guion ni la "
                               "planta; ¿nivel?\n" +
                               g + "(3, 4): aviso: mw no tiene 'writMW'; ¿writeMW?\n";
    auto r = correr("--comprobar " + g);
    EXPECT_EQ(r.codigo, 0) << "it would run";
    EXPECT_EQ(r.texto, avisos);
    archivo("DRIVER_KV2200_Config.ini",
            "[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\n"
            "CantEsclavos=1\nEsclavo0_Numero=1\nEsclavo0_Ip=127.0.0.1\n"
            "Esclavo0_Indice=1\nCantBloques=1\nBloque0_PLC=1\n"
            "Bloque0_StarAdrees=10\nBloque0_Quantity=1\nBloque0_ScanTime=1\n");
    r = correr("--comprobar " + g);
    EXPECT_EQ(r.texto, avisos + g +
                           "(3, 11): aviso: la configuración no tiene la dirección "
                           "'MW_9_9_9'\n")
        << "now that there is one beside it";
    EXPECT_FALSE(std::filesystem::exists(carpeta_ / "sis_config.ini")) << "nothing is written";
}

} // namespace
