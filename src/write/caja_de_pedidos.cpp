#include "write/caja_de_pedidos.h"

namespace kv {

void CajaDePedidos::decir(Que que, const BloqueEscritura& e, int detalle) {
    sucesos_.decir({.que = que,
                    .detalle = static_cast<std::int16_t>(detalle),
                    .conexion = e.idConexion,
                    .bloque = e.indiceBloqueLectura,
                    .escritura = e.indice,
                    .bit = static_cast<std::int8_t>(e.bit),
                    .numero = e.pedido});
}

void CajaDePedidos::alRechazar(const Rechazo& r) {
    registro_->alRechazar(r);
    if (r.origen == kOrigenGuion) return;
    if (r.suceso.que != Que::Ultimo) return sucesos_.decir(r.suceso, r.dicho);
    std::string dicho(r.direccion);
    dicho += '\0';
    dicho += r.motivo;
    sucesos_.decir({.que = Que::EscrituraRechazada, .numero = r.valor}, dicho);
}

void CajaDePedidos::alFundir(const BloqueEscritura& e, std::string_view origen) {
    registro_->alFundir(e, origen);
    if (origen != kOrigenGuion) decir(Que::EscrituraUnida, e, 0);
}

void CajaDePedidos::alTerminar(const BloqueEscritura& e, FinDeEscritura fin) {
    registro_->alTerminar(e, fin);
    if (e.origen != kOrigenGuion) decir(Que::EscrituraTerminada, e, static_cast<int>(fin));
}

} // namespace kv
