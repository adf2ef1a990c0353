#include "ui/commands/operador.h"

#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::string_view kOrigen = "ventana";
constexpr std::string_view kPrimeraDireccion = "1.1.40001";
constexpr std::size_t kPartesConBit = 4;
constexpr double kBits = 16;
constexpr double kPalabraMaxima = 65535;
// Columns of the variables list.
constexpr std::size_t kValor = 1;
constexpr std::size_t kEstado = 2;
constexpr std::size_t kFechaHora = 3;

Aviso errorDeIngreso() { return {"Error de Ingreso", "", true}; }

std::optional<std::string> registroSiguiente(std::string_view registro) {
    const auto numero = hexadecimal(registro);
    if (!numero || *numero == UINT32_MAX) return std::nullopt;
    std::string digitos;
    for (std::uint32_t resto = *numero + 1; resto != 0; resto /= 16)
        digitos.insert(digitos.begin(), "0123456789ABCDEF"[resto % 16]);
    digitos.insert(0, registro.size() - std::min(registro.size(), digitos.size()), '0');
    return digitos;
}

bool esDeBit(std::string_view direccion) {
    return std::count(direccion.begin(), direccion.end(), '.') + 1 == kPartesConBit;
}

} // namespace

std::optional<std::string> direccionSiguiente(std::string_view direccion) {
    auto punto = direccion.rfind('.');
    if (punto == std::string_view::npos) return std::nullopt;
    std::string cola;
    if (esDeBit(direccion)) {
        const auto bit = numeroDeTexto(direccion.substr(punto + 1));
        if (!bit || *bit < 0) return std::nullopt;
        if (*bit + 1 < kBits)
            return std::string(direccion.substr(0, punto + 1)) + textoDeNumero(*bit + 1);
        direccion = direccion.substr(0, punto);
        punto = direccion.rfind('.');
        cola = ".0";
    }
    const auto siguiente = registroSiguiente(direccion.substr(punto + 1));
    if (!siguiente) return std::nullopt;
    return std::string(direccion.substr(0, punto + 1)) + *siguiente + cola;
}

void Operador::hacer(const Orden& orden) {
    if (registro_ == nullptr) return cumplir(orden);
    registro_->empieza(textoDeOrden(orden));
    try {
        cumplir(orden);
    } catch (...) {
        registro_->termina();
        throw;
    }
    registro_->termina();
}

void Operador::cumplir(const Orden& orden) {
    switch (orden.clase) {
    case Orden::Clase::Forzar:
        return p_.forzado.forzarPoleo(orden.texto);
    case Orden::Clase::ForzarNivel:
        return p_.forzado.forzarBloque_porNivel_NVeces(orden.numero, orden.otro);
    case Orden::Clase::Escribir:
        p_.solicitudes.escribirDireccion(orden.texto, orden.numero, kOrigen);
        return;
    case Orden::Clase::Activar:
        if (p_.tablas.bloques.vive(orden.numero))
            p_.forzado.Activar_Desactivar_Bloque_Por_Solicitud(static_cast<Indice>(orden.numero),
                                                               orden.otro != 0);
        return;
    case Orden::Clase::Scan:
        return p_.forzado.ModificarScanDeBloque(orden.numero, orden.otro);
    case Orden::Clase::Buscar:
        return mostrarBusqueda(orden.texto);
    case Orden::Clase::Ocultar:
        p_.ajustes.escribirConfiguracion("VER", "0");
        p_.vista.Form1Visible = false;
        return;
    case Orden::Clase::VerServidor:
        p_.vista.FrmServerTCPVisible = orden.numero != 0;
        return;
    }
}

void Operador::forzarLectura(std::string_view direccion) {
    hacer({Orden::Clase::Forzar, std::string(recortar(direccion))});
}

Aviso Operador::forzarPorNivel(std::string_view nivel, std::string_view veces) {
    if (recortar(nivel).empty() || recortar(veces).empty())
        return {"Error de Dato, en Nivel y/o Cantidad de Poleos", "Atencion", true};
    const auto entero16 = [](std::string_view texto) {
        const auto numero = numeroDeTexto(texto);
        return numero ? enteroCorto(*numero) : std::nullopt;
    };
    const auto n = entero16(nivel);
    const auto v = entero16(veces);
    if (!n || !v)
        return {"Error de Tipo de Dato, en Nivel y/o Cantidad de Poleos", "Atencion", true};
    hacer({Orden::Clase::ForzarNivel, {}, static_cast<double>(*n), static_cast<double>(*v)});
    return {};
}

std::int64_t Operador::buscarDireccion(std::string_view direccion) {
    hacer({Orden::Clase::Buscar, std::string(direccion)});
    return p_.vista.lstViewVariables.buscar(direccion);
}

