#include "ui/commands/escritura_manual.h"

#include "text/numeros.h"
#include "text/texto.h"
#include "write/palabra.h"

namespace kv {
namespace {

constexpr int kBits = 16;

double numero(const std::string& texto) { return numeroDeTexto(texto).value_or(0); }

} // namespace

void EscrituraManual::ponerValor(std::string_view texto) {
    valor_ = esNumerico(texto) ? texto : "0";
}

void EscrituraManual::recibirValorMW(double valor) { ponerValor(textoDeNumero(valor)); }

bool EscrituraManual::CheckBin(int bit) const { return wordbit(numero(valor_), bit) == 1; }

std::string EscrituraManual::LblBinario() const {
    std::string bits;
    for (int b = kBits - 1; b >= 0; --b)
        bits += CheckBin(b) ? '1' : '0';
    return "Binario: " + bits;
}

void EscrituraManual::marcar(int bit, bool marcado) {
    ponerValor(textoDeNumero(SetearBIT_YDevolverPalabra(numero(valor_), bit, marcado)));
}

bool EscrituraManual::admite(char16_t caracter) {
    const auto tecla = static_cast<std::int16_t>(caracter);
    return caracter >= u' ' && ValidarIngresoDeNumeros(tecla, false, false) == tecla;
}

std::string EscrituraManual::BtnOk(OrdenDeEscribir& orden) const {
    if (recortar(txtPuerto).empty()) return "Error de numero de Puerto";
    if (recortar(TxtPlc).empty()) return "Error de numero de PLC";
    if (recortar(TxtDireccion).empty()) return "Error de numero de Direccion";
    if (recortar(valor_).empty()) return "Error de valor numerico";
    orden.escribirDireccion(txtPuerto + "." + TxtPlc + "." + TxtDireccion, numero(valor_));
    return {};
}

} // namespace kv
