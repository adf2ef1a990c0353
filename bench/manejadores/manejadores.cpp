// SPDX-License-Identifier: Apache-2.0
// How long anybody waits for the driver's loop, which is never less than its longest handler takes,
// while it does the worst that it can be asked to: a script without an end under a budget of 200
// ms, arrivals of 64 KiB from a client, a synchronisation of 100,000 variables. Stations, client
// and driver share the loop, so their work is in the figures too.
//
//     manejadores [seconds for each of them]

#include "engine/arranque.h"
#include "engine/motor.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/sistema.h"
#include "server/cifrado.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <poll.h>

namespace {

using Reloj = std::chrono::steady_clock;

constexpr int kPuerto = 15'502;
constexpr int kEscucha = 15'334;
constexpr int kConexiones = 4;
constexpr int kEstaciones = 100;
constexpr int kRegistros = 250;
constexpr std::size_t kLlegada = 65'536;

/// All stations of an address: each request is answered at once with the value 0.
class Estaciones final : public kv::OyenteDeZocalo {
  public:
    Estaciones(kv::Bucle& bucle, const std::string& ip) : zocalo_(bucle.crearZocalo(*this, 0)) {
        zocalo_->escuchar(ip, kPuerto);
    }

  private:
    void alPedirConexion(std::size_t /*i*/, std::string_view /*r*/) override { zocalo_->aceptar(); }
    void alLlegarDatos(std::size_t /*i*/, std::span<const std::uint8_t> bytes) override {
        for (; bytes.size() >= 7; bytes = bytes.subspan(7)) {
            std::array<std::uint8_t, 8> r{7, bytes[1], 0, bytes[3], 0, 0, 0, 0};
            r[7] = static_cast<std::uint8_t>(r[1] + r[3]);
            zocalo_->enviar(r);
        }
    }
    std::unique_ptr<kv::Zocalo> zocalo_;
};

class Cliente final : public kv::OyenteDeZocalo {
  public:
    explicit Cliente(kv::Bucle& bucle) : zocalo_(bucle.crearZocalo(*this, 0)) {
        zocalo_->limitarCola(std::size_t{64} << 20);
        zocalo_->conectar("127.0.0.1", kEscucha);
    }
    bool enviar(const std::string& que) {
        return zocalo_->enviar({reinterpret_cast<const std::uint8_t*>(que.data()), que.size()});
    }
    [[nodiscard]] bool tiene(const std::string& que) const {
        return recibido_.find(que) != std::string::npos;
    }
    void olvidar() { recibido_.clear(); }
    [[nodiscard]] bool conectado() const {
        return zocalo_->estado() == kv::EstadoZocalo::Conectado;
    }

  private:
    void alLlegarDatos(std::size_t /*i*/, std::span<const std::uint8_t> b) override {
        recibido_.append(b.begin(), b.end());
        if (recibido_.size() > 4096) recibido_.erase(0, recibido_.size() - 256);
    }
    std::unique_ptr<kv::Zocalo> zocalo_;
    std::string recibido_;
};

std::string configuracion() {
    std::string t = "[CONFIG]\nCANT_PUERTOS=" + std::to_string(kConexiones) + "\n";
    for (int p = 1; p <= kConexiones; ++p) {
        t += "[PUERTO" + std::to_string(p) + "]\nNUMERO=" + std::to_string(p) +
             "\nTIME_OUT=5\nREINTENTOS_MAX=3\nSEG_RECONECCION=30\n";
        for (int e = 0; e < kEstaciones; ++e) {
            const std::string k = "Esclavo" + std::to_string((p - 1) * kEstaciones + e);
            const std::string n = std::to_string(e + 1);
            t += k + "_Numero=" + n + "\n" + k + "_Ip=127.0.0." + std::to_string(p) + "\n" + k +
                 "_Puerto=" + std::to_string(kPuerto) + "\n" + k + "_Indice=" + n + "\n";
        }
        for (int b = 0; b < kEstaciones * kRegistros; ++b) {
            const std::string k = "Bloque" + std::to_string((p - 1) * kEstaciones * kRegistros + b);
            std::array<char, 8> registro{};
            std::snprintf(registro.data(), registro.size(), "%X", b % kRegistros);
            t += k + "_PLC=" + std::to_string(b / kRegistros + 1) + "\n" + k + "_Quantity=1\n" + k +
                 "_StarAdrees=" + registro.data() + "\n" + k + "_ScanTime=20\n" + k +
                 "_ActiveDefault=1\n";
        }
        t += "CantEsclavos=" + std::to_string(kEstaciones) +
             "\nCantBloques=" + std::to_string(kEstaciones * kRegistros) + "\n";
    }
    return t;
}

std::string repetir(const std::string& que) {
    std::string t;
    while (t.size() + que.size() <= kLlegada)
        t += que;
    return t;
}

std::string distintas(const std::string& abre, const std::string& cierra) {
    std::string t;
    for (int i = 0; t.size() < kLlegada - 64; ++i)
        t += abre + "1.1." + std::to_string(i % 80 + 10) + ";" + std::to_string(i) + cierra;
    return t;
}

double procesadorMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

/// The longest that anybody had to wait, and the longest turn with all that it let run, in ms: by
/// the wall's clock, and by what it took of a processor, which other programs on the machine do not
/// lengthen.
struct Vuelta {
    double espera = 0, esperaDeProcesador = 0;
    double vuelta = 0;
};

void decir(const char* que, const char* detalle, Vuelta v) {
    std::printf("%-28s %-30s waits %7.1f ms, of a processor %7.1f ms; turns %7.1f ms\n", que,
                detalle, v.espera, v.esperaDeProcesador, v.vuelta);
    std::fflush(stdout);
}

/// A timer that is due every millisecond: what goes by between two of its ticks is what a station's
/// answer would have waited.
class Sonda {
  public:
    explicit Sonda(kv::Bucle& bucle) : timer_(bucle.crearTemporizador([this] { mirar(); })) {
        timer_->rearmar(1);
    }
    double peorMs = 0, peorDeProcesadorMs = 0;

