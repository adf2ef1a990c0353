// SPDX-License-Identifier: Apache-2.0
#include "operator/escritura_manual.h"

#include "plant/direcciones.h"
#include "plant/limites.h"
#include "plant/valor_y_estado.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "write/palabra.h"

namespace kv {
namespace {

constexpr std::int16_t kBorrar = 8;
constexpr std::int16_t kNada = 16;

double numero(const std::string& texto) { return numeroDeTexto(texto).value_or(0); }

} // namespace

std::int16_t ValidarIngresoDeNumeros(std::int16_t tecla, bool menos, bool punto) {
    const bool pasa = (tecla >= '0' && tecla <= '9') || tecla == kBorrar ||
                      (punto && tecla == '.') || (menos && tecla == '-');
    return pasa ? tecla : kNada;
}

int EscrituraManual::bit() const {
    const auto punto = TxtDireccion.rfind('.');
    if (punto == std::string::npos) return -1;
    const int n = bitDeTexto(std::string_view(TxtDireccion).substr(punto + 1));
    return n == kNoEsBit ? -1 : n;
}

std::string EscrituraManual::direccion() const {
    return txtPuerto + "." + TxtPlc + "." + TxtDireccion;
}

void EscrituraManual::ponerValor(std::string_view texto) {
    valor_ = esNumerico(texto) ? texto : "0";
}

void EscrituraManual::recibirValorMW(double valor) { ponerValor(textoDeNumero(valor)); }

bool EscrituraManual::CheckBin(int cual) const {
    if (bit() >= 0) return cual == bit() && numero(valor_) != 0;
    return wordbit(numero(valor_), cual) == 1;
}

std::string EscrituraManual::LblBinario() const {
    if (bit() >= 0) return "Bit " + std::to_string(bit()) + ": " + (CheckBin(bit()) ? '1' : '0');
    std::string bits;
    for (int b = limite::kBits - 1; b >= 0; --b)
        bits += CheckBin(b) ? '1' : '0';
    return "Binario: " + bits;
}

void EscrituraManual::marcar(int cual, bool marcado) {
    if (bit() >= 0) return ponerValor(marcado ? "1" : "0");
    ponerValor(textoDeNumero(SetearBIT_YDevolverPalabra(numero(valor_), cual, marcado)));
}

bool EscrituraManual::cabe() const {
    return numero(valor_) <= (bit() >= 0 ? 1 : limite::kRegistro);
}

bool EscrituraManual::admite(char16_t caracter) {
    const auto tecla = static_cast<std::int16_t>(caracter);
    return caracter >= u' ' && ValidarIngresoDeNumeros(tecla, false, false) == tecla;
}

std::optional<EscrituraManual::Campo> EscrituraManual::BtnOk(OrdenDeEscribir& orden) const {
    if (recortar(txtPuerto).empty()) return Campo::Puerto;
    if (recortar(TxtPlc).empty()) return Campo::Plc;
    if (recortar(TxtDireccion).empty()) return Campo::Direccion;
    if (recortar(valor_).empty() || !cabe()) return Campo::Valor;
    orden.escribirDireccion(direccion(), numero(valor_));
    return std::nullopt;
}

} // namespace kv
