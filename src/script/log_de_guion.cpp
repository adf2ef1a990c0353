#include "script/log_de_guion.h"

namespace kv {
namespace {

constexpr std::int64_t kMinutoMs = 60'000;

/// At most so many bytes, no character cut in two.
std::string_view comienzo(std::string_view texto, std::size_t largo) {
    if (texto.size() <= largo) return texto;
    while (largo > 0 && (static_cast<unsigned char>(texto[largo]) & 0xC0) == 0x80)
        --largo;
    return texto.substr(0, largo);
}

} // namespace

void LogDeGuion::anotar(std::string_view texto) {
    const std::int64_t ahora = reloj_.monotonicoMs();
    if (minutoMs_ < 0 || ahora - minutoMs_ >= kMinutoMs) {
        minutoMs_ = ahora;
        anotadas_ = 0;
    }
    if (anotadas_ > kPorMinuto) return;
    const bool ultima = anotadas_++ == kPorMinuto;
    log_.escribirLog("DRIVER", "mw.Log",
                     ultima ? "el guion anota demasiado: hasta que pase el minuto no se escribe mas"
                            : comienzo(texto, kLargo));
}

} // namespace kv
