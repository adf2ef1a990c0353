// SPDX-License-Identifier: Apache-2.0
// The bundle of evidence: of a plant that runs, unpacked and its capture read by the analyser that
// it is for; and of one that stands still.

#include "apoyo/configuracion.h"
#include "extremo/programas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <sys/stat.h>

namespace kv::extremo {
namespace {

struct Resultado {
    int codigo;
    std::string salida, errores;
};

Resultado correr(std::vector<std::string> orden) {
    Proceso p(std::move(orden));
    std::string salida = p.resto();
    const int codigo = p.terminar();
    return {codigo, std::move(salida), p.errores()};
}

std::vector<std::string> renglonesDe(const std::string& texto) {
    std::vector<std::string> todos;
    std::istringstream de(texto);
    for (std::string r; std::getline(de, r);)
        todos.push_back(r);
    return todos;
}

bool tiene(const std::string& texto, std::string_view parte) {
    return texto.find(parte) != std::string::npos;
}

/// Where a bundle is made and unpacked.
class Legajo : public Carpeta {
  public:
    Resultado hacer(const std::string& carpeta, const std::vector<std::string>& mas = {}) {
        std::vector<std::string> orden{kDriver, "--carpeta", carpeta, "--evidencia", archivo()};
        orden.insert(orden.end(), mas.begin(), mas.end());
        Resultado r = correr(std::move(orden));
        if (r.codigo == 0) {
            EXPECT_EQ(correr({"/bin/tar", "-xf", archivo(), "-C", ruta()}).codigo, 0);
        }
        return r;
    }
    [[nodiscard]] std::string archivo() const { return ruta() + "/evidencia.tar"; }
    [[nodiscard]] std::string de(const std::string& nombre) const {
        return leer("evidencia/" + nombre);
    }
    [[nodiscard]] bool hay(const std::string& nombre) const {
        return std::filesystem::exists(ruta() + "/evidencia/" + nombre);
    }
};

/// Of every frame in the capture these fields, as the analyser sees them.
std::string vistoPorElAnalizador(const Legajo& legajo, const std::vector<std::string>& campos) {
    std::vector<std::string> orden{"/usr/bin/tshark",
                                   "-r",
                                   legajo.ruta() + "/evidencia/tramas.pcap",
                                   "-X",
                                   "lua_script:" + legajo.ruta() + "/evidencia/kv2200.lua",
                                   "-o",
                                   "ip.check_checksum:TRUE",
                                   "-o",
                                   "tcp.check_checksum:TRUE",
                                   "-T",
                                   "fields",
                                   "-E",
                                   "separator=;"};
    for (const std::string& c : campos)
        orden.insert(orden.end(), {"-e", c});
    const Resultado r = correr(orden);
    EXPECT_EQ(r.codigo, 0) << r.errores;
    EXPECT_FALSE(tiene(r.errores, "Lua")) << r.errores;
    return r.salida;
}

/// A plant of a station that answers in pieces, one that is silent, and an address where nobody is.
class PlantaAndando {
  public:
    PlantaAndando() {
        en_.agregarAjuste("Puerta_Local_Escriben=" + std::to_string(getuid()));
        while (!tiene(local({"estado"}).salida, "estacionesCalladas: 1") ||
               local({"leer", "1.1.10"}).salida != "1.1.10 1234 OK\n") {
        }
        EXPECT_EQ(local({"escribir", "1.1.10", "-7"}).salida, "confirmada\n");
    }
    Resultado local(std::vector<std::string> orden) {
        orden.insert(orden.begin(), {kCliente, "--local", en_.ruta(), "--espera", "60"});
        return correr(std::move(orden));
    }
    [[nodiscard]] const Instalacion& en() const { return en_; }
    int terminar() { return driver_.terminar(SIGTERM); }