  private:
    void mirar() {
        const auto ahora = Reloj::now();
        const double procesador = procesadorMs();
        const std::chrono::duration<double, std::milli> pasado = ahora - ultimo_;
        peorMs = std::max(peorMs, pasado.count() - 1);
        peorDeProcesadorMs = std::max(peorDeProcesadorMs, procesador - procesador_);
        ultimo_ = ahora;
        procesador_ = procesador;
    }
    std::unique_ptr<kv::Temporizador> timer_;
    Reloj::time_point ultimo_ = Reloj::now();
    double procesador_ = procesadorMs();
};

/// Turns the loop until `basta`, or for so long.
Vuelta girar(kv::BucleEpoll& bucle, double segundos, const std::function<bool()>& basta) {
    const auto fin = Reloj::now() + std::chrono::duration<double>(segundos);
    Vuelta peor;
    Sonda sonda(bucle);
    while (Reloj::now() < fin && !basta()) {
        pollfd p{bucle.descriptor(), POLLIN, 0};
        poll(&p, 1, 10);
        const auto antes = Reloj::now();
        bucle.atender();
        const std::chrono::duration<double, std::milli> pasado = Reloj::now() - antes;
        peor.vuelta = std::max(peor.vuelta, pasado.count());
    }
    peor.espera = sonda.peorMs;
    peor.esperaDeProcesador = sonda.peorDeProcesadorMs;
    return peor;
}

void escribir(const std::string& ruta, const std::string& contenido) {
    std::ofstream(ruta, std::ios::binary) << contenido;
}

void medir(const std::string& carpeta, double segundos) {
    kv::BucleEpoll bucle;
    kv::ArchivosReales archivos;
    kv::ProcesosReales procesos;
    std::vector<std::unique_ptr<Estaciones>> estaciones;
    for (int p = 1; p <= kConexiones; ++p)
        estaciones.push_back(std::make_unique<Estaciones>(bucle, "127.0.0." + std::to_string(p)));
    kv::Motor motor(bucle, archivos, carpeta);
    kv::Arranque arranque(motor, procesos);
    arranque.arrancar();
    arranque.abrirServidor();
    std::printf("%.0f variables\n", motor.tablas.cantidadDePuntos);
    const auto nunca = [] { return false; };
    decir("polls", "start, 100,000 blocks", girar(bucle, 12, nunca));
    decir("polls", "", girar(bucle, segundos, nunca));
    decir("polls", "all due at once", girar(bucle, 20 - segundos, nunca));

    Cliente cliente(bucle);
    girar(bucle, 2, [&] { return cliente.conectado(); });
    cliente.enviar(
        kv::cifrar(kv::textoDeClave(kv::formatoDeHora(bucle.reloj().ahora())), [] { return 0.5; }));
    const auto sincronizada = [&cliente] { return cliente.tiene("[SINK_FIN]"); };
    decir("synchronisation of 100,000", "first, at the login", girar(bucle, 60, sincronizada));
    cliente.olvidar();
    cliente.enviar("SINCRONIZAR");
    decir("synchronisation of 100,000", "asked for", girar(bucle, 60, sincronizada));

    const std::vector<std::pair<const char*, std::string>> llegadas{
        {"equal writes", repetir("[Write]1.1.10;1[/Write]")},
        {"writes, all different", distintas("[Write]", "[/Write]")},
        {"writes to nobody", repetir("[Write]9.9.9;1[/Write][Write]8.8.8;2[/Write]")},
        {"opening marks", repetir("[Write]")},
        {"nested writes", repetir("[Write][Wri[Write]te]1.1.10;1[/Write]")},
        {"reads, all different", distintas("read;", "FINREAD;")},
        {"reads of what is not there", repetir("read;7.7.7;FINREAD;read;8.8.8;FINREAD;")},
        {"forced levels", repetir("[FORZNIV]1;1[/FORZNIV]") + "[FORZNIV]1;2[/FORZNIV]"},
        {"synchronise, again and again", repetir("SINCRONIZAR")},
        {"brackets", std::string(kLlegada, '[')},
    };
    for (const auto& [nombre, texto] : llegadas) {
        cliente.enviar(texto);
        decir("64 KiB from a client", nombre, girar(bucle, segundos, nunca));
        if (!cliente.conectado()) std::printf("(the client was let go)\n");
    }

    escribir(carpeta + "/DRIVER_KV2200_Config.MDrivScrip", "Do : x = x + 1 : Loop\r\n");
    decir("script", "without an end, budget 200 ms", girar(bucle, segundos + 2, nunca));
}

} // namespace

int main(int argc, char** argv) {
    const double segundos = argc > 1 ? std::atof(argv[1]) : 3;
    std::string carpeta = (std::filesystem::temp_directory_path() / "kvbancoXXXXXX").string();
    if (mkdtemp(carpeta.data()) == nullptr) return 1;
    escribir(carpeta + "/sis_config.ini",
             "[DRIVER_KV2200]\r\nTiempo_Entre_poleo=20\r\nGuion_Tiempo_Maximo_Milisegundos=200\r\n"
             "Base_Tiempo_Solicitar_Conexiones_Milisegundos=100\r\nPuertoEscucha=" +
                 std::to_string(kEscucha) + "\r\n");
    escribir(carpeta + "/DRIVER_KV2200_Config.ini", configuracion());
    medir(carpeta, segundos);
    std::filesystem::remove_all(carpeta);
    return 0;
}
