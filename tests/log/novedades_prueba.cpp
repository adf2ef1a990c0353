// SPDX-License-Identifier: Apache-2.0
// Numbers of the log's entries: what they mean, and how they reach the system's journal.

#include "apoyo/carpeta.h"
#include "log/archivo_log.h"
#include "log/novedades.h"
#include "platform/epoll/diario_real.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace kv {
namespace {

std::string contenidoDe(const std::string& archivo) {
    std::ostringstream todo;
    todo << std::ifstream(archivo).rdbuf();
    return todo.str();
}

/// What stands where the system's journal would listen.
class Oido {
  public:
    explicit Oido(const std::string& ruta) : zocalo_(socket(AF_UNIX, SOCK_DGRAM, 0)) {
        sockaddr_un a{};
        a.sun_family = AF_UNIX;
        ruta.copy(a.sun_path, sizeof a.sun_path - 1);
        EXPECT_EQ(bind(zocalo_, reinterpret_cast<sockaddr*>(&a), sizeof a), 0); // NOLINT
    }
    ~Oido() { close(zocalo_); }
    Oido(const Oido&) = delete;
    Oido& operator=(const Oido&) = delete;
    /// The next datagram; empty when no datagram waits.
    [[nodiscard]] std::string tomar() const {
        std::string d(65536, '\0');
        const ssize_t n = recv(zocalo_, d.data(), d.size(), MSG_DONTWAIT);
        d.resize(n > 0 ? static_cast<std::size_t>(n) : 0);
        return d;
    }

  private:
    int zocalo_;
};

} // namespace

TEST(Novedades, CadaNumeroTieneSuFichaYAlguienLoUsa) {
    const std::string fuentes = std::string(KV_FUENTES) + "/src/";
    const std::string tipos = contenidoDe(fuentes + "log/novedades.h");
    std::string todas;
    for (const auto& f : std::filesystem::recursive_directory_iterator(fuentes)) {
        if (f.path().extension() == ".cpp") todas += contenidoDe(f.path().string());
    }
    static const std::regex numero("    (\\w+) = ([1-9][0-9]*),");
    std::set<int> hallados;
    for (std::sregex_iterator i(tipos.begin(), tipos.end(), numero), fin; i != fin; ++i) {
        const int n = std::stoi((*i)[2]);
        hallados.insert(n);
        const FichaDeNovedad* f = fichaDe(static_cast<Novedad>(n));
        ASSERT_NE(f, nullptr) << (*i)[1];
        for (const Explicacion& e : {f->es, f->en}) {
            for (const std::string_view t : {e.titulo, e.causa, e.mirar, e.hacer})
                EXPECT_FALSE(t.empty()) << n;
        }
        EXPECT_NE(todas.find("Novedad::" + (*i)[1].str()), std::string::npos)
            << (*i)[1] << " is never said";
        EXPECT_EQ(novedadDe((*i)[2].str()), static_cast<Novedad>(n));
        EXPECT_EQ(novedadDe("kv" + (*i)[2].str()), static_cast<Novedad>(n));
    }
    EXPECT_EQ(hallados.size(), novedades().size()) << "each once";
    EXPECT_TRUE(std::is_sorted(novedades().begin(), novedades().end(),
                               [](const auto& a, const auto& b) { return a.cual < b.cual; }));
    for (const char* ninguna : {"", "KV", "0", "9999999999", "2011", "x"})
        EXPECT_EQ(novedadDe(ninguna), std::nullopt) << ninguna;
}

TEST(Novedades, ElDocumentoEsElDeLaTabla) {
    const std::string nueva = std::string(KV_BIN) + "/../novedades.md";
    std::ofstream(nueva) << referenciaDeNovedades();
    EXPECT_EQ(contenidoDe(std::string(KV_FUENTES) + "/docs/novedades.md"), referenciaDeNovedades())
        << "copy " << nueva << " over it";
}

