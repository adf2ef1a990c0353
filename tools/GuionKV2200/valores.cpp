// SPDX-License-Identifier: Apache-2.0
#include "valores.h"

#include "archivo.h"
#include "grabacion.h"

#include "config/csv.h"
#include "config/validacion.h"
#include "plant/claves_de_bloque.h"
#include "plant/valor_y_estado.h"
#include "recording/cinta.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <set>
#include <string_view>

namespace {

constexpr std::size_t mayor = std::size_t{1} << 30;

struct Renglon {
    std::size_t numero;
    std::string_view texto;
};

/// The lines that hold values; a line that begins with ' # or ; is a remark. Behind names that are
/// set apart by semicolons a ; is the end of an empty cell, as a tabulator may be.
std::vector<Renglon> renglonesDe(std::string_view contenido) {
    std::vector<Renglon> todos;
    std::size_t numero = 0;
    std::string_view notas = "'#;";
    for (const std::string_view crudo : kv::partir(contenido, '\n')) {
        ++numero;
        const std::string_view t = kv::recortar(crudo);
        if (t.empty() || notas.find(t.front()) != std::string_view::npos) continue;
        if (todos.empty() && t.find(';') != std::string_view::npos &&
            t.find('=') == std::string_view::npos)
            notas.remove_suffix(1);
        todos.push_back({numero, todos.empty() ? t : crudo});
    }
    return todos;
}

class Lectura {
  public:
    explicit Lectura(const std::string& ruta) : ruta_(ruta) {}

    Valores leer(std::string_view contenido) {
        const auto renglones = renglonesDe(contenido);
        if (renglones.empty()) throw ValoresMalos(ruta_ + ": no tiene valores");
        if (renglones.front().texto.find('=') != std::string_view::npos)
            pares(renglones);
        else
            tabla(renglones);
        return std::move(valores_);
    }

  private:
    [[noreturn]] void fallar(const Renglon& r, const std::string& que) const {
        throw ValoresMalos(ruta_ + ":" + std::to_string(r.numero) + ": " + que);
    }

    std::size_t nombre(const Renglon& r, std::string_view texto) {
        std::string n(sinComillas(texto));
        if (n.find('.') != std::string::npos) n = kv::nombreDeScript(n);
        if (!kv::nombrePublicable(n)) fallar(r, "\"" + n + "\" no es un nombre de variable");
        if (!conocidos_.insert(kv::minusculas(n)).second) fallar(r, "\"" + n + "\" está dos veces");
        valores_.nombres.push_back(std::move(n));
        return valores_.nombres.size() - 1;
    }

    double numero(const Renglon& r, std::string_view texto, bool conComa) const {
        const std::string_view t = sinComillas(texto);
        const auto n = conComa ? kv::numeroConComa(t) : kv::numeroDeTexto(t);
        if (!n) fallar(r, "\"" + std::string(t) + "\" no es un número");
        return *n;
    }

    void pares(const std::vector<Renglon>& renglones) {
        auto& fila = valores_.filas.emplace_back();
        for (const Renglon& r : renglones) {
            const auto igual = r.texto.find('=');
            if (igual == std::string_view::npos) fallar(r, "falta el signo =");
            const std::size_t cual = nombre(r, r.texto.substr(0, igual));
            fila.push_back({cual, numero(r, r.texto.substr(igual + 1), true)});
        }
    }

    void tabla(const std::vector<Renglon>& renglones) {
        const Renglon& cabeza = renglones.front();
        const auto tiene = [&](char c) { return cabeza.texto.find(c) != std::string_view::npos; };
        const char separador = tiene(';') ? ';' : tiene('\t') ? '\t' : ',';
        for (const std::string_view t : kv::partir(cabeza.texto, separador))
            nombre(cabeza, t);
        for (std::size_t i = 1; i < renglones.size(); ++i)
            fila(renglones[i], separador);
        if (valores_.filas.empty()) fallar(cabeza, "no hay ninguna fila debajo de los nombres");
    }

    void fila(const Renglon& r, char separador) {
        const auto celdas = kv::partir(r.texto, separador);
        if (celdas.size() > valores_.nombres.size())
            fallar(r, "hay más valores que nombres de columna");
        auto& mia = valores_.filas.emplace_back();
        for (std::size_t k = 0; k < celdas.size(); ++k) {
            if (!sinComillas(celdas[k]).empty())
                mia.push_back({k, numero(r, celdas[k], separador != ',')});
        }
    }

    static std::string_view sinComillas(std::string_view texto) {
        std::string_view t = kv::recortar(texto);
        if (t.size() >= 2 && t.front() == '"' && t.back() == '"')
            t = kv::recortar(t.substr(1, t.size() - 2));
        return t;
    }

    const std::string& ruta_;
    Valores valores_;
    std::set<std::string> conocidos_;
};

/// Scripts ask for the status before they believe a value: whoever gives a value means a good one.
void ponerEstados(Valores& v) {
    std::set<std::string> nombres;
    for (const std::string& n : v.nombres)
        nombres.insert(kv::minusculas(n));
    const std::size_t dados = v.nombres.size();
    for (std::size_t k = 0; k < dados; ++k) {
        const std::string estado = v.nombres[k] + std::string(kv::kSufijoDeEstado);
        const bool registro = kv::pareceNombreDeScript(v.nombres[k]) &&
                              kv::sinEstado(v.nombres[k]).size() == v.nombres[k].size();
        if (!registro || nombres.contains(kv::minusculas(estado))) continue;
        v.nombres.push_back(estado);
        v.filas.front().push_back({v.nombres.size() - 1, kv::kOk});
    }
}

} // namespace

Valores leerValores(const std::string& ruta) {
    auto bytes = leerArchivo(ruta, mayor);
    if (!bytes) throw ValoresMalos(ruta + ": no se puede leer");
    if (bytes->starts_with(kv::kMarcaDeCinta)) return valoresDeGrabacion(ruta, std::move(*bytes));
    if (bytes->starts_with(kv::kMarcaUtf8)) bytes->erase(0, kv::kMarcaUtf8.size());
    Valores v =
        Lectura(ruta).leer(kv::pareceUtf8(*bytes) ? *bytes : kv::utf8DesdeWindows1252(*bytes));
    ponerEstados(v);
    return v;
}
