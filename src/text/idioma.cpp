// SPDX-License-Identifier: Apache-2.0
#include "text/idioma.h"

namespace kv {

std::string decir(const Frase& frase, Idioma idioma,
                  std::initializer_list<std::string_view> partes) {
    std::string dicho;
    const std::string_view texto = frase.en(idioma);
    for (std::size_t i = 0; i < texto.size(); ++i) {
        const bool hueco =
            texto[i] == '%' && i + 1 < texto.size() && texto[i + 1] >= '1' && texto[i + 1] <= '9';
        const auto cual = hueco ? static_cast<std::size_t>(texto[i + 1] - '1') : partes.size();
        if (cual < partes.size()) {
            dicho += partes.begin()[cual];
            ++i;
        } else {
            dicho += texto[i];
        }
    }
    return dicho;
}

std::optional<std::string> pasarA(Idioma idioma, const Frase& frase, std::string_view castellano) {
    const std::string_view molde = frase.castellano;
    const auto hueco = molde.find("%1");
    if (hueco == std::string_view::npos)
        return castellano == molde ? std::optional(std::string(frase.en(idioma))) : std::nullopt;
    const std::string_view antes = molde.substr(0, hueco);
    const std::string_view detras = molde.substr(hueco + 2);
    if (castellano.size() < antes.size() + detras.size() || !castellano.starts_with(antes) ||
        !castellano.ends_with(detras))
        return std::nullopt;
    castellano.remove_prefix(antes.size());
    castellano.remove_suffix(detras.size());
    return decir(frase, idioma, {castellano});
}

} // namespace kv
