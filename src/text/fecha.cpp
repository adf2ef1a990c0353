// SPDX-License-Identifier: Apache-2.0
#include "text/fecha.h"

namespace kv {
namespace {

void agregar(std::string& s, int numero, int digitos) {
    int divisor = 1;
    for (int i = 1; i < digitos; ++i)
        divisor *= 10;
    for (; divisor > 0; divisor /= 10)
        s += static_cast<char>('0' + numero / divisor % 10);
}

void agregarHora(std::string& s, const FechaHora& f) {
    agregar(s, f.hora, 2);
    s += ':';
    agregar(s, f.minuto, 2);
    s += ':';
    agregar(s, f.segundo, 2);
}

void agregarDia(std::string& s, const FechaHora& f, char separador) {
    agregar(s, f.dia, 2);
    s += separador;
    agregar(s, f.mes, 2);
    s += separador;
    agregar(s, f.anio, 4);
}

} // namespace

std::string formatoDeSello(const FechaHora& f) {
    std::string s;
    s.reserve(19);
    agregarHora(s, f);
    s += ' ';
    agregarDia(s, f, '-');
    return s;
}

std::string formatoGeneral(const FechaHora& f) {
    std::string s;
    agregarDia(s, f, '/');
    s += ' ';
    agregarHora(s, f);
    return s;
}

std::string formatoDeDia(const FechaHora& f) {
    std::string s;
    agregar(s, f.anio % 100, 2);
    agregar(s, f.mes, 2);
    agregar(s, f.dia, 2);
    return s;
}

std::string formatoDeHora(const FechaHora& f) {
    std::string s;
    agregar(s, f.anio, 4);
    agregar(s, f.mes, 2);
    agregar(s, f.dia, 2);
    agregar(s, f.hora, 2);
    return s;
}

FechaHora fechaDesdeSegundos(long long segundos, int milisegundo) {
    long long dias = segundos / 86400;
    long long resto = segundos % 86400;
    if (resto < 0) {
        resto += 86400;
        --dias;
    }
    // Years are counted from March, so that the leap day is the last of its year.
    const long long z = dias + 719468;
    const long long era = (z >= 0 ? z : z - 146096) / 146097;
    const long long diaDeEra = z - era * 146097;
    const long long anioDeEra =
        (diaDeEra - diaDeEra / 1460 + diaDeEra / 36524 - diaDeEra / 146096) / 365;
    const long long diaDeAnio = diaDeEra - (365 * anioDeEra + anioDeEra / 4 - anioDeEra / 100);
    const long long mesDesdeMarzo = (5 * diaDeAnio + 2) / 153;
    const int mes = static_cast<int>(mesDesdeMarzo < 10 ? mesDesdeMarzo + 3 : mesDesdeMarzo - 9);
    FechaHora f;
    f.anio = static_cast<int>(anioDeEra + era * 400 + (mes <= 2 ? 1 : 0));
    f.mes = mes;
    f.dia = static_cast<int>(diaDeAnio - (153 * mesDesdeMarzo + 2) / 5 + 1);
    f.hora = static_cast<int>(resto / 3600);
    f.minuto = static_cast<int>(resto / 60 % 60);
    f.segundo = static_cast<int>(resto % 60);
    f.milisegundo = milisegundo;
    return f;
}

long long diasDesdeFecha(long long anio, int mes, int dia) {
    if (mes <= 2) --anio;
    const long long era = (anio >= 0 ? anio : anio - 399) / 400;
    const long long anioDeEra = anio - era * 400;
    const long long diaDeAnio = (153 * (mes + (mes > 2 ? -3 : 9)) + 2) / 5 + dia - 1;
    return era * 146097 + anioDeEra * 365 + anioDeEra / 4 - anioDeEra / 100 + diaDeAnio - 719468;
}

long long segundosDesdeFecha(const FechaHora& f) {
    return diasDesdeFecha(f.anio, f.mes, f.dia) * 86400 + f.hora * 3600LL + f.minuto * 60LL +
           f.segundo;
}

std::string textoDeDuracion(long long ms) {
    constexpr long long kSegundo = 1000, kMinuto = 60 * kSegundo, kHora = 60 * kMinuto,
                        kDia = 24 * kHora;
    const auto dos = [ms](long long grande, const char* suNombre, long long chica,
                          const char* nombreDeChica) {
        std::string s = std::to_string(ms / grande) + suNombre;
        if (ms % grande / chica != 0)
            s += ' ' + std::to_string(ms % grande / chica) + nombreDeChica;
        return s;
    };
    if (ms < 10 * kSegundo)
        return std::to_string(ms / kSegundo) + ',' + std::to_string(ms % kSegundo / 100) + " s";
    if (ms < kMinuto) return std::to_string(ms / kSegundo) + " s";
    if (ms < kHora) return dos(kMinuto, " min", kSegundo, " s");
    if (ms < kDia) return dos(kHora, " h", kMinuto, " min");
    return dos(kDia, " d", kHora, " h");
}

std::int64_t empaquetar(const FechaHora& f) {
    std::int64_t n = f.anio;
    n = n * 16 + f.mes;
    n = n * 32 + f.dia;
    n = n * 32 + f.hora;
    n = n * 64 + f.minuto;
    n = n * 64 + f.segundo;
    return n * 1024 + f.milisegundo;
}

FechaHora desempaquetar(std::int64_t instante) {
    const auto tomar = [&instante](std::int64_t base) {
        const auto resto = static_cast<int>(instante % base);
        instante /= base;
        return resto;
    };
    FechaHora f;
    f.milisegundo = tomar(1024);
    f.segundo = tomar(64);
    f.minuto = tomar(64);
    f.hora = tomar(32);
    f.dia = tomar(32);
    f.mes = tomar(16);
    f.anio = static_cast<int>(instante);
    return f;
}

} // namespace kv
