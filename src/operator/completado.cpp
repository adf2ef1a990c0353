// SPDX-License-Identifier: Apache-2.0
#include "operator/completado.h"

#include "script/miembros.h"
#include "text/texto.h"
#include "vbscript/checking.h"

#include <iterator>
#include <map>

namespace kv {
namespace {

bool esDeNombre(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool empiezaSinCaja(std::string_view texto, std::string_view con) {
    return texto.size() >= con.size() && igualSinCaja(texto.substr(0, con.size()), con);
}

std::string_view nombreAlFinal(std::string_view texto) {
    std::size_t desde = texto.size();
    while (desde > 0 && esDeNombre(texto[desde - 1]))
        --desde;
    return texto.substr(desde);
}

/// Cuts a script into names, going over texts and remarks; knows in which of them it ends.
class Lector {
  public:
    enum class En { Codigo, Texto, Comentario };
    /// `alNombre(name, whether it stands first in its statement)`.
    template <class F>
    En leer(std::string_view guion, F alNombre) {
        En en = En::Codigo;
        bool primero = true;
        for (std::size_t i = 0; i < guion.size();) {
            const char c = guion[i];
            if (c == '\n' || c == '\r') {
                en = En::Codigo;
                primero = true;
            } else if (en == En::Texto) {
                if (c == '"') en = En::Codigo;
            } else if (en == En::Codigo && c == '"') {
                en = En::Texto;
            } else if (en == En::Codigo && c == '\'') {
                en = En::Comentario;
            } else if (en == En::Codigo && esDeNombre(c)) {
                std::size_t fin = i;
                while (fin < guion.size() && esDeNombre(guion[fin]))
                    ++fin;
                const std::string_view nombre = guion.substr(i, fin - i);
                if (primero && igualSinCaja(nombre, "rem")) en = En::Comentario;
                if (en == En::Codigo) alNombre(nombre, primero);
                primero = false;
                i = fin;
                continue;
            } else if (c != ' ' && c != '\t') {
                primero = c == ':';
            }
            ++i;
        }
        return en;
    }
};

/// Names by their small letters, each as it came first.
class Opciones {
  public:
    explicit Opciones(std::string_view empezado) : empezado_(empezado) {}
    void agregar(std::string_view nombre) {
        if (nombre.size() <= empezado_.size() || !empiezaSinCaja(nombre, empezado_)) return;
        todas_.try_emplace(minusculas(nombre), nombre);
        if (todas_.size() > Completado::kMaximo) todas_.erase(std::prev(todas_.end()));
    }
    [[nodiscard]] std::vector<std::string> lista() const {
        std::vector<std::string> salida;
        for (const auto& [clave, nombre] : todas_)
            salida.push_back(nombre);
        return salida;
    }

  private:
    std::string_view empezado_;
    std::map<std::string, std::string> todas_;
};

/// The names of a script, and the object of the With that its end stands in.
struct Nombres {
    std::vector<std::string_view> todos;
    std::vector<std::string_view> with;
    Lector::En fin = Lector::En::Codigo;
};

Nombres leerNombres(std::string_view guion) {
    Nombres n;
    std::string_view anterior;
    bool anteriorPrimero = false;
    n.fin = Lector().leer(guion, [&](std::string_view nombre, bool primero) {
        const bool with = igualSinCaja(anterior, "with");
        if (with && anteriorPrimero) n.with.push_back(nombre);
        if (igualSinCaja(nombre, "with") && igualSinCaja(anterior, "end") && !n.with.empty())
            n.with.pop_back();
        n.todos.push_back(nombre);
        anterior = nombre;
        anteriorPrimero = primero;
    });
    return n;
}

void agregarMiembros(std::string_view objeto, Opciones& opciones) {
    if (igualSinCaja(objeto, "mw")) {
        for (const MiembroDeMw& m : miembrosDeMw())
            opciones.agregar(m.nombre);
    } else if (igualSinCaja(objeto, "label")) {
        for (const std::string_view m : kMiembrosDeLabel)
            opciones.agregar(m);
    }
}

bool parecePalabra(std::string_view nombre) { return !(nombre[0] >= '0' && nombre[0] <= '9'); }

} // namespace

Completado completarGuion(std::string_view antes, std::string_view despues,
                          const DireccionesDePlanta& planta) {
    const std::string_view empezado = nombreAlFinal(antes);
    Completado c{std::string(empezado), {}};
    Opciones opciones(empezado);
    antes.remove_suffix(empezado.size());
    const Nombres nombres = leerNombres(antes);
    if (nombres.fin == Lector::En::Comentario) return c;
    if (nombres.fin == Lector::En::Codigo && antes.ends_with('.')) {
        antes.remove_suffix(1);
        std::string_view objeto = nombreAlFinal(antes);
        if (objeto.empty() && !nombres.with.empty()) objeto = nombres.with.back();
        agregarMiembros(objeto, opciones);
    } else if (!empezado.empty()) {
        for (const std::string& n : planta.nombres())
            opciones.agregar(n);
        if (nombres.fin == Lector::En::Codigo) {
            opciones.agregar("mw");
            opciones.agregar("Label");
            for (const auto& lista : {nombres.todos, leerNombres(despues).todos}) {
                for (const std::string_view n : lista) {
                    if (parecePalabra(n)) opciones.agregar(n);
                }
            }
            for (const std::string& n : vbscript::languageNames())
                opciones.agregar(n);
        }
    }
    c.opciones = opciones.lista();
    return c;
}

} // namespace kv
