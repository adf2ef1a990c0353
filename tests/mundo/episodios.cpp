// SPDX-License-Identifier: Apache-2.0
// What the events of a history do to a world.

#include "apoyo/estaciones.h"
#include "mundo/azar.h"
#include "mundo/guiones.h"
#include "mundo/mundo.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr const char* kGuion = "/kv/DRIVER_KV2200_Config.MDrivScrip";
constexpr const char* kAjustes = "/kv/sis_config.ini";
constexpr const char* kLogs = "/kv/LOGS_DRIVER";

/// A third of them are refused, the others meet all that may be there instead of a station.
Llegada maneraDeRechazar(std::uint32_t c) {
    constexpr auto kPrimera = static_cast<std::uint32_t>(Llegada::Rechazada);
    constexpr auto kTodas = static_cast<std::uint32_t>(Llegada::Cuantas) - kPrimera;
    return c % 3 == 0 ? Llegada::Rechazada : static_cast<Llegada>(kPrimera + c / 3 % kTodas);
}

} // namespace

void Mundo::luego(std::int64_t ms, std::function<void()> accion) {
    luego_.emplace(c_.ahoraUs() + ms * 1000, std::move(accion));
}

void Mundo::ocurrir(const Episodio& s) {
    if (s.que < Acto::Entrar) return enLinea(s, *lineas_[s.a]);
    if (s.que < Acto::Guion) return enCliente(s);
    if (s.que < Acto::Forzar) return enMaquina(s);
    enOperador(s);
}

void Mundo::enLinea(const Episodio& s, Linea& linea) {
    const PlanDeConexion& p = linea.plan();
    const IdEnlace enlace = linea.enlace();
    switch (s.que) {
    case Acto::Cortar:
        return s.c % 2 == 0 ? linea.cortar() : linea.cortarDeGolpe();
    case Acto::Retener:
        if (!linea.interrumpir()) return;
        return luego(s.ms, [&linea, enlace] { linea.reanudar(enlace); });
    case Acto::MedioAbrir:
        if (!linea.interrumpir()) return;
        return luego(s.ms, [&linea, enlace] { linea.soltar(enlace); });
    case Acto::Rechazar:
        linea.recibir(maneraDeRechazar(s.c));
        linea.cortar();
        return luego(s.ms, [&linea] { linea.recibir(Llegada::Entra); });
    case Acto::Enmudecer:
        linea.recibir(Llegada::Entra);
        if (!linea.interrumpir()) return;
        linea.recibir(Llegada::Muda);
        return luego(s.ms, [&linea, enlace] {
            linea.soltar(enlace);
            linea.recibir(Llegada::Entra);
        });
    case Acto::Perder:
        return linea.perder(s.b);
    case Acto::Callar:
        return linea.callar(linea.estacion(s.b), c_.ahoraUs() + s.ms * 1000);
    case Acto::Demorar:
        return linea.demorar(s.b, p.tiempoFueraMs * s.c);
    case Acto::Partir:
        return linea.partir(s.b, s.c);
    case Acto::Danar:
        return linea.danar(s.b, s.c);
    case Acto::Duplicar:
        return linea.duplicar(s.b, s.c % 2 == 1);
    case Acto::Trocar:
        return linea.trocar();
    case Acto::Reiniciar:
        return linea.reiniciar();
    case Acto::Habituar:
        return linea.cambiarHabito(static_cast<Habito>(s.b));
    case Acto::Mentir:
        return linea.mentirPronto();
    default:
        break;
    }
    if (s.b > 2) return linea.mandarSuelto(respuestaCon(static_cast<int>(s.c)));
    Azar azar(s.c);
    std::vector<std::uint8_t> basura(static_cast<std::size_t>(azar.entre(1, 40)));
    for (std::uint8_t& b : basura)
        b = static_cast<std::uint8_t>(azar.uno(3) ? kMarcaRespuesta : azar.entre(0, 255));
    linea.mandarSuelto(basura);
}

