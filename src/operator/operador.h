// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "link/recepcion.h"
#include "link/turno.h"
#include "log/archivo_log.h"
#include "operator/escritura_manual.h"
#include "operator/orden_de_operador.h"
#include "operator/porque.h"
#include "operator/recarga.h"
#include "plant/descripciones.h"
#include "plant/tablas.h"
#include "platform/archivos.h"
#include "platform/reloj.h"
#include "platform/sello.h"
#include "text/idioma.h"
#include "view/vista.h"
#include "write/forzado.h"
#include "write/solicitudes.h"

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// What a message box has to say to the operator; no box when there is no text.
struct Aviso {
    std::string texto;
    std::string titulo;
    bool critico = false;
    [[nodiscard]] bool vacio() const { return texto.empty(); }
};

/// What the manual write dialog begins with, or why it does not open (nothing at all when the row
/// is not one that can be written).
struct AperturaDeEscritura {
    Aviso aviso;
    bool abrir = false;
    std::string puerto;
    std::string plc;
    std::string direccion; ///< what stands behind the PLC: a register, or a register and its bit
    double valor = 0;
};

/// A question that is answered with a text.
struct Pregunta {
    std::string titulo;
    std::string texto;
    std::string propuesta;
    std::int64_t bloque = -1; ///< whom the answer is for
    friend bool operator==(const Pregunta&, const Pregunta&) = default;
};

/// All that the operator can ask for in the main window, one call a click. Outcomes of writes and
/// forced reads are shown in the operator's box, as for every other source of them; what comes back
/// here is what a message box has to say: an entry that is refused names its field. Numbers may be
/// typed with a decimal comma. What changes the polling or ends the program leaves an entry in the
/// log. No call waits for a station; each may let events run.
class Operador final : public OrdenDeEscribir {
  public:
    /// All of them must outlive the operator.
    struct Partes {
        Tablas& tablas;
        const Turnos& turnos;
        const Recepcion& recepcion;
        Forzado& forzado;
        SolicitudesDeEscritura& solicitudes;
        Ajustes& ajustes;
        Archivos& archivos;
        Vista& vista;
        Sello& sello;
        const Reloj& reloj;
        ArchivoLog& log;
        const Contadores& contadores;
        const PorQue& porQue;
        Recarga& recarga;
        const Descripciones& descripciones;
    };
    explicit Operador(const Partes& partes) : p_(partes), porQue_(partes.porQue) {}
    /// Messages from here on, and the sentences that give reasons, are in that language; Spanish
    /// until then. What others read as well (the boxes, the log) stays as it is.
    void hablarEn(Idioma idioma) {
        idioma_ = idioma;
        porQue_.hablarEn(idioma);
    }
    /// Null: orders are not recorded.
    void registrarEn(RegistroDeOrdenes* registro) { registro_ = registro; }
    /// Carries out an order, recorded or not.
    void hacer(const Orden& orden);

    /// Asks for a reading of this address now; blanks around it do not matter.
    void forzarLectura(std::string_view direccion);
    /// Asks for `veces` readings of every block of a level: whole numbers of 16 bits. 0 switches
    /// the level on, -1 off.
    [[nodiscard]] Aviso forzarPorNivel(std::string_view nivel, std::string_view veces);
    /// Selects the first variable of exactly this address, and tells in `lblResultadoBusqueda` what
    /// it is. Its row, or -1.
    std::int64_t buscarDireccion(std::string_view direccion);

    /// What people call the variable of an address, and its unit; null when nobody has said.
    [[nodiscard]] const Descripcion* descripcionDe(std::string_view direccion) const {
        return p_.descripciones.de(direccion);
    }

    /// What is no number is not written, and nothing is without an address.
    [[nodiscard]] Aviso escribirValor(std::string_view direccion, std::string_view valor);
    /// `direccion` becomes the next one, and `valor` is written there.
    [[nodiscard]] Aviso escribirOtraDireccion(std::string& direccion, std::string_view valor);
    /// `valor` becomes another one, and is written: a bit's changes between 1 and 0, a register's
    /// grows by 1 and begins again after 65535.
    [[nodiscard]] Aviso escribirOtroValor(std::string_view direccion, std::string& valor);
    struct Par {
        std::string direccion;
        std::string valor;
    };
    /// Writes the pairs in their order; those without an address are passed over.
    [[nodiscard]] Aviso enviarPares(std::span<const Par> pares);
    void escribirDireccion(const std::string& direccion, double valor) override;
    [[nodiscard]] std::string loQueSeLee(std::string_view direccion) const override;

