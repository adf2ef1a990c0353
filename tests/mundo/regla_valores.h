// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "mundo/contexto.h"
#include "script/publicacion.h"

#include <functional>
#include <string_view>
#include <unordered_map>

namespace kv::mundo {

/// Every value that is sent was held by its register and answered on this link; the table, the
/// script's variables and the rows say what was sent last; a variable's status is the outcome of
/// its block's last transaction.
class ReglaDeValores final : public AvisoAlCliente {
  public:
    ReglaDeValores(Contexto& c, AvisoAlCliente& siguiente) : c_(c), siguiente_(siguiente) {}

    void notificarVariable(std::string_view direccion, double valor, double estado) override;
    void alTerminarLectura(Indice bloque);
    void barrer();

    /// A block of one variable whose key no other block has: what is sent of the key is about it.
    [[nodiscard]] bool unico(std::size_t bloque) const { return unico_[bloque] != 0; }
    /// Learns of blocks that came since.
    void conocerBloques();
    /// The block of a key, kNinguno if no block has it.
    [[nodiscard]] Indice bloqueDe(std::string_view clave) const;
    [[nodiscard]] std::int64_t ultimoAvisoUs() const { return ultimoAvisoUs_; }

  private:
    struct Dicho {
        double valor = 0;
        double estado = 13;
    };
    struct Huella {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const {
            return std::hash<std::string_view>{}(s);
        }
    };
    void guionIgual(std::size_t bloque);
    void filaIgual(const BloqueLectura& b);

    Contexto& c_;
    AvisoAlCliente& siguiente_;
    std::unordered_map<std::string, Indice, Huella, std::equal_to<>> porClave_;
    std::vector<Dicho> dichos_; ///< of slot 0, by block
    std::vector<char> unico_;
    std::size_t proximoGuion_ = 0;
    std::int64_t ultimoAvisoUs_ = 0;
};

} // namespace kv::mundo
