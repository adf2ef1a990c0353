// SPDX-License-Identifier: Apache-2.0
#include "escritorio.h"

#include "engine/motor.h"
#include "platform/epoll/bucle_epoll.h"
#include "platform/epoll/sistema.h"
#include "recording/discos.h"

#include <iostream>

void Papel::linea(std::string_view texto) {
    if (!titulo_.empty() && !dicho_) std::cout << '[' << titulo_ << "]\n";
    dicho_ = true;
    std::cout << texto << '\n';
}

std::int64_t Escritorio::monotonicMs() { return kv::RelojReal().monotonicoMs(); }

vbscript::LocalTime Escritorio::wallClock() {
    const kv::FechaHora f = kv::RelojReal().ahora();
    return {f.anio, f.mes, f.dia, f.hora, f.minuto, f.segundo, f.milisegundo};
}

int Escritorio::messageBox(std::string_view texto, int /*botones*/, std::string_view /*titulo*/) {
    papel_.linea("MsgBox: " + std::string(texto));
    return 1;
}

std::string Escritorio::inputBox(std::string_view texto, std::string_view /*titulo*/,
                                 std::string_view propuesto) {
    papel_.linea("InputBox: " + std::string(texto));
    return std::string(propuesto);
}

std::shared_ptr<vbscript::Disk> Escritorio::disk() {
    kv::ArchivosReales archivos;
    kv::Ajustes ajustes(archivos, carpeta_);
    ajustes.noEscribir();
    return kv::discoDeCarpeta(kv::carpetaDelGuion(ajustes, archivos));
}
