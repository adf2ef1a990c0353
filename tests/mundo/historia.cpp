// SPDX-License-Identifier: Apache-2.0
#include "mundo/historia.h"

#include "mundo/azar.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace kv::mundo {
namespace {

constexpr std::array<std::string_view, static_cast<std::size_t>(Acto::Cuantas)> kNombres = {
    "cortar",        "retener",   "medio-abrir",     "rechazar",    "enmudecer", "perder",
    "callar",        "demorar",   "partir",          "danar",       "duplicar",  "trocar",
    "soltar",        "reiniciar", "habituar",        "mentir",      "entrar",    "salir",
    "desaparecer",   "no-leer",   "ignorar",         "sincronizar", "escribir",  "pedir-lectura",
    "pedir-forzado", "hostil",    "otro-cliente",    "guion",       "ajuste",    "sin-ajustes",
    "reloj",         "parada",    "disco-lleno",     "sin-logs",    "forzar",    "nivel",
    "encender",      "scan",      "escribir-a-mano", "bit"};

/// How often each kind comes, in the order of `Acto`; a day of a plant in which much goes wrong.
constexpr std::array<int, kNombres.size()> kPesos = {6, 5, 3, 2, 1,  14, 6,  14, 8, 8, 6,
                                                     4, 8, 3, 2, 3, // links and stations
                                                     8, 2, 1, 2, 2,  4,  12, 6,  3, 8, 4, // client
                                                     6,                                   // script
                                                     5, 1, 3, 3, 2,  2,  // settings, clock, disk
                                                     8, 4, 4, 3, 14, 4}; // operators

class Dibujante {
  public:
    Dibujante(const Plan& plan, Azar& azar) : plan_(plan), azar_(azar) {
        for (const PlanDePuerto& p : plan.puertos)
            masCorto_ = std::min(masCorto_, p.tiempoFueraMs);
    }

    Episodio episodio() {
        Episodio s;
        s.que = que();
        s.a = conexion();
        // Some lines are left alone: what they yield is measured.
        if (s.que < Acto::Entrar && plan_.conexiones[s.a].aparte) s.que = Acto::Sincronizar;
        s.b = static_cast<std::uint32_t>(azar_.enEscala(1, 8));
        s.c = static_cast<std::uint32_t>(azar_.entre(0, 65535));
        s.ms = azar_.enEscala(100, 120'000);
        s.enMedio = azar_.uno(4);
        ajustar(s);
        return s;
    }

  private:
    Acto que() {
        static constexpr int kTodos = [] {
            int suma = 0;
            for (const int p : kPesos)
                suma += p;
            return suma;
        }();
        std::int64_t tiro = azar_.entre(0, kTodos - 1);
        for (std::size_t k = 0; k < kPesos.size(); ++k) {
            if (tiro < kPesos[k]) return static_cast<Acto>(k);
            tiro -= kPesos[k];
        }
        return Acto::Cortar;
    }
    std::uint32_t conexion() {
        return static_cast<std::uint32_t>(
            azar_.entre(0, static_cast<std::int64_t>(plan_.conexiones.size()) - 1));
    }
    std::uint32_t bloque() {
        return static_cast<std::uint32_t>(
            azar_.entre(0, static_cast<std::int64_t>(plan_.bloques.size()) - 1));
    }
    void ajustar(Episodio& s) {
        const Clase clase = plan_.conexiones[s.a].clase;
        switch (s.que) {
        case Acto::Habituar:
            s.b = static_cast<std::uint32_t>(
                azar_.entre(0, static_cast<std::int64_t>(Habito::Cuantos) - 1));
            break;
        case Acto::Danar:
        case Acto::Trocar:
        case Acto::Soltar:
            if (clase != Clase::ConBasura)
                s.que = clase == Clase::Lenta ? Acto::Demorar : Acto::Perder;
            break;
        case Acto::Forzar:
        case Acto::Encender:
        case Acto::Scan:
        case Acto::EscribirAMano:
        case Acto::Bit:
            s.a = bloque();
            s.enMedio = false;
            if (plan_.bloques[s.a].aparte) s.que = Acto::Sincronizar;
            break;
        case Acto::PedirLectura:
            s.b = bloque();
            if (plan_.bloques[s.b].aparte) s.que = Acto::Sincronizar;
            break;
        case Acto::Hostil:
        case Acto::OtroCliente:
        case Acto::Guion:
        case Acto::Ajuste:
            s.b = static_cast<std::uint32_t>(azar_.entre(0, 1000));
            break;
        case Acto::Reloj:
            s.enMedio = false;
            s.ms = (azar_.uno(2) ? 1 : -1) * azar_.enEscala(1000, 40LL * 86'400'000);
            break;
        case Acto::Parada:
            // The network stands still too, and a station's answer must not become late by it.
            s.ms = azar_.enEscala(1, std::min<std::int64_t>(4000, masCorto_ / 10));
            s.enMedio = false;
            break;
        default:
            break;
        }
        if (s.que == Acto::Demorar) {
            s.c = static_cast<std::uint32_t>(
                azar_.enEscala(50, clase == Clase::Caprichosa ? 500 : 2850));
        }
        if (s.que == Acto::Partir) s.c = static_cast<std::uint32_t>(azar_.entre(2, 8));
    }

    const Plan& plan_;
    Azar& azar_;
    std::int64_t masCorto_ = 1'000'000; ///< time-out, ms
};

} // namespace

std::vector<Episodio> historiaDe(const Plan& plan) {
    Azar azar(plan.semilla ^ 0x5851F42D4C957F2DU);
    Dibujante dibujante(plan, azar);
    const std::int64_t cuantos = plan.duracionMs * plan.faltasPorHora / 3'600'000;
    std::vector<Episodio> historia;
    for (std::int64_t k = 0; k < cuantos; ++k) {
        Episodio s = dibujante.episodio();
        s.us = azar.entre(0, plan.duracionMs - 1) * 1000 + azar.entre(0, 999);
        // Trouble likes company.
        if (k > 0 && azar.uno(4)) s.us = historia.back().us + azar.entre(0, 3'000'000);
        if (s.us < plan.duracionMs * 1000) historia.push_back(s);
    }
    std::stable_sort(historia.begin(), historia.end(),
                     [](const Episodio& x, const Episodio& y) { return x.us < y.us; });
    for (std::size_t k = 0; k < historia.size(); ++k)
        historia[k].numero = static_cast<std::uint32_t>(k);
    return historia;
}

std::string textoDe(const Episodio& s) {
    std::string t = std::to_string(s.numero) + ": " + std::to_string(s.us / 1000) + " ms ";
    t += kNombres[static_cast<std::size_t>(s.que)];
    t += " a=" + std::to_string(s.a) + " b=" + std::to_string(s.b) + " c=" + std::to_string(s.c) +
         " ms=" + std::to_string(s.ms);
    return s.enMedio ? t + " inside a handler" : t;
}

} // namespace kv::mundo
