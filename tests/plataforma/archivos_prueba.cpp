// SPDX-License-Identifier: Apache-2.0
#include "platform/epoll/sistema.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace kv {
namespace fs = std::filesystem;

class EnDisco : public testing::Test {
  protected:
    EnDisco() {
        std::string plantilla = (fs::temp_directory_path() / "kvXXXXXX").string();
        carpeta = mkdtemp(plantilla.data());
    }
    ~EnDisco() override { fs::remove_all(carpeta); }
    std::string carpeta;
    ArchivosReales archivos;
};

TEST_F(EnDisco, CajaYBarrasNoImportan) {
    ASSERT_TRUE(archivos.crearCarpeta(carpeta + "\\Sub"));
    ASSERT_TRUE(archivos.reemplazar(carpeta + "\\Sub\\Sis_Config.ini", "a"));
    EXPECT_EQ(archivos.leer(carpeta + "/sub/SIS_CONFIG.INI", 10), "a");
    ASSERT_TRUE(archivos.reemplazar(carpeta + "\\SUB\\sis_config.INI", "b"));
    EXPECT_EQ(std::distance(fs::directory_iterator(carpeta + "/Sub"), fs::directory_iterator{}), 1)
        << "the same file under both spellings, and no temporary one left";
    EXPECT_TRUE(archivos.existe(carpeta + "/SUB")) << "a folder exists too";
    EXPECT_FALSE(archivos.existe(carpeta + "/Sub/otro"));
}

TEST_F(EnDisco, LoQueNoSePuedeSeDiceSinRuido) {
    EXPECT_FALSE(archivos.leer(carpeta, 10)) << "a folder is no file";
    EXPECT_FALSE(archivos.leer(carpeta + "/nada", 10));
    ASSERT_EQ(mkfifo((carpeta + "/tubo").c_str(), 0600), 0);
    EXPECT_FALSE(archivos.leer(carpeta + "/tubo", 10)) << "nor is a pipe, and nobody waits for it";
    EXPECT_FALSE(archivos.reemplazar(carpeta + "/tubo", "x"));
    EXPECT_TRUE(fs::is_fifo(carpeta + "/tubo")) << "no file takes its place";
    ASSERT_EQ(mkfifo((carpeta + "/f.nuevo").c_str(), 0600), 0);
    EXPECT_FALSE(archivos.reemplazar(carpeta + "/f", "x")) << "nor is one waited for";
    fs::remove(carpeta + "/f.nuevo");
    ASSERT_TRUE(archivos.agregar(carpeta + "/f", "0123\r\n"));
    ASSERT_TRUE(archivos.agregar(carpeta + "/f", "cut of"));
    ASSERT_TRUE(archivos.agregar(carpeta + "/f", "!\r\n"));
    EXPECT_FALSE(archivos.leer(carpeta + "/f", 10)) << "larger than asked for";
    EXPECT_EQ(archivos.leer(carpeta + "/f", 17), "0123\r\ncut of\r\n!\r\n")
        << "a line that was broken off is ended first";
    EXPECT_FALSE(archivos.reemplazar(carpeta + "/no/existe/f", "x"));
    EXPECT_FALSE(archivos.agregar(carpeta + "/no/existe/f", "x"));
}

TEST_F(EnDisco, SeDiceEnQueCarpetaNoSePuedeEscribir) {
    EXPECT_EQ(porQueNoSeEscribeEn(carpeta), "");
    EXPECT_TRUE(fs::is_empty(carpeta)) << "nothing is left of the trial";
    EXPECT_EQ(porQueNoSeEscribeEn(carpeta + "/no"), "no existe");
    ASSERT_TRUE(archivos.agregar(carpeta + "/f", "x"));
    EXPECT_EQ(porQueNoSeEscribeEn(carpeta + "/f"), "no es una carpeta");
    fs::create_symlink("a", carpeta + "/a");
    EXPECT_EQ(porQueNoSeEscribeEn(carpeta + "/a"), "sus enlaces no llevan a ninguna parte");
    fs::remove(carpeta + "/a");
    ASSERT_EQ(chmod(carpeta.c_str(), 0555), 0);
    constexpr uid_t kNadie = 65534; // who may do everything would be stopped by nothing
    const bool todopoderoso = geteuid() == 0;
    ASSERT_EQ(seteuid(todopoderoso ? kNadie : geteuid()), 0);
    const std::string porQue = porQueNoSeEscribeEn(carpeta);
    ASSERT_EQ(seteuid(todopoderoso ? 0 : geteuid()), 0);
    chmod(carpeta.c_str(), 0700);
    EXPECT_EQ(porQue, "no hay permiso");
}

