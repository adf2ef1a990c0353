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

CajasConFichas::CajasConFichas(PresupuestoDeCajas& presupuesto, std::string_view cajas,
                               std::string_view fichas)
    : presupuesto_(presupuesto), nombre_(cajas), fichas_(fichas), titulos_(1) {
    cajas_.emplace_back(presupuesto_, nombre_, 0);
}

void CajasConFichas::usar(std::size_t i, std::string_view titulo) {
    titulos_[i] = titulo;
    if (i + 1 < cajas_.size()) return;
    cajas_.emplace_back(presupuesto_, nombre_, static_cast<std::int64_t>(i + 1));
    titulos_.emplace_back();
}

void CajasConFichas::vaciar() {
    while (cajas_.size() > 1)
        cajas_.pop_back();
    cajas_.front().vaciar();
    titulos_.assign(1, {});
}

VistaServidor::VistaServidor(Observador*& observador, PresupuestoDeCajas& presupuesto)
    : lblPuertoServidor(observador, "lblPuertoServidor"), lblEstado(observador, "lblEstado"),
      lblKeepALive(observador, "lblKeepALive"), Text1(presupuesto, "Text1", -1),
      Text2(presupuesto, "Text2", -1) {}

Vista::Vista() {
    lstViewSockets.ponerColumnas({"Puerto", "IP:PuertoTCP", "Estado", "[PLC X - Indice Y]",
                                  "Base de Tiempo Conexion", "Cant.Intervalos para solicitar",
                                  "Cant.de Solicitudes", "Tiempo Fuera"});
    lstViewVariables.ponerColumnas(
        {"Direccion", "Valor", "Estado", "Fecha Hora", "Nombre en Script"});
    lstViewEstadoDeBloques.ponerColumnas({"[Direccion]", "[Nivel]", "[Tiempo de Scan(s)]",
                                          "Habilitado por respuestas OK. [Si/No]", ""});
}

void Vista::observar(Observador* observador) {
    observador_ = observador;
    presupuesto_.observar(observador);
}

void Vista::mostrarMensaje(std::string_view texto, std::string_view titulo) {
    if (observador_ != nullptr) observador_->alMostrarMensaje(titulo, texto);
}

} // namespace kv
