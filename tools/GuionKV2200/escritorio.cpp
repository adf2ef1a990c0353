// SPDX-License-Identifier: Apache-2.0
#include "escritorio.h"

#include "engine/motor.h"
#include "platform/epoll/sistema.h"
#include "recording/discos.h"

#include <chrono>
#include <ctime>
#include <iostream>

void Papel::linea(std::string_view texto) {
    if (!titulo_.empty() && !dicho_) std::cout << '[' << titulo_ << "]\n";
    dicho_ = true;
    std::cout << texto << '\n';
}

std::int64_t Escritorio::monotonicMs() {
    const auto t = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::milliseconds>(t).count();
}

vbscript::LocalTime Escritorio::wallClock() {
    const auto ahora = std::chrono::system_clock::now();
    const auto segundos = std::chrono::floor<std::chrono::seconds>(ahora);
    const std::time_t t = std::chrono::system_clock::to_time_t(segundos);
    std::tm local{};
    localtime_r(&t, &local);
    const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(ahora - segundos).count();
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,       local.tm_hour,
            local.tm_min,         local.tm_sec,     static_cast<int>(ms)};
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