void Operador::mostrarBusqueda(std::string_view direccion) {
    Lista& lista = p_.vista.lstViewVariables;
    const std::int64_t hallada = lista.buscar(direccion);
    if (hallada < 0) {
        p_.vista.lblResultadoBusqueda.poner(p_.sello.ahora() + "\r\nNo existe");
        return;
    }
    const auto fila = static_cast<std::uint32_t>(hallada);
    lista.seleccionar(fila);
    std::string texto;
    const auto renglon = [&](std::string_view nombre, std::size_t columna) {
        texto.append(nombre).append(lista.texto(fila, columna)).append("\r\n");
    };
    renglon(" Direccion: ", 0);
    renglon("  Valor: ", kValor);
    renglon("  Estado: ", kEstado);
    renglon("  Validez: ", kFechaHora);
    p_.vista.lblResultadoBusqueda.poner(texto);
}

void Operador::escribirDireccion(const std::string& direccion, double valor) {
    hacer({Orden::Clase::Escribir, direccion, valor});
}

Aviso Operador::escribirValor(std::string_view direccion, std::string_view valor) {
    const auto numero = numeroDeTexto(valor);
    if (!numero) return errorDeIngreso();
    escribirDireccion(std::string(recortar(direccion)), *numero);
    return {};
}

Aviso Operador::escribirOtraDireccion(std::string& direccion, std::string_view valor) {
    if (direccion.find('.') == std::string::npos) direccion = kPrimeraDireccion;
    const auto siguiente = direccionSiguiente(recortar(direccion));
    if (!siguiente || !esNumerico(valor)) return errorDeIngreso();
    direccion = *siguiente;
    return escribirValor(direccion, valor);
}

Aviso Operador::escribirOtroValor(std::string_view direccion, std::string& valor) {
    const auto numero = numeroDeTexto(valor.empty() ? "0" : valor);
    if (!numero) return errorDeIngreso();
    if (esDeBit(direccion)) {
        valor = *numero == 0 ? "1" : "0";
    } else {
        valor = *numero >= kPalabraMaxima ? "0" : textoDeNumero(*numero + 1);
    }
    return escribirValor(direccion, valor);
}

Aviso Operador::enviarPares(std::span<const Par> pares) {
    Aviso aviso;
    for (const Par& par : pares) {
        if (recortar(par.direccion).empty()) continue;
        if (Aviso uno = escribirValor(par.direccion, par.valor); !uno.vacio()) aviso = uno;
    }
    return aviso;
}

const BloqueLectura* Operador::bloque(std::int64_t indice) const {
    if (!p_.tablas.bloques.vive(static_cast<double>(indice))) return nullptr;
    return &p_.tablas.bloques[static_cast<std::size_t>(indice)];
}

void Operador::activarBloque(std::int64_t indice, bool estado) {
    if (bloque(indice) != nullptr)
        hacer({Orden::Clase::Activar, {}, static_cast<double>(indice), estado ? 1.0 : 0.0});
}

AperturaDeEscritura Operador::abrirEscritura(std::uint32_t fila) const {
    const Lista& lista = p_.vista.lstViewVariables;
    const std::string_view direccion = lista.texto(fila, 0);
    const auto partes = partir(direccion, '.');
    const BloqueLectura* b = bloque(lista.etiqueta(fila));
    AperturaDeEscritura a;
    if (partes.size() < 3 || b == nullptr) return a;
    if (!p_.turnos.conectada(b->idConexion)) {
        a.aviso.texto = "Imposible. Sin conexion con estacion";
    } else if (!b->habilitadoPorRespuestas) {
        a.aviso.texto = "Imposible. Bloque deshabilitado";
    } else {
        a.abrir = true;
        a.puerto = partes[0];
        a.plc = partes[1];
        a.direccion =
            direccion.substr(static_cast<std::size_t>(partes[2].data() - direccion.data()));
        a.valor = numeroDeTexto(lista.texto(fila, kValor)).value_or(0);
    }
    return a;
}

std::optional<Pregunta> Operador::preguntarScan(std::uint32_t fila) const {
    const std::int64_t indice = p_.vista.lstViewEstadoDeBloques.etiqueta(fila);
    const BloqueLectura* b = bloque(indice);
    if (b == nullptr) return std::nullopt;
    const std::string actual = textoDeNumero(b->scanSegundos);
    return Pregunta{"ScanTime", "Scan Time del Bloque (segundos)\r\n" + b->clave + "/" + actual,
                    actual, indice};
}

Aviso Operador::responderScan(std::int64_t indice, std::string_view respuesta) {
    if (recortar(respuesta).empty()) return {};
    const auto segundos = numeroDeTexto(respuesta);
    // A scan of 0 seconds would never tick again; the check box is there to switch a block off.
    if (!segundos || !(*segundos > 0 && *segundos <= Modelo::kScanMaximo)) return errorDeIngreso();
    hacer({Orden::Clase::Scan, {}, static_cast<double>(indice), *segundos});
    return {};
}

void Operador::MnuOcultar() { hacer({Orden::Clase::Ocultar}); }

Aviso Operador::guardar(const std::string& ruta, std::string_view texto) {
    if (p_.archivos.reemplazar(ruta, windows1252DesdeUtf8(texto))) return {};
    return {"No se puede escribir " + ruta, "Atencion", true};
}

} // namespace kv
