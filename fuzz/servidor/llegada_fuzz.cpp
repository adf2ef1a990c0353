// SPDX-License-Identifier: Apache-2.0
// Any bytes after the login: frames come out as the rule says that takes them one after the other
// over the whole text, and no step ever makes an arrival longer.

#include "server/mensajes.h"
#include "text/texto.h"

#include <cstdint>
#include <cstdlib>

namespace {

void exigir(bool cierto) {
    if (!cierto) std::abort();
}

kv::Tramas alPieDeLaLetra(std::string texto, const kv::Marcas& marcas,
                          std::size_t maximo = static_cast<std::size_t>(-1)) {
    kv::Tramas t;
    while (t.contenidos.size() < maximo) {
        const auto abre = kv::buscarSinCaja(texto, marcas.abre);
        if (abre == std::string::npos) break;
        const auto desde = abre + marcas.abre.size();
        const auto cierra = kv::buscarSinCaja(texto, marcas.cierra, desde);
        if (cierra == std::string::npos) break;
        t.contenidos.push_back(texto.substr(desde, cierra - desde));
        const std::string trama = texto.substr(abre, cierra + marcas.cierra.size() - abre);
        texto = kv::reemplazarSinCaja(texto, trama, "");
    }
    t.resto = texto;
    return t;
}

void comparar(const std::string& texto, const kv::Marcas& marcas) {
    const kv::Tramas t = kv::extraerTramas(texto, marcas);
    const kv::Tramas debido = alPieDeLaLetra(texto, marcas);
    exigir(t.contenidos == debido.contenidos && t.resto == debido.resto);
    const std::size_t mitad = t.contenidos.size() / 2;
    exigir(kv::extraerTramas(texto, marcas, mitad).resto ==
           alPieDeLaLetra(texto, marcas, mitad).resto);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* datos, std::size_t largo) {
    const std::string texto(reinterpret_cast<const char*>(datos), largo);
    comparar(texto, kv::kMarcasDeEscritura);
    comparar(texto, kv::kMarcasDeForzado);
    const kv::Tramas lecturas = kv::extraerTramas(texto, kv::kMarcasDeLectura);
    std::size_t total = lecturas.resto.size();
    for (const std::string& contenido : lecturas.contenidos) {
        total += contenido.size();
        exigir(kv::direccionDeLectura(contenido).size() <= contenido.size());
        const auto campos = kv::dosCampos(contenido);
        exigir(!campos || campos->first.size() + campos->second.size() < contenido.size());
    }
    exigir(total <= texto.size());
    std::string resto = texto;
    const bool habia = kv::quitarPalabra(resto, kv::kSincronizar);
    exigir(habia ? resto.size() < texto.size() : resto == texto);
    (void)kv::esSoloKeepAlive(texto);
    return 0;
}