TEST(Novedades, ElNumeroVaAlFinalYElDiarioTieneLosCampos) {
    const Carpeta carpeta;
    const std::string ruta = carpeta.ruta() + "/diario";
    BucleSimulado bucle;
    ArchivosSimulados archivos;
    ArchivoLog log(archivos, bucle.reloj(), "/kv", "P");
    DiarioReal diario(ruta);
    log.avisarA(&diario);
    log.escribirLog("DRIVER", "Antes", "nadie escucha"); // and nobody is disturbed
    const Oido oido(ruta);
    EntradaDeLog e{"DRIVER", "Enlace", "10.0.0.1:502: se perdio,\nrechazada"};
    e.novedad = Novedad::EnlaceAbajo;
    e.conexion = "10.0.0.1:502";
    e.motivo = "dos\nrenglones";
    log.escribir(e);
    EXPECT_EQ(oido.tomar(), "MESSAGE\n" + std::string("\x2a\0\0\0\0\0\0\0", 8) +
                                "Enlace: 10.0.0.1:502: se perdio,\nrechazada\nPRIORITY=4\n"
                                "SYSLOG_IDENTIFIER=P\nKV_NUMERO=202\nKV_CONEXION=10.0.0.1:502\n"
                                "KV_MOTIVO\n" +
                                std::string("\x0d\0\0\0\0\0\0\0", 8) +
                                "dos\nrenglones\nKV_CARPETA=/kv\n");
    log.escribirLog("DRIVER", "TimerDeBloque", "1.1.10", "falla");
    EXPECT_TRUE(oido.tomar().starts_with("MESSAGE=TimerDeBloque: 1.1.10 - falla\nPRIORITY=3\n"));
    for (int i = 0; i < 200; ++i)
        log.escribirLog("DRIVER", "Muchas", "x");
    int cuantas = 0;
    while (!oido.tomar().empty())
        ++cuantas;
    EXPECT_LE(cuantas, ArchivoLog::kPorSegundo) << "as bounded as the file";
    std::string escrito;
    for (const std::string& nombre : archivos.en("/kv"))
        escrito += archivos.contenido(nombre);
    EXPECT_NE(escrito.find("DRIVER>Enlace>10.0.0.1:502: se perdio, rechazada, DescError:KV202\r\n"),
              std::string::npos)
        << escrito;
    EXPECT_NE(escrito.find("DRIVER>TimerDeBloque>1.1.10, DescError:falla\r\n"), std::string::npos);
}

TEST(Novedades, LoQueElDiscoNoTomaSeCuentaCuandoVuelveATomar) {
    BucleSimulado bucle;
    ArchivosSimulados archivos;
    ArchivoLog log(archivos, bucle.reloj(), "/kv", "P");
    const auto anotar = [&](int cuantas) {
        for (int i = 0; i < cuantas; ++i)
            log.escribirLog("DRIVER", "Una", "x");
    };
    const auto todo = [&] {
        std::string escrito;
        for (const std::string& nombre : archivos.en("/kv"))
            escrito += archivos.contenido(nombre) + "|";
        return escrito;
    };
    const auto veces = [&](const std::string& parte) {
        int n = 0;
        const std::string t = todo();
        for (auto i = t.find(parte); i != std::string::npos; i = t.find(parte, i + 1))
            ++n;
        return n;
    };
    anotar(1);
    const std::string antes = todo();
    archivos.negarEscrituras(true);
    anotar(ArchivoLog::kPorSegundo + 9);
    bucle.avanzar(1000);
    log.alPasarElTiempo();
    EXPECT_TRUE(log.pierde());
    EXPECT_EQ(todo(), antes);
    archivos.negarEscrituras(false);
    bucle.avanzar(6000); // and nobody has anything to say
    log.alPasarElTiempo();
    EXPECT_FALSE(log.pierde());
    EXPECT_EQ(veces(">109 entradas sin anotar: el disco no las tomo, DescError:KV132\r\n"), 2)
        << todo();
    archivos.negarEscrituras(true);
    anotar(3);
    archivos.negarEscrituras(false);
    anotar(1);
    log.alPasarElTiempo();
    EXPECT_EQ(veces(">3 entradas sin anotar: "), 2) << todo();
    EXPECT_EQ(veces("DRIVER>Una>"), 4) << "and the next one";
}

} // namespace kv
