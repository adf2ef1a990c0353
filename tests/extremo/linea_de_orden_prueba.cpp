// The command line of the driver: scripts in plants depend on it.

#include "programas.h"

namespace kv::extremo {
namespace {

struct Resultado {
    int codigo;
    std::string salida;
    std::string errores;
};

Resultado correr(const std::vector<std::string>& argumentos) {
    std::vector<std::string> todos{kDriver};
    todos.insert(todos.end(), argumentos.begin(), argumentos.end());
    Proceso p(todos);
    std::string salida = p.resto();
    const int codigo = p.terminar();
    return {codigo, salida, p.errores()};
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
    EXPECT_EQ(bien.salida, sin.salida) << "no script is no problem, and a good one neither";
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
}

TEST(LineaDeOrden, VersionYAyuda) {
    const Resultado version = correr({"--version"});
    EXPECT_EQ(version.codigo, 0);
    EXPECT_TRUE(version.salida.starts_with("DriverKV2200 ")) << version.salida;
    const Resultado ayuda = correr({"--help"});
    EXPECT_EQ(ayuda.codigo, 0);
    for (const char* que : {"Uso: DriverKV2200", "--carpeta DIR", "--sin-ventana", "--traza",
                            "--comprobar", "--version", "Muestra esta ayuda"})
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

} // namespace kv::extremo
