// SPDX-License-Identifier: Apache-2.0
// What taking over a changed configuration costs, and for how long it keeps the loop from all else:
// 100,000 blocks on 400 stations, of which the first half answers and the other cannot be reached,
// on the simulated network. Printed for each change are the processor's time for the whole and the
// longest single handler in it, those of the polling beside it among them.
//
//     recargas [blocks]

#include "engine/arranque.h"
#include "engine/motor.h"
#include "platform/epoll/sistema.h"
#include "platform/simulated/archivos_simulados.h"
#include "platform/simulated/bucle_simulado.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>

namespace kv::banco {
namespace {

constexpr int kEstaciones = 400;
constexpr const char* kArchivo = "/kv/DRIVER_KV2200_Config.ini";

/// The processor's time: what others do on the machine does not count for the driver.
double ahoraMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) * 1e3 + static_cast<double>(t.tv_nsec) / 1e6;
}

class Estacion final : public ExtremoSimulado {
  public:
    explicit Estacion(RedSimulada& red) : red_(red) {}
    void alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) override {
        for (; bytes.size() >= 7; bytes = bytes.subspan(7)) {
            std::array<std::uint8_t, 8> r{7, bytes[1], 0, bytes[3], 0, 0, 0, 0};
            r[7] = static_cast<std::uint8_t>(r[1] + r[3]);
            red_.enviar(enlace, r, 1000);
        }
    }

  private:
    RedSimulada& red_;
};

std::string ip(int estacion) {
    return "10.0." + std::to_string(estacion / 200) + "." + std::to_string(estacion % 200 + 1);
}

/// `salto`: only every so many-eth block is there.
std::string planta(int bloques, int salto, const char* scan) {
    std::string t = "[CONFIG]\r\nCANT_PUERTOS=1\r\n[PUERTO1]\r\nNUMERO=1\r\nTIME_OUT=5\r\n";
    const auto clave = [&t](const char* que, int n, const char* sufijo, const std::string& valor) {
        t.append(que).append(std::to_string(n)).append(sufijo).append("=").append(valor);
        t += "\r\n";
    };
    t += "CantEsclavos=" + std::to_string(kEstaciones) + "\r\n";
    for (int e = 0; e < kEstaciones; ++e) {
        clave("Esclavo", e, "_Numero", std::to_string(e + 1));
        clave("Esclavo", e, "_Ip", ip(e));
        clave("Esclavo", e, "_Puerto", "502");
        clave("Esclavo", e, "_Indice", std::to_string(e % 99 + 1));
    }
    t += "CantBloques=" + std::to_string(bloques / salto) + "\r\n";
    for (int b = 0; b < bloques / salto; ++b) {
        std::array<char, 16> registro{};
        std::snprintf(registro.data(), registro.size(), "%02X", b * salto / kEstaciones);
        clave("Bloque", b, "_Bloque", "B" + std::to_string(b));
        clave("Bloque", b, "_PLC", std::to_string(b * salto % kEstaciones + 1));
        clave("Bloque", b, "_Quantity", "1");
        clave("Bloque", b, "_StarAdrees", registro.data());
        clave("Bloque", b, "_ScanTime", scan);
        clave("Bloque", b, "_Nivel", "1");
        clave("Bloque", b, "_Numero", std::to_string(b));
        clave("Bloque", b, "_ActiveDefault", "1");
    }
    return t;
}

class Banco {
  public:
    explicit Banco(int bloques) : bloques_(bloques), estacion_(bucle_.red()) {
        for (int e = 0; e < kEstaciones / 2; ++e)
            bucle_.red().atender(ip(e), 502, estacion_);
        archivos_.poner(kArchivo, planta(bloques, 1, "60"));
        arranque_.arrancar();
        bucle_.avanzar(30'000);
        bucle_.alTerminarCadaSuceso([this] { anotar(); });
    }

    void medir(const char* que, std::string archivo) {
        archivos_.poner(kArchivo, std::move(archivo));
        peorMs_ = sumaMs_ = 0;
        desdeMs_ = ahoraMs();
        motor_.operador.recargar();
        anotar();
        bucle_.avanzar(5'000);
        std::printf("%-28s longest %6.1f ms  together %6.0f ms\n", que, peorMs_, sumaMs_);
    }
    [[nodiscard]] std::string configuracion(int salto, const char* scan) const {
        return planta(bloques_, salto, scan);
    }

  private:
    void anotar() {
        const double ahora = ahoraMs();
        const double ms = ahora - desdeMs_;
        peorMs_ = std::max(peorMs_, ms);
        sumaMs_ += ms;
        desdeMs_ = ahora;
    }

    int bloques_;
    BucleSimulado bucle_;
    ArchivosSimulados archivos_;
    ProcesosSimulados procesos_;
    Motor motor_{bucle_, archivos_, "/kv"};
    Arranque arranque_{motor_, procesos_};
    Estacion estacion_;
    double peorMs_ = 0;
    double sumaMs_ = 0;
    double desdeMs_ = 0;
};

} // namespace
} // namespace kv::banco

int main(int argc, char** argv) {
    using namespace kv::banco;
    kv::usarPaginasGrandes(argv); // as the driver does
    Banco banco(argc > 1 ? std::max(1, std::atoi(argv[1])) : 100'000);
    for (int vuelta = 0; vuelta < 3; ++vuelta) {
        banco.medir("nothing changed", banco.configuracion(1, "60"));
        banco.medir("half of the blocks gone", banco.configuracion(2, "60"));
        banco.medir("half with another scan", banco.configuracion(2, "61"));
        banco.medir("all back", banco.configuracion(1, "60"));
        banco.medir("refused", banco.configuracion(1, "abc"));
    }
    return 0;
}
