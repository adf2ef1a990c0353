// SPDX-License-Identifier: Apache-2.0
// The command line of the driver: scripts in plants depend on it.

#include "programas.h"

#include "apoyo/configuracion.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <sys/stat.h>

namespace kv::extremo {
namespace {

struct Resultado {
    int codigo;
    std::string salida;
    std::string errores;
};

const std::vector<std::string> kProgramas{"DriverKV2200", "SimuladorKV2200", "ClienteKV2200",
                                          "GuionKV2200"};

Resultado correr(const std::vector<std::string>& argumentos, const std::string& que = kDriver) {
    std::vector<std::string> todos{que};
    todos.insert(todos.end(), argumentos.begin(), argumentos.end());
    Proceso p(todos);
    std::string salida = p.resto();
    const int codigo = p.terminar();
    return {codigo, salida, p.errores()};
}

std::string programa(const std::string& nombre) { return std::string(KV_BIN) + "/" + nombre; }

std::string contenidoDe(const std::string& archivo) {
    std::ostringstream todo;
    todo << std::ifstream(std::string(KV_FUENTES) + "/" + archivo).rdbuf();
    return todo.str();
}

/// The options that a help names.
std::set<std::string> opcionesDe(const std::string& ayuda) {
    static const std::regex opcion("--[a-z][a-z-]*");
    std::set<std::string> halladas;
    for (std::sregex_iterator i(ayuda.begin(), ayuda.end(), opcion), fin; i != fin; ++i)
        halladas.insert(i->str());
    return halladas;
}

bool tiene(const std::string& texto, const std::string& parte) {
    return texto.find(parte) != std::string::npos;
}

} // namespace

TEST(LineaDeOrden, UnaMalaTermina2YLoDiceEnLaSalidaDeErrores) {
    for (const auto& mala : std::vector<std::vector<std::string>>{
             {"--no-existe"},
             {"suelto"},
             {"--carpeta"},
             {"--carpeta", "/no/existe"},
             {"--grabar-en-anillo"},
             {"--grabar", "/no/existe", "--grabar-maximo", "63K"}}) {
        const Resultado r = correr(mala);
        EXPECT_EQ(r.codigo, 2) << mala[0];
        EXPECT_TRUE(r.errores.starts_with("DriverKV2200: ")) << r.errores;
        for (const char* ingles : {" argument ", "not exist", "Run with", "requires"})
            EXPECT_FALSE(tiene(r.errores, ingles)) << r.errores;
        EXPECT_EQ(r.salida, "") << mala[0];
    }
}

TEST(LineaDeOrden, ComprobarMiraTambienElGuion) {
    const Carpeta carpeta;
    carpeta.escribir(
        "DRIVER_KV2200_Config.ini",
        Configuracion().puerto().estacion(1, "127.0.0.1", 1).bloque(1, "10", "1").texto());
    const auto comprobar = [&](const std::string& guion) {
        carpeta.escribir("DRIVER_KV2200_Config.MDrivScrip", guion);
        return correr({"--carpeta", carpeta.ruta(), "--comprobar"});
    };
    const Resultado sin = correr({"--carpeta", carpeta.ruta(), "--comprobar"});
    const Resultado bien =
        comprobar("nivel = MW_1_1_10 * 2\r\nmw.writeMW \"MW_1_1_10\", nivel\r\n");
    const std::string guion = carpeta.ruta() + "/DRIVER_KV2200_Config.MDrivScrip";
    EXPECT_TRUE(tiene(sin.salida, "\nGuion: no hay (se busca " + guion + ")\n")) << sin.salida;
    EXPECT_TRUE(tiene(bien.salida, "\nGuion: " + guion + "\n")) << bien.salida;
    EXPECT_EQ(bien.codigo + sin.codigo, 0) << "no script is no problem, and a good one neither";
    const Resultado r =
        comprobar("nivel = MW_1_1_10\r\nx = nivle\r\nmw.writeMW \"MW_1_1_11\", 1\r\n");
    EXPECT_EQ(r.codigo, 1);
    EXPECT_TRUE(tiene(r.salida,
                      "/DRIVER_KV2200_Config.MDrivScrip:2: columna 5: nada da valor a "
                      "'nivle', ni el guion ni la planta; ¿nivel?; es un aviso: el guion se corre "
                      "igual\n"))
        << r.salida;
    EXPECT_TRUE(
        tiene(r.salida, ":3: columna 12: la configuración no tiene la dirección 'MW_1_1_11'"))
        << r.salida;
    const Resultado mal = comprobar("If x Then\r\n");
    EXPECT_EQ(mal.codigo, 1);
    EXPECT_TRUE(
        tiene(mal.salida, "MDrivScrip:2: columna 1: Se esperaba 'End'; el guion no corre\n"))
        << mal.salida;
    for (const std::string marca : {"", "\xEF\xBB\xBF"}) {
        const Resultado utf8 = comprobar(marca + "x = 1\r\ny = \"año\"\r\n");
        EXPECT_TRUE(tiene(utf8.salida, marca.empty() ? ":2: columna 7: el archivo parece guardado "
                                                       "como UTF-8 y debe ser Windows-1252;"
                                                     : ":1: columna 1: el archivo parece"))
            << utf8.salida;
        EXPECT_EQ(tiene(utf8.salida, "columna 1: El archivo tiene la marca de UTF-8: hay que "
                                     "guardarlo como Windows-1252; el guion no corre\n"),
                  !marca.empty())
            << utf8.salida;
    }
    const Resultado largo = comprobar(std::string((2U << 20) + 1, '\''));
    EXPECT_TRUE(tiene(largo.salida, "MDrivScrip: El guion tiene más de 2 MiB; no corre\n"))
        << largo.salida;
}

TEST(LineaDeOrden, TodosLosProgramasEntiendenLoMismo) {
    const std::string version = correr({"--version"}).salida.substr(kProgramas[0].size());
    for (const std::string& p : kProgramas) {
        EXPECT_EQ(correr({"--version"}, programa(p)).salida, p + version);
        const Resultado corta = correr({"-h"}, programa(p));
        EXPECT_EQ(corta.codigo, 0);
        EXPECT_TRUE(tiene(corta.salida, "Uso: " + p)) << corta.salida;
        EXPECT_EQ(corta.salida, correr({"--help"}, programa(p)).salida);
        EXPECT_FALSE(tiene(corta.salida, "\033")); // no colours where nobody sees them
        const Resultado mala = correr({"--no-existe"}, programa(p));
        EXPECT_EQ(mala.codigo, 2);
        EXPECT_EQ(mala.salida, "");
        EXPECT_TRUE(mala.errores.starts_with(p + ": ")) << mala.errores;
        for (const char* que : {"--version", "--help"}) {
            Proceso lleno({"/bin/sh", "-c", "exec " + programa(p) + " " + que + " >/dev/full"});
            EXPECT_EQ(lleno.terminar(), 1) << p << " " << que;
        }
    }
}

TEST(LineaDeOrden, LosManualesNombranCadaOpcionYNingunaQueNoEste) {
    for (const std::string& p : kProgramas) {
        const auto hay = opcionesDe(correr({"--help"}, programa(p)).salida);
        for (const char* idioma : {"", "es/"}) {
            std::string manual = contenidoDe("packaging/man/" + std::string(idioma) + p + ".1");
            std::erase(manual, '\\');
            auto nombradas = opcionesDe(manual);
            for (const char* deUnaOrden : {"--durante", "--desde", "--seguir"})
                nombradas.erase(deUnaOrden); // its help is its own
            EXPECT_EQ(nombradas, hay) << idioma << p;
        }
        EXPECT_TRUE(tiene(contenidoDe("packaging/completions/programas.bash"), p));
        EXPECT_TRUE(tiene(contenidoDe("packaging/completions/_DriverKV2200"), p));
    }
}

TEST(LineaDeOrden, LosDocumentosNombranSoloOpcionesQueEstan) {
    std::map<std::string, std::set<std::string>> hay;
    for (const std::string& p : kProgramas)
        hay[p] = opcionesDe(correr({"--help"}, programa(p)).salida);
    hay["ClienteKV2200"].merge(
        opcionesDe(correr({"vigilar", "--help"}, programa("ClienteKV2200")).salida));
    static const std::regex orden("(Driver|Simulador|Cliente|Guion)KV2200( [^`\n]*)");
    std::size_t vistas = 0;
    std::vector<std::string> documentos{"README.md", "HACKING.md"};
    for (const auto& e : std::filesystem::directory_iterator(std::string(KV_FUENTES) + "/docs"))
        if (e.path().extension() == ".md")
            documentos.push_back("docs/" + e.path().filename().string());
    for (const std::string& documento : documentos) {
        const std::string texto = contenidoDe(documento);
        for (std::sregex_iterator i(texto.begin(), texto.end(), orden), fin; i != fin; ++i) {
            const std::string p = (*i)[1].str() + "KV2200";
            for (const std::string& opcion : opcionesDe((*i)[2])) {
                ++vistas;
                EXPECT_TRUE(hay[p].contains(opcion)) << documento << ": " << i->str();
            }
        }
    }
    EXPECT_GT(vistas, 20U);
}

TEST(LineaDeOrden, LaVersionDelPaqueteEsLaDelProyecto) {
    const std::string version = correr({"--version"}).salida;
    EXPECT_TRUE(contenidoDe("debian/changelog")
                    .starts_with("driverkv2200 (" + version.substr(13, version.size() - 14) + ")"));
}

TEST(LineaDeOrden, Ayuda) {
    const Resultado ayuda = correr({"--help"});
    EXPECT_EQ(ayuda.codigo, 0);
    for (const char* que : {"Uso: DriverKV2200", "--carpeta DIR", "--sin-ventana", "--traza",
                            "--comprobar", "--alcanzar", "--version", "Muestra esta ayuda"})
        EXPECT_TRUE(tiene(ayuda.salida, que)) << que << " in\n" << ayuda.salida;
    for (const char* ingles : {"Usage", "OPTIONS", "Options", "TEXT", "Print"})
        EXPECT_FALSE(tiene(ayuda.salida, ingles)) << ingles << " in\n" << ayuda.salida;
}

TEST(LineaDeOrden, UnaSalidaQueNoSePuedeEscribirTerminaCon1) {
    for (const std::string& que :
         {std::string("--version"), std::string("--help"),
          "--comprobar --carpeta " + std::string(KV_FUENTES) + "/examples/planta-chica"}) {
        Proceso p({"/bin/sh", "-c", "exec " + kDriver + " " + que + " >/dev/full"});
        EXPECT_EQ(p.terminar(), 1) << que;
        EXPECT_TRUE(tiene(p.errores(), "no se pudo escribir")) << p.errores();
    }
    // One that runs a plant goes on, and tells in the end.
    const Instalacion planta;
    Proceso driver(
        {"/bin/sh", "-c", "exec " + planta.programa() + " --sin-ventana --traza >/dev/full"});
    Proceso cliente(planta.cliente({"--espera", "60", "sincronizar"}));
    EXPECT_EQ(cliente.terminar(), 0) << cliente.errores();
    EXPECT_EQ(driver.terminar(SIGTERM), 1);
    // Nor does one wait whose messages nobody reads: a pipe that is full.
    const Instalacion sorda;
    Proceso mudo({"/bin/sh", "-c",
                  "cd " + sorda.ruta() + " && mkfifo tubo && exec 3<>tubo && " +
                      "head -c 65536 /dev/zero >&3 && exec ./driver --sin-ventana 2>&3"});
    EXPECT_EQ(Proceso(sorda.cliente({"--espera", "60", "sincronizar"})).terminar(), 0);
    kill(mudo.pid(), SIGHUP); // refused, which a message says
    EXPECT_EQ(Proceso(sorda.cliente({"--espera", "60", "sincronizar"})).terminar(), 0);
    EXPECT_TRUE(tiene(registroDe(sorda), "no se recarga")) << registroDe(sorda);
    EXPECT_EQ(mudo.terminar(SIGTERM), 0);
}

TEST(LineaDeOrden, ComprobarLosEjemplosNoHallaNada) {
    for (const char* planta : {"planta-chica", "planta-50-estaciones"}) {
        const Resultado r =
            correr({"--comprobar", "--carpeta", std::string(KV_FUENTES) + "/examples/" + planta});
        EXPECT_EQ(r.codigo, 0) << r.salida;
        EXPECT_TRUE(tiene(r.salida, "Sin problemas\n"));
        EXPECT_TRUE(tiene(r.salida, "PLC 1 - Indice 1\n"));
        EXPECT_EQ(r.errores, "");
    }
}

TEST(LineaDeOrden, ComprobarDiceArchivoLineaYConsecuenciaYNoEscribe) {
    const Carpeta c;
    c.escribir("sis_config.ini", "[DRIVER_KV2200]\nTiempo_Entre_poleo=mucho\n");
    c.escribir("DRIVER_KV2200_Config.ini",
               "[CONFIG]\nCANT_PUERTOS=1\n[PUERTO1]\nNUMERO=1\nTIME_OUT=0\nCantEsclavos=1\n"
               "Esclavo0_Numero=1\nEsclavo0_Ip=127.0.0.1\nEsclavo0_Puerto=502\n"
               "Esclavo0_Indice=1\nCantBloques=3\n"
               "Bloque0_PLC=9\nBloque0_Quantity=1\nBloque0_StarAdrees=10\nBloque0_ScanTime=1\n"
               "Bloque1_PLC=1\nBloque1_Quantity=1\nBloque1_StarAdrees=GG\nBloque1_ScanTime=1\n"
               "Bloque2_PLC=1\nBloque2_Quantity=1000000000\nBloque2_StarAdrees=12\n"
               "Bloque2_ScanTime=1\n");
    const auto habia = c.nombres();
    const std::string ajustes = c.leer("sis_config.ini");
    const Resultado r = correr({"--comprobar", "--carpeta", c.ruta()});
    EXPECT_EQ(r.codigo, 1);
    const std::string ini = c.ruta() + "/DRIVER_KV2200_Config.ini:";
    EXPECT_TRUE(tiene(r.salida, c.ruta() + "/sis_config.ini:2: Tiempo_Entre_poleo="));
    EXPECT_TRUE(tiene(r.salida, ": el puerto 1 tiene TIME_OUT 0; se usa 5\n"));
    for (const char* linea : {"12: ", "16: ", "20: "}) // unknown station, no frame, too many
        EXPECT_TRUE(tiene(r.salida, ini + linea)) << linea << " in\n" << r.salida;
    EXPECT_EQ(c.nombres(), habia);
    EXPECT_EQ(c.leer("sis_config.ini"), ajustes);
}

TEST(LineaDeOrden, UnRegistroQueNoSePuedeEscribirSeDiceEnOtraParte) {
    const Instalacion planta(
        Configuracion().puerto().estacion(1, "127.0.0.1", 1).bloque(1, "10", "60").texto());
    planta.escribir("LOGS_DRIVER", "where the folder should be");
    const auto habia = planta.nombres();
    const std::string que = planta.ruta() + "/LOGS_DRIVER: no se puede escribir en ella: no es una "
                                            "carpeta; no hay registro del driver ni de las "
                                            "escrituras\n";
    const Resultado r = correr({"--comprobar", "--carpeta", planta.ruta()});
    EXPECT_EQ(r.codigo, 1);
    EXPECT_TRUE(tiene(r.salida, que)) << r.salida;
    EXPECT_EQ(planta.nombres(), habia);
    Proceso driver(planta.correr());
    EXPECT_NE(driver.lineaCon("lblPuertoServidor"), "") << "it serves the plant all the same";
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_TRUE(tiene(driver.errores(), que)) << driver.errores();
    EXPECT_FALSE(tiene(driver.errores(), "Registro: ")) << "once is enough: " << driver.errores();
    // Nor is it lost without a word while a driver runs.
    std::filesystem::remove(planta.ruta() + "/LOGS_DRIVER");
    Proceso otro(planta.correr());
    EXPECT_NE(otro.lineaCon("lblCantidadDePuntos: 1"), "");
    const std::string registros = planta.ruta() + "/LOGS_DRIVER";
    std::filesystem::rename(registros, registros + "_");
    planta.escribir("LOGS_DRIVER", "where the folder was");
    kill(otro.pid(), SIGHUP); // which the log tells
    EXPECT_EQ(Proceso(planta.cliente({"--espera", "60", "sincronizar"})).terminar(), 0);
    std::filesystem::remove(registros);
    std::filesystem::rename(registros + "_", registros);
    EXPECT_EQ(otro.terminar(SIGTERM), 0);
    EXPECT_TRUE(tiene(otro.errores(), "Registro: " + registros +
                                          ": se pierden entradas del "
                                          "registro: no es una carpeta\n"))
        << otro.errores();
    EXPECT_TRUE(tiene(registroDe(planta), "entradas sin anotar: el disco no las tomo"))
        << registroDe(planta);
}

TEST(LineaDeOrden, LaPlanillaVaYVuelveYNuncaConLaPlantaAndando) {
    const Instalacion planta(
        Configuracion().puerto().estacion(1, "127.0.0.1", 1).bloque(1, "10", "0.5").texto());
    planta.escribir("descripciones.csv", "direccion;descripcion;unidad\n1.1.10;Nivel;m\n");
    const std::string antes = planta.leer("DRIVER_KV2200_Config.ini");
    const std::string csv = planta.ruta() + "/planta.csv";
    EXPECT_EQ(correr({"--carpeta", planta.ruta(), "--exportar", csv}).codigo, 0);
    planta.escribir("planta.csv", planta.leer("planta.csv") + "bloque;1;x\r\n");
    Resultado r = correr({"--carpeta", planta.ruta(), "--importar", csv});
    EXPECT_EQ(r.codigo, 1);
    EXPECT_TRUE(tiene(r.errores, csv + ":5: columna ScanTime: falta; no se importa nada\n"))
        << r.errores;
    // Cells that are numbers and texts, but not what a plant can be built of.
    planta.escribir("planta.csv",
                    "tipo;puerto;PLC;Ip;PuertoTCP;Indice;StarAdrees;Quantity;ScanTime;TIME_OUT\r\n"
                    "puerto;1;;;;;;;;0\r\nestacion;1;1;127.0.0.1.1;99999;1\r\n"
                    "bloque;1;1;;;;1G;1;1\r\nbloque;1;1;;;;10;0;1\r\nbloque;1;77;;;;10;1;1\r\n");
    r = correr({"--carpeta", planta.ruta(), "--importar", csv});
    EXPECT_EQ(r.codigo, 1);
    for (const char* donde :
         {":2: columna TIME_OUT: ", ":3: columna Ip: ", ":3: columna PuertoTCP: ",
          ":4: columna StarAdrees: ", ":5: columna Quantity: ", ":6: columna PLC: "})
        EXPECT_TRUE(tiene(r.errores, csv + donde)) << donde << " in\n" << r.errores;
    // Nor what leaves nothing to poll.
    planta.escribir("planta.csv", "tipo;puerto\r\npuerto;1");
    r = correr({"--carpeta", planta.ruta(), "--importar", csv});
    EXPECT_EQ(r.codigo, 1);
    EXPECT_TRUE(tiene(r.errores, csv + ": la última línea no termina: ")) << r.errores;
    EXPECT_TRUE(tiene(r.errores, csv + ": no queda ningún bloque\n")) << r.errores;
    EXPECT_EQ(planta.leer("DRIVER_KV2200_Config.ini"), antes);
    EXPECT_FALSE(std::filesystem::exists(planta.ruta() + "/DRIVER_KV2200_Config.ini.anterior"));
    EXPECT_EQ(correr({"--carpeta", planta.ruta(), "--exportar", csv}).codigo, 0);
    {
        Proceso driver(planta.correr());
        EXPECT_NE(driver.lineaCon("lblCantidadDePuntos: 1"), "");
        r = correr({"--carpeta", planta.ruta(), "--importar", csv});
        EXPECT_EQ(r.codigo, 1);
        EXPECT_TRUE(tiene(r.errores, "un driver atiende esta planta")) << r.errores;
        // Nor through a folder of another name whose link leads to the same file.
        const Carpeta otra;
        const std::string ini = "/DRIVER_KV2200_Config.ini";
        std::filesystem::create_symlink(planta.ruta() + ini, otra.ruta() + ini);
        r = correr({"--carpeta", otra.ruta(), "--importar", csv});
        EXPECT_EQ(r.codigo, 1);
        EXPECT_TRUE(tiene(r.errores, "un driver atiende esta configuración")) << r.errores;
        EXPECT_EQ(planta.leer("DRIVER_KV2200_Config.ini"), antes);
    }
    EXPECT_EQ(correr({"--carpeta", planta.ruta(), "--importar", csv}).codigo, 0);
    EXPECT_EQ(planta.leer("DRIVER_KV2200_Config.ini.anterior"), antes);
    EXPECT_NE(planta.leer("DRIVER_KV2200_Config.ini"), antes);
    EXPECT_TRUE(planta.leer("descripciones.csv").ends_with("\r\n1.1.10;Nivel;m\r\n"));
    const std::string otra = planta.ruta() + "/otra.csv";
    EXPECT_EQ(correr({"--carpeta", planta.ruta(), "--exportar", otra}).codigo, 0);
    EXPECT_EQ(planta.leer("otra.csv"), planta.leer("planta.csv"));
    // What the plant lives with today does not keep its table out.
    planta.escribir(
        "DRIVER_KV2200_Config.ini",
        Configuracion().puerto().estacion(1, "127.0.0.1.1", 1).bloque(1, "10", "1").texto());
    EXPECT_EQ(correr({"--carpeta", planta.ruta(), "--exportar", csv}).codigo, 0);
    r = correr({"--carpeta", planta.ruta(), "--importar", csv});
    EXPECT_EQ(r.codigo, 0);
    EXPECT_TRUE(tiene(r.errores, "tiene la Ip \"127.0.0.1.1\"")) << r.errores;
}

TEST(LineaDeOrden, NingunaSalidaPisaLoDeLaPlantaYLoDeOtroArchivoSeGuarda) {
    const Instalacion planta(
        Configuracion().puerto().estacion(1, "127.0.0.1", 1).bloque(1, "10", "0.5").texto());
    const std::string antes = planta.leer("DRIVER_KV2200_Config.ini");
    std::filesystem::create_symlink("sis_config.ini", planta.ruta() + "/otra");
    const std::string ajustes = planta.leer("sis_config.ini");
    for (const char* suyo : {"otra", "sis_config.ini", "driver_KV2200_config.ini",
                             "descripciones.csv", "DRIVER_KV2200_Config.MDrivScrip"}) {
        for (const char* que : {"--exportar", "--evidencia"}) {
            const Resultado r =
                correr({"--carpeta", planta.ruta(), que, planta.ruta() + "/" + suyo});
            EXPECT_EQ(r.codigo, 1) << suyo;
            EXPECT_TRUE(tiene(r.errores, "es un archivo de la planta")) << suyo << r.errores;
        }
    }
    EXPECT_EQ(planta.leer("DRIVER_KV2200_Config.ini"), antes);
    EXPECT_EQ(planta.leer("sis_config.ini"), ajustes);
    for (const char* que : {"--exportar", "--evidencia"}) {
        planta.escribir("salida", "de antes");
        EXPECT_EQ(correr({"--carpeta", planta.ruta(), que, planta.ruta() + "/salida"}).codigo, 0);
        EXPECT_EQ(planta.leer("salida.anterior"), "de antes");
        // A link stays one.
        planta.escribir("real", "de antes");
        const std::string enlace = planta.ruta() + "/enlace" + que;
        std::filesystem::create_symlink("real", enlace);
        EXPECT_EQ(correr({"--carpeta", planta.ruta(), que, enlace}).codigo, 0);
        EXPECT_TRUE(std::filesystem::is_symlink(enlace)) << que;
        EXPECT_EQ(planta.leer("real.anterior"), "de antes");
        EXPECT_NE(planta.leer("real"), "de antes");
        // Nor does a file take the place of what is none.
        const std::string tubo = planta.ruta() + "/tubo" + que;
        ASSERT_EQ(mkfifo(tubo.c_str(), 0600), 0);
        const std::string alTubo = planta.ruta() + "/al_tubo" + que;
        std::filesystem::create_symlink(tubo, alTubo);
        for (const std::string& donde : {tubo, alTubo}) {
            const Resultado r = correr({"--carpeta", planta.ruta(), que, donde});
            EXPECT_EQ(r.codigo, 1) << que;
            EXPECT_TRUE(tiene(r.errores, donde + " no es un archivo sino una tubería"))
                << r.errores;
            EXPECT_TRUE(std::filesystem::is_fifo(donde)) << que;
        }
    }
}

TEST(LineaDeOrden, ConOtroProyectoRecargadoSeImportaEnElQueSeDejoYEnElNuevoNo) {
    const Carpeta proyectos;
    const std::string config =
        Configuracion().puerto().estacion(1, "127.0.0.1", 1).bloque(1, "10", "0.5").texto();
    for (const char* nombre : {"a", "b"}) {
        proyectos.escribir(std::string(nombre) + ".qmx", "");
        proyectos.escribir(std::string(nombre) + ".KalmorKV2200", config);
    }
    proyectos.escribir("roto.qmx", "");
    proyectos.escribir("roto.KalmorKV2200", config.substr(0, config.size() / 2));
    const auto en = [&proyectos](const Carpeta& planta, const std::string& nombre) {
        planta.escribir("sis_config.ini",
                        "[PROYECTO_PREDETERMINADO]\r\nRutaProyecto=" + proyectos.ruta() + "/" +
                            nombre + ".qmx\r\n[DRIVER_KV2200]\r\nVER=0\r\n" +
                            "PuertoEscucha=" + std::to_string(puertoLibre()) + "\r\n");
    };
    const Instalacion planta;
    const Carpeta deA, deB;
    en(planta, "a");
    en(deA, "a");
    en(deB, "b");
    const std::string csv = deA.ruta() + "/planta.csv";
    ASSERT_EQ(correr({"--carpeta", deA.ruta(), "--exportar", csv}).codigo, 0);
    const auto importa = [&csv](const Carpeta& aqui) {
        return correr({"--carpeta", aqui.ruta(), "--importar", csv}).codigo == 0;
    };
    Proceso driver(planta.correr());
    EXPECT_NE(driver.lineaCon("lblCantidadDePuntos: 1"), "");
    EXPECT_FALSE(importa(deA));
    EXPECT_TRUE(importa(deB));
    en(planta, "b");
    kill(driver.pid(), SIGHUP);
    EXPECT_NE(driver.lineaCon("lblProyecto: b"), "");
    EXPECT_TRUE(importa(deA));
    EXPECT_FALSE(importa(deB));
    en(planta, "roto");
    kill(driver.pid(), SIGHUP);
    while (!tiene(registroDe(planta), "no se recarga"))
        EXPECT_FALSE(importa(deB)) << "what it serves is what it served";
    EXPECT_FALSE(importa(deB));
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    EXPECT_TRUE(importa(deB));
}

TEST(LineaDeOrden, LoQueNoSePuedeReproducirTerminaCon1) {
    const Carpeta c;
    c.escribir("otra", "nada de eso");
    c.escribir("cortada", "KVGRAB1\n\x7F");
    for (const auto& [nombre, que] : {std::pair{"/no", "no se puede leer"},
                                      {"", "no se puede leer"},
                                      {"/otra", "no es una grabacion"},
                                      {"/cortada", "termina a mitad de una entrada"}}) {
        const Resultado r = correr({"--reproducir", c.ruta() + nombre});
        EXPECT_EQ(r.codigo, 1) << nombre;
        EXPECT_TRUE(tiene(r.errores, que)) << r.errores;
    }
}

TEST(LineaDeOrden, ExplicaLasEntradasDelRegistro) {
    const Resultado r = correr({"--explicar", "KV103"});
    EXPECT_EQ(r.codigo, 0);
    EXPECT_TRUE(tiene(r.salida, "KV103: El programa termina en orden\n  Causa: ")) << r.salida;
    EXPECT_TRUE(tiene(r.salida, "KV103: The program ends in order\n  Cause: ")) << r.salida;
    EXPECT_EQ(correr({"--explicar", "103"}).salida, r.salida);
    EXPECT_EQ(correr({"--explicar", "7"}).codigo, 2);
    const Instalacion planta(Configuracion().puerto().estacion(1, "127.0.0.1", 1).texto());
    Proceso driver(planta.correr());
    EXPECT_NE(driver.lineaCon("lblPuertoServidor"), "");
    EXPECT_EQ(driver.terminar(SIGTERM), 0);
    const std::string log = registroDe(planta);
    EXPECT_TRUE(tiene(log, ", DescError:KV101\r\n")) << log;
    EXPECT_TRUE(log.ends_with(",driver,DRIVER>Fin>en orden, DescError:KV103\r\n")) << log;
}

TEST(LineaDeOrden, ComprobarPruebaLaDireccionYLlegaALasEstaciones) {
    Simulador plc({0}, {"--registro", "01.10=123"}, false);
    const Carpeta c;
    c.escribir("sis_config.ini", "[DRIVER_KV2200]\n");
    c.escribir("DRIVER_KV2200_Config.ini", Configuracion()
                                               .puerto({"1", "3", "30"})
                                               .estacion(1, "127.0.0.1", 1, plc.puerto(0))
                                               .bloque(1, "10", "60")
                                               .texto());
    const std::vector<std::string> orden{"--comprobar", "--alcanzar", "--carpeta", c.ruta()};
    Resultado r = correr(orden);
    EXPECT_EQ(r.codigo, 0) << r.salida;
    EXPECT_TRUE(tiene(r.salida, " ms, registro 10 = 123\n")) << r.salida;
    plc.terminar(SIGTERM);
    r = correr(orden);
    EXPECT_EQ(r.codigo, 1);
    EXPECT_TRUE(tiene(r.salida, ": no se llega a 127.0.0.1:" + plc.puerto(0))) << r.salida;
    // An address that this machine does not have: nobody could come in.
    c.escribir("sis_config.ini", "[DRIVER_KV2200]\nEscucha_Direccion=192.0.2.77\n");
    r = correr({"--comprobar", "--json", "--carpeta", c.ruta()});
    EXPECT_EQ(r.codigo, 2);
    EXPECT_TRUE(tiene(r.salida, "no se puede escuchar en la dirección 192.0.2.77")) << r.salida;
    EXPECT_TRUE(r.salida.starts_with("{") && r.salida.ends_with("\"resultado\":2}\n")) << r.salida;
    EXPECT_EQ(correr({"--alcanzar", "--carpeta", c.ruta()}).codigo, 2); // only with --comprobar
}

} // namespace kv::extremo
