// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace kv {

/// A folder of its own for a test, gone at the end.
class Carpeta {
  public:
    Carpeta() {
        std::string plantilla =
            (std::filesystem::temp_directory_path() / "kvpruebaXXXXXX").string();
        ruta_ = mkdtemp(plantilla.data());
    }
    ~Carpeta() {
        std::error_code error;
        std::filesystem::remove_all(ruta_, error);
    }
    Carpeta(const Carpeta&) = delete;
    Carpeta& operator=(const Carpeta&) = delete;

    [[nodiscard]] const std::string& ruta() const { return ruta_; }
    void escribir(const std::string& nombre, const std::string& contenido) const {
        std::ofstream(ruta_ + "/" + nombre, std::ios::binary) << contenido;
    }
    [[nodiscard]] std::string leer(const std::string& nombre) const {
        std::ostringstream todo;
        todo << std::ifstream(ruta_ + "/" + nombre, std::ios::binary).rdbuf();
        return todo.str();
    }
    /// Names of what lies in it, folders included.
    [[nodiscard]] std::set<std::string> nombres() const {
        std::set<std::string> todos;
        for (const auto& e : std::filesystem::directory_iterator(ruta_))
            todos.insert(e.path().filename().string());
        return todos;
    }

  private:
    std::string ruta_;
};

} // namespace kv
