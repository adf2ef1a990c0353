// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kv::arquitectura {

/// A source file: its path from the root of the tree, and its text, also without comments and with
/// empty literals, and the comments alone; each line for line.
struct Fuente {
    std::string ruta;
    std::string texto;
    std::string codigo;
    std::string comentarios;
    [[nodiscard]] std::size_t lineaDe(std::size_t posicion) const;
};

/// All files of the tree, from its root, but for what is built and what a developer keeps beside.
[[nodiscard]] std::vector<std::string> archivosDe(const std::filesystem::path& raiz);

[[nodiscard]] std::string contenidoDe(const std::filesystem::path& ruta);

/// All .cpp and .h files of the tree.
[[nodiscard]] std::vector<Fuente> leerFuentes(const std::filesystem::path& raiz);

/// `comentarios`, where given, gets what is left out as a comment.
[[nodiscard]] std::string sinComentariosNiLiterales(std::string_view texto,
                                                    std::string* comentarios = nullptr);

/// The bodies of functions: where each begins in `codigo`, and how many lines it has, brace to
/// brace.
struct Funcion {
    std::size_t posicion;
    std::size_t lineas;
};
[[nodiscard]] std::vector<Funcion> funcionesDe(std::string_view codigo);

/// "folder | may include" in the order of the document.
struct Fila {
    std::string carpeta;
    std::set<std::string> incluye;
};
[[nodiscard]] std::vector<Fila> leerTabla(const std::filesystem::path& documento);

/// The identifiers of code without comments and includes.
[[nodiscard]] std::set<std::string> identificadores(const std::string& codigo);
/// The names that code of a header gives to whoever includes it: of types, functions, constants,
/// enumerators and macros.
[[nodiscard]] std::set<std::string> declarados(const std::string& codigo);
/// The types that it only says to be types.
[[nodiscard]] std::set<std::string> anunciados(const std::string& codigo);

} // namespace kv::arquitectura
