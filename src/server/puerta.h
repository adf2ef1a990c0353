// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "config/escucha.h"
#include "log/cupo.h"
#include "platform/reloj.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace kv {

/// Who may come in, and what a client may do: settings that are read and never written, each with a
/// default that changes nothing for a client that behaves. What once closed the door keeps it
/// closed: a settings file that is not whole leaves the settings in force, and admits nobody if it
/// never was whole; a key that is gone counts as gone when the file has stayed so for seconds.
class Puerta {
  public:
    /// Called once for every setting that makes no sense.
    using Queja = std::function<void(const std::string&)>;
    Puerta(Ajustes& ajustes, const Reloj& reloj, Queja queja);

    /// Looks at the settings again.
    void releer();

    /// Where to listen; empty: nowhere, as nobody would be let in.
    [[nodiscard]] std::string_view direccionDeEscucha() const;
    [[nodiscard]] bool puedeEntrar(std::string_view ip) const;
    /// What the log says of one that may not, from the address on.
    [[nodiscard]] std::string porQueNoEntra() const {
        return escucha_.cerrada ? "la puerta esta cerrada, por los ajustes"
                                : "no esta entre los permitidos";
    }
    /// Whether a client is sent nothing before its password was right.
    [[nodiscard]] bool exigeLogin() const { return escucha_.exigeLogin; }
    /// Seconds that a client has for its password; 0: any time.
    [[nodiscard]] double plazoDeLogin() const { return escucha_.plazoDeLogin; }
    [[nodiscard]] bool soloLectura() const { return escucha_.soloLectura || escucha_.cerrada; }
    /// Counts a write; false when there were too many within this second.
    [[nodiscard]] bool admiteOtraEscritura();

    /// Whether passwords from there are not looked at for a while.
    [[nodiscard]] bool enPausa(std::string_view ip) const;
    /// Counts a wrong password; true when it begins a pause.
    [[nodiscard]] bool claveErrada(std::string_view ip);

  private:
    struct Intentos {
        Cupo claves{kUnMinutoMs}; ///< wrong ones
        std::int64_t pausaHastaMs = -1;
    };
    void decirDefecto(std::string_view defecto);
    void adoptar(ClavesDeEscucha nuevas);

    Ajustes& ajustes_;
    const Reloj& reloj_;
    Queja queja_;
    std::string_view defecto_;           ///< of the settings file, as it was reported last
    std::set<std::string> quejas_;       ///< about the keys in force
    std::optional<std::uint64_t> leido_; ///< the settings' content that was read last
    bool falta_ = false;                 ///< what it lacks may still come to count

    ClavesDeEscucha claves_; ///< in force
    Escucha escucha_;

    std::map<std::string, Intentos, std::less<>> intentos_; ///< by address of the client
    Cupo escrituras_{kUnSegundoMs};
};

} // namespace kv
