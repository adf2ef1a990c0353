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
    std::string guion(const std::string& bytes) {
        const auto ruta = (carpeta_ / "g.vbs").string();
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
    EXPECT_EQ(correr("--idioma en-US " + guion("WScript.Echo Len(\"ñandú\"), 1.5")).texto,
              "5 1.5\n");
}

TEST_F(Ejecutor, SenalaElError) {
    const std::string ruta = guion("x = 1\n  y = x / 0\n");
    const auto r = correr(ruta);
    EXPECT_EQ(r.codigo, 1);
    EXPECT_EQ(r.texto, ruta + "(2, 3): Division by zero\n");
    EXPECT_EQ(correr("--comprobar " + ruta).codigo, 0) << "it is only checked";
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
    EXPECT_TRUE(std::filesystem::exists(carpeta_ / "a.txt"));
    EXPECT_FALSE(std::filesystem::exists(carpeta_.parent_path() / "b.txt"));
}

} // namespace
