#pragma once

#include "config/ajustes.h"
#include "platform/reloj.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// A set of IPv4 addresses that share their first bits.
struct RedPermitida {
    std::uint32_t direccion = 0;
    std::uint32_t mascara = 0;
};

/// Who may come in, and what a client may do: settings that are read and never written, each with a
/// default that changes nothing for a client that behaves. A settings file that cannot be read
/// leaves things as they were, and admits nobody if it never could be read.
class Puerta {
  public:
    /// Told once for every text that makes no sense.
    using Queja = std::function<void(const std::string&)>;
    Puerta(Ajustes& ajustes, const Reloj& reloj, Queja queja);

    /// Looks at the settings again.
    void releer();

    [[nodiscard]] const std::string& direccionDeEscucha() const { return direccion_; }
    [[nodiscard]] bool puedeEntrar(std::string_view ip) const;
    /// Whether a client is told nothing before its password was right.
    [[nodiscard]] bool exigeLogin() const { return exigeLogin_; }
    /// Seconds that a client has for its password; 0: any time.
    [[nodiscard]] double plazoDeLogin() const { return plazoDeLogin_; }
    [[nodiscard]] bool soloLectura() const { return soloLectura_; }
    /// Counts a write; false when there were too many within this second.
    [[nodiscard]] bool admiteOtraEscritura();

    /// Whether passwords from there are not looked at for a while.
    [[nodiscard]] bool enPausa(std::string_view ip) const;
    /// Counts a wrong password; true when it begins a pause.
    [[nodiscard]] bool claveErrada(std::string_view ip);

  private:
    struct Intentos {
        std::int64_t desdeMs = 0;
        std::int64_t pausaHastaMs = -1;
        double cuantos = 0;
    };
    [[nodiscard]] bool mirarAjustes();
    [[nodiscard]] std::string texto(std::string_view clave) const;
    [[nodiscard]] bool encendido(std::string_view clave);
    [[nodiscard]] double numero(std::string_view clave, double porDefecto, double maximo);
    void leerPermitidos();
    void quejarse(std::string_view clave, const std::string& valor, std::string_view que);

    Ajustes& ajustes_;
    const Reloj& reloj_;
    Queja queja_;
    std::map<std::string, std::string, std::less<>>
        quejas_; ///< by key, the text complained of last
    HuellaDeArchivo huella_;
    bool legibles_ = false;
    Ini ini_; ///< the file when it could last be read

    std::string direccion_ = "0.0.0.0";
    std::string permitidos_;
    std::vector<RedPermitida> redes_;
    bool todos_ = false; ///< no list: everybody may come in
    bool exigeLogin_ = false;
    bool soloLectura_ = false;
    double plazoDeLogin_ = 0;
    double clavesPorMinuto_ = 10;
    double pausaPorClaves_ = 60;
    double escriturasPorSegundo_ = 0;

    std::map<std::string, Intentos, std::less<>> intentos_; ///< by address of the client
    std::int64_t segundoMs_ = 0;
    double escrituras_ = 0; ///< in the second that began then
};

/// "10.0.0.9" or "10.0.0.0/24"; nothing for any other text.
[[nodiscard]] std::optional<RedPermitida> redDeTexto(std::string_view texto);

} // namespace kv
