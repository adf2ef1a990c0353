// SPDX-License-Identifier: Apache-2.0
// Driver and stations as they run in a plant: processes that meet on real sockets.

#include "programas.h"

#include "apoyo/configuracion.h"

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sys/wait.h>

namespace kv::extremo {
namespace {

constexpr std::size_t kMuchoTexto = std::size_t{64} << 20; // more than any test here is about

/// No process of ours is left when a test has let go of its own.
class Planta : public testing::Test {
  protected:
    ~Planta() override {
        EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a process was left behind";
    }
};

} // namespace

TEST_F(Planta, VariasDireccionesConstantesYRampas) {
    Simulador s({0, 0}, {"--registro", "01.10=261", "02.1F=-2", "25.20=rampa", "--fragmentar"});
    const Instalacion casa(Configuracion()
                               .puerto()
                               .estacion(1, "127.0.0.1", 1, s.puerto(0))
                               .estacion(2, "127.0.0.1", 2, s.puerto(0))
                               .bloque(1, "10", "0.1")
                               .bloque(2, "1F", "0.1")
                               .puerto()
                               .estacion(7, "127.0.0.1", 25, s.puerto(1))
                               .bloque(7, "20", "0.1")
                               .texto());
    auto deben = casa.nombres();
    deben.insert("LOGS_DRIVER");
    Proceso driver(casa.correr());
    EXPECT_EQ(recibido(driver, "1", "10"), 261);
    EXPECT_EQ(recibido(driver, "2", "1F"), -2);
    int antes = recibido(driver, "25", "20");
    for (int subidas = 0, n = 0; subidas < 3; ++n) {
        ASSERT_LT(n, 1000) << "a ramp that does not rise";
        const int ahora = recibido(driver, "25", "20");
        ASSERT_TRUE(ahora >= antes || ahora == 0) << antes << " then " << ahora;
        subidas += ahora > antes ? 1 : 0;
        antes = ahora;
    }
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_EQ(driver.errores(), "");
    EXPECT_EQ(casa.nombres(), deben) << "a temporary file is left";
    for (const auto& e : std::filesystem::directory_iterator(casa.ruta() + "/LOGS_DRIVER")) {
        const std::string registro = casa.leer("LOGS_DRIVER/" + e.path().filename().string());
        EXPECT_NE(registro.find("DRIVER>Arranque>DriverKV2200 "), std::string::npos) << registro;
        // Start, figures, two links that came up, end; and nothing else.
        EXPECT_TRUE(std::regex_match(registro, std::regex("[^\n]*:KV101\r\n[^\n]*:KV102\r\n"
                                                          "([^\n]*:KV201\r\n){2}[^\n]*:KV103\r\n")))
            << registro;
    }
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST_F(Planta, UnClienteLeeEscribeFuerzaYSincroniza) {
    Simulador s({0}, {"--registro", "01.10=261", "01.11=7"});
    const Instalacion casa(Configuracion()
                               .puerto()
                               .estacion(1, "127.0.0.1", 1, s.puerto(0))
                               .bloque(1, "10", "0.2")
                               .bloque(1, "11", "0.2")
                               .texto());
    Proceso driver(casa.correr());
    EXPECT_EQ(recibido(driver, "1", "11"), 7);
    const auto pedir = [&casa](std::vector<std::string> orden, const std::string& espera) {
        Proceso cliente(casa.cliente(std::move(orden)));
        if (!espera.empty()) {
            EXPECT_NE(cliente.lineaCon(espera), "") << cliente.errores();
        }
        EXPECT_EQ(cliente.terminar(), 0) << cliente.errores();
    };
    pedir({"leer", "1.1.10"}, "261");
    pedir({"escribir", "1.1.10", "42"}, "");
    EXPECT_NE(driver.lineaCon("Escritura: 1.1.10[Dir 10 : Valor 42]"), "");
    EXPECT_EQ(recibido(driver, "1", "10"), 42);
    pedir({"forzar", "1", "0"}, "");
    pedir({"sincronizar"}, "1.1.11");
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST_F(Planta, UnaEstacionCallaYVuelveSinCostarElEnlaceALaOtra) {
    Simulador s({0}, {"--registro", "01.10=1", "02.10=2", "--estacion", "02,ausente=1/2"});
    const Instalacion casa(Configuracion()
                               .puerto({"0.1", "1", "0.2"})
                               .estacion(1, "127.0.0.1", 1, s.puerto(0))
                               .estacion(2, "127.0.0.1", 2, s.puerto(0))
                               .bloque(1, "10", "0.1")
                               .bloque(2, "10", "0.1")
                               .texto());
    Proceso driver(casa.correr());
    EXPECT_EQ(recibido(driver, "2", "10"), 2);
    EXPECT_NE(driver.lineaCon(" REINTENTO 1 Bloque: 1.2.10 Envio -> "), "");
    EXPECT_NE(driver.lineaCon(" Deshabilitacion de 1.2.10"), "");
    EXPECT_EQ(recibido(driver, "1", "10"), 1) << "the other one is polled on";
    EXPECT_NE(driver.lineaCon(" HABILITACION de 1.2.10"), "");
    EXPECT_EQ(recibido(driver, "2", "10"), 2);
    EXPECT_EQ(driver.terminar(SIGINT), 0);
    EXPECT_EQ(s.terminar(SIGINT), 0);
    const std::string enlaces = s.resto();
    EXPECT_NE(enlaces.find(" #1 conectado"), std::string::npos);
    EXPECT_EQ(enlaces.find(" #2 conectado"), std::string::npos);
}

TEST_F(Planta, LasEstacionesMuerenVuelvenYSeReconecta) {
    auto s = std::make_unique<Simulador>(std::vector{0},
                                         std::vector<std::string>{"--registro", "01.10=111"});
    const int puerto = std::stoi(s->puerto(0));
    const Instalacion casa(Configuracion()
                               .puerto()
                               .estacion(1, "localhost", 1, s->puerto(0))
                               .bloque(1, "10", "0.1")
                               .texto());
    Proceso driver(casa.correr());
    EXPECT_EQ(recibido(driver, "1", "10"), 111);
    s.reset(); // killed in the middle of everything
    Simulador otro({puerto}, {"--registro", "01.10=222"});
    EXPECT_NE(otro.lineaCon(" #1 conectado"), "");
    EXPECT_NE(otro.lineaCon(" #1 <- 52 01 00 10 00 00 63"), "");
    int valor = 0;
    while ((valor = recibido(driver, "1", "10")) == 111) { // answers of before, still in the pipe
    }
    EXPECT_EQ(valor, 222);
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_EQ(otro.terminar(SIGTERM), 0);
}

TEST_F(Planta, LoGrabadoDaLasMismasTrazasOtraVez) {
    Simulador s({0}, {"--registro", "01.10=rampa", "--estacion", "02,ausente=1/2"});
    const Instalacion casa(Configuracion()
                               .puerto({"0.1", "1", "0.2"})
                               .estacion(1, "127.0.0.1", 1, s.puerto(0))
                               .estacion(2, "127.0.0.1", 2, s.puerto(0))
                               .bloque(1, "10", "0.1")
                               .bloque(2, "10", "0.1")
                               .texto());
    casa.escribir("DRIVER_KV2200_Config.MDrivScrip",
                  "Set f = CreateObject(\"Scripting.FileSystemObject\")\r\n"
                  "f.OpenTextFile(\"visto.txt\", 8, True).WriteLine MW_1_1_10\r\n"
                  "Label.Caption = f.OpenTextFile(\"receta.txt\").ReadLine & \" \" &"
                  " Len(f.OpenTextFile(\"visto.txt\").ReadAll)\r\n"
                  "Label.BackColor = RGB(255, 128, 0) : Label.Visible = False\r\n");
    std::filesystem::create_directory(casa.ruta() + "/GUION");
    casa.escribir("GUION/receta.txt", "harina\r\n");
    auto orden = casa.correr();
    orden.insert(orden.end(), {"--grabar", casa.ruta() + "/vuelo"});
    Proceso driver(orden);
    std::string vivido;
    for (std::string l; l.find(" HABILITACION de 1.2.10") == std::string::npos;
         vivido += l + "\n") {
        l = driver.linea();
        ASSERT_NE(l, "") << driver.errores();
        ASSERT_LT(vivido.size(), kMuchoTexto);
    }
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    vivido += driver.resto();
    EXPECT_NE(vivido.find("Label10: harina "), std::string::npos) << vivido;
    EXPECT_NE(vivido.find("Label10: [fondo #FF8000]\n"), std::string::npos) << vivido;
    EXPECT_NE(vivido.find("Label10: [fondo #FF8000, oculta]\n"), std::string::npos) << vivido;
    std::filesystem::remove_all(casa.ruta() + "/GUION");
    Proceso otraVez({casa.programa(), "--reproducir", casa.ruta() + "/vuelo"});
    EXPECT_EQ(otraVez.terminar(), 0) << otraVez.errores();
    EXPECT_EQ(otraVez.resto(), vivido);
    EXPECT_FALSE(std::filesystem::exists(casa.ruta() + "/GUION")) << "a script plays in no folder";
    EXPECT_EQ(otraVez.errores(), "");
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST_F(Planta, LaGrabacionLlenaSigueEnOtraYNingunaSePierde) {
    std::vector<std::string> registros{"--registro"};
    auto configuracion = Configuracion().puerto({"0.5", "1", "0.2"});
    for (int r = 10; r < 50; ++r) {
        registros.push_back("01." + std::to_string(r) + "=rampa");
        configuracion.bloque(1, std::to_string(r), "0.01");
    }
    Simulador s({0}, registros, false);
    const Instalacion casa(configuracion.estacion(1, "127.0.0.1", 1, s.puerto(0)).texto());
    std::string ajustes = casa.leer("sis_config.ini");
    ajustes.replace(ajustes.find("poleo=20"), 8, "poleo=1");
    casa.escribir("sis_config.ini", ajustes);
    auto orden = casa.correr();
    orden.insert(orden.end(), {"--grabar", casa.ruta() + "/vuelo", "--grabar-maximo", "64K",
                               "--grabar-en-anillo"});
    Proceso driver(orden);
    const auto vida = [&driver] {
        std::string todo;
        for (std::string l = " ";
             !l.empty() && !l.starts_with("lblProyecto") && todo.size() < kMuchoTexto;
             todo += l + "\n")
            l = driver.linea();
        return todo;
    };
    vida(); // before the first
    const std::string primera = vida();
    recibido(driver, "1", "10");       // it polls again
    EXPECT_EQ(s.terminar(SIGTERM), 0); // so that the second recording does not become full, too
    // Another driver of the same folder leaves the one that runs its recording.
    Proceso segunda(orden);
    EXPECT_EQ(segunda.terminar(), 1);
    EXPECT_EQ(driver.terminar(SIGTERM), 0) << driver.errores();
    EXPECT_LE(casa.leer("vuelo.1").size(), 64U << 10);
    Proceso otraVez({casa.programa(), "--reproducir", casa.ruta() + "/vuelo.1"});
    EXPECT_EQ(otraVez.terminar(), 0) << otraVez.errores();
    EXPECT_EQ(otraVez.errores(), "");
    const std::string repetida = otraVez.resto();
    const auto desde = repetida.find("lblProyecto");
    EXPECT_GT(repetida.size(), 100'000U);
    EXPECT_TRUE(primera.starts_with(repetida.substr(repetida.find('\n', desde) + 1)));
    EXPECT_FALSE(std::filesystem::exists(casa.ruta() + "/vuelo.2"));
}

TEST_F(Planta, SinLugarParaGrabarSePoleaIgual) {
    Simulador s({0}, {"--registro", "01.10=261"});
    const Instalacion casa(Configuracion()
                               .puerto({"0.5", "1", "0.2"})
                               .estacion(1, "127.0.0.1", 1, s.puerto(0))
                               .bloque(1, "10", "0.1")
                               .texto());
    auto orden = casa.correr();
    orden.insert(orden.end(), {"--grabar", casa.ruta() + "/no/hay", "--grabar-en-anillo"});
    Proceso driver(orden);
    EXPECT_EQ(recibido(driver, "1", "10"), 261);
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_NE(driver.errores().find("no se puede escribir en " + casa.ruta() + "/no/hay"),
              std::string::npos)
        << driver.errores();
    EXPECT_EQ(s.terminar(SIGTERM), 0);
}

TEST_F(Planta, VariosDriversEnUnaMaquinaUnoPorCarpeta) {
    std::array<Instalacion, 3> casas;
    const auto correr = [](const Instalacion& casa) {
        return std::vector<std::string>{kDriver, "--carpeta", casa.ruta(), "--sin-ventana",
                                        "--traza"};
    };
    std::vector<std::unique_ptr<Proceso>> drivers;
    for (const Instalacion& casa : casas) {
        drivers.push_back(std::make_unique<Proceso>(correr(casa)));
        EXPECT_NE(drivers.back()->lineaCon("lblCantidadDePuntos: 0"), "")
            << drivers.back()->errores();
    }
    Proceso otro(correr(casas[1]));
    EXPECT_EQ(otro.terminar(), 1);
    for (std::size_t i = 0; i < casas.size(); ++i) {
        EXPECT_EQ(casas[i].leer("sis_config.ini").find("VER=1") != std::string::npos, i == 1);
        EXPECT_EQ(drivers[i]->terminar(SIGTERM), 0);
    }
}

TEST_F(Planta, LosRegistrosLlevanElNombreDelArchivoDelPrograma) {
    Instalacion casa(Configuracion().puerto().texto());
    casa.agregarAjuste("Idioma=tlh");
    Proceso driver(casa.correr());
    EXPECT_NE(driver.lineaCon("lblCantidadDePuntos: 0"), "");
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    std::string registros;
    for (const auto& e : std::filesystem::directory_iterator(casa.ruta() + "/LOGS_DRIVER"))
        registros += e.path().filename().string().substr(6) + ";" +
                     casa.leer("LOGS_DRIVER/" + e.path().filename().string());
    EXPECT_NE(registros.find(" driver ArchivoLog.txt;Log: "), std::string::npos) << registros;
    EXPECT_NE(registros.find(",driver,DRIVER>Ajustes>"), std::string::npos) << registros;
    EXPECT_EQ(registros.find(",DriverKV2200,"), std::string::npos) << registros;
}

TEST_F(Planta, LaMemoriaVieneEnPaginasGrandesSiElSistemaLasDaYNadieDijoOtraCosa) {
    std::string modo;
    std::getline(std::ifstream("/sys/kernel/mm/transparent_hugepage/enabled"), modo);
    if (modo.find("[madvise]") == std::string::npos) GTEST_SKIP() << "not here: " << modo;
    Simulador estacion({0}, {"--registro", "01.10=261"}, false);
    const Instalacion casa(Configuracion()
                               .puerto()
                               .estacion(1, "127.0.0.1", 1, estacion.puerto(0))
                               .bloque(1, "10", "0.1")
                               .texto());
    // The flags of the heap, of which "hg" is that it has been asked for.
    const auto banderas = [&] {
        Proceso driver(casa.correr());
        EXPECT_EQ(recibido(driver, "1", "10"), 261);
        std::ifstream zonas("/proc/" + std::to_string(driver.pid()) + "/smaps");
        bool monton = false;
        for (std::string l; std::getline(zonas, l);) {
            monton = monton || l.ends_with("[heap]");
            if (monton && l.starts_with("VmFlags:")) return l + ' ';
        }
        return std::string();
    };
    const std::string pedido = banderas();
    if (pedido.empty()) GTEST_SKIP() << "this build has a memory of its own";
    EXPECT_NE(pedido.find(" hg "), std::string::npos) << pedido;
    setenv("GLIBC_TUNABLES", "glibc.malloc.hugetlb=0", 1);
    EXPECT_EQ(banderas().find(" hg "), std::string::npos);
    unsetenv("GLIBC_TUNABLES");
}

TEST_F(Planta, LaSegundaVezAvisaALaPrimeraYSeVa) {
    const Instalacion casa(Configuracion().puerto().texto());
    Proceso driver(casa.correr());
    EXPECT_NE(driver.lineaCon("lblCantidadDePuntos: 0"), "");
    EXPECT_NE(casa.leer("sis_config.ini").find("VER=0"), std::string::npos);
    Proceso segunda(casa.correr());
    EXPECT_EQ(segunda.terminar(), 1);
    EXPECT_NE(segunda.errores().find("Programa en ejecucion\n"), std::string::npos);
    EXPECT_NE(casa.leer("sis_config.ini").find("VER=1"), std::string::npos);
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    Proceso tercera(casa.correr());
    EXPECT_NE(tercera.lineaCon("lblCantidadDePuntos: 0"), "") << "the folder is free again";
    EXPECT_EQ(tercera.terminar(SIGTERM), 0);
}

TEST(Arranque, UnaSenalMientrasDuraSeCumple) {
    const Instalacion casa(plantaGrande());
    EXPECT_EQ(terminarAlArrancar(casa, {casa.programa(), "--sin-ventana"}), 0);
}

} // namespace kv::extremo
