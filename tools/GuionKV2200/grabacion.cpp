// SPDX-License-Identifier: Apache-2.0
#include "grabacion.h"

#include "engine/reproduccion.h"
#include "plant/claves_de_bloque.h"
#include "plant/valor_y_estado.h"

#include <iostream>

namespace {

/// Notes what is new since the run before. It looks at nothing but the tables: a question more
/// than the driver asked then would lose the thread of the recording.
class Anotador {
  public:
    Anotador(const kv::Tablas& tablas, Valores& valores) : tablas_(tablas), valores_(valores) {}

    void anotar() {
        auto& fila = valores_.filas.emplace_back();
        for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior(); ++i) {
            const kv::BloqueLectura& b = tablas_.bloques[i];
            if (i == lugares_.size()) lugares_.push_back(nombrar(kv::nombreDeScript(b.clave)));
            poner(fila, lugares_[i], b.valor);
            poner(fila, lugares_[i] + 1, b.estado);
        }
        bits(fila);
    }

  private:
    /// The name's place; its status stands behind it.
    std::size_t nombrar(const std::string& nombre) {
        valores_.nombres.push_back(nombre);
        valores_.nombres.push_back(nombre + std::string(kv::kSufijoDeEstado));
        return valores_.nombres.size() - 2;
    }
    void bits(std::vector<Valores::Cambio>& fila) {
        for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior(); ++i) {
            const kv::BloqueLectura& b = tablas_.bloques[i];
            for (std::size_t n = 0; b.bits && n < b.bits->bitDefinido.size(); ++n) {
                if (!b.bits->bitDefinido[n]) continue;
                const auto [lugar, nuevo] = deBits_.try_emplace(b.bits->bitNombres[n]);
                if (nuevo) lugar->second = nombrar(lugar->first);
                poner(fila, lugar->second, kv::wordbit(b.valor, static_cast<int>(n)));
                poner(fila, lugar->second + 1, b.estado);
            }
        }
    }
    void poner(std::vector<Valores::Cambio>& fila, std::size_t nombre, double valor) {
        if (ultimos_.size() <= nombre) ultimos_.resize(nombre + 1);
        if (ultimos_[nombre] == valor) return;
        ultimos_[nombre] = valor;
        fila.push_back({nombre, valor});
    }

    const kv::Tablas& tablas_;
    Valores& valores_;
    std::vector<std::size_t> lugares_; ///< of each block's variable among the names
    std::map<std::string, std::size_t> deBits_;
    std::vector<std::optional<double>> ultimos_;
};

} // namespace

Valores valoresDeGrabacion(const std::string& ruta, std::string contenido) {
    Valores valores;
    try {
        kv::DriverReproducido driver(std::move(contenido));
        Anotador anotador(driver.motor().tablas, valores);
        driver.motor().guion.alCorrer([&anotador] { anotador.anotar(); });
        if (!driver.correr())
            std::cerr << ruta << ": la grabacion termina a mitad de una entrada\n";
    } catch (const kv::CintaCortada&) {
        std::cerr << ruta << ": la grabacion termina a mitad de una entrada\n";
    } catch (const kv::CintaMala& mala) {
        throw ValoresMalos(ruta + ": " + mala.que);
    }
    if (valores.filas.empty()) throw ValoresMalos(ruta + ": ninguna estación contestó en ella");
    return valores;
}
