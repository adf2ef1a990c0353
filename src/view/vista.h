// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "view/lista.h"
#include "view/observador.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// A label: a text and, for one of them, a colour.
class Etiqueta {
  public:
    Etiqueta(Observador*& observador, std::string_view nombre)
        : observador_(observador), nombre_(nombre) {}
    void poner(std::string_view texto);
    void colorear(Color color);
    [[nodiscard]] const std::string& texto() const { return texto_; }
    [[nodiscard]] Color color() const { return color_; }
    void vestir(const AspectoDeEtiqueta& aspecto);
    [[nodiscard]] const AspectoDeEtiqueta& aspecto() const { return aspecto_; }
    [[nodiscard]] std::string_view nombre() const { return nombre_; }

  private:
    Observador*& observador_;
    std::string_view nombre_;
    std::string texto_;
    Color color_ = Color::Ninguno;
    AspectoDeEtiqueta aspecto_;
};

/// Who is served as the supervisory client, on the clock that never goes back.
struct ClienteVisto {
    std::string direccion;     ///< "address:port"; empty without a client
    std::int64_t desdeMs = -1; ///< when it came, or the last one left; -1: no client ever
    bool identificado = false; ///< it gave the password
};

/// The supervisory client's window: how its link stands. It is served whether the window is
/// shown or not.
struct VistaServidor {
    explicit VistaServidor(Observador*& observador);

    Etiqueta lblPuertoServidor;
    Etiqueta lblEstado;
    Etiqueta lblKeepALive;
    ClienteVisto cliente;
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

  public:
    Lista lstViewSockets{"lstViewSockets"};
    Lista lstViewVariables{"lstViewVariables", true};
    Lista lstViewEstadoDeBloques{"lstViewEstadoDeBloques"};

    Etiqueta Label1{observador_, "Label1"};
    Etiqueta Label10{observador_, "Label10"};
    Etiqueta lblProyecto{observador_, "lblProyecto"};
    Etiqueta lblCantidadDePuntos{observador_, "lblCantidadDePuntos"};
    Etiqueta lblEstadoScript{observador_, "lblEstadoScript"};
    Etiqueta lblResultadoBusqueda{observador_, "lblResultadoBusqueda"};

    VistaServidor servidor{observador_};

    bool Form1Visible = false;
    bool FrmServerTCPVisible = false;
};

} // namespace kv
