#include "server/puerta.h"

#include "config/direccion.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>
#include <cmath>

namespace kv {
namespace {

constexpr std::int64_t kMinutoMs = 60'000;
constexpr std::size_t kDireccionesSeguidas = 64;
constexpr std::size_t kMaximoDeAjustes = 4U << 20;
constexpr double kUnDia = 86'400;

std::uint32_t numeroDeIp(std::string_view ip) {
    std::uint32_t numero = 0;
    for (const std::string_view parte : partir(ip, '.'))
        numero = numero << 8 | static_cast<std::uint32_t>(numeroDeTexto(parte).value_or(0));
    return numero;
}

} // namespace

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

Puerta::Puerta(Ajustes& ajustes, const Reloj& reloj, Queja queja)
    : ajustes_(ajustes), reloj_(reloj), queja_(std::move(queja)) {}

/// Reads the file by itself: what one look at it says must not mix with what another one says.
bool Puerta::mirarAjustes() {
    const std::string& ruta = ajustes_.archivoDeAjustes();
    const HuellaDeArchivo huella = ajustes_.archivos().huella(ruta);
    if (legibles_ && huella == huella_) return true;
    auto contenido =
        huella.existe ? ajustes_.archivos().leer(ruta, kMaximoDeAjustes) : std::string();
    huella_ = huella;
    legibles_ = contenido.has_value();
    if (contenido) ini_ = Ini(std::move(*contenido));
    return legibles_;
}

std::string Puerta::texto(std::string_view clave) const {
    const auto hallazgo = ini_.buscar(kSeccionDeAjustes, clave);
    return hallazgo ? utf8DesdeWindows1252(hallazgo->valor) : std::string();
}

void Puerta::quejarse(std::string_view clave, const std::string& valor, std::string_view que) {
    std::string& ultima = quejas_[std::string(clave)];
    if (ultima == valor) return;
    ultima = valor;
    queja_(std::string(clave) + "=" + valor + ": " + std::string(que));
}

/// What is written to close a door closes it, however it is written.
bool Puerta::encendido(std::string_view clave) {
    const std::string valor = texto(clave);
    return !recortar(valor).empty() && recortar(valor) != "0";
}

double Puerta::numero(std::string_view clave, double porDefecto, double maximo) {
    const std::string valor = texto(clave);
    if (recortar(valor).empty()) return porDefecto;
    const auto n = numeroDeTexto(valor);
    if (n && *n >= 0 && *n <= maximo) return *n;
    quejarse(clave, valor, "valor no valido, se usa " + textoDeNumero(porDefecto));
    return porDefecto;
}

void Puerta::releer() {
    if (!mirarAjustes()) {
        quejarse("sis_config.ini", "ilegible",
                 "no se puede leer, los clientes quedan como estaban");
        return;
    }
    quejas_.erase("sis_config.ini");
    const std::string direccion = texto("Escucha_Direccion");
    direccion_ = recortar(direccion).empty() ? "0.0.0.0" : std::string(recortar(direccion));
    exigeLogin_ = encendido("Escucha_Login_Antes_De_Todo");
    soloLectura_ = encendido("Escucha_Solo_Lectura");
    plazoDeLogin_ = numero("Escucha_Plazo_De_Login_Segundos", 0, kUnDia);
    clavesPorMinuto_ = numero("Escucha_Claves_Erradas_Por_Minuto", 10, 1e6);
    pausaPorClaves_ = numero("Escucha_Pausa_Por_Claves_Segundos", 60, kUnDia);
    escriturasPorSegundo_ = numero("Escucha_Escrituras_Por_Segundo", 0, 1e6);
    leerPermitidos();
}

void Puerta::leerPermitidos() {
    constexpr std::string_view kClave = "Escucha_Clientes_Permitidos";
    std::string lista = texto(kClave);
    todos_ = recortar(lista).empty();
    if (lista == permitidos_ && !redes_.empty()) return;
    permitidos_ = lista;
    redes_.clear();
    if (todos_) return;
    for (char& c : lista) {
        if (c == ',' || c == ';' || c == '\t') c = ' ';
    }
    auto entradas = partir(lista, ' ');
    if (permitidos_.size() >= kMaximoDeValor) {
        // Half an address can be another one.
        entradas.pop_back();
        quejarse(kClave, permitidos_, "lista demasiado larga, lo ultimo no entra");
    }
    for (const std::string_view entrada : entradas) {
        if (entrada.empty()) continue;
        if (const auto red = redDeTexto(entrada))
            redes_.push_back(*red);
        else
            quejarse(kClave, permitidos_,
                     std::string(entrada) + " no es direccion, no entra nadie por ella");
    }
}

bool Puerta::puedeEntrar(std::string_view ip) const {
    if (todos_) return true;
    if (!esIPv4(ip)) return false;
    const std::uint32_t numero = numeroDeIp(ip);
    return std::any_of(redes_.begin(), redes_.end(), [numero](const RedPermitida& r) {
        return (numero & r.mascara) == r.direccion;
    });
}

bool Puerta::admiteOtraEscritura() {
    if (escriturasPorSegundo_ == 0) return true;
    const std::int64_t ahora = reloj_.monotonicoMs();
    if (ahora - segundoMs_ >= 1000) {
        segundoMs_ = ahora;
        escrituras_ = 0;
    }
    return ++escrituras_ <= escriturasPorSegundo_;
}

bool Puerta::enPausa(std::string_view ip) const {
    const auto i = intentos_.find(ip);
    return i != intentos_.end() && reloj_.monotonicoMs() < i->second.pausaHastaMs;
}

bool Puerta::claveErrada(std::string_view ip) {
    if (clavesPorMinuto_ == 0) return false;
    const std::int64_t ahora = reloj_.monotonicoMs();
    auto i = intentos_.find(ip);
    if (i == intentos_.end()) {
        if (intentos_.size() == kDireccionesSeguidas)
            intentos_.erase(std::min_element(
                intentos_.begin(), intentos_.end(),
                [](const auto& a, const auto& b) { return a.second.desdeMs < b.second.desdeMs; }));
        i = intentos_.emplace(ip, Intentos{}).first;
    }
    Intentos& t = i->second;
    if (t.cuantos == 0 || ahora - t.desdeMs >= kMinutoMs) t = {ahora, t.pausaHastaMs, 0};
    if (++t.cuantos < clavesPorMinuto_) return false;
    t.cuantos = 0;
    t.pausaHastaMs = ahora + static_cast<std::int64_t>(pausaPorClaves_ * 1000);
    return true;
}

} // namespace kv
