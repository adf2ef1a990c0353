// SPDX-License-Identifier: Apache-2.0
#include "fuentes.h"

#include <algorithm>
#include <fstream>
#include <regex>
#include <sstream>

namespace kv::arquitectura {
namespace fs = std::filesystem;
namespace {

std::size_t saltos(std::string_view texto) {
    return static_cast<std::size_t>(std::count(texto.begin(), texto.end(), '\n'));
}

/// End of the literal that begins at `i` with a quote, past its closing one.
std::size_t finDeLiteral(std::string_view t, std::size_t i) {
    const char comilla = t[i];
    if (comilla == '"' && i > 0 && t[i - 1] == 'R') {
        const auto abre = t.find('(', i);
        const std::string cierre = ")" + std::string(t.substr(i + 1, abre - i - 1)) + "\"";
        return std::min(t.find(cierre, abre), t.size() - cierre.size()) + cierre.size();
    }
    for (++i; i < t.size() && t[i] != comilla && t[i] != '\n'; ++i) {
        if (t[i] == '\\') ++i;
    }
    return std::min(i + 1, t.size());
}

/// Whether what stands before a brace is the head of a function.
bool encabeza(std::string_view antes) {
    static const std::regex noFuncion(R"(^\s*(namespace|class|struct|union|enum|extern)\b)");
    return antes.find(')') != std::string_view::npos &&
           !std::regex_search(antes.begin(), antes.end(), noFuncion);
}

std::size_t llaveQueCierra(std::string_view codigo, std::size_t abre) {
    std::size_t profundidad = 0;
    for (std::size_t i = abre; i < codigo.size(); ++i) {
        if (codigo[i] == '{') ++profundidad;
        if (codigo[i] == '}' && --profundidad == 0) return i;
    }
    return codigo.size();
}

std::set<std::string> palabras(const std::string& texto) {
    static const std::regex palabra(R"([\w/]+)");
    return {std::sregex_token_iterator(texto.begin(), texto.end(), palabra),
            std::sregex_token_iterator()};
}

} // namespace

std::size_t Fuente::lineaDe(std::size_t posicion) const {
    return saltos(std::string_view(codigo).substr(0, posicion)) + 1;
}

std::string contenidoDe(const fs::path& ruta) {
    std::ostringstream todo;
    todo << std::ifstream(ruta, std::ios::binary).rdbuf();
    return todo.str();
}

std::vector<std::string> archivosDe(const fs::path& raiz) {
    static const std::set<std::string> ajenos = {
        ".git", "build", ".cache", "__pycache__", "compile_commands.json", "CMakeUserPresets.json"};
    std::vector<std::string> todos;
    for (fs::recursive_directory_iterator i(raiz), fin; i != fin; ++i) {
        if (ajenos.contains(i->path().filename().string())) {
            i.disable_recursion_pending();
        } else if (i->is_regular_file()) {
            todos.push_back(i->path().lexically_relative(raiz).string());
        }
    }
    return todos;
}

std::vector<Fuente> leerFuentes(const fs::path& raiz) {
    static const std::regex fuente(R"((src|tools|tests|bench|fuzz)/.*\.(cpp|h))");
    std::vector<Fuente> todas;
    for (const std::string& r : archivosDe(raiz)) {
        if (!std::regex_match(r, fuente)) continue;
        std::string texto = contenidoDe(raiz / r);
        std::string comentarios;
        std::string codigo = sinComentariosNiLiterales(texto, &comentarios);
        todas.push_back({r, std::move(texto), std::move(codigo), std::move(comentarios)});
    }
    return todas;
}

std::string sinComentariosNiLiterales(std::string_view t, std::string* comentarios) {
    std::string sobrantes;
    std::string& aparte = comentarios != nullptr ? *comentarios : sobrantes;
    std::string codigo;
    for (std::size_t i = 0; i < t.size();) {
        std::size_t fin = i;
        const bool deDigitos = t[i] == '\'' && i > 0 && std::isxdigit(t[i - 1]) != 0;
        if (t.substr(i, 2) == "//") fin = std::min(t.find('\n', i), t.size());
        if (t.substr(i, 2) == "/*") fin = std::min(t.find("*/", i), t.size() - 2) + 2;
        if (t[i] == '"' || (t[i] == '\'' && !deDigitos)) fin = finDeLiteral(t, i);
        if (fin == i) {
            if (t[i] == '\n') aparte += '\n';
            codigo += t[i++];
            continue;
        }
        const std::string lineas(saltos(t.substr(i, fin - i)), '\n');
        codigo += lineas;
        aparte += t[i] == '/' ? t.substr(i, fin - i) : lineas;
        if (t[i] != '/') codigo += t[i];
        i = fin;
    }
    return codigo;
}

std::vector<Funcion> funcionesDe(std::string_view codigo) {
    std::vector<Funcion> todas;
    std::size_t desde = 0;
    for (std::size_t i = 0; i < codigo.size(); ++i) {
        const char c = codigo[i];
        if (c == ';' || c == '}') desde = i + 1;
        if (c != '{') continue;
        if (!encabeza(codigo.substr(desde, i - desde))) {
            desde = i + 1;
            continue;
        }
        const std::size_t cierra = llaveQueCierra(codigo, i);
        const std::size_t sigue = codigo.find_first_not_of(" \n\t", cierra + 1);
        const bool miembro =
            sigue != std::string_view::npos && (codigo[sigue] == ',' || codigo[sigue] == '{');
        // The braces of a member's initialiser: the head goes on.
        if (!miembro) {
            todas.push_back({i, saltos(codigo.substr(i, cierra - i)) + 1});
            desde = cierra + 1;
        }
        i = cierra;
    }
    return todas;
}

std::vector<Fila> leerTabla(const fs::path& documento) {
    std::vector<Fila> tabla;
    std::istringstream lineas(contenidoDe(documento));
    static const std::regex fila(R"(^\|\s*([\w/]+)\s*\|([^|]*)\|\s*$)");
    std::smatch partes;
    bool dentro = false;
    for (std::string l; std::getline(lineas, l);) {
        if (l.starts_with("| folder | may include |")) {
            dentro = true;
        } else if (dentro && std::regex_match(l, partes, fila)) {
            tabla.push_back({partes[1], palabras(partes[2])});
        } else if (dentro && !l.starts_with("|--")) {
            break;
        }
    }
    return tabla;
}

namespace {

/// The first group of every match.
std::set<std::string> hallados(const std::string& codigo, const char* expresion) {
    const std::regex buscada(expresion);
    std::set<std::string> todos;
    for (std::sregex_iterator i(codigo.begin(), codigo.end(), buscada), fin; i != fin; ++i)
        todos.insert((*i)[1]);
    return todos;
}

std::string sinDirectivas(const std::string& codigo) {
    return std::regex_replace(codigo, std::regex(R"(#(\\\n|[^\n])*)"), "");
}

/// What is declared outside of classes and functions, with empty bodies; enumerators that need no
/// name before them stand beside their type.
std::vector<std::string> declaraciones(const std::string& codigo) {
    static const std::regex espacio(R"(\bnamespace\b[\w:\s]*$)");
    static const std::regex enumerado(R"(^\s*enum\s+(?!class\b))");
    std::vector<std::string> todas(1);
    for (std::size_t i = 0; i < codigo.size(); ++i) {
        std::string& esta = todas.back();
        if (codigo[i] == '{' && std::regex_search(esta, espacio)) {
            esta.clear();
        } else if (codigo[i] == '{') {
            const std::size_t cierra = llaveQueCierra(codigo, i);
            const bool deFuncion = encabeza(esta);
            esta += "{}";
            if (std::regex_search(esta, enumerado)) {
                std::istringstream dentro(codigo.substr(i + 1, cierra - i - 1));
                for (std::string uno; std::getline(dentro, uno, ',');)
                    todas.push_back(uno);
            }
            if (deFuncion) todas.emplace_back();
            i = cierra;
        } else if (codigo[i] == ';') {
            todas.emplace_back();
        } else if (codigo[i] != '}') {
            esta += codigo[i];
        }
    }
    return todas;
}

/// The names that a declaration gives; none if it only announces a type.
std::set<std::string> nombresDe(std::string declaracion) {
    static const std::regex sobra(R"(\[\[[^\]]*\]\]|<[^<>]*>|\btemplate\b)");
    static const std::regex anuncio(R"(^\s*(class|struct|union|enum)\b[^{]*$)");
    static const char* const tipo =
        R"(^\s*(?:class|struct|union|enum(?:\s+class)?|using|concept)\s+(\w+))";
    for (std::string antes; antes != declaracion;) {
        antes = declaracion;
        declaracion = std::regex_replace(antes, sobra, "");
    }
    if (std::regex_search(declaracion, anuncio)) return {};
    if (auto suyo = hallados(declaracion, tipo); !suyo.empty()) return suyo;
    const auto parentesis = declaracion.find('(');
    if (declaracion.find('=') < parentesis) return hallados(declaracion, R"((\w+)\s*=)");
    return hallados(declaracion.substr(0, parentesis), R"((\w+)\s*(?:\{\}|\[[^\]]*\])?\s*$)");
}

} // namespace

std::set<std::string> identificadores(const std::string& codigo) {
    return hallados(std::regex_replace(codigo, std::regex(R"(#[ \t]*include[^\n]*)"), ""),
                    R"(\b([A-Za-z_]\w*))");
}

std::set<std::string> declarados(const std::string& codigo) {
    std::set<std::string> todos = hallados(codigo, R"(#[ \t]*define\s+(\w+))");
    for (const std::string& d : declaraciones(sinDirectivas(codigo)))
        todos.merge(nombresDe(d));
    todos.erase("operator");
    todos.erase("static_assert");
    return todos;
}

std::set<std::string> anunciados(const std::string& codigo) {
    return hallados(codigo, R"(\b(?:class|struct)\s+(\w+)\s*;)");
}

} // namespace kv::arquitectura