    /// `bloque` is the number that a row carries.
    void activarBloque(std::int64_t bloque, bool estado);
    /// The manual write dialog for a row of the variables.
    [[nodiscard]] AperturaDeEscritura abrirEscritura(std::uint32_t fila) const;
    /// Asks for the scan time of the block in a row of the blocks.
    [[nodiscard]] std::optional<Pregunta> preguntarScan(std::uint32_t fila) const;
    /// The answer in seconds; an empty one changes nothing, and 0 leaves the block to be read when
    /// its link comes up and when it is forced.
    [[nodiscard]] Aviso responderScan(std::int64_t bloque, std::string_view respuesta);

    /// A port as its configuration has it, times in seconds, and how many blocks it has now.
    struct FilaDePuerto {
        Puerto puerto;
        std::size_t bloques;
    };
    [[nodiscard]] std::vector<FilaDePuerto> puertos() const;

    /// Whether a block was made because its register was asked for, so that it may be forgotten;
    /// and forgets it.
    [[nodiscard]] bool sePuedeOlvidar(std::int64_t bloque) const;
    void olvidar(std::int64_t bloque);
    /// Reads the configuration anew and takes over what changed in it.
    void recargar() { hacer({Orden::Clase::Recargar}); }
    void MnuOcultar();
    /// The operator has confirmed the end of the program.
    void MnuShutdown() { hacer({Orden::Clase::Salir}); }
    void MnuServer() { hacer({Orden::Clase::VerServidor, {}, 1}); }
    /// Hides the client's window, whose server goes on.
    void BtnOcultar() { hacer({Orden::Clase::VerServidor, {}, 0}); }
    /// Writes what a trace box shows into a file.
    [[nodiscard]] Aviso guardar(const std::string& ruta, std::string_view texto);
    /// The same for what is no text.
    [[nodiscard]] Aviso guardarBytes(const std::string& ruta, std::string_view bytes);
    /// Whether a setting wants orders to the plant to be asked about first.
    [[nodiscard]] bool hayCandado() const;
    [[nodiscard]] FechaHora ahora() const { return p_.reloj.ahora(); }
    /// Why a variable, block, station or connection is as it is.
    [[nodiscard]] const PorQue& porQue() const { return porQue_; }
    [[nodiscard]] const Contadores& contadores() const { return p_.contadores; }
    struct Cifras {
        std::uint64_t respuestas; ///< of the stations since the start
        std::int64_t ms;          ///< when: on a clock that only goes forward
    };
    [[nodiscard]] Cifras cifras() const {
        return {p_.recepcion.respuestas(), p_.reloj.monotonicoMs()};
    }

  private:
    [[nodiscard]] const BloqueLectura* bloque(std::int64_t indice) const;
    void cumplir(const Orden& orden);
    void anotar(const Orden& orden);
    /// `renglon` tells boxes of the same name apart.
    [[nodiscard]] Aviso escribirEn(const std::string& renglon, std::string_view direccion,
                                   std::string_view valor);
    void mostrarBusqueda(std::string_view direccion);
    [[nodiscard]] std::string decir(const Frase& frase,
                                    std::initializer_list<std::string_view> partes = {}) const;
    [[nodiscard]] Aviso errorDeIngreso(std::string_view campo, const Frase& que) const;

    Partes p_;
    PorQue porQue_; ///< as the operator reads it
    Idioma idioma_ = Idioma::Castellano;
    RegistroDeOrdenes* registro_ = nullptr;
};

/// The address after this one: the next register, a hexadecimal number, with as many digits at
/// least; in an address with a bit the next bit, and after bit 15 the first one of the next
/// register. Nothing when its last part is no such number.
[[nodiscard]] std::optional<std::string> direccionSiguiente(std::string_view direccion);

} // namespace kv