void Mundo::enCliente(const Episodio& s) {
    const std::int64_t hasta = c_.ahoraUs() + s.ms * 1000;
    switch (s.que) {
    case Acto::Entrar:
        return cliente_.entrar();
    case Acto::Salir:
        return cliente_.salir();
    case Acto::Desaparecer:
        return cliente_.desaparecer();
    case Acto::NoLeer:
        return cliente_.noLeer(s.b * 100, hasta);
    case Acto::Ignorar:
        return cliente_.ignorarHasta(hasta);
    case Acto::Sincronizar:
        return cliente_.enviar("SINCRONIZAR");
    case Acto::Escribir:
        return escribirClientes(s);
    case Acto::PedirLectura:
        return cliente_.enviar("Read;" + plan_.bloques[s.b].direccion() + ";FinRead;");
    case Acto::PedirForzado:
        // Levels 1 and 2 are the operators': how often their blocks are read is counted.
        return cliente_.enviar("[FORZNIV]" + std::to_string(s.b % 3 == 0 ? 0 : 2 + s.b % 3) + ";" +
                               std::to_string(static_cast<int>(s.c % 5) - 1) + "[/FORZNIV]");
    case Acto::Hostil:
        if (s.b % 4 == 0) return cliente_.leerNada();
        return cliente_.enviar(groseria(s.b, s.c));
    default:
        break;
    }
    if (s.c % 3 == 0) return otro_.salir();
    otro_.tocar();
    otro_.enviar(groseria(s.b, s.c));
}

void Mundo::escribirClientes(const Episodio& s) {
    const auto& suyos = escrituras_.de(Fuente::Cliente);
    if (suyos.empty() || !cliente_.logueado()) return;
    std::string todas;
    for (std::uint32_t k = 0; k < s.b; ++k) {
        ReglaDeEscrituras::Escritor& e = *suyos[(s.c + k) % suyos.size()];
        todas += "[Write]" + e.direccion + ";" + std::to_string(e.siguiente()) + "[/Write]";
    }
    cliente_.enviar(todas);
}

void Mundo::ajustar(std::uint32_t cual, std::uint32_t texto) {
    static constexpr std::array<std::string_view, 10> kClaves = {
        "Tiempo_Entre_poleo",
        "Base_Tiempo_Solicitar_Conexiones_Milisegundos",
        "Cantidad_Intervalos_En_Estado_Conectando",
        "Cantidad_Intervalos_De_Conectar_Seguidos",
        "Luego_De_Intentar_Conectar_Cuantos_Intervalos_Tiempo_Fuera",
        "BaseTiempoMilisegundos_KeepALive",
        "Maximos_Keep_ALive",
        "Intervalos_Para_KeepALive",
        "Intervalo_Reclamo_Escrituras_Milisegundos",
        "Idioma"};
    static constexpr std::array<std::string_view, 10> kTextos = {
        "", "nada", "-1", "1e300", "0", "500", "1000", "2", "3", "5000"};
    const std::size_t clave = cual % kClaves.size();
    std::string_view t = kTextos[texto % kTextos.size()];
    // What a good text may do to the pace of the plant is kept within what the calm waits for.
    if (clave >= 2 && clave <= 4 && t.size() > 2) t = "2";
    if (clave == 0 && t == "5000") t = "700";
    if (clave >= 6 && clave <= 7 && (t == "0" || t.size() > 2)) t = "3";
    motor_.ajustes.escribirConfiguracion(kClaves[clave], t);
}

void Mundo::enMaquina(const Episodio& s) {
    switch (s.que) {
    case Acto::Guion: {
        if (s.b % 4 == 3) return recargar(s.c % 3 == 0 ? 0 : s.c);
        const std::string texto = guion(s.b, escrituras_.de(Fuente::Guion), forzables_);
        return texto.empty() ? archivos_.borrar(kGuion) : archivos_.poner(kGuion, texto);
    }
    case Acto::Ajuste:
        return ajustar(s.b, s.c);
    case Acto::SinAjustes: {
        c_.ajustesPerdidos = true;
        const std::string texto = archivos_.contenido(kAjustes);
        // The budgets stand first and stay: without them a script would hold up the world for ever.
        // A line stays whole: with half a number the driver would listen on another port.
        const std::size_t mitad = s.c % 2 == 0 ? 0 : texto.size() / 2;
        return archivos_.poner(kAjustes, texto.substr(0, std::max(texto.find("Tiempo_Entre_poleo"),
                                                                  texto.rfind('\n', mitad) + 1)));
    }
    case Acto::Reloj:
        auditoria_.leer();
        return bucle_.relojSimulado().ponerFecha(bucle_.relojSimulado().segundos() + s.ms / 1000);
    case Acto::Parada:
        return bucle_.demorar(s.ms);
    case Acto::DiscoLleno:
        archivos_.negarEscrituras(true);
        break;
    default:
        archivos_.negarEscriturasEn(kLogs);
        break;
    }
    luego(s.ms, [this] { archivos_.negarEscrituras(false); });
}

