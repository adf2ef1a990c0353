#pragma once

#include "view/caja_de_texto.h"
#include "view/lista.h"
#include "view/observador.h"

#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// How a label looks where somebody wants it to look otherwise. Colours hold red in their lowest
/// byte, then green, then blue; those outside of 0 to 0xFFFFFF are the window's own.
struct AspectoDeEtiqueta {
    std::int32_t fondo = -1;
    std::int32_t tinta = -1;
    bool visible = true;
    friend bool operator==(const AspectoDeEtiqueta&, const AspectoDeEtiqueta&) = default;
};

/// A label: a text and, for one of them, a colour.
class Etiqueta {
  public:
    Etiqueta(Observador*& observador, std::string_view nombre)
        : observador_(observador), nombre_(nombre) {}
    void poner(std::string_view texto);
    void colorear(Color color);
    [[nodiscard]] const std::string& texto() const { return texto_; }
    [[nodiscard]] Color color() const { return color_; }
    void vestir(const AspectoDeEtiqueta& aspecto) { aspecto_ = aspecto; }
    [[nodiscard]] const AspectoDeEtiqueta& aspecto() const { return aspecto_; }
    [[nodiscard]] std::string_view nombre() const { return nombre_; }

  private:
    Observador*& observador_;
    std::string_view nombre_;
    std::string texto_;
    Color color_ = Color::Ninguno;
    AspectoDeEtiqueta aspecto_;
};

/// A numbered array of trace boxes with the tab strip that chooses among them. There is always one
/// box and one tab beyond those in use.
class CajasConFichas {
  public:
    CajasConFichas(PresupuestoDeCajas& presupuesto, std::string_view cajas,
                   std::string_view fichas);
    /// Box and tab `i` come into use under `titulo`; a new spare box and tab follow.
    void usar(std::size_t i, std::string_view titulo);
    /// Back to one empty box and one tab.
    void vaciar();
    [[nodiscard]] CajaDeTexto& operator[](std::size_t i) { return cajas_[i]; }
    [[nodiscard]] const CajaDeTexto& operator[](std::size_t i) const { return cajas_[i]; }
    [[nodiscard]] std::size_t cuantas() const { return cajas_.size(); }
    [[nodiscard]] const std::string& titulo(std::size_t i) const { return titulos_[i]; }
    [[nodiscard]] std::string_view nombre() const { return nombre_; }
    [[nodiscard]] std::string_view fichas() const { return fichas_; }

  private:
    PresupuestoDeCajas& presupuesto_;
    std::string_view nombre_;
    std::string_view fichas_;
    std::deque<CajaDeTexto> cajas_;
    std::vector<std::string> titulos_;
};

/// The supervisory client's window: what its wire brings and takes, and how the link stands. It is
/// served whether the window is shown or not.
struct VistaServidor {
    VistaServidor(Observador*& observador, PresupuestoDeCajas& presupuesto);

    Etiqueta lblPuertoServidor;
    Etiqueta lblEstado;
    Etiqueta lblKeepALive;
    CajaDeTexto Text1; ///< outgoing, written only while the window is shown
    CajaDeTexto Text2; ///< incoming
};

/// All that the windows show, without any toolkit. The engine writes here and nowhere else; a
/// window shows it, a test reads it, and without a window it is simply there.
class Vista {
  public:
    Vista();
    Vista(const Vista&) = delete;
    Vista& operator=(const Vista&) = delete;

    /// One observer at a time; it must outlive the view or be taken off with null.
    void observar(Observador* observador);
    /// A message for the operator. Waits for nobody.
    void mostrarMensaje(std::string_view texto, std::string_view titulo = {});

  private:
    Observador* observador_ = nullptr;
    PresupuestoDeCajas presupuesto_;

  public:
    Lista lstViewSockets{"lstViewSockets"};
    Lista lstViewVariables{"lstViewVariables", true};
    Lista lstViewEstadoDeBloques{"lstViewEstadoDeBloques"};

    CajaDeTexto txtTramas{presupuesto_, "txtTramas", -1};
    CajaDeTexto txtTramasDescartadas{presupuesto_, "txtTramasDescartadas", -1};
    CajaDeTexto txtDemandaLecturaEscritura{presupuesto_, "txtDemandaLecturaEscritura", -1};
    CajasConFichas txtTimer{presupuesto_, "txtTimer", "TabStriptxtTimerPorBloque"};
    CajasConFichas txtTimerIpPuerto{presupuesto_, "txtTimerIpPuerto", "TabStripTimerIpPuerto"};
    CajasConFichas txtTimerEscritura{presupuesto_, "txtTimerEscritura",
                                     "TabStriptxtTimerPorBloqueEscritura"};

    Etiqueta Label1{observador_, "Label1"};
    Etiqueta Label10{observador_, "Label10"};
    Etiqueta lblProyecto{observador_, "lblProyecto"};
    Etiqueta lblCantidadDePuntos{observador_, "lblCantidadDePuntos"};
    Etiqueta lblEstadoScript{observador_, "lblEstadoScript"};
    Etiqueta lblResultadoBusqueda{observador_, "lblResultadoBusqueda"};

    VistaServidor servidor{observador_, presupuesto_};

    bool Form1Visible = false;
    bool FrmServerTCPVisible = false;
};

} // namespace kv
