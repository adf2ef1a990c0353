// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

namespace kv {

/// A local calendar time, as the wall clock of the plant's workstation shows it.
struct FechaHora {
    int anio = 1970;
    int mes = 1;
    int dia = 1;
    int hora = 0;
    int minuto = 0;
    int segundo = 0;
    int milisegundo = 0;

    friend bool operator==(const FechaHora&, const FechaHora&) = default;
};

/// "HH:mm:ss DD-MM-YYYY", the form of every stamp in traces and lists.
[[nodiscard]] std::string formatoDeSello(const FechaHora& f);
/// "dd/mm/yyyy hh:mm:ss", the general form used in log lines.
[[nodiscard]] std::string formatoGeneral(const FechaHora& f);
/// "yymmdd", the form in the names of daily files.
[[nodiscard]] std::string formatoDeDia(const FechaHora& f);
/// "yyyymmddHH", the form in the client's password.
[[nodiscard]] std::string formatoDeHora(const FechaHora& f);

/// The calendar time of a number of seconds since 1 January 1970, in that same time zone.
[[nodiscard]] FechaHora fechaDesdeSegundos(long long segundos, int milisegundo = 0);
[[nodiscard]] long long segundosDesdeFecha(const FechaHora& f);
/// The days from 1 January 1970 to a date, below 0 before. Any year; `mes` from 1 to 12.
[[nodiscard]] long long diasDesdeFecha(long long anio, int mes, int dia);
/// A duration as people say it: "0,4 s", "12 s", "3 min 20 s", "5 h 2 min", "4 d 3 h".
[[nodiscard]] std::string textoDeDuracion(long long ms);

/// A calendar time as one number, which keeps its order.
[[nodiscard]] std::int64_t empaquetar(const FechaHora& f);
[[nodiscard]] FechaHora desempaquetar(std::int64_t instante);

} // namespace kv
