// SPDX-License-Identifier: Apache-2.0
#include "operator/operador.h"

#include "operator/dichos_de_operador.h"
#include "plant/direcciones.h"
#include "plant/limites.h"
#include "plant/ordenantes.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"
#include "view/columnas.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::string_view kPrimeraDireccion = "1.1.40001";

constexpr std::string_view kVentana = "Form1"; // as the log names it

std::optional<std::string> registroSiguiente(std::string_view registro) {
    const auto numero = hexadecimal(registro);
    if (!numero || *numero == UINT32_MAX) return std::nullopt;
    std::string digitos;
    for (std::uint32_t resto = *numero + 1; resto != 0; resto /= 16)
        digitos.insert(digitos.begin(), "0123456789ABCDEF"[resto % 16]);
    digitos.insert(0, registro.size() - std::min(registro.size(), digitos.size()), '0');
    return digitos;
}

} // namespace

std::optional<std::string> direccionSiguiente(std::string_view direccion) {
    auto punto = direccion.rfind('.');
    if (punto == std::string_view::npos) return std::nullopt;
    std::string cola;
    if (esDeBit(direccion)) {
        const int bit = bitDeTexto(direccion.substr(punto + 1));
        if (bit == kNoEsBit) return std::nullopt;
        if (bit + 1 < limite::kBits)
            return std::string(direccion.substr(0, punto + 1)) + std::to_string(bit + 1);
        direccion = direccion.substr(0, punto);
        punto = direccion.rfind('.');
        cola = ".0";
    }
    const auto siguiente = registroSiguiente(direccion.substr(punto + 1));
    if (!siguiente) return std::nullopt;
    return std::string(direccion.substr(0, punto + 1)) + *siguiente + cola;
}

std::string Operador::decir(const Frase& frase,
                            std::initializer_list<std::string_view> partes) const {
    return kv::decir(frase, idioma_, partes);
}

Aviso Operador::errorDeIngreso(std::string_view campo, const Frase& que) const {
    return {decir(dicho::kErrorDeIngreso, {campo, decir(que)}), "", true};
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
    anotar(orden);
    switch (orden.clase) {
    case Orden::Clase::Forzar:
        p_.forzado.forzarPoleo(orden.texto, nombreDe(Ordenante::Ventana));
        return;
    case Orden::Clase::ForzarNivel:
        p_.forzado.forzarBloque_porNivel_NVeces(orden.numero, orden.otro,
                                                nombreDe(Ordenante::Ventana));
        return;
    case Orden::Clase::Escribir:
        p_.solicitudes.escribirDireccion(orden.texto, orden.numero, kOrigenVentana);
        return;
    case Orden::Clase::Activar:
        if (p_.tablas.bloques.vive(orden.numero))
            p_.forzado.Activar_Desactivar_Bloque_Por_Solicitud(
                static_cast<Indice>(orden.numero), orden.otro != 0, nombreDe(Ordenante::Ventana));
        return;
    case Orden::Clase::Scan:
        return p_.forzado.ModificarScanDeBloque(orden.numero, orden.otro,
                                                nombreDe(Ordenante::Ventana));
    case Orden::Clase::Buscar:
        return mostrarBusqueda(orden.texto);
    case Orden::Clase::Ocultar:
        p_.ajustes.escribirConfiguracion(kVer.clave, "0");
        p_.vista.Form1Visible = false;
        return;
    case Orden::Clase::VerServidor:
        p_.vista.FrmServerTCPVisible = orden.numero != 0;
        return;
    case Orden::Clase::Olvidar:
        if (p_.tablas.bloques.vive(orden.numero))
            p_.recarga.olvidar(static_cast<Indice>(orden.numero));
        return;
    case Orden::Clase::Recargar:
        return p_.recarga.recargar();
    case Orden::Clase::Salir:
        return;
    }
}

/// Whoever finds a block switched off must be able to learn that an operator did it. Writes have a
/// record of their own.
void Operador::anotar(const Orden& orden) {
    const auto decir = [this](std::string_view que, const std::string& cual) {
        p_.log.escribirLog(kVentana, que, cual);
    };
    const BloqueLectura* b = bloque(entero(orden.numero).value_or(-1));
    const std::string clave = b != nullptr ? b->clave : std::string();
    switch (orden.clase) {
    case Orden::Clase::Forzar:
        return decir("Forzar lectura", orden.texto.substr(0, limite::kDireccionEnMensaje));
    case Orden::Clase::ForzarNivel:
        return decir("Forzar nivel",
                     textoDeNumero(orden.numero) + ", veces: " + textoDeNumero(orden.otro));
    case Orden::Clase::Activar:
        return decir(orden.otro != 0 ? "Prender bloque" : "Apagar bloque", clave);
    case Orden::Clase::Olvidar:
        return decir("Olvidar bloque a pedido", clave);
    case Orden::Clase::Scan:
        return decir("Cambiar scan", clave + " de " +
                                         textoDeNumero(b != nullptr ? b->scanSegundos : 0) + " a " +
                                         textoDeNumero(orden.otro) + " s");
    case Orden::Clase::Salir:
        return decir("Salir", "confirmado");
    default:
        return;
    }
}

