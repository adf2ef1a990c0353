// SPDX-License-Identifier: Apache-2.0
#include "window/trends/exportacion.h"

#include "text/numeros.h"
#include "window/controls/control.h"

#include <QDateTime>
#include <QTimeZone>

#include <algorithm>
#include <vector>

namespace kv {

QString csvDe(const RegistroDeTendencias& registro, std::int64_t desdeMs, std::int64_t hastaMs,
              const FechaHora& hora) {
    std::vector<std::int64_t> instantes;
    for (const Serie& s : registro.series()) {
        if (s.en(desdeMs)) instantes.push_back(desdeMs);
        for (const Muestra& m : s.muestras) {
            if (m.ms > desdeMs && m.ms <= hastaMs) instantes.push_back(m.ms);
        }
    }
    std::sort(instantes.begin(), instantes.end());
    instantes.erase(std::unique(instantes.begin(), instantes.end()), instantes.end());
    // A calendar without changes of the clock: what is added up are hours that went by.
    const QDateTime hasta(QDate(hora.anio, hora.mes, hora.dia),
                          QTime(hora.hora, hora.minuto, hora.segundo, hora.milisegundo),
                          QTimeZone::utc());
    QString csv = "Hora";
    for (const Serie& s : registro.series())
        csv += ';' + enQt(s.direccion) + ';' + enQt(s.direccion) + " estado";
    csv += "\r\n";
    for (const std::int64_t ms : instantes) {
        csv += hasta.addMSecs(ms - hastaMs).toString("dd/MM/yyyy HH:mm:ss,zzz");
        for (const Serie& s : registro.series()) {
            const auto m = s.en(ms);
            csv +=
                m ? ';' + enQt(textoDeNumero(m->valor)).replace('.', ',') + (m->ok ? ";OK" : ";BAD")
                  : QString(";;");
        }
        csv += "\r\n";
    }
    return csv;
}

} // namespace kv