  private:
    int puerto_ = puertoLibre();
    std::string lugar_ = "127.0.0.1:" + std::to_string(puerto_);
    Simulador simulador_{
        {puerto_},
        {"--registro", "01.10=1234", "--fragmentar", "--estacion", lugar_ + "/02,sin-respuesta=1"},
        false};
    Instalacion en_{Configuracion()
                        .puerto({"0.2", "1", "1"})
                        .estacion(1, "127.0.0.1", 1, simulador_.puerto(0))
                        .estacion(2, "127.0.0.1", 2, simulador_.puerto(0))
                        .estacion(3, "127.0.0.1", 3, std::to_string(puertoLibre()))
                        .bloque(1, "10", "0.1")
                        .bloque(2, "20", "0.1")
                        .bloque(3, "30", "1")
                        .texto()};
    Proceso driver_{{en_.programa(), "--sin-ventana", "--grabar", en_.ruta() + "/vuelo"}};
};

} // namespace

TEST(Evidencia, DeUnaPlantaQueAndaTieneTodoYLaCapturaLaLeeElAnalizador) {
    PlantaAndando planta;
    planta.en().escribir("descripciones.csv", "direccion;descripcion;unidad\r\n");
    Legajo legajo;
    const Resultado r = legajo.hacer(planta.en().ruta());
    ASSERT_EQ(r.codigo, 0) << r.errores;
    EXPECT_EQ(r.errores, "");
    struct stat que {};
    ASSERT_EQ(stat(legajo.archivo().c_str(), &que), 0);
    EXPECT_EQ(que.st_mode & 0777U, 0600U) << "events and recordings hold logins";
    for (const char* igual : {"sis_config.ini", "DRIVER_KV2200_Config.ini", "descripciones.csv"})
        EXPECT_EQ(legajo.de(igual), planta.en().leer(igual)) << igual;
    EXPECT_TRUE(tiene(legajo.de("contadores.jsonl"), "\"respuestas\":"));
    EXPECT_TRUE(tiene(legajo.de("bloques.jsonl"), "\"1.2.20\""));
    EXPECT_TRUE(tiene(legajo.de("variables.jsonl"), "\"1.1.10\""));
    EXPECT_TRUE(tiene(legajo.de("sucesos.jsonl"), "\"EnlaceArriba\""));
    std::string registros;
    for (const auto& e :
         std::filesystem::directory_iterator(legajo.ruta() + "/evidencia/LOGS_DRIVER"))
        registros += legajo.de("LOGS_DRIVER/" + e.path().filename().string());
    EXPECT_TRUE(tiene(registros, "Arranque>")) << registros;
    EXPECT_TRUE(tiene(registros, ";-7;confirmada")) << "the record of writes";

    const std::string resumen = legajo.de("resumen.txt");
    EXPECT_LE(renglonesDe(resumen).size(), 20U) << resumen;
    for (const char* parte :
         {"Evidencia: DriverKV2200 ", "Driver: corre desde 20", "Variables: OK 1, BAD 2",
          "Conexiones: 1 arriba de 2", "nadie atiende ese puerto",
          "No contesta: 1.2: ", "Cliente: Esperando", "Captura: ", "Grabación: vuelo, ", "KV101"})
        EXPECT_TRUE(tiene(resumen, parte)) << parte << "\n" << resumen;

    const Resultado otra =
        correr({kDriver, "--reproducir", legajo.ruta() + "/evidencia/grabacion/vuelo"});
    EXPECT_EQ(otra.codigo, 0) << otra.errores;
    EXPECT_TRUE(tiene(otra.salida, "Recepcion <- ")) << "cut off, it plays up to there";
    EXPECT_EQ(planta.terminar(), 0);

    if (!std::filesystem::exists("/usr/bin/tshark")) GTEST_SKIP() << "tshark is not installed";
    const auto tramas = renglonesDe(vistoPorElAnalizador(
        legajo, {"ip.checksum.status", "tcp.checksum.status", "tcp.analysis.flags"}));
    ASSERT_GT(tramas.size(), 10U);
    EXPECT_EQ(std::count(tramas.begin(), tramas.end(), "1;1;"),
              static_cast<std::ptrdiff_t>(tramas.size()))
        << "sums are right, and the numbers of one segment follow on those of the last";
    const std::string vistas =
        vistoPorElAnalizador(legajo, {"kv2200.orden", "kv2200.estacion", "kv2200.registro",
                                      "kv2200.valor", "kv2200.suma_bien"});
    EXPECT_TRUE(tiene(vistas, "0x52;01;0x10;;1\n")) << vistas;
    EXPECT_TRUE(tiene(vistas, "0x57;01;0x10;-7;1\n")) << vistas;
    EXPECT_TRUE(tiene(vistas, ";;;1234;1\n")) << "put together of its pieces";
    EXPECT_TRUE(tiene(vistas, "0x52;02;0x20;;1\n0x52;")) << "nobody answered";
    EXPECT_FALSE(tiene(vistas, ";0\n")) << vistas;
}

TEST(Evidencia, DeUnaPlantaDetenidaLosArchivosConMedidaYSinTocarNada) {
    const Instalacion en(Configuracion().puerto().estacion(1, "127.0.0.1", 1).texto());
    std::filesystem::create_directory(en.ruta() + "/LOGS_DRIVER");
    for (const char dia : {'1', '2', '3', '4', '5', '6'}) {
        const std::string nombre = std::string("LOGS_DRIVER/26110") + dia + " x Escrituras.txt";
        en.escribir(nombre, "");
        std::filesystem::resize_file(en.ruta() + "/" + nombre, std::uintmax_t{9} << 20);
    }
    en.escribir("LOGS_DRIVER/261107 x ArchivoLog.txt",
                "Log: 07/11/2026 10:00:00,x,DRIVER>Arranque>x 1.0, DescError:KV101\r\n"
                "Log: 07/11/2026 11:00:00,x,Guion>Falla>rota, DescError:KV401\r\n"
                "Log: 07/11/2026 12:00:00,x,DRIVER>Fin>en orden, DescError:KV103\r\n");
    const auto habia = en.nombres();
    Legajo legajo;
    const Resultado r = legajo.hacer(en.ruta());
    ASSERT_EQ(r.codigo, 0) << r.errores;
    EXPECT_EQ(en.nombres(), habia);
    EXPECT_TRUE(tiene(r.errores, "no corre un driver")) << r.errores;
    EXPECT_TRUE(tiene(r.errores, "está sólo el final")) << r.errores;
    EXPECT_TRUE(tiene(r.errores, "registros más viejos")) << r.errores;
    EXPECT_LT(std::filesystem::file_size(legajo.archivo()), std::uintmax_t{33} << 20);
    EXPECT_FALSE(legajo.hay("tramas.pcap"));
    EXPECT_EQ(legajo.de("sis_config.ini"), en.leer("sis_config.ini"));
    const std::string resumen = legajo.de("resumen.txt");
    EXPECT_LE(renglonesDe(resumen).size(), 20U) << resumen;
    for (const char* parte : {"Driver: no corre un driver", "Último arranque: Log: 07/11/2026 10",
                              "Error o aviso: Log: 07/11/2026 11"})
        EXPECT_TRUE(tiene(resumen, parte)) << parte << "\n" << resumen;
    EXPECT_FALSE(tiene(resumen, "KV103")) << resumen;

    en.escribir("aparte.grb", "KVGRAB1\n");
    ASSERT_EQ(legajo.hacer(en.ruta(), {"--con-grabacion", en.ruta() + "/aparte.grb"}).codigo, 0);
    EXPECT_EQ(legajo.de("grabacion/aparte.grb"), "KVGRAB1\n");
    const Resultado mala =
        correr({kDriver, "--carpeta", en.ruta(), "--evidencia", legajo.ruta() + "/no/existe.tar"});
    EXPECT_EQ(mala.codigo, 1);
    EXPECT_TRUE(tiene(mala.errores, "no se puede escribir")) << mala.errores;
    Proceso lleno({"/bin/sh", "-c",
                   "ulimit -f 16; trap '' XFSZ; exec \"$0\" --carpeta \"$1\" --evidencia \"$2\"",
                   kDriver, en.ruta(), legajo.ruta() + "/lleno.tar"});
    EXPECT_EQ(lleno.terminar(), 1) << "the disk takes no more";
    EXPECT_EQ(legajo.nombres(),
              (std::set<std::string>{"evidencia", "evidencia.tar", "evidencia.tar.anterior"}))
        << "no half of one is left";
}

} // namespace kv::extremo