void Operador::forzarLectura(std::string_view direccion) {
    hacer({Orden::Clase::Forzar, std::string(recortar(direccion))});
}

Aviso Operador::forzarPorNivel(std::string_view nivel, std::string_view veces) {
    const auto queja = [this](const Frase& que, bool delNivel, bool deVeces) -> Aviso {
        std::string texto = decir(que);
        if (delNivel) texto += "\r\n" + decir(dicho::kNivel);
        if (deVeces) texto += "\r\n" + decir(dicho::kVeces);
        return {texto, decir(dicho::kAtencion), true};
    };
    const bool sinNivel = recortar(nivel).empty();
    const bool sinVeces = recortar(veces).empty();
    if (sinNivel || sinVeces) return queja(dicho::kFaltaNivelOVeces, sinNivel, sinVeces);
    const auto entero16 = [](std::string_view texto) {
        const auto numero = numeroConComa(texto);
        return numero ? enteroCorto(*numero) : std::nullopt;
    };
    const auto n = entero16(nivel);
    const auto v = entero16(veces);
    if (!n || !v) return queja(dicho::kNivelOVecesNoSonNumeros, !n, !v);
    hacer({Orden::Clase::ForzarNivel, {}, static_cast<double>(*n), static_cast<double>(*v)});
    return {};
}

std::int64_t Operador::buscarDireccion(std::string_view direccion) {
    hacer({Orden::Clase::Buscar, std::string(direccion)});
    return p_.vista.lstViewVariables.buscar(direccion);
}

void Operador::mostrarBusqueda(std::string_view direccion) {
    const Lista& lista = p_.vista.lstViewVariables;
    const std::int64_t hallada = lista.buscar(direccion);
    if (hallada < 0) {
        p_.vista.lblResultadoBusqueda.poner(p_.sello.ahora() + "\r\nNo existe");
        return;
    }
    const auto fila = static_cast<std::uint32_t>(hallada);
    std::string texto;
    const auto renglon = [&](std::string_view nombre, std::size_t columna) {
        texto.append(nombre).append(lista.texto(fila, columna)).append("\r\n");
    };
    renglon(" Direccion: ", de_variables::kDireccion);
    renglon("  Valor: ", de_variables::kValor);
    renglon("  Estado: ", de_variables::kEstado);
    renglon("  Validez: ", de_variables::kFechaHora);
    p_.vista.lblResultadoBusqueda.poner(texto);
}

void Operador::escribirDireccion(const std::string& direccion, double valor) {
    hacer({Orden::Clase::Escribir, direccion, valor});
}

std::string Operador::loQueSeLee(std::string_view direccion) const {
    const Lista& lista = p_.vista.lstViewVariables;
    const std::int64_t hallada = lista.buscar(recortar(direccion));
    if (hallada < 0) return {};
    const auto fila = static_cast<std::uint32_t>(hallada);
    std::string texto(lista.texto(fila, de_variables::kValor));
    const std::string estado = lista.texto(fila, de_variables::kEstado);
    texto += "   " + (lista.tildada(fila) ? estado : decir(dicho::kYApagado, {estado}));
    return texto.append("   ").append(lista.texto(fila, de_variables::kFechaHora));
}

Aviso Operador::escribirEn(const std::string& renglon, std::string_view direccion,
                           std::string_view valor) {
    const std::string_view donde = recortar(direccion);
    if (donde.empty()) return errorDeIngreso(decir(dicho::kDireccion) + renglon, dicho::kFalta);
    const auto numero = numeroConComa(valor);
    if (!numero) return errorDeIngreso(decir(dicho::kValor) + renglon, dicho::kNoEsNumero);
    escribirDireccion(std::string(donde), *numero);
    return {};
}

Aviso Operador::escribirValor(std::string_view direccion, std::string_view valor) {
    return escribirEn("", direccion, valor);
}

Aviso Operador::escribirOtraDireccion(std::string& direccion, std::string_view valor) {
    if (recortar(direccion).empty() || !numeroConComa(valor))
        return escribirValor(direccion, valor); // it says which
    const bool conPunto = direccion.find('.') != std::string::npos;
    const auto siguiente = direccionSiguiente(conPunto ? recortar(direccion) : kPrimeraDireccion);
    if (!siguiente) return errorDeIngreso(decir(dicho::kDireccion), dicho::kSinSiguiente);
    direccion = *siguiente;
    return escribirValor(direccion, valor);
}

