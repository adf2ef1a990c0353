// SPDX-License-Identifier: Apache-2.0
#include "vbscript/lector_de_guiones.h"

#include "vbscript/engine.h"
#include "vbscript/entorno.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace vbscript {

namespace {

std::string recortar(const std::string& t) {
    const std::size_t a = t.find_first_not_of(" \t\r");
    if (a == std::string::npos) return {};
    return t.substr(a, t.find_last_not_of(" \t\r") - a + 1);
}

std::vector<std::string> partir(const std::string& t) {
    std::vector<std::string> partes;
    std::size_t desde = 0;
    for (;;) {
        const std::size_t barra = t.find(" | ", desde);
        partes.push_back(
            recortar(t.substr(desde, barra == std::string::npos ? barra : barra - desde)));
        if (barra == std::string::npos) return partes;
        desde = barra + 3;
    }
}

std::string reemplazar(std::string t, const std::string& que, const std::string& por) {
    for (std::size_t k = t.find(que); k != std::string::npos; k = t.find(que, k + por.size())) {
        t.replace(k, que.size(), por);
    }
    return t;
}

std::string resumen(const ScriptError& e) {
    const char* clase = e.budget ? "budget " : e.compileTime ? "compile " : "run ";
    std::string r = clase + std::to_string(e.number);
    if (!e.budget) r += " " + std::to_string(e.line) + ":" + std::to_string(e.column);
    if (!e.ranText.empty()) {
        r += " in " + std::to_string(e.ranLine) + ":" + std::to_string(e.ranColumn) + " " +
             e.ranText;
    }
    return r;
}

} // namespace

Guion::Guion(const std::string& ruta) {
    std::ifstream in(ruta, std::ios::binary);
    std::string linea;
    if (!in) quejas_.push_back("no se puede leer " + ruta);
    while (std::getline(in, linea))
        leerLinea(linea);
}

void Guion::leerEncabezado(const std::string& linea) {
    std::istringstream in(linea.substr(2));
    std::string clave;
    in >> clave;
    if (clave == "locale")
        in >> idioma_;
    else if (clave == "times")
        in >> veces_;
    else if (clave == "snippets")
        fragmentos_ = true;
    else
        fin_ = recortar(linea.substr(2));
}

// "Echo x '= y" becomes "Echo 12, x", so that the answer finds its line; "x ' error 13" runs with
// the error caught.
void Guion::leerLinea(std::string linea) {
    const std::size_t n = ++lineas_;
    if (linea.rfind("'!", 0) == 0) leerEncabezado(linea);
    if (fragmentos_) {
        crudas_.emplace_back(n, linea);
        return;
    }
    const std::size_t igual = linea.rfind("'= ");
    const std::size_t eco = linea.find("Echo ");
    const std::size_t error = linea.rfind("' error ");
    if (igual != std::string::npos && eco != std::string::npos) {
        esperados_[n].textos = partir(linea.substr(igual + 3));
        linea = linea.substr(0, eco) + "Echo " + std::to_string(n) + ", " +
                linea.substr(eco + 5, igual - eco - 5);
    } else if (error != std::string::npos && recortar(linea)[0] != '\'') {
        esperados_[n].textos = partir(linea.substr(error + 8));
        linea = "On Error Resume Next : Err.Clear : " + linea.substr(0, error) + " : Echo " +
                std::to_string(n) + ", Err.Number : On Error GoTo 0";
    }
    texto_ += linea + "\n";
}

void Guion::comparar(std::size_t linea, const std::string& obtenido) {
    Esperado& e = esperados_[linea];
    const bool hay = e.vistos < e.textos.size();
    const std::string esperado = hay ? e.textos[e.vistos] : "(nada)";
    ++e.vistos;
    if (hay && esperado == recortar(obtenido)) return;
    quejas_.push_back("linea " + std::to_string(linea) + ": se esperaba [" + esperado +
                      "], salio [" + obtenido + "]");
}

void Guion::correr() {
    Entorno entorno;
    entorno.carpeta =
        (std::filesystem::temp_directory_path() / ("kv_guiones_" + std::to_string(getpid())))
            .string();
    const auto borrar = [](const std::string* carpeta) { std::filesystem::remove_all(*carpeta); };
    const std::unique_ptr<const std::string, decltype(borrar)> alFinal(&entorno.carpeta, borrar);
    std::filesystem::remove_all(entorno.carpeta);
    std::filesystem::create_directories(entorno.carpeta);
    Engine motor(entorno);
    motor.setLocale(idioma_);
    auto eco = std::make_shared<HostTable>();
    eco->method("", [this](std::span<const Value> args, HostValues& valores) {
        std::string linea;
        for (std::size_t k = 1; k < args.size(); ++k) {
            if (k > 1) linea += ' ';
            linea += args[k].is(Type::Null) ? "Null" : valores.text(args[k]);
        }
        comparar(static_cast<std::size_t>(valores.number(args[0])), linea);
        return Value();
    });
    motor.addObject("Echo", eco);
    for (int k = 0; k < veces_; ++k) {
        motor.clearError();
        const bool bien = motor.addCode(texto_);
        const std::string fin = bien ? "" : resumen(motor.error());
        if (fin != fin_) {
            quejas_.push_back("fin: se esperaba [" + fin_ + "], salio [" + fin + "] " +
                              motor.error().description);
        }
    }
}

void Guion::correrFragmento(std::size_t linea, const std::string& codigo,
                            const std::string& esperado) {
    Entorno entorno;
    Engine motor(entorno);
    const bool bien = motor.check(reemplazar(codigo, "\\n", "\n"));
    const ScriptError& e = motor.error();
    std::string obtenido = bien ? "ok" : std::to_string(e.number);
    if (!bien && esperado.find(':') != std::string::npos) {
        obtenido += " " + std::to_string(e.line) + ":" + std::to_string(e.column);
    }
    if (obtenido == esperado) return;
    quejas_.push_back("linea " + std::to_string(linea) + ": se esperaba [" + esperado +
                      "], salio [" + obtenido + "]");
}

std::vector<std::string> Guion::ejecutar() {
    for (const auto& [n, linea] : crudas_) {
        const std::size_t marca = linea.rfind("' error ");
        const std::size_t bien = linea.rfind("' ok");
        if (linea.empty() || linea[0] == '\'') continue;
        if (marca == std::string::npos && bien == std::string::npos) {
            quejas_.push_back("linea " + std::to_string(n) + ": sin lo esperado");
        } else if (marca != std::string::npos) {
            correrFragmento(n, linea.substr(0, marca), recortar(linea.substr(marca + 8)));
        } else {
            correrFragmento(n, linea.substr(0, bien), "ok");
        }
    }
    if (!fragmentos_) correr();
    for (const auto& [n, e] : esperados_) {
        if (e.vistos < e.textos.size()) {
            quejas_.push_back("linea " + std::to_string(n) + ": falta [" + e.textos[e.vistos] +
                              "]");
        }
    }
    return quejas_;
}

} // namespace vbscript
