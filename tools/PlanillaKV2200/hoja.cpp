// SPDX-License-Identifier: Apache-2.0
#include "hoja.h"

#include "config/csv.h"
#include "text/numeros.h"
#include "textos_en_celdas.h"

#include <orcus/orcus_xlsx.hpp>
#include <orcus/spreadsheet/import_interface.hpp>

#include <algorithm>
#include <map>
#include <memory>
#include <stdexcept>
#include <vector>

namespace kv {
namespace {

namespace hoja = orcus::spreadsheet;

// What a sheet may have, and as much of a row as a table is read.
constexpr hoja::row_t kFilas = 1'048'576;
constexpr hoja::col_t kColumnas = 256;

class Textos final : public hoja::iface::import_shared_strings {
  public:
    std::size_t append(std::string_view s) override {
        textos_.emplace_back(s);
        return textos_.size() - 1;
    }
    std::size_t add(std::string_view s) override { return append(s); }
    void set_segment_font(std::size_t) override {}
    void set_segment_bold(bool) override {}
    void set_segment_italic(bool) override {}
    void set_segment_font_name(std::string_view) override {}
    void set_segment_font_size(double) override {}
    void set_segment_font_color(hoja::color_elem_t, hoja::color_elem_t, hoja::color_elem_t,
                                hoja::color_elem_t) override {}
    void append_segment(std::string_view s) override { parte_ += s; }
    std::size_t commit_segments() override {
        const std::size_t n = append(parte_);
        parte_.clear();
        return n;
    }
    [[nodiscard]] std::string_view ver(std::size_t i) const {
        return i < textos_.size() ? std::string_view(textos_[i]) : std::string_view();
    }

  private:
    std::vector<std::string> textos_;
    std::string parte_; ///< of a text with more than one format
};

/// The cells, and the results of formulas, which the library tells after where they stand.
class Hoja final : public hoja::iface::import_sheet, public hoja::iface::import_formula {
  public:
    explicit Hoja(const Textos& textos) : textos_(textos) {}

    hoja::iface::import_formula* get_formula() override { return this; }
    void set_auto(hoja::row_t f, hoja::col_t c, std::string_view s) override { poner(f, c, s); }
    void set_string(hoja::row_t f, hoja::col_t c, hoja::string_id_t i) override {
        poner(f, c, textos_.ver(i));
    }
    void set_value(hoja::row_t f, hoja::col_t c, double n) override {
        poner(f, c, textoDeNumero(n));
    }
    void set_bool(hoja::row_t f, hoja::col_t c, bool si) override { poner(f, c, si ? "1" : "0"); }
    void set_date_time(hoja::row_t f, hoja::col_t c, int, int, int, int, int, double) override {
        poner(f, c, "fecha"); // nothing that a configuration has
    }
    void set_format(hoja::row_t, hoja::col_t, std::size_t) override {}
    void set_format(hoja::row_t, hoja::col_t, hoja::row_t, hoja::col_t, std::size_t) override {}
    // The newer of the library's two versions wants these, too; "virtual" suits both.
    virtual void set_column_format(hoja::col_t, hoja::col_t, std::size_t) {}
    virtual void set_row_format(hoja::row_t, std::size_t) {}
    void fill_down_cells(hoja::row_t f, hoja::col_t c, hoja::row_t cuantas) override {
        const std::string texto = celdas_[{f, c}];
        for (hoja::row_t i = 1; i <= cuantas && i < kFilas; ++i)
            poner(f + i, c, texto);
    }
    [[nodiscard]] hoja::range_size_t get_sheet_size() const override { return {kFilas, kColumnas}; }

    void set_position(hoja::row_t f, hoja::col_t c) override {
        fila_ = f;
        columna_ = c;
    }
    void set_formula(hoja::formula_grammar_t, std::string_view) override {}
    void set_shared_formula_index(std::size_t) override {}
    void set_result_string(std::string_view s) override { poner(fila_, columna_, s); }
    void set_result_value(double n) override { poner(fila_, columna_, textoDeNumero(n)); }
    void set_result_bool(bool si) override { poner(fila_, columna_, si ? "1" : "0"); }
    void set_result_empty() override {}
    void commit() override {}

