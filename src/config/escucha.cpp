// SPDX-License-Identifier: Apache-2.0
#include "config/escucha.h"

#include "config/desconocidas.h"
#include "config/ini.h"
#include "config/problema.h"
#include "config/tabla_de_ajustes.h"
#include "text/direccion_de_red.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr std::size_t kMaximoDeQuejas = 20;
constexpr const char* kNadie = "no se admite a ningún cliente ni se hace ninguna escritura suya";

/// Goes through a settings file for all that has to do with the door, also in the wrong place.
class LectorDeEscucha {
  public:
    ClavesDeEscucha leer(std::string_view contenido) {
        LectorIni lector(contenido);
        while (lector.siguiente()) {
            const LineaIni& l = lector.linea();
            const auto texto = recortar(contenido.substr(l.inicio, l.finDeTexto - l.inicio));
            if (l.clase == LineaIni::Clase::Seccion)
                seccion(l);
            else if (igualSinCaja(texto.substr(0, kPrefijoDeEscucha.size()), kPrefijoDeEscucha))
                linea(l, texto, l.finDeTexto < l.fin);
        }
        return std::move(leidas_);
    }

  private:
    void seccion(const LineaIni& l) {
        dentro_ = !hubo_ && igualSinCaja(l.nombre, kSeccionDeAjustes);
        hubo_ = hubo_ || dentro_;
    }
    void linea(const LineaIni& l, std::string_view texto, bool terminada) {
        if (l.clase != LineaIni::Clase::Clave)
            return queja(l, citar(texto) + " no es una clave: falta el \"=\"");
        if (!dentro_) return queja(l, citar(l.nombre) + " no está en la sección [DRIVER_KV2200]");
        const auto esta = [&l](const auto& a) { return igualSinCaja(a.clave, l.nombre); };
        if (std::ranges::none_of(ajustesNumericos(), esta) &&
            std::ranges::none_of(ajustesDeTexto(), esta))
            return queja(l, citar(l.nombre) + " no es una clave conocida" +
                                talVez(l.nombre, clavesDeAjustes()));
        const std::string valor = utf8DesdeWindows1252(l.valor);
        const auto [clave, nueva] = leidas_.claves.try_emplace(
            minusculas(l.nombre),
            ClavesDeEscucha::Clave{std::string(l.nombre), valor, l.numero, terminada});
        if (!nueva && clave->second.valor != valor)
            queja(l, citar(l.nombre) + " está repetida con otro valor");
    }
    void queja(const LineaIni& l, std::string que) {
        if (leidas_.quejas.size() < kMaximoDeQuejas)
            leidas_.quejas.push_back({l.numero, std::move(que), kNadie});
    }

    ClavesDeEscucha leidas_;
    bool dentro_ = false; ///< of the section that counts
    bool hubo_ = false;
};

/// Gives the keys their meaning.
class Interprete {
  public:
    Interprete(const ClavesDeEscucha& leidas, std::vector<QuejaDeEscucha>& quejas)
        : leidas_(leidas), quejas_(quejas) {}

    Escucha interpretar() {
        e_.cerrada = !leidas_.quejas.empty();
        quejas_.insert(quejas_.end(), leidas_.quejas.begin(), leidas_.quejas.end());
        direccion();
        permitidos();
        e_.exigeLogin = encendido(kEscuchaLogin.clave);
        e_.soloLectura = encendido(kEscuchaSoloLectura.clave);
        e_.plazoDeLogin = numero(kEscuchaPlazo);
        e_.clavesPorMinuto = numero(kEscuchaErradas);
        e_.pausaPorClaves = numero(kEscuchaPausa);
        e_.escriturasPorSegundo = numero(kEscuchaEscrituras);
        return std::move(e_);
    }

