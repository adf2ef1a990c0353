// SPDX-License-Identifier: Apache-2.0
// A driver that was recorded does the same again, line by line, with nothing of its plant at hand.

#include "grabado/apoyo.h"

#include "apoyo/carpeta.h"
#include "apoyo/configuracion.h"
#include "apoyo/estaciones.h"
#include "apoyo/proceso.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"
#include "recording/grabador.h"
#include "server/cifrado.h"

#include <gtest/gtest.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <sys/resource.h>
#include <sys/stat.h>

namespace kv {
namespace {

class Cliente final : public ExtremoSimulado {
  public:
    void alRecibir(IdEnlace /*e*/, std::span<const std::uint8_t> /*b*/) override {}
};

class Mudo final : public OyenteDeZocalo {
  public:
    void alLlegarDatos(std::size_t /*indice*/, std::span<const std::uint8_t> /*b*/) override {}
};

constexpr const char* kGuion = "veces = veces + 1\r\n"
                               "If veces Mod 20 = 0 Then mw.writeMW \"MW_1_1_10\", veces\r\n"
                               "If veces Mod 33 = 0 Then x = 1 / 0\r\n"
                               "If MW_1_1_11 > 5 And Timer > 0 Then Label.Caption = CStr(Rnd)\r\n"
                               "On Error Resume Next\r\n"
                               "Set f = CreateObject(\"Scripting.FileSystemObject\")\r\n"
                               "Set t = f.OpenTextFile(\"visto.txt\", 8, True) : e = Err.Number\r\n"
                               "t.WriteLine veces : t.Close\r\n"
                               "r = Len(f.OpenTextFile(\"visto.txt\").ReadAll)\r\n"
                               "r = r & \" \" & f.OpenTextFile(\"receta.txt\").ReadAll\r\n"
                               "Label.Caption = r & \" \" & e\r\n";

std::string dosEstaciones() {
    return Configuracion()
        .puerto({"1", "1", "2"})
        .estacion(1, "10.0.0.1", 1)
        .estacion(2, "dos.planta", 2)
        .bloque(1, "10", "1")
        .bloque(1, "11", "1")
        .bloque(2, "12", "2")
        .texto();
}

/// More than is done in one turn of the loop.
std::string milEscrituras() {
    std::string s = "Read;1.1.10;FinRead;";
    for (int i = 0; i < 1000; ++i)
        s += "[Write]1.2.13;" + std::to_string(i) + "[/Write]";
    return s;
}

// Of so many damages to a recording one is tried: the sanitizers take fifteen times as long.
#ifdef KV_CON_SANITIZADORES
constexpr std::size_t kDeCada = 5;
#else
constexpr std::size_t kDeCada = 1;
#endif

/// Some minutes of a plant in which a good deal happens; what was shown, and the last values.
std::pair<std::string, std::string> vivir(const std::string& cinta, std::uint64_t maximo) {
    BucleSimulado bucle;
    ArchivosSimulados disco;
    disco.poner("/kv/DRIVER_KV2200_Config.ini", dosEstaciones());
    disco.poner("/kv/DRIVER_KV2200_Config.MDrivScrip", kGuion);
    Estaciones una(bucle.red(), bucle.reloj());
    Estaciones otra(bucle.red(), bucle.reloj());
    bucle.red().atender("10.0.0.1", 502, una);
    bucle.red().atender("10.0.0.2", 502, otra);
    bucle.red().nombrar("dos.planta", "10.0.0.2");
    bucle.red().demorarNombres(300'000);
    int n = 0;
    una.demora = [&n](const Solicitud&) {
        ++n;
        return n % 7 == 0 ? std::optional<double>() : std::optional<double>(n % 5 * 300.0);
    };
    CintaEscrita escrita(maximo);
    EXPECT_TRUE(escrita.abrir(cinta));
    escrita.texto("prueba");
    Grabador grabador(bucle, escrita);
    ArchivosGrabados archivos(disco, grabador);
    Driver d(grabador, archivos);
    const Carpeta guion;
    RespuestasDeDisco respuestas;
    d.motor.scriptControl.fijarDisco([&] {
        return std::make_shared<DiscoGrabado>(discoDeCarpeta(guion.ruta()), grabador, respuestas);
    });
    grabador.empezarTramo();
    d.arrancar();
    grabador.terminarTramo();
    // A window asks all the time, and what it asks is not recorded.
    (void)grabador.reloj().monotonicoUs();
    (void)archivos.huella("/kv/otro.ini");
    Cliente cliente;
    bucle.avanzar(15'000);
    guion.escribir("receta.txt", "harina");
    una.mandar(respuestaCon(77));
    const IdEnlace enlace = bucle.red().conectarCliente(1334, cliente, "10.0.0.9:50000");
    bucle.avanzar(2000);
    const std::string clave =
        cifrar(textoDeClave(formatoDeHora(bucle.reloj().ahora())), [] { return 0.3; });
    for (const std::string& m : {clave, std::string("SINCRONIZAR[Write]1.2.12;55[/Write]"),
                                 std::string("Read;1.1.99;Fin"), milEscrituras()}) {
        bucle.red().enviar(enlace, {reinterpret_cast<const std::uint8_t*>(m.data()), m.size()});
        bucle.avanzar(1500);
    }
    const std::string orden = textoDeOrden({Orden::Clase::Escribir, "1.1.11", 321});
    grabador.empezarOrden(orden);
    d.motor.operador.hacer(*ordenDeTexto(orden));
    grabador.terminarTramo();
    guion.escribir("receta.txt", "agua");
    bucle.avanzar(3000);
    otra.cortar();
    bucle.red().nombrar("dos.planta", ""); // nobody knows it for a while
    bucle.relojSimulado().ponerFecha(1'800'000'000);
    bucle.avanzar(10'000);
    std::filesystem::remove_all(guion.ruta());
    bucle.avanzar(10'000);
    disco.poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\nVER=1\r\nPuertoEscucha=1400\r\n");
    disco.poner("/kv/DRIVER_KV2200_Config.MDrivScrip", "no es un guion (");
    disco.negarEscrituras(true);
    bucle.red().cortar(enlace);
    bucle.red().nombrar("dos.planta", "10.0.0.2");
    bucle.avanzar(60'000);
    return {d.testigo.todo, d.valores()};
}

} // namespace

TEST(Grabado, LoMismoOtraVezLineaPorLinea) {
    const Carpeta carpeta;
    const auto vivido = vivir(carpeta.ruta() + "/vuelo", 1U << 30);
    EXPECT_NE(vivido.first.find("REINTENTO"), std::string::npos);
    EXPECT_NE(vivido.first.find("*Guion*"), std::string::npos);
    for (const char* leido : {" harina 0\n", " agua 0\n", " 76\n"})
        EXPECT_NE(vivido.first.find(leido), std::string::npos) << leido;
    EXPECT_NE(vivido.second.find(" 55 OK "), std::string::npos) << vivido.second;
    EXPECT_NE(vivido.second.find(" 321 OK "), std::string::npos) << vivido.second;
    bool entera = false;
    const auto repetido = repetir(carpeta.leer("vuelo"), &entera);
    EXPECT_EQ(repetido.first, vivido.first);
    EXPECT_EQ(repetido.second, vivido.second);
    EXPECT_TRUE(entera);
}

TEST(Grabado, OtroGuionSePruebaEnElEscritorioConLosValoresDeEntonces) {
    const Carpeta carpeta;
    std::size_t corridas = 0;
    std::size_t buenas = 0;
    {
        CintaEscrita escrita(1U << 30);
        ASSERT_TRUE(escrita.abrir(carpeta.ruta() + "/vuelo"));
        escrita.texto("prueba").texto("/kv");
        BucleSimulado red;
        ArchivosSimulados disco;
        disco.poner("/kv/DRIVER_KV2200_Config.ini", dosEstaciones());
        disco.poner("/kv/DRIVER_KV2200_Config.MDrivScrip",
                    "mw.READBLOQ \"MW_1_1_11_2\" : n = 1 / 0");
        Estaciones una(red.red(), red.reloj());
        red.red().atender("10.0.0.1", 502, una);
        Grabador grabador(red, escrita);
        ArchivosGrabados archivos(disco, grabador);
        Driver d(grabador, archivos);
        d.motor.guion.alCorrer([&] {
            ++corridas;
            buenas += d.motor.tablas.bloques[1].estado == 6 ? 1 : 0;
        });
        grabador.empezarTramo();
        d.arrancar();
        grabador.terminarTramo();
        red.avanzar(20'000);
        una.cortar();
        red.avanzar(20'000);
    }
    ASSERT_GT(buenas, 5U);
    ASSERT_GT(corridas, buenas) << "register 11 is read second";
    carpeta.escribir("g.vbs", "filas = filas + 1\n"
                              "If MW_1_1_11_STATUS = 6 And MW_1_1_11 > 0 Then buenas = buenas + 1\n"
                              "bit = MW_1_1_11_2 : registro = MW_1_1_11\n"
                              "If MW_1_2_12_STATUS = 13 Then malas = malas + 1\n");
    Proceso p({std::string(KV_BIN) + "/GuionKV2200", "--valores", carpeta.ruta() + "/vuelo",
               carpeta.ruta() + "/g.vbs"});
    const std::string salida = p.resto();
    EXPECT_EQ(p.terminar(), 0) << p.errores();
    for (const auto& [nombre, valor] : {std::pair{"filas", corridas},
                                        {"buenas", buenas},
                                        {"malas", corridas},
                                        {"registro", std::size_t{117}},
                                        {"bit", std::size_t{1}}})
        EXPECT_NE(salida.find("  " + std::string(nombre) + " = " + std::to_string(valor) + "\n"),
                  std::string::npos)
            << nombre << " " << salida;
}

TEST(Grabado, LoQueFaltabaConfirmarSeRepite) {
    // What a program that asks for it got, at every tick.
    const auto preguntar = [](Bucle& bucle, auto arrancar, auto correr) {
        Mudo mudo;
        std::string todo;
        const auto z = bucle.crearZocalo(mudo, 0);
        const auto t = bucle.crearTemporizador([&] {
            const std::size_t bytes = z->bytesSinConfirmar();
            todo += std::to_string(bytes) + (z->estado() == EstadoZocalo::Conectado ? " " : "! ");
            if (bytes > 8) z->abortar();
            if (z->estado() != EstadoZocalo::Conectado) z->conectar("10.0.0.1", 502);
            z->enviar(std::array<std::uint8_t, 3>{});
        });
        arrancar();
        z->fijarPaciencia(1000);
        t->rearmar(100);
        correr();
        return todo;
    };
    const Carpeta carpeta;
    std::string vivido;
    {
        CintaEscrita escrita(1U << 20);
        ASSERT_TRUE(escrita.abrir(carpeta.ruta() + "/vuelo"));
        escrita.texto("prueba");
        BucleSimulado red;
        Estaciones estacion(red.red(), red.reloj());
        red.red().atender("10.0.0.1", 502, estacion);
        Grabador grabador(red, escrita);
        vivido = preguntar(
            grabador, [&] { grabador.empezarTramo(); },
            [&] {
                grabador.terminarTramo();
                red.avanzar(1000);
                red.red().interrumpir(estacion.enlace());
                red.avanzar(1000);
            });
    }
    EXPECT_NE(vivido.find("0 0 0 3 6 9 0 0 "), std::string::npos) << vivido;
    CintaLeida leida(carpeta.leer("vuelo"));
    Reproductor bucle(leida);
    EXPECT_EQ(preguntar(
                  bucle, [&] { bucle.empezar(); }, [&] { EXPECT_TRUE(bucle.correr()); }),
              vivido);
}

TEST(Grabado, UnaCintaLlenaOCortadaSeReproduceHastaDondeLlega) {
    const Carpeta carpeta;
    const auto vivido = vivir(carpeta.ruta() + "/vuelo", 40'000);
    const std::string cinta = carpeta.leer("vuelo");
    EXPECT_LE(cinta.size(), 40'000U);
    const auto hasta = repetir(cinta);
    EXPECT_GT(hasta.first.size(), 1000U);
    EXPECT_TRUE(vivido.first.starts_with(hasta.first));
    std::size_t enteras = 0;
    for (std::size_t largo = cinta.size() - 300; largo < cinta.size(); largo += kDeCada) {
        bool entera = false;
        const auto r = repetir(cinta.substr(0, largo), &entera);
        enteras += entera ? 1U : 0U;
        EXPECT_TRUE(vivido.first.starts_with(r.first));
    }
    EXPECT_GT(enteras, 0U);
    EXPECT_LT(enteras, 300U);
}

TEST(Grabado, SoloLaLeeSuDuenoPorqueTraeLaClaveDelCliente) {
    const Carpeta carpeta;
    carpeta.escribir("vuelo", "one of before, which everybody could read");
    CintaEscrita cinta(1U << 30);
    ASSERT_TRUE(cinta.abrir(carpeta.ruta() + "/vuelo"));
    EXPECT_EQ(std::filesystem::status(carpeta.ruta() + "/vuelo").permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    EXPECT_FALSE(cinta.abrir(carpeta.ruta() + "/no/hay"));
    EXPECT_FALSE(cinta.abrir("/dev/null")) << "no file";
    ASSERT_EQ(mkfifo((carpeta.ruta() + "/tubo").c_str(), 0600), 0);
    EXPECT_FALSE(cinta.abrir(carpeta.ruta() + "/tubo")) << "nor is a pipe, and nobody waits for it";
}

TEST(Grabado, UnDiscoLlenoSeSabe) {
    const Carpeta carpeta;
    CintaEscrita cinta(1U << 30);
    ASSERT_TRUE(cinta.abrir(carpeta.ruta() + "/vuelo"));
    cinta.entrada(Entrada::FinDeVuelta).cerrarEntrada();
    EXPECT_FALSE(cinta.llena());
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit antes{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &antes), 0);
    const rlimit nada{0, antes.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &nada), 0);
    cinta.volcar();
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &antes), 0);
    EXPECT_TRUE(cinta.llena() && cinta.sinDisco());
}

TEST(Grabado, NadaAnidaMasQueElDriver) {
    const Carpeta carpeta;
    CintaEscrita escrita(1U << 30);
    ASSERT_TRUE(escrita.abrir(carpeta.ruta() + "/vuelo"));
    escrita.texto("prueba").conSigno(0).cerrarEntrada();
    for (int i = 0; i < 200'000; ++i) {
        escrita.entrada(Entrada::Tic).numero(0).numero(0).cerrarEntrada();
        escrita.entrada(Entrada::Pendientes).numero(1).cerrarEntrada();
    }
    escrita.volcar();
    CintaLeida leida(carpeta.leer("vuelo"));
    Reproductor bucle(leida);
    const auto t = bucle.crearTemporizador([&bucle] { bucle.dejarCorrerPendientes(); });
    t->rearmar(1);
    bucle.empezar();
    EXPECT_THROW((void)bucle.correr(), CintaMala);
}

TEST(Grabado, OtraCosaQueUnaGrabacionSeDice) {
    const Carpeta carpeta;
    (void)vivir(carpeta.ruta() + "/vuelo", 1U << 30);
    const std::string cinta = carpeta.leer("vuelo");
    EXPECT_THROW(repetir("no es"), CintaMala);
    EXPECT_THROW(repetir(std::string(kMarcaDeCinta)), CintaMala);
    // Damaged anywhere it ends, with a message or with what the damaged bytes say.
    for (std::size_t i = kMarcaDeCinta.size(); i < cinta.size(); i += 101 * kDeCada) {
        std::string mala = cinta;
        mala[i] = static_cast<char>(mala[i] ^ 0x55);
        try {
            (void)repetir(std::move(mala));
        } catch (const CintaMala&) {
        }
    }
}

} // namespace kv