    void poner(hoja::row_t f, hoja::col_t c, std::string_view texto) {
        if (f >= 0 && f < kFilas && c >= 0 && c < kColumnas) celdas_[{f, c}] = texto;
    }
    [[nodiscard]] std::string comoCsv() const {
        std::string csv;
        hoja::row_t fila = 0;
        hoja::col_t columna = 0;
        for (const auto& [lugar, texto] : celdas_) {
            for (; fila < lugar.first; ++fila, columna = 0)
                csv += '\n';
            for (; columna < lugar.second; ++columna)
                csv += ';';
            csv += celdaCsv(texto);
        }
        return csv + '\n';
    }

  private:
    const Textos& textos_;
    std::map<std::pair<hoja::row_t, hoja::col_t>, std::string> celdas_;
    hoja::row_t fila_ = 0;
    hoja::col_t columna_ = 0;
};

/// "B3", "Hoja1!$A$1" and "A1:C5", as a workbook writes the place of a cell; which sheet it is does
/// not matter.
class Referencias final : public hoja::iface::import_reference_resolver {
  public:
    hoja::src_address_t resolve_address(std::string_view texto) override {
        hoja::src_address_t lugar{0, 0, 0};
        for (const char c : texto.substr(texto.rfind('!') + 1)) {
            if (c >= 'A' && c <= 'Z')
                lugar.column = std::min<hoja::col_t>(lugar.column * 26 + (c - 'A' + 1), kFilas);
            else if (c >= '0' && c <= '9')
                lugar.row = std::min<hoja::row_t>(lugar.row * 10 + (c - '0'), kFilas);
            else if (c != '$')
                throw std::runtime_error("no es una celda: " + std::string(texto.substr(0, 60)));
        }
        --lugar.column;
        --lugar.row;
        return lugar;
    }
    hoja::src_range_t resolve_range(std::string_view texto) override {
        const auto corte = texto.find(':');
        const auto desde = resolve_address(texto.substr(0, corte));
        return {desde,
                corte == std::string_view::npos ? desde : resolve_address(texto.substr(corte + 1))};
    }
};

class Libro final : public hoja::iface::import_factory {
  public:
    hoja::iface::import_shared_strings* get_shared_strings() override { return &textos_; }
    hoja::iface::import_reference_resolver*
    get_reference_resolver(hoja::formula_ref_context_t) override {
        return &referencias_;
    }
    hoja::iface::import_sheet* append_sheet(hoja::sheet_t, std::string_view nombre) override {
        hojas_.push_back({std::string(nombre), std::make_unique<Hoja>(textos_)});
        return hojas_.back().hoja.get();
    }
    hoja::iface::import_sheet* get_sheet(std::string_view nombre) override {
        const auto i = std::find_if(hojas_.begin(), hojas_.end(),
                                    [nombre](const Una& h) { return h.nombre == nombre; });
        return i == hojas_.end() ? nullptr : i->hoja.get();
    }
    hoja::iface::import_sheet* get_sheet(hoja::sheet_t i) override {
        const auto n = static_cast<std::size_t>(i);
        return i >= 0 && n < hojas_.size() ? hojas_[n].hoja.get() : nullptr;
    }
    void finalize() override {}
    [[nodiscard]] Hoja& primera() {
        if (hojas_.empty()) throw std::runtime_error("no tiene ninguna hoja");
        return *hojas_.front().hoja;
    }

  private:
    struct Una {
        std::string nombre;
        std::unique_ptr<Hoja> hoja;
    };
    Textos textos_;
    Referencias referencias_;
    std::vector<Una> hojas_;
};

} // namespace

std::string primeraHojaComoCsv(std::string_view libro) {
    Libro leido;
    orcus::orcus_xlsx(&leido).read_stream(libro);
    for (const TextoEnCelda& t : textosEnCeldas(libro))
        leido.primera().poner(t.fila, t.columna, t.texto);
    return leido.primera().comoCsv();
}

} // namespace kv
