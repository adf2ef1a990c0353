// SPDX-License-Identifier: Apache-2.0
#include "view/vista.h"

namespace kv {

void Etiqueta::poner(std::string_view texto) {
    if (texto_ == texto) return;
    texto_ = texto;
    if (observador_ != nullptr) observador_->alCambiarEtiqueta(nombre_, texto_);
}

void Etiqueta::colorear(Color color) {
    if (color_ == color) return;
    color_ = color;
    if (observador_ != nullptr) observador_->alCambiarColor(nombre_, color);
}

void Etiqueta::vestir(const AspectoDeEtiqueta& aspecto) {
    if (aspecto_ == aspecto) return;
    aspecto_ = aspecto;
    if (observador_ != nullptr) observador_->alVestirEtiqueta(nombre_, aspecto_);
}

VistaServidor::VistaServidor(Observador*& observador)
    : lblPuertoServidor(observador, "lblPuertoServidor"), lblEstado(observador, "lblEstado"),
      lblKeepALive(observador, "lblKeepALive") {}

Vista::Vista() {
    lstViewSockets.ponerColumnas({"Puerto", "IP:PuertoTCP", "Estado", "[PLC X - Indice Y]",
                                  "Base de Tiempo Conexion", "Cant.Intervalos para solicitar",
                                  "Cant.de Solicitudes", "Tiempo Fuera"});
    lstViewVariables.ponerColumnas(
        {"Direccion", "Valor", "Estado", "Fecha Hora", "Nombre en Script"});
    lstViewEstadoDeBloques.ponerColumnas({"[Direccion]", "[Nivel]", "[Tiempo de Scan(s)]",
                                          "Habilitado por respuestas OK. [Si/No]", ""});
}

void Vista::observar(Observador* observador) { observador_ = observador; }

void Vista::mostrarMensaje(std::string_view texto, std::string_view titulo) {
    if (observador_ != nullptr) observador_->alMostrarMensaje(titulo, texto);
}

} // namespace kv