void Mundo::escribir(ReglaDeEscrituras::Escritor& e, std::uint32_t b) {
    if (e.fuente == Fuente::Bit)
        return escrituras_.escribirAMano(e.direccion + "." + std::to_string(b / 2 % 4), b % 2);
    escrituras_.escribirAMano(e.direccion, e.siguiente());
}

ReglaDeEscrituras::Escritor* Mundo::escritor(Fuente fuente, std::size_t cual) {
    const auto& suyos = escrituras_.de(fuente);
    return suyos.empty() ? nullptr : suyos[cual % suyos.size()];
}

void Mundo::enOperador(const Episodio& s) {
    Forzado& forzado = motor_.forzado;
    const auto i = static_cast<Indice>(s.a % motor_.tablas.bloques.limiteSuperior());
    switch (s.que) {
    case Acto::Forzar:
        return forzar(s);
    case Acto::Nivel:
        return forzarNivel(1 + s.b % 2, static_cast<int>(s.c % 6) - 1);
    case Acto::Encender:
        encender(i, false);
        return luego(s.ms, [this, i] { encender(i, true); });
    case Acto::Scan: {
        const double antes = motor_.tablas.bloques[i].scanSegundos;
        forzado.ModificarScanDeBloque(i, static_cast<double>(s.ms) / 1000, "prueba");
        return luego(10 * s.ms,
                     [&forzado, i, antes] { forzado.ModificarScanDeBloque(i, antes, "prueba"); });
    }
    case Acto::EscribirAMano: {
        const bool tormenta = s.c % 16 == 0;
        for (std::uint32_t k = 0; k < (tormenta ? 60 : s.b); ++k) {
            if (auto* e = escritor(Fuente::Operador, tormenta ? s.a + k : s.a)) escribir(*e, 0);
        }
        return;
    }
    default:
        for (std::uint32_t k = 0; k < (s.c % 4 == 0 ? s.b : 1); ++k) {
            if (auto* e = escritor(Fuente::Bit, s.a)) escribir(*e, s.c / 4 + k);
        }
        return;
    }
}

void Mundo::forzarNivel(std::uint32_t nivel, int veces) {
    const Tablas& t = motor_.tablas;
    for (Indice i = 0; i < t.bloques.limiteSuperior(); ++i) {
        if (t.bloques[i].nivel == nivel)
            actualidad_.forzar(i, static_cast<std::uint32_t>(std::max(veces, 0)));
    }
    const std::uint64_t antes = turno_.pedidos();
    motor_.forzado.forzarBloque_porNivel_NVeces(nivel, veces, "una prueba");
    // Whether a read that left meanwhile left before or after the force reached its block is not
    // known.
    for (std::size_t n = 0; turno_.pedidos() > antes && n < c_.conexiones(); ++n) {
        if (turno_.pedido(n) > antes && c_.conexion(n).bloqueEnCurso != kNinguno)
            actualidad_.forzar(c_.conexion(n).bloqueEnCurso, 0);
    }
}

void Mundo::encender(Indice bloque, bool encendido) {
    actualidad_.forzar(bloque, 0);
    motor_.forzado.Activar_Desactivar_Bloque_Por_Solicitud(bloque, encendido, "una prueba");
}

/// A forced read is answered or refused, and either is said.
void Mundo::forzar(const Episodio& s) {
    static constexpr std::array<std::string_view, 6> kMalas = {"",      "1.1",      "7.7.7",
                                                               "1.1.X", "1.1.1000", "....."};
    const bool mala = s.c % 5 == 0;
    const std::string direccion =
        mala ? std::string(kMalas[s.b % kMalas.size()])
             : plan_.bloques[s.a].direccion() +
                   (s.c % 3 == 0 ? "." + std::to_string(s.b * 5 % 16) : std::string());
    std::uint64_t antes = motor_.sucesos.siguiente();
    std::string dicho;
    motor_.forzado.forzarPoleo(direccion, "prueba");
    c_.exigir(motor_.trazas.txtDemandaLecturaEscritura.seguir(antes, dicho) && !dicho.empty(),
              "a forced read is answered or refused", s.a);
    const Indice i = valores_.bloqueDe(plan_.bloques[s.a].direccion());
    if (!mala && i != kNinguno) actualidad_.bitsIguales(i);
}

} // namespace kv::mundo