Aviso Operador::escribirOtroValor(std::string_view direccion, std::string& valor) {
    const auto numero = numeroConComa(valor.empty() ? "0" : valor);
    if (!numero || recortar(direccion).empty()) return escribirValor(direccion, valor);
    if (esDeBit(direccion)) {
        valor = *numero == 0 ? "1" : "0";
    } else {
        valor = *numero >= limite::kRegistro ? "0" : textoDeNumero(*numero + 1);
    }
    return escribirValor(direccion, valor);
}

Aviso Operador::enviarPares(std::span<const Par> pares) {
    Aviso aviso;
    for (std::size_t i = 0; i < pares.size(); ++i) {
        if (recortar(pares[i].direccion).empty()) continue;
        const Aviso uno =
            escribirEn(" " + std::to_string(i + 1), pares[i].direccion, pares[i].valor);
        if (aviso.vacio()) {
            aviso = uno;
        } else if (!uno.vacio()) {
            aviso.texto += uno.texto.substr(uno.texto.find("\r\n"));
        }
    }
    return aviso;
}

std::vector<Operador::FilaDePuerto> Operador::puertos() const {
    std::vector<FilaDePuerto> filas;
    for (std::size_t i = 0; i < p_.tablas.puertos.limiteSuperior(); ++i)
        filas.push_back({p_.tablas.puertos[i], 0});
    for (std::size_t i = 0; i < p_.tablas.bloques.limiteSuperior(); ++i) {
        if (p_.tablas.bloques[i].retirado) continue;
        const auto puerto = static_cast<std::size_t>(p_.tablas.bloques[i].puerto);
        if (puerto >= 1 && puerto <= filas.size()) ++filas[puerto - 1].bloques;
    }
    return filas;
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
    const std::string direccion = lista.texto(fila, de_variables::kDireccion);
    const auto partes = partir(direccion, '.');
    const BloqueLectura* b = bloque(lista.etiqueta(fila));
    AperturaDeEscritura a;
    if (partes.size() < 3 || b == nullptr) return a;
    if (!p_.turnos.conectada(b->idConexion)) {
        a.aviso.texto = decir(dicho::kSinConexion);
    } else if (!b->habilitadoPorRespuestas) {
        a.aviso.texto = decir(dicho::kBloqueDeshabilitado);
    } else {
        a.abrir = true;
        a.puerto = partes[0];
        a.plc = partes[1];
        a.direccion =
            direccion.substr(static_cast<std::size_t>(partes[2].data() - direccion.data()));
        a.valor = numeroDeTexto(lista.texto(fila, de_variables::kValor)).value_or(0);
    }
    return a;
}

std::optional<Pregunta> Operador::preguntarScan(std::uint32_t fila) const {
    const std::int64_t indice = p_.vista.lstViewEstadoDeBloques.etiqueta(fila);
    const BloqueLectura* b = bloque(indice);
    if (b == nullptr) return std::nullopt;
    const std::string actual = textoDeNumero(b->scanSegundos);
    return Pregunta{"ScanTime", decir(dicho::kPreguntaDeScan, {b->clave, actual}), actual, indice};
}

Aviso Operador::responderScan(std::int64_t indice, std::string_view respuesta) {
    if (recortar(respuesta).empty() || bloque(indice) == nullptr) return {};
    const auto segundos = numeroConComa(respuesta);
    const std::string campo = decir(dicho::kScan);
    if (!segundos) return errorDeIngreso(campo, dicho::kNoEsNumero);
    if (!esScan(*segundos)) return errorDeIngreso(campo, dicho::kScanFueraDeRango);
    hacer({Orden::Clase::Scan, {}, static_cast<double>(indice), *segundos});
    return {};
}

void Operador::MnuOcultar() { hacer({Orden::Clase::Ocultar}); }

bool Operador::sePuedeOlvidar(std::int64_t indice) const {
    const BloqueLectura* b = bloque(indice);
    return b != nullptr && b->aPedido && !b->retirado;
}

void Operador::olvidar(std::int64_t indice) {
    if (sePuedeOlvidar(indice)) hacer({Orden::Clase::Olvidar, {}, static_cast<double>(indice)});
}

/// A question of the window's, not of the engine's, and nothing is written into the settings for
/// it.
bool Operador::hayCandado() const {
    return p_.ajustes.leerIni(p_.ajustes.archivoDeAjustes(), kSeccionDeAjustes, kCandado.clave,
                              "") == "1";
}

Aviso Operador::guardar(const std::string& ruta, std::string_view texto) {
    return guardarBytes(ruta, windows1252DesdeUtf8(texto));
}

Aviso Operador::guardarBytes(const std::string& ruta, std::string_view bytes) {
    if (p_.archivos.reemplazar(ruta, bytes)) return {};
    return {decir(dicho::kNoSePuedeEscribir, {ruta}), decir(dicho::kAtencion), true};
}

} // namespace kv
