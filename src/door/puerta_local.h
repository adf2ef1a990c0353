// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/ajustes.h"
#include "door/formas.h"
#include "events/sucesos.h"
#include "log/archivo_log.h"
#include "plant/posiciones.h"
#include "plant/tablas.h"
#include "platform/archivos.h"
#include "platform/bucle.h"
#include "script/publicacion.h"
#include "server/log_acotado.h"
#include "text/json_leido.h"
#include "view/vista.h"
#include "write/ejecucion.h"
#include "write/forzado.h"
#include "write/solicitudes.h"

#include <deque>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// The door for programs of this machine: a socket file in the program's folder, a JSON object a
/// line, many readers at once. Whoever can open the file may ask; only users whom a setting names
/// may write and force, and what they do is recorded with their name.
///
/// Nothing is done where it arrives: a timer takes up what is to be done, so much at a time, so
/// that no reader costs the stations their turn. A reader that does not keep up gets less, and is
/// closed in the end.
class PuertaLocal final : private OyenteDeZocalo, private OyenteDeValores, private OyenteDeSucesos {
  public:
    static constexpr std::size_t kLectores = 32;
    static constexpr std::size_t kRenglonMaximo = std::size_t{64} << 10; ///< bytes of a request
    static constexpr std::size_t kTrabajos = 16;    ///< of a reader, that wait or are under way
    static constexpr std::size_t kEscrituras = 256; ///< of a reader, whose end it waits for

    /// All of them must outlive this.
    struct Partes {
        Bucle& bucle;
        Archivos& archivos;
        Ajustes& ajustes;
        const Tablas& tablas;
        const Turnos& turnos;
        Sucesos& sucesos;
        Publicacion& publicacion;
        Vista& vista;
        SolicitudesDeEscritura& solicitudes;
        const EjecucionDeEscrituras& ejecucion;
        Forzado& forzado;
        const PorQue& porQue;
        ArchivoLog& log;
    };
    PuertaLocal(const Partes& partes, Formas formas);
    ~PuertaLocal() override;
    PuertaLocal(const PuertaLocal&) = delete;
    PuertaLocal& operator=(const PuertaLocal&) = delete;

    /// Opens it, if the settings do not say otherwise; what fails is in the log.
    void abrir();
    void cerrar();
    [[nodiscard]] std::size_t lectores() const { return lectores_.size(); }

  private:
    /// Adds some lines of what was asked for; true when there is no more.
    using Trabajo = std::function<bool(std::string& salida, std::size_t& pasos)>;
    struct EscrituraEnCurso {
        Indice escritura;
        std::string id; ///< JSON of the request's
    };
    struct Lector {
        std::size_t numero = 0;
        std::uint32_t usuario = 0;
        std::string nombre;
        std::unique_ptr<Zocalo> zocalo;
        std::string entrada; ///< what has come and was not taken up
        std::string salida;  ///< what leaves at the end of this tick
        std::deque<Trabajo> trabajos;
        std::vector<EscrituraEnCurso> escrituras;
        bool ultimo = false; ///< to be closed when its answers have left
        std::int64_t noLeeDesdeMs = -1;

        bool sigueValores = false;
        bool todos = true; ///< of the values; else `elegidos`
        /// Of which blocks what: their registers (-1) or bits of them.
        std::map<Indice, std::set<int>> elegidos;
        /// The same by their keys: a reload may build them anew.
        std::map<std::string, std::set<int>, std::less<>> claves;
        std::size_t conocidos = 0; ///< blocks that were looked at for them
        ConjuntoDePosiciones cambiados;
        std::uint64_t saltados = 0; ///< values that came between two that were sent

        bool sigueSucesos = false;
        std::set<Que> clases; ///< empty: all
        std::uint64_t visto = 0;
    };
    using Manejador = void (PuertaLocal::*)(Lector&, const Json&, const std::string& id);

    void alPedirConexion(std::size_t indice, std::string_view remoto) override;
    void alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) override;
    void alCortarse(std::size_t indice) override;
    void alCambiar(Indice bloque) override;
    void alSuceder(const Suceso& suceso, std::string_view texto) override;

    // Readers (puerta_local.cpp).
    void tic();
    void atender(Lector& l, std::size_t& pasos);
    void tomarRenglones(Lector& l, std::size_t& pasos);
    void contarNovedades(Lector& l, std::size_t& pasos);
    void contarSucesos(Lector& l, std::size_t& pasos);
    void enviar(Lector& l);
    void vigilarQueLea(Lector& l);
    void despedir(Lector& l, std::string_view porque);
    void quitar();
    void despertar(std::int64_t ms);
    void escucharLoNecesario();
    void buscarElegidos(Lector& l) const;
    [[nodiscard]] Lector* hallar(std::size_t numero);
    [[nodiscard]] bool hayTrabajo(const Lector& l) const;

    // What they ask for (pedidos.cpp).
    void pedir(Lector& l, std::string_view renglon);
    void estado(Lector& l, const Json& p, const std::string& id);
    void variables(Lector& l, const Json& p, const std::string& id);
    void bloques(Lector& l, const Json& p, const std::string& id);
    void conexiones(Lector& l, const Json& p, const std::string& id);
    void contadores(Lector& l, const Json& p, const std::string& id);
    void sucesosDesde(Lector& l, const Json& p, const std::string& id);
    void porque(Lector& l, const Json& p, const std::string& id);
    void vigilar(Lector& l, const Json& p, const std::string& id);
    void escribir(Lector& l, const Json& p, const std::string& id);
    void forzar(Lector& l, const Json& p, const std::string& id);
    static void fallar(Lector& l, const std::string& id, std::string_view porque);
    static void terminar(std::string& salida, const std::string& id, std::uint64_t cuantos);
    void encolar(Lector& l, const std::string& id, Trabajo trabajo);
    template <class F>
    void encolarTodos(Lector& l, const std::string& id, std::size_t cuantos, F uno);
    [[nodiscard]] bool puedeOrdenar(Lector& l, const std::string& id) const;
    struct Lugar {
        Indice bloque;
        int bit;
    };
    [[nodiscard]] std::optional<Lugar> lugarDe(std::string_view direccion) const;
    [[nodiscard]] Indice conexionDe(std::string_view direccion) const;
    [[nodiscard]] bool elegir(Lector& l, const Json& p, const std::string& id,
                              std::vector<Lugar>& lugares) const;
    void contarResultado(Lector& l, const std::string& id, std::int16_t fin);

    Partes p_;
    Formas formas_;
    LogAcotado log_;
    std::unique_ptr<Zocalo> escucha_;
    std::unique_ptr<Temporizador> timer_;
    std::list<Lector> lectores_;
    std::size_t ultimo_ = 0;
    FechaHora desde_;        ///< when it was opened: the start of the driver
    std::int64_t ticUs_ = 0; ///< when the present tick began
    bool enTic_ = false;     ///< events that run meanwhile only leave work behind
    bool oyeSucesos_ = false;
    bool ordenaEscribir_ = false; ///< a reader's write is being asked for
    std::vector<std::pair<Indice, std::int16_t>> terminadas_; ///< writes, since then
    std::string rechazo_;                                     ///< why it is refused
};

} // namespace kv
