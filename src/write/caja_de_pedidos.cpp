#include "write/caja_de_pedidos.h"

#include "text/numeros.h"

namespace kv {

void CajaDePedidos::decir(std::string_view texto) {
    vista_.txtDemandaLecturaEscritura.agregarEnOtraLinea(sello_.ahora() + std::string(texto));
}

void CajaDePedidos::alRechazar(const Rechazo& r) {
    registro_->alRechazar(r);
    if (r.origen == kOrigenGuion) return;
    if (!r.texto.empty()) return decir(r.texto);
    decir(" Imposible escribir. " + std::string(r.direccion) + " = " + textoDeNumero(r.valor) +
          ": " + std::string(r.motivo) + "\r\n");
}

void CajaDePedidos::alFundir(const BloqueEscritura& e, std::string_view origen) {
    registro_->alFundir(e, origen);
    if (origen == kOrigenGuion) return;
    decir(" " + direccionDe(e) + " = " + textoDeNumero(e.pedido) + ": ya espera una igual\r\n");
}

void CajaDePedidos::alTerminar(const BloqueEscritura& e, FinDeEscritura fin) {
    registro_->alTerminar(e, fin);
    if (e.origen == kOrigenGuion) return;
    decir(" " + direccionDe(e) + " = " + textoDeNumero(e.pedido) + ": " +
          std::string(palabras(fin)) + "\r\n");
}

} // namespace kv
