#include "server/sesion.h"

#include "server/cifrado.h"
#include "text/fecha.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <stdexcept>

namespace kv {
namespace {

constexpr std::size_t kLlegadaEnCaja = 4096;     // bytes of one arrival that the box shows
constexpr std::size_t kLlegadaEnRegistro = 2048; // and a log entry
constexpr std::size_t kColumnaDeValor = 1;

double numeroDeCampo(std::string_view campo) {
    const auto numero = numeroDeTexto(campo);
    if (!numero)
        throw std::invalid_argument("No coinciden los tipos: " +
                                    utf8DesdeWindows1252(campo.substr(0, 64)));
    return *numero;
}

std::string paraMostrar(std::string_view llegada, std::size_t maximo) {
    std::string texto = enUnaLinea(utf8DesdeWindows1252(llegada.substr(0, maximo)));
    if (llegada.size() > maximo) texto += "... (" + std::to_string(llegada.size()) + " bytes)";
    return texto;
}

} // namespace

Sesion::Sesion(Bucle& bucle, const Tablas& tablas, Vista& vista, LogAcotado& log, Puerta& puerta,
               OrdenesDelCliente& ordenes, CableDelCliente& cable)
    : bucle_(bucle), tablas_(tablas), vista_(vista), log_(log), puerta_(puerta), ordenes_(ordenes),
      cable_(cable) {}

void Sesion::empezar(std::string_view remoto) {
    ++numero_;
    logueada_ = false;
    remoto_ = remoto;
    desdeMs_ = bucle_.reloj().monotonicoMs();
}

double Sesion::edad() const {
    return static_cast<double>(bucle_.reloj().monotonicoMs() - desdeMs_) / 1000;
}

std::string_view Sesion::ip() const {
    return std::string_view(remoto_).substr(0, remoto_.rfind(':'));
}

void Sesion::atender(std::string_view llegada) {
    try {
        anotar(llegada);
        if (logueada_)
            servir(llegada);
        else
            identificar(llegada);
    } catch (const std::exception& falla) {
        log_.escribir("arriba datos", "DriverKV2200",
                      std::string(falla.what()) +
                          " Datos: " + paraMostrar(llegada, kLlegadaEnRegistro));
    }
}

void Sesion::anotar(std::string_view llegada) {
    vista_.servidor.Text2.agregar(formatoGeneral(bucle_.reloj().ahora()) + "[" +
                                  paraMostrar(llegada, kLlegadaEnCaja) + "]\r\n");
}

void Sesion::identificar(std::string_view llegada) {
    if (esSoloKeepAlive(llegada) || puerta_.enPausa(ip())) return;
    const std::string debido = textoDeClave(formatoDeHora(bucle_.reloj().ahora()));
    if (minusculas(descifrar(llegada)).find(minusculas(debido)) != std::string::npos) {
        logueada_ = true;
        cable_.enviarSuelto(kClaveAceptada);
        bucle_.dejarCorrerPendientes();
    } else if (puerta_.claveErrada(ip())) {
        log_.escribir("Login", remoto_ + ": demasiadas claves erradas, no se miran por un rato");
    }
}

void Sesion::servir(std::string_view llegada) {
    const Numero mia = numero_;
    std::string resto = escribir(llegada);
    if (numero_ != mia) return;
    if (quitarPalabra(resto, kSincronizar)) cable_.pedirSincronismo();
    resto = forzar(resto);
    if (numero_ != mia) return;
    resto = leer(resto);
    if (numero_ == mia) contestarKeepAlive(resto);
}

std::string Sesion::escribir(std::string_view llegada) {
    const Numero mia = numero_;
    const Tramas tramas = extraerTramas(llegada, kMarcasDeEscritura);
    if (tramas.repetidas > 0)
        vista_.servidor.Text2.agregar("  " + std::to_string(tramas.repetidas) +
                                      " escrituras repetidas en una llegada: se hacen una vez\r\n");
    for (const std::string& contenido : tramas.contenidos) {
        cable_.enviarSuelto(kEscrituraRecibida);
        escribirUna(contenido);
        if (numero_ != mia) break;
    }
    return tramas.resto;
}

void Sesion::escribirUna(std::string_view contenido) {
    const auto campos = dosCampos(contenido);
    if (!campos) return;
    const double valor = numeroDeCampo(campos->second);
    const std::string direccion = utf8DesdeWindows1252(campos->first);
    const bool admitida = !puerta_.soloLectura() && puerta_.admiteOtraEscritura();
    if (admitida) return ordenes_.escribirDireccion(direccion, valor, "cliente " + remoto_);
    log_.escribir("Escritura", remoto_ + ": no se hace " + direccion.substr(0, 64),
                  puerta_.soloLectura() ? "solo lectura" : "demasiadas en un segundo");
}

std::string Sesion::forzar(std::string_view llegada) {
    const Numero mia = numero_;
    Tramas tramas = extraerTramas(llegada, kMarcasDeForzado);
    for (const std::string& contenido : tramas.contenidos) {
        const auto campos = dosCampos(contenido);
        if (!campos) continue;
        const double nivel = numeroDeCampo(campos->first);
        ordenes_.forzarBloque_porNivel_NVeces(nivel, numeroDeCampo(campos->second));
        if (numero_ != mia) break;
    }
    return std::move(tramas.resto);
}

std::string Sesion::leer(std::string_view llegada) {
    const Numero mia = numero_;
    Tramas tramas = extraerTramas(llegada, kMarcasDeLectura);
    for (const std::string& contenido : tramas.contenidos) {
        const std::string carga = obtenerTramaParaENVIAR(direccionDeLectura(contenido));
        if (numero_ == mia && !carga.empty()) cable_.enviarDatos(carga);
        if (numero_ != mia) break;
    }
    return std::move(tramas.resto);
}

void Sesion::contestarKeepAlive(std::string& resto) {
    if (quitarPalabra(resto, kKeepAliveDelCliente)) cable_.enviarSuelto(kKeepAliveDelCliente);
    if (quitarPalabra(resto, kKeepAliveDelDriver)) cable_.alContestarKeepAlive();
}

std::string Sesion::obtenerTramaParaENVIAR(std::string_view direccion) {
    const std::string buscada = utf8DesdeWindows1252(direccion);
    Lista& lista = vista_.lstViewVariables;
    const std::int64_t fila = lista.buscar(buscada);
    if (fila < 0) {
        ordenes_.forzarPoleo(buscada);
        return {};
    }
    const auto f = static_cast<FilaDeLista>(fila);
    lista.seleccionar(f);
    const std::int64_t bloque = lista.etiqueta(f);
    if (!tablas_.bloques.vive(static_cast<double>(bloque))) return {};
    const std::string& separador = cable_.separadores().campo;
    std::string carga(direccion);
    carga.append(separador);
    agregarAlCable(carga, lista.texto(f, kColumnaDeValor));
    carga.append(separador);
    agregarNumero(carga, tablas_.bloques[static_cast<std::size_t>(bloque)].estado);
    return carga.append(separador);
}

} // namespace kv
