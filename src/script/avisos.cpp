// SPDX-License-Identifier: Apache-2.0
#include "script/avisos.h"

#include "plant/claves_de_bloque.h"
#include "script/objetos.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"
#include "vbscript/checking.h"

#include <algorithm>
#include <tuple>

namespace kv {
namespace {

using vbscript::LiteralUse;
using vbscript::Warning;

/// What a plant can have: its register is a number.
bool partir(std::string_view direccion, DireccionPartida& partes) {
    return partirDireccion(direccion, partes) && hexadecimal(partes.registro);
}

/// The address that a literal names on its own, without a member that takes it: only what is
/// written as a variable's name is one for certain.
bool pareceNombre(std::string_view texto) {
    DireccionPartida partes;
    return pareceNombreDeScript(texto) && partir(direccionDeNombre(sinEstado(texto)), partes);
}

class Avisos {
  public:
    explicit Avisos(const LugarDelGuion& lugar) : lugar_(lugar) {}

    std::vector<AvisoDeGuion> de(std::string_view texto) {
        const vbscript::Findings todo = vbscript::lookOver(texto, conocido());
        for (const LiteralUse& l : todo.literals) {
            const MiembroDeMw* m = miembro(l);
            if (m != nullptr && m->nombra == Nombra::Estacion) pedir(l.text);
        }
        for (const Warning& w : todo.warnings)
            avisar(w);
        for (const LiteralUse& l : todo.literals) {
            if (avisos_.size() >= 2 * vbscript::mostWarnings) break;
            if (lugar_.planta != nullptr) mirarDireccion(l);
        }
        std::sort(avisos_.begin(), avisos_.end(), [](const auto& a, const auto& b) {
            return std::tie(a.linea, a.columna) < std::tie(b.linea, b.columna);
        });
        return std::move(avisos_);
    }

  private:
    [[nodiscard]] vbscript::Known conocido() const {
        vbscript::Known k;
        if (lugar_.planta != nullptr) k.names = lugar_.planta->nombres();
        k.also = [this](std::string_view nombre) {
            if (lugar_.planta == nullptr) return pareceNombreDeScript(nombre);
            return lugar_.planta->publica(nombre);
        };
        k.objects.push_back({"mw", {}});
        for (const MiembroDeMw& m : miembrosDeMw())
            k.objects.back().members.emplace_back(m.nombre);
        k.objects.push_back({"Label", {}});
        for (const std::string_view m : kMiembrosDeLabel)
            k.objects.back().members.emplace_back(m);
        for (const auto& o : lugar_.objetos)
            k.objects.push_back({o.nombre, o.miembros});
        return k;
    }

    [[nodiscard]] static const MiembroDeMw* miembro(const LiteralUse& l) {
        return l.object == "mw" ? miembroDeMw(l.member) : nullptr;
    }

    /// A forced read makes what it names, where there is a station for it.
    void pedir(std::string_view texto) {
        DireccionPartida p;
        const std::string direccion = direccionDeNombre(texto);
        if (lugar_.planta == nullptr || !partir(direccion, p)) return;
        if (!lugar_.planta->sePuedePedir(p.puerto, p.plc, p.registro)) return;
        pedidas_.agregarRegistro(p.puerto, p.plc, p.registro);
    }

    void decir(int linea, int columna, std::string texto, std::string enIngles) {
        avisos_.push_back({linea, columna, std::move(texto), std::move(enIngles)});
    }

    void avisar(const Warning& w) {
        const bool hay = !w.nearest.empty();
        const std::string quiza = hay ? "; ¿" + w.nearest + "?" : "";
        const std::string perhaps = hay ? "; " + w.nearest + "?" : "";
        switch (w.kind) {
        case Warning::Kind::NeverAssigned:
            if (pedidas_.publica(w.name)) return;
            return decir(w.line, w.column,
                         "nada da valor a '" + w.name + "', ni el guion ni la planta" + quiza,
                         "nothing gives '" + w.name + "' a value, neither script nor plant" +
                             perhaps);
        case Warning::Kind::UnknownMember:
            return decir(w.line, w.column, w.object + " no tiene '" + w.name + "'" + quiza,
                         w.object + " has no '" + w.name + "'" + perhaps);
        case Warning::Kind::DeclaredTwice: {
            const std::string linea = std::to_string(w.firstLine);
            return decir(w.line, w.column,
                         "'" + w.name + "' ya está declarado en la línea " + linea,
                         "'" + w.name + "' is declared on line " + linea + " already");
        }
        case Warning::Kind::Unreachable:
            return decir(w.line, w.column, "nunca se llega aquí: lo de antes sale con Exit",
                         "nothing comes to here: an Exit stands before it");
        }
    }

    void mirarDireccion(const LiteralUse& l) {
        const MiembroDeMw* m = miembro(l);
        const Nombra nombra = m != nullptr           ? m->nombra
                              : pareceNombre(l.text) ? Nombra::Registro
                                                     : Nombra::Nada;
        const std::string_view nombre = m != nullptr ? l.text : sinEstado(l.text);
        if (nombra == Nombra::Nada || estaEnLaPlanta(nombre, nombra)) return;
        decir(l.line, l.column, "la configuración no tiene la dirección '" + l.text + "'",
              "the configuration does not have the address '" + l.text + "'");
    }

    [[nodiscard]] bool estaEnLaPlanta(std::string_view texto, Nombra nombra) const {
        const DireccionesDePlanta& planta = *lugar_.planta;
        const std::string direccion = direccionDeNombre(texto);
        if (nombra == Nombra::Clave) return planta.hayClave(direccion);
        DireccionPartida p;
        if (!partir(direccion, p)) return false;
        if (nombra == Nombra::Estacion) return planta.sePuedePedir(p.puerto, p.plc, p.registro);
        return planta.hayRegistro(p.puerto, p.plc, p.registro) ||
               pedidas_.hayRegistro(p.puerto, p.plc, p.registro);
    }

    const LugarDelGuion& lugar_;
    DireccionesDePlanta pedidas_; ///< what the script itself makes
    std::vector<AvisoDeGuion> avisos_;
};

} // namespace

std::vector<AvisoDeGuion> avisosDeGuion(std::string_view texto, const LugarDelGuion& lugar) {
    return Avisos(lugar).de(texto);
}

std::optional<AvisoDeGuion> avisoDeUtf8(std::string_view bytes) {
    if (!pareceUtf8(bytes)) return std::nullopt;
    const auto antes = bytes.substr(
        0, static_cast<std::size_t>(std::ranges::find_if(bytes, [](char c) { return c & 0x80; }) -
                                    bytes.begin()));
    const auto salto = antes.rfind('\n'); // on the first line npos, and one more is 0
    return AvisoDeGuion{static_cast<int>(std::ranges::count(antes, '\n')) + 1,
                        static_cast<int>(antes.size() - (salto + 1)) + 1,
                        "el archivo parece guardado como UTF-8 y debe ser Windows-1252",
                        "the file seems to be saved as UTF-8, and must be Windows-1252"};
}

} // namespace kv