TEST_F(EnDisco, UnEnlaceSigueSiendoLoAlReemplazarLoQueNombra) {
    const std::string otra = carpeta + "/otra";
    ASSERT_TRUE(archivos.crearCarpeta(otra));
    ASSERT_TRUE(archivos.reemplazar(otra + "/real.ini", "a"));
    fs::create_symlink("otra/real.ini", carpeta + "/sis_config.ini");
    ASSERT_TRUE(archivos.reemplazar(carpeta + "/SIS_CONFIG.ini", "b"));
    EXPECT_TRUE(fs::is_symlink(carpeta + "/sis_config.ini"));
    EXPECT_EQ(archivos.leer(otra + "/real.ini", 10), "b");
    EXPECT_EQ(archivos.comoEsta(carpeta + "\\SIS_CONFIG.INI"), carpeta + "/sis_config.ini");
    fs::create_symlink("nada", carpeta + "/roto.ini");
    EXPECT_TRUE(archivos.huella(carpeta + "/roto.ini").existe) << "its file may only be away";
    ASSERT_TRUE(archivos.reemplazar(carpeta + "/roto.ini", "c"));
    EXPECT_EQ(archivos.leer(carpeta + "/roto.ini", 10), "c");
}

TEST_F(EnDisco, LoReemplazadoSigueSiendoDeQuienEraYLoQueNoSePuedeReemplazarSeReescribe) {
    const std::string f = carpeta + "/f";
    struct stat antes {};
    struct stat despues {};
    ASSERT_TRUE(archivos.agregar(f, "uno largo\r\n"));
    ASSERT_EQ(chmod(f.c_str(), 0640), 0);
    const bool puede = getuid() == 0; // nobody else may give a file away
    ASSERT_TRUE(!puede || chown(f.c_str(), 12345, 23456) == 0);
    ASSERT_EQ(stat(f.c_str(), &antes), 0);
    ASSERT_TRUE(archivos.reemplazar(f, "dos"));
    ASSERT_EQ(stat(f.c_str(), &despues), 0);
    EXPECT_NE(antes.st_ino, despues.st_ino);
    EXPECT_EQ(antes.st_mode, despues.st_mode);
    EXPECT_EQ(antes.st_uid, despues.st_uid);
    EXPECT_EQ(antes.st_gid, despues.st_gid);
    fs::create_directory(f + ".nuevo"); // nothing can be made beside it
    for (const char* contenido : {"mas largo que antes", "corto"}) {
        EXPECT_TRUE(archivos.reemplazar(f, contenido));
        EXPECT_EQ(archivos.leer(f, 100), contenido);
    }
    ASSERT_EQ(stat(f.c_str(), &antes), 0);
    EXPECT_EQ(antes.st_ino, despues.st_ino);
}

TEST_F(EnDisco, LaHuellaCambiaConElContenido) {
    archivos.reemplazar(carpeta + "/f", "uno");
    const auto antes = archivos.huella(carpeta + "/f");
    EXPECT_EQ(archivos.huella(carpeta + "/f"), antes);
    archivos.reemplazar(carpeta + "/f", "dos");
    EXPECT_NE(archivos.huella(carpeta + "/f"), antes);
    EXPECT_FALSE(archivos.huella(carpeta + "/g").existe);
}

TEST_F(EnDisco, LaCarpetaEsDeUnoSoloMientrasViva) {
    ProcesosReales otro;
    {
        ProcesosReales uno;
        EXPECT_TRUE(uno.tomarCarpeta(carpeta));
        EXPECT_FALSE(otro.tomarCarpeta(carpeta));
    }
    EXPECT_TRUE(otro.tomarCarpeta(carpeta));
}

} // namespace kv
