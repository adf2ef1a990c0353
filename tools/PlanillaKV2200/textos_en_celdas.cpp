// SPDX-License-Identifier: Apache-2.0
#include "textos_en_celdas.h"

#include <orcus/sax_parser.hpp>
#include <orcus/zip_archive.hpp>
#include <orcus/zip_archive_stream.hpp>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace kv {
namespace {

constexpr int kFueraDeLaHoja = 1 << 24;

/// What an element's attributes say, by their names without prefix: they come before it.
class Atributos : public orcus::sax_handler {
  public:
    void attribute(const orcus::sax::parser_attribute& a) {
        atributos_[std::string(a.name)] = std::string(a.value);
    }

  protected:
    std::map<std::string, std::string> tomar() { return std::exchange(atributos_, {}); }

  private:
    std::map<std::string, std::string> atributos_;
};

/// Which relation the first sheet of a workbook has.
class PrimeraHoja final : public Atributos {
  public:
    void start_element(const orcus::sax::parser_element& e) {
        auto a = tomar();
        if (e.name == "sheet" && relacion.empty()) relacion = a["id"];
    }
    std::string relacion;
};

/// Where relations lead, by their names and, one of each, by what they are.
class Relaciones final : public Atributos {
  public:
    void start_element(const orcus::sax::parser_element& e) {
        auto a = tomar();
        if (e.name != "Relationship") return;
        const std::string tipo = a["Type"];
        destinos.try_emplace(tipo.substr(tipo.rfind('/') + 1), a["Target"]);
        destinos[a["Id"]] = a["Target"];
    }
    std::map<std::string, std::string> destinos;
};

class Celdas final : public Atributos {
  public:
    void start_element(const orcus::sax::parser_element& e) {
        auto a = tomar();
        if (e.name == "row") {
            const auto r = a.find("r");
            fila_ = r == a.end() ? fila_ + 1 : lugarDe(r->second).fila;
            columna_ = -1;
        } else if (e.name == "c") {
            const auto r = a.find("r");
            columna_ = r == a.end() ? columna_ + 1 : lugarDe(r->second).columna;
            enCelda_ = a["t"] == "inlineStr" ? "t" : a["t"] == "str" ? "v" : "";
            texto_.clear();
        }
        // What is said of how a text is read aloud is no part of it.
        if (e.name == "rPh") ++aparte_;
        lee_ = !enCelda_.empty() && e.name == enCelda_ && aparte_ == 0;
    }
    void end_element(const orcus::sax::parser_element& e) {
        lee_ = false;
        if (e.name == "rPh") --aparte_;
        if (e.name != "c") return;
        if (!texto_.empty()) textos.push_back({fila_, columna_, texto_});
        enCelda_.clear();
    }
    void characters(std::string_view valor, bool /*deUnaVez*/) {
        if (lee_) texto_ += valor;
    }
    std::vector<TextoEnCelda> textos;

  private:
    /// "B3", or a row's "3".
    [[nodiscard]] static TextoEnCelda lugarDe(std::string_view texto) {
        TextoEnCelda l;
        for (const char c : texto) {
            if (c >= 'A' && c <= 'Z')
                l.columna = std::min(l.columna * 26 + (c - 'A' + 1), kFueraDeLaHoja);
            else if (c >= '0' && c <= '9')
                l.fila = std::min(l.fila * 10 + (c - '0'), kFueraDeLaHoja);
            else
                throw std::runtime_error("no es una celda: " + std::string(texto.substr(0, 60)));
        }
        return {l.fila - 1, l.columna - 1, {}};
    }

    int fila_ = -1, columna_ = -1;
    int aparte_ = 0;
    std::string enCelda_; ///< the element in which the present cell has its text; empty: elsewhere
    bool lee_ = false;
    std::string texto_;
};

// Both of the library's versions, the older one first.

template <class Archivo>
std::vector<unsigned char> parte(const Archivo& zip, const std::string& nombre) {
    if constexpr (requires(std::vector<unsigned char> b) { zip.read_file_entry(nombre, b); }) {
        std::vector<unsigned char> bytes;
        if (!zip.read_file_entry(nombre, bytes)) throw std::runtime_error("falta " + nombre);
        return bytes;
    } else {
        return zip.read_file_entry(nombre);
    }
}

template <class Oyente>
Oyente leer(const orcus::zip_archive& zip, const std::string& nombre) {
    using Lector = orcus::sax_parser<Oyente>;
    const std::vector<unsigned char> bytes = parte(zip, nombre);
    const std::string_view xml(reinterpret_cast<const char*>(bytes.data()), bytes.size()); // NOLINT
    Oyente oyente;
    if constexpr (std::is_constructible_v<Lector, const char*, std::size_t, Oyente&>) {
        Lector(xml.data(), xml.size(), oyente).parse();
    } else {
        Lector(xml, oyente).parse();
    }
    return oyente;
}

/// The part that a relation leads to, as it is written in one of a folder ("xl/", or "").
std::string alSeguir(const std::string& carpeta, const std::string& destino) {
    return destino.starts_with('/') ? destino.substr(1) : carpeta + destino;
}

} // namespace

std::vector<TextoEnCelda> textosEnCeldas(std::string_view libro) {
    orcus::zip_archive_stream_blob bytes(reinterpret_cast<const std::uint8_t*>(libro.data()),
                                         libro.size()); // NOLINT
    orcus::zip_archive zip(&bytes);
    zip.load();
    const std::string principal =
        alSeguir("", leer<Relaciones>(zip, "_rels/.rels").destinos["officeDocument"]);
    const std::size_t barra = principal.rfind('/') + 1; // 0 without a slash
    const std::string carpeta = principal.substr(0, barra);
    const std::string relacion = leer<PrimeraHoja>(zip, principal).relacion;
    auto destinos =
        leer<Relaciones>(zip, carpeta + "_rels/" + principal.substr(barra) + ".rels").destinos;
    return leer<Celdas>(zip, alSeguir(carpeta, destinos[relacion])).textos;
}

} // namespace kv