  private:
    /// The key if it is there and has a value.
    [[nodiscard]] const ClavesDeEscucha::Clave* clave(std::string_view nombre) const {
        const auto c = leidas_.claves.find(minusculas(nombre));
        return c == leidas_.claves.end() || recortar(c->second.valor).empty() ? nullptr
                                                                              : &c->second;
    }
    void queja(const ClavesDeEscucha::Clave& c, std::string_view que, std::string consecuencia) {
        quejas_.push_back({c.linea, c.nombre + "=" + citarUtf8(c.valor) + " " + std::string(que),
                           std::move(consecuencia)});
    }
    /// What is written to close a door closes it, however it is written.
    bool encendido(std::string_view nombre) {
        const auto* c = clave(nombre);
        if (c == nullptr || recortar(c->valor) == "0") return false;
        if (recortar(c->valor) != "1") queja(*c, "no es 0 ni 1", "rige 1");
        return true;
    }
    double numero(const AjusteNumerico& ajuste) {
        const auto* c = clave(ajuste.clave);
        if (c == nullptr) return ajuste.porDefecto;
        const auto n = numeroDeTexto(c->valor);
        if (n && *n >= ajuste.minimo && *n <= ajuste.maximo) return *n;
        e_.cerrada = true;
        queja(*c,
              "no es un número de " + textoDeNumero(ajuste.minimo) + " a " +
                  textoDeNumero(ajuste.maximo),
              kNadie);
        return ajuste.porDefecto;
    }
    void direccion() {
        const auto* c = clave(kEscuchaDireccion.clave);
        if (c == nullptr) return;
        e_.direccion = recortar(c->valor);
        if (esIPv4(e_.direccion)) return;
        e_.cerrada = true;
        queja(*c, "no es una dirección IPv4", "no se escucha");
    }
    void permitidos();

    const ClavesDeEscucha& leidas_;
    std::vector<QuejaDeEscucha>& quejas_;
    Escucha e_;
};

void Interprete::permitidos() {
    const auto* c = clave(kEscuchaPermitidos.clave);
    if (c == nullptr) return;
    e_.todos = false;
    std::string lista = c->valor;
    for (char& x : lista) {
        if (x == ',' || x == ';' || x == '\t') x = ' ';
    }
    auto entradas = partir(lista, ' ');
    if (windows1252DesdeUtf8(c->valor).size() >= kMaximoDeValor) {
        entradas.pop_back(); // half an address can be another one
        queja(*c, "es una lista demasiado larga", "la última entrada no cuenta");
    }
    std::size_t malas = 0;
    for (const std::string_view entrada : entradas) {
        if (entrada.empty()) continue;
        if (const auto red = redDeTexto(entrada))
            e_.redes.push_back(*red);
        else if (++malas <= kMaximoDeQuejas)
            queja(*c, "tiene " + citarUtf8(entrada) + ", que no es una dirección ni una red IPv4",
                  "no entra nadie por esa entrada");
    }
}

} // namespace

std::uint32_t numeroDeIp(std::string_view ip) {
    std::uint32_t numero = 0;
    for (const std::string_view parte : partir(ip, '.'))
        numero = numero << 8 | static_cast<std::uint32_t>(numeroDeTexto(parte).value_or(0));
    return numero;
}

std::optional<RedPermitida> redDeTexto(std::string_view texto) {
    const auto barra = texto.find('/');
    const std::string_view ip = texto.substr(0, barra);
    if (!esIPv4(ip)) return std::nullopt;
    if (barra == std::string_view::npos) return RedPermitida{numeroDeIp(ip), 0xFFFFFFFF};
    const auto bits = numeroDeTexto(texto.substr(barra + 1));
    if (!bits || !(*bits >= 0 && *bits <= 32) || *bits != std::floor(*bits)) return std::nullopt;
    const auto libres = static_cast<unsigned>(32 - *bits);
    const auto mascara = static_cast<std::uint32_t>(~std::uint64_t{0} << libres);
    return RedPermitida{numeroDeIp(ip) & mascara, mascara};
}

ClavesDeEscucha clavesDeEscucha(std::string_view contenido) {
    return LectorDeEscucha().leer(contenido);
}

Escucha escuchaDe(const ClavesDeEscucha& claves, std::vector<QuejaDeEscucha>& quejas) {
    return Interprete(claves, quejas).interpretar();
}

} // namespace kv
