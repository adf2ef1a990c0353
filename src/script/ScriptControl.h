// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/bloque.h"
#include "platform/reloj.h"
#include "script/objetos.h"
#include "vbscript/engine.h"
#include "view/vista.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kv {

/// Carries out what a user script asks of the driver.
class OrdenesDelGuion {
  public:
    virtual ~OrdenesDelGuion() = default;
    /// Of a write the index of its block, or -1 when it was refused; of all else 0.
    virtual double hacer(const PedidoDelGuion& pedido) = 0;
    /// It ended with an exception, which the script does not see.
    virtual void alFallar(std::string_view procedimiento, const char* que) = 0;
};

/// What a run of the user script may cost.
struct PresupuestoDelGuion {
    double tiempoMs;
    double llamadasAnidadas;
    double memoriaKiB;
    double pasos = 0; ///< 0: as many as the time allows
};

/// The script host of the driver: one module of the script language in which the published
/// variables are globals and the objects "mw" and "Label" are known.
class ScriptControl final : private vbscript::Surroundings {
  public:
    /// All must outlive this; `ordenes` is asked for what scripts ask of "mw".
    ScriptControl(const Reloj& reloj, Vista& vista, OrdenesDelGuion& ordenes);
    ~ScriptControl() override;
    ScriptControl(const ScriptControl&) = delete;
    ScriptControl& operator=(const ScriptControl&) = delete;

    void fijarPresupuesto(const PresupuestoDelGuion& presupuesto);
    /// "es-AR" or "en-US"; anything else changes nothing and gives false.
    bool fijarIdioma(std::string_view idioma) { return motor_.setLocale(idioma); }
    /// Gives the files that scripts may use, whenever one wants to; null, and at first: scripts may
    /// use no files.
    void fijarDisco(std::function<std::shared_ptr<vbscript::Disk>()> disco) {
        disco_ = std::move(disco);
    }

    /// The number of a global variable, made on first use. Nothing when `nombre` is no identifier:
    /// text from a configuration never reaches the host as code.
    [[nodiscard]] std::optional<Indice> ranura(std::string_view nombre) {
        return motor_.global(nombre);
    }
    /// What the statement name=value does, without a statement to parse.
    void publicar(Indice ranura, double valor) { motor_.setNumber(ranura, valor); }
    /// The number that a global variable holds; nothing if it does not hold a number.
    [[nodiscard]] std::optional<double> valorDe(std::string_view nombre);

    /// What a global variable holds, for people; nothing where no variable has the name.
    [[nodiscard]] std::optional<std::string> valorVisibleDe(std::string_view nombre) const;

    /// Adds code to the global module and runs its statements at once.
    void AddCode(std::string_view texto);
    /// How long the last run took, and what the script's values held when it had ended.
    struct Medida {
        std::int64_t us;
        std::size_t bytes;
    };
    /// Nothing before the first run.
    [[nodiscard]] std::optional<Medida> ultimaCorrida() const { return ultima_; }
    [[nodiscard]] const vbscript::ScriptError& Error() const { return motor_.error(); }
    void Clear() { motor_.clearError(); }
    /// A fresh module: what scripts made is gone, what was published stays.
    void empezarDeNuevo() { motor_.restart(); }
    /// How many texts have been compiled.
    [[nodiscard]] std::uint64_t compilaciones() const { return motor_.compilations(); }

  private:
    std::int64_t monotonicMs() override { return reloj_.monotonicoMs(); }
    vbscript::LocalTime wallClock() override;
    int messageBox(std::string_view text, int buttons, std::string_view title) override;
    std::string inputBox(std::string_view prompt, std::string_view title,
                         std::string_view proposed) override;
    std::shared_ptr<vbscript::Disk> disk() override { return disco_ ? disco_() : nullptr; }
    [[nodiscard]] vbscript::Value pedir(const PedidoDelGuion& pedido);
    void mostrarLabel();

    const Reloj& reloj_;
    Vista& vista_;
    OrdenesDelGuion& ordenes_;
    std::shared_ptr<LabelDelGuion> label_ = std::make_shared<LabelDelGuion>();
    std::function<std::shared_ptr<vbscript::Disk>()> disco_;
    std::optional<Medida> ultima_;
    vbscript::Engine motor_;
};

} // namespace kv
