// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "events/trazas.h"
#include "operator/editor_de_guion.h"
#include "operator/operador.h"
#include "view/vista.h"

#include <functional>
#include <string>
#include <vector>

namespace kv {

class Mensajero;

/// What the windows show and whom they ask. All of them must outlive the windows.
struct PartesDeVentana {
    Vista& vista;
    Sucesos& sucesos;
    const Tablas& tablas;
    const Trazas& trazas;
    Operador& operador;
    EditorDeGuion& editor;
    Mensajero& mensajero;
    std::string version;
    std::function<void()> alApagar; ///< called once, when the operator has confirmed the shutdown
    /// A program and its arguments, which gets a file's name behind them and makes a bundle of
    /// evidence there: beside the engine, which must not wait for it. Empty: no bundle is made.
    std::vector<std::string> ordenDeEvidencia = {};
};

} // namespace kv
