// SPDX-License-Identifier: Apache-2.0
#include "server/puerta.h"

#include "config/problema.h"
#include "text/direccion_de_red.h"

#include <algorithm>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kDireccionesSeguidas = 64;

} // namespace

Puerta::Puerta(Ajustes& ajustes, const Reloj& reloj, Queja queja)
    : ajustes_(ajustes), reloj_(reloj), queja_(std::move(queja)) {
    escucha_.cerrada = true; // until it is known what the settings are
}

void Puerta::releer() {
    const std::string_view defecto = ajustes_.defecto();
    decirDefecto(defecto);
    if (!defecto.empty() || !ajustes_.conocidos()) return;
    const bool asentados = ajustes_.asentados();
    // What comes after a file that could not be used may still be only half copied.
    if (leido_ ? !falta_ && *leido_ == ajustes_.cambios() : !asentados) return;
    ClavesDeEscucha nuevas = clavesDeEscucha(ajustes_.contenido());
    for (const auto& [nombre, clave] : claves_.claves) {
        const auto nueva = nuevas.claves.find(nombre);
        const bool esta = nueva != nuevas.claves.end();
        if (esta && (nueva->second.terminada || nueva->second.valor == clave.valor)) continue;
        if (!asentados)
            nuevas.claves[nombre] = clave;
        else if (!esta)
            queja_(clave.nombre + " ya no está en los ajustes: rige lo que vale sin ella");
    }
    adoptar(std::move(nuevas));
    leido_ = ajustes_.cambios();
    falta_ = !asentados;
}

void Puerta::decirDefecto(std::string_view defecto) {
    if (std::exchange(defecto_, defecto) == defecto || defecto.empty()) return;
    queja_(textoDeProblema({ajustes_.archivoDeAjustes(), 0, "el archivo " + std::string(defecto),
                            ajustes_.conocidos() ? "las claves Escucha_ quedan como estaban"
                                                 : "no se admite a ningún cliente"}));
}

void Puerta::adoptar(ClavesDeEscucha nuevas) {
    claves_ = std::move(nuevas);
    std::vector<QuejaDeEscucha> quejas;
    escucha_ = escuchaDe(claves_, quejas);
    std::set<std::string> dichas;
    for (const QuejaDeEscucha& q : quejas) {
        const std::string texto =
            textoDeProblema({ajustes_.archivoDeAjustes(), q.linea, q.que, q.consecuencia});
        if (dichas.insert(texto).second && !quejas_.contains(texto)) queja_(texto);
    }
    quejas_ = std::move(dichas);
}

std::string_view Puerta::direccionDeEscucha() const {
    return escucha_.cerrada ? std::string_view() : std::string_view(escucha_.direccion);
}

bool Puerta::puedeEntrar(std::string_view ip) const {
    if (escucha_.cerrada) return false;
    if (escucha_.todos) return true;
    if (!esIPv4(ip)) return false;
    const std::uint32_t numero = numeroDeIp(ip);
    return std::any_of(escucha_.redes.begin(), escucha_.redes.end(),
                       [numero](const auto& r) { return (numero & r.mascara) == r.direccion; });
}

bool Puerta::admiteOtraEscritura() {
    return escucha_.escriturasPorSegundo == 0 ||
           escrituras_.tomar(reloj_.monotonicoMs(), escucha_.escriturasPorSegundo);
}

bool Puerta::enPausa(std::string_view ip) const {
    const auto i = intentos_.find(ip);
    return i != intentos_.end() && reloj_.monotonicoMs() < i->second.pausaHastaMs;
}

bool Puerta::claveErrada(std::string_view ip) {
    if (escucha_.clavesPorMinuto == 0) return false;
    const std::int64_t ahora = reloj_.monotonicoMs();
    auto i = intentos_.find(ip);
    if (i == intentos_.end()) {
        if (intentos_.size() == kDireccionesSeguidas)
            intentos_.erase(std::min_element(
                intentos_.begin(), intentos_.end(), [](const auto& a, const auto& b) {
                    return a.second.claves.desdeMs() < b.second.claves.desdeMs();
                }));
        i = intentos_.emplace(ip, Intentos{}).first;
    }
    Intentos& t = i->second;
    if (t.claves.tomar(ahora, escucha_.clavesPorMinuto - 1)) return false;
    t.claves.vaciar();
    t.pausaHastaMs = ahora + static_cast<std::int64_t>(escucha_.pausaPorClaves * 1000);
    return true;
}

} // namespace kv
