// SPDX-License-Identifier: Apache-2.0
// What a synchronisation of a large plant costs, beside formatting and sending the same bytes
// gathered from an array, to a client that reads everything in a process of its own. The figures
// that matter are the ratio, and how late another timer of the loop became meanwhile.
//
//     sincronismo [BLOCKS]

#include "engine/motor.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/sistema.h"
#include "server/servidor.h"

#include <algorithm>
#include <arpa/inet.h>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace kv::banco {
namespace {

constexpr int kVeces = 7;
constexpr int kReposoMs = 900; // a plant has lived a while before a client asks for everything
constexpr std::uint32_t kPuerto = 21334;

double procesadorMs() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

double mediana(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

class SinOrdenes final : public OrdenesDelCliente {
  public:
    void escribirDireccion(std::string_view, double, std::string_view) override {}
    void rechazarEscritura(std::string_view /*d*/, double /*v*/, std::string_view /*o*/,
                           std::string_view /*m*/) override {}
    void forzarBloque_porNivel_NVeces(double, double, std::string_view) override {}
    void forzarPoleo(const std::string&) override {}
};

/// Reads everything that is sent at the port, one link after the other, in a process of its own:
/// one that was begun before there is any memory that it would share.
class Lector {
  public:
    explicit Lector(std::uint32_t puerto) {
        hijo_ = fork();
        if (hijo_ == 0) leer(puerto);
    }
    ~Lector() {
        kill(hijo_, SIGKILL);
        waitpid(hijo_, nullptr, 0);
    }
    Lector(const Lector&) = delete;
    Lector& operator=(const Lector&) = delete;

  private:
    [[noreturn]] static void leer(std::uint32_t puerto) {
        sockaddr_in direccion{};
        direccion.sin_family = AF_INET;
        direccion.sin_port = htons(static_cast<std::uint16_t>(puerto));
        direccion.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        std::vector<char> memoria(1U << 20);
        for (;; poll(nullptr, 0, 20)) {
            const int d = socket(AF_INET, SOCK_STREAM, 0);
            if (connect(d, reinterpret_cast<sockaddr*>(&direccion), sizeof direccion) == 0) {
                while (read(d, memoria.data(), memoria.size()) > 0) {
                }
            }
            close(d);
        }
    }
    pid_t hijo_ = -1;
};

void correr(BucleEpoll& bucle, std::int64_t ms) {
    const auto fin = bucle.crearTemporizador([&bucle] { bucle.detener(); });
    fin->rearmar(ms);
    bucle.correr();
}

/// The loop until everything that was sent has left it.
void vaciar(BucleEpoll& bucle, const Zocalo& zocalo) {
    do
        correr(bucle, 5);
    while (zocalo.enCola() > 0);
}

struct Registro {
    std::string clave;
    double valor;
    double estado;
};

/// The floor: one array, one buffer, sent whole.
class Piso final : private OyenteDeZocalo {
  public:
    double medir(const std::vector<Registro>& registros) {
        zocalo_->escuchar("127.0.0.1", kPuerto);
        while (zocalo_->estado() != EstadoZocalo::Conectado)
            correr(bucle_, 10);
        std::vector<double> ms;
        for (int i = 0; i < kVeces; ++i) {
            correr(bucle_, kReposoMs);
            const double antes = procesadorMs();
            std::string bytes;
            for (const Registro& r : registros) {
                abrirSobre(bytes, {});
                agregarRegistro(bytes, r.clave, r.valor, r.estado, {});
                cerrarSobre(bytes, {});
            }
            zocalo_->enviar({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
            vaciar(bucle_, *zocalo_);
            ms.push_back(procesadorMs() - antes);
        }
        return mediana(ms);
    }

  private:
    void alLlegarDatos(std::size_t /*i*/, std::span<const std::uint8_t> /*bytes*/) override {}
    void alPedirConexion(std::size_t /*i*/, std::string_view /*remoto*/) override {
        zocalo_->aceptar();
        zocalo_->limitarCola(std::size_t{1} << 30);
    }
    BucleEpoll bucle_;
    std::unique_ptr<Zocalo> zocalo_ = bucle_.crearZocalo(*this, 0);
};

struct Medida {
    double ms;
    double atrasoMs;
};

/// The server, asked for one synchronisation after another.
Medida medirServidor(const std::vector<Registro>& registros, const std::string& carpeta) {
    BucleEpoll bucle;
    ArchivosReales archivos;
    Motor motor(bucle, archivos, carpeta);
    motor.ajustes.escribirConfiguracion("PuertoEscucha", std::to_string(kPuerto));
    for (const Registro& r : registros) {
        BloqueLectura b;
        b.clave = r.clave;
        b.valor = r.valor;
        b.estado = r.estado;
        motor.tablas.bloques.agregar(std::move(b));
    }
    SinOrdenes ordenes;
    std::vector<double> ms;
    double atraso = 0;
    for (int i = 0; i < kVeces; ++i) {
        // A server each time: the first synchronisation needs no asking.
        FrmServerTCP servidor(bucle, motor.tablas, motor.ajustes, motor.vista, motor.sucesos,
                              motor.log, ordenes);
        servidor.Form_Load();
        correr(bucle, kReposoMs);
        std::int64_t ultimo = bucle.reloj().monotonicoUs();
        std::unique_ptr<Temporizador> latido = bucle.crearTemporizador([&] {
            const std::int64_t ahora = bucle.reloj().monotonicoUs();
            atraso = std::max(atraso, static_cast<double>(ahora - ultimo) / 1000 - 1);
            ultimo = ahora;
        });
        latido->rearmar(1);
        const double antes = procesadorMs();
        correr(bucle, 300);
        vaciar(bucle, servidor.zocalo());
        const double con = procesadorMs() - antes;
        const double despues = procesadorMs();
        correr(bucle, 305);
        ms.push_back(con - (procesadorMs() - despues)); // less what the heartbeat costs
    }
    return {mediana(ms), atraso};
}

} // namespace
} // namespace kv::banco

int main(int argc, char** argv) {
    using namespace kv;
    usarPaginasGrandes(argv); // as the driver does
    const int cuantos = argc > 1 ? std::atoi(argv[1]) : 100'000;
    const banco::Lector lector(banco::kPuerto);
    std::vector<banco::Registro> registros;
    for (int i = 0; i < cuantos; ++i)
        registros.push_back(
            {"1." + std::to_string(i / 200 + 1) + "." + std::to_string(40001 + i % 200),
             static_cast<double>(i * 37 % 65536 - 32768), 6});
    std::string carpeta = (std::filesystem::temp_directory_path() / "kvbancoXXXXXX").string();
    if (mkdtemp(carpeta.data()) == nullptr) return 1;
    const double piso = banco::Piso().medir(registros);
    const banco::Medida m = banco::medirServidor(registros, carpeta);
    std::filesystem::remove_all(carpeta);
    std::printf("%d blocks: floor %.2f ms  synchronisation %.2f ms  ratio %.2f  another timer late "
                "by %.2f ms at most\n",
                cuantos, piso, m.ms, m.ms / piso, m.atrasoMs);
    return 0;
}
