#include "write/auditoria.h"

#include "core/tables/bases.h"
#include "platform/ruta.h"
#include "text/numeros.h"
#include "text/windows1252.h"

namespace kv {
namespace {

constexpr std::size_t kMaximoDeCampo = 200;

/// A field as it stands in a line: cut, without control characters and separators.
std::string campo(std::string_view texto) {
    std::string salida;
    for (const char c : texto.substr(0, kMaximoDeCampo)) {
        const auto b = static_cast<std::uint8_t>(c);
        if (b >= 32 && b != 127 && c != ';' && c != '\\') {
            salida += c;
            continue;
        }
        salida += '\\';
        if (b < 16) salida += '0';
        agregarHexadecimal(salida, b);
    }
    if (texto.size() > kMaximoDeCampo) salida += "...";
    return salida;
}

std::string_view palabras(FinDeEscritura fin) {
    switch (fin) {
    case FinDeEscritura::Confirmada:
        return "confirmada";
    case FinDeEscritura::SinRespuesta:
        return "sin respuesta";
    case FinDeEscritura::ConexionPerdida:
        return "conexion perdida";
    case FinDeEscritura::PalabraDesconocida:
        return "palabra desconocida";
    }
    return "";
}

} // namespace

Auditoria::Auditoria(Archivos& archivos, const Reloj& reloj, const std::string& carpetaDelPrograma,
                     std::string programa)
    : archivos_(archivos), reloj_(reloj), carpeta_(unirRuta(carpetaDelPrograma, "LOGS_DRIVER")),
      programa_(std::move(programa)) {}

void Auditoria::alTerminar(const BloqueEscritura& e, FinDeEscritura fin) {
    std::string direccion = claveDeBloque(e.puerto, e.plc, e.direccion);
    if (e.esBit) direccion += "." + textoDeNumero(e.bit);
    anotar(campo(e.origen) + ";" + campo(direccion) + ";" +
           (e.seConociaAnterior ? textoDeNumero(e.valorAnterior) : std::string("?")) + ";" +
           textoDeNumero(e.esBit ? e.valorBit : e.valores[0]) + ";" + std::string(palabras(fin)));
}

void Auditoria::alRechazar(std::string_view direccion, double valor, std::string_view origen,
                           std::string_view motivo) {
    anotar(campo(origen) + ";" + campo(direccion) + ";?;" + textoDeNumero(valor) +
           ";rechazada: " + campo(motivo));
}

void Auditoria::anotar(const std::string& cuerpo) {
    if (cuerpo == ultimo_) {
        ++repetidas_;
        return;
    }
    cerrarRepetidas();
    ultimo_ = cuerpo;
    if (pendiente_.size() > kMaximoPorVuelta) {
        ++perdidas_;
        return;
    }
    pendiente_ += formatoGeneral(reloj_.ahora()) + ";" + cuerpo + "\r\n";
}

void Auditoria::cerrarRepetidas() {
    if (repetidas_ > 0)
        pendiente_ += formatoGeneral(reloj_.ahora()) + ";;;;;la anterior " +
                      std::to_string(repetidas_) + " veces mas\r\n";
    repetidas_ = 0;
}

void Auditoria::volcar() {
    if (pendiente_.empty()) return;
    if (perdidas_ > 0)
        pendiente_ += formatoGeneral(reloj_.ahora()) + ";;;;;" + std::to_string(perdidas_) +
                      " escrituras mas sin anotar\r\n";
    perdidas_ = 0;
    if (!archivos_.existe(carpeta_)) archivos_.crearCarpeta(carpeta_);
    archivos_.agregar(
        unirRuta(carpeta_, formatoDeDia(reloj_.ahora()) + " " + programa_ + " Escrituras.txt"),
        windows1252DesdeUtf8(pendiente_));
    pendiente_.clear();
}

} // namespace kv
