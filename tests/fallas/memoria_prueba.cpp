// SPDX-License-Identifier: Apache-2.0
// Everything that reads what comes from outside, with every allocation failing in turn, once or
// from there on for good: it says so and stays good for the next time, and nothing leaks.

#include "memoria.h"

#include "config/comprobacion.h"
#include "config/driver.h"
#include "config/exportacion.h"
#include "server/mensajes.h"
#include "servidor/apoyo.h"
#include "vbscript/compile/compiler.h"
#include "vbscript/compile/globals.h"
#include "vbscript/engine.h"
#include "vbscript/entorno.h"
#include "vbscript/library/standard.h"
#include "vbscript/syntax/parser.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <sstream>

namespace kv::fallas {
namespace {

constexpr long kPuntos = 25;

/// What is tried: it gives the same text every time.
using Acto = std::function<std::string()>;

struct Escenario {
    const char* nombre;
    std::function<Acto()> preparar; ///< an act on objects of its own
};

std::string leerArchivo(const std::string& ruta) {
    std::ostringstream todo;
    todo << std::ifstream(std::string(KV_FUENTES) + "/" + ruta, std::ios::binary).rdbuf();
    return todo.str();
}

const std::string& ejemplo() {
    static const std::string t = leerArchivo("examples/planta-chica/DRIVER_KV2200_Config.ini");
    return t;
}

const std::string& exportacion() {
    static const std::string t = leerArchivo("examples/planta-chica/Planta.KalmorKV2200_Conf");
    return t;
}

const std::string kGuion = R"vbs(
Class Pila
    Private datos(), n
    Private Sub Class_Initialize : ReDim datos(3) : n = 0 : End Sub
    Public Sub Poner(v)
        If n > UBound(datos) Then ReDim Preserve datos(n * 2)
        datos(n) = v : n = n + 1
    End Sub
    Public Property Get Texto : Texto = Join(datos, ",") : End Property
End Class
Function Vueltas(k)
    Dim p, d, i, r
    Set p = New Pila
    Set d = CreateObject("Scripting.Dictionary")
    For i = 1 To k
        p.Poner "v" & i
        d.Add "clave" & i, Array(i, CStr(i), Null)
    Next
    Set r = New RegExp
    r.Global = True : r.Pattern = "v(\d)"
    On Error Resume Next
    Err.Raise 1000, "aca", "mal"
    Vueltas = r.Replace(p.Texto, "<$1>") & d.Count & Err.Description & Replace(String(50, "a"), "a", "bc")
End Function
Resultado = Vueltas(8)
)vbs";

std::string resumen(const ListasDeConfiguracion& l, const Problemas& p) {
    std::string r = std::to_string(l.puertos.size()) + "/" + std::to_string(l.estaciones.size()) +
                    "/" + std::to_string(l.bloques.size()) + "\n";
    for (const Problema& x : p.lista())
        r += textoDeProblema(x) + "\n";
    return r;
}

/// The driver's own file and a bad one, read, checked and reported.
Acto actoDeConfiguracion(const std::string& texto, bool informar) {
    return [texto, informar] {
        ConfiguracionLeida c;
        leerDriverDeTexto(texto, "D.ini", c.listas, c.problemas);
        if (!informar) return resumen(c.listas, c.problemas);
        return informeDe(revisarListas(std::move(c), 800));
    };
}

Acto actoDeMotor(const std::string& texto) {
    struct Cosas {
        vbscript::Entorno mundo;
        vbscript::Engine motor{mundo};
    };
    auto c = std::make_shared<Cosas>();
    const auto lugar = c->motor.global("Resultado");
    return [c, lugar, texto] {
        c->motor.clearError();
        const bool bien = c->motor.addCode(texto);
        if (c->motor.running()) return std::string("still running");
        // The script's own budget is told apart from the text's faults.
        if (c->motor.error().budget) throw std::bad_alloc();
        return (bien ? c->motor.text(c->motor.value(*lugar)) : "") + "|" +
               c->motor.error().description;
    };
}

/// A session of a client that has identified itself, and what the plant was ordered to do.
struct UnaSesion final : CableDelCliente {
    UnaSesion() {
        sesion.empezar("10.0.0.9:50000");
        double u = 0;
        sesion.atender(cifrar(textoDeClave(formatoDeHora(bucle.reloj().ahora())),
                              [&u] { return u = u > 0.9 ? 0 : u + 0.07; }));
    }
    void enviarSuelto(std::string_view bytes) override { dicho += bytes; }
    void enviarDatos(std::string_view carga) override { dicho += carga; }
    void pedirSincronismo() override { dicho += "SINCRONISMO"; }
    void alContestarKeepAlive() override {}
    void frenar(bool /*freno*/) override {}
    [[nodiscard]] const Separadores& separadores() const override { return separadores_; }
    std::string llegar(std::string_view bytes) {
        dicho.clear();
        ordenes.hechas.clear();
        sesion.atender(bytes);
        std::string todo = dicho;
        for (const std::string& o : ordenes.hechas)
            todo += "|" + o;
        return todo;
    }

    BucleSimulado bucle;
    ArchivosSimulados archivos;
    Ajustes ajustes{archivos, "/kv"};
    Vista vista;
    Tablas tablas;
    Sucesos sucesos{bucle.reloj()};
    ArchivoLog registro{archivos, bucle.reloj(), "/kv", "DriverKV2200"};
    LogAcotado log{registro, bucle.reloj()};
    Puerta puerta{ajustes, bucle.reloj(), [](const std::string&) {}};
    OrdenesDePrueba ordenes;
    Separadores separadores_;
    std::string dicho;
    Sesion sesion{bucle, tablas, vista, sucesos, log, puerta, ordenes, *this};
};

const std::string kLlegada =
    "[Write]1.1.10;5[/Write][KEEP_DESDE_SERVIDOR]SINCRONIZAR[FORZNIV]1;2[/FORZNIV]"
    "read;1.1.10;FINREAD;[write]1.1.11;-7[/"
    "WRITE]read;una.direccion.bien.larga.que.no.esta;FINREAD;";

std::vector<Escenario> escenarios() {
    return {
        {"ini",
         [] {
             return [] {
                 const Ini ini{std::string(ejemplo())};
                 const auto h = ini.buscar("PUERTO1", "Bloque1_StarAdrees");
                 return h ? std::string(h->valor) : "";
             };
         }},
        {"ini: clave nueva",
         [] { return [] { return iniConClave(ejemplo(), "OTRA", "Clave", "un valor"); }; }},
        {"ajustes",
         [] {
             auto a = std::make_shared<ArchivosSimulados>();
             a->poner("/kv/sis_config.ini", "[DRIVER_KV2200]\r\nVER=1\r\nPuertoEscucha=x\r\n");
             auto ajustes = std::make_shared<Ajustes>(*a, "/kv");
             return [a, ajustes] {
                 ajustes->vueltaNueva();
                 std::string r = ajustes->leerConfiguracion("VER", "0");
                 r += ajustes->leerConfiguracion("Una_clave_que_falta_en_el_archivo", "defecto");
                 r += std::to_string(ajustes->leerNumero(kPuertoEscucha, {}));
                 return r + a->contenido("/kv/sis_config.ini");
             };
         }},
        {"driver", [] { return actoDeConfiguracion(ejemplo(), false); }},
        {"driver: mal escrito",
         [] { return actoDeConfiguracion(leerArchivo("fuzz/corpus/driver/mala.ini"), false); }},
        {"driver: comprobacion", [] { return actoDeConfiguracion(ejemplo(), true); }},
        {"exportacion",
         [] {
             return [] {
                 ListasDeConfiguracion l;
                 Problemas p;
                 leerProyectoDeTexto(exportacion(), "P", l, p, [](std::string_view) {});
                 return resumen(l, p);
             };
         }},
        {"guion: texto",
         [] {
             return [] {
                 vbscript::Names nombres;
                 vbscript::Globals globales;
                 const vbscript::Library biblioteca(nombres, vbscript::standardProvisions());
                 const auto arbol = vbscript::parseModule(kGuion, nombres);
                 vbscript::compileModule({nombres, globales, biblioteca}, *arbol);
                 return std::string("compila");
             };
         }},
        {"guion: corrida", [] { return actoDeMotor(kGuion); }},
        {"guion: error", [] { return actoDeMotor("Resultado = 1\nIf x Then\nFor =\n"); }},
        {"llegada",
         [] {
             auto s = std::make_shared<UnaSesion>();
             return [s] { return s->llegar(kLlegada); };
         }},
        {"cifrado",
         [] {
             return [] {
                 const std::string cifrado = cifrar("una clave 2026112400", [] { return 0.3; });
                 return descifrar(cifrado) + descifrar("123") + descifrar(cifrado + "x");
             };
         }},
    };
}

/// One failure on objects of their own; true when an allocation did fail.
bool fallarUnaVez(const Escenario& e, long n, bool siempre, const std::string& debido) {
    const std::string donde = std::string(e.nombre) + ", allocation " + std::to_string(n) +
                              (siempre ? " and all after it" : "");
    const long antes = Memoria::vivas();
    long fallas = 0;
    {
        const Acto acto = e.preparar();
        Memoria::fallarEn(n, siempre);
        try {
            const std::string dicho = acto();
            Memoria::noFallarMas();
        } catch (const std::bad_alloc&) {
            fallas = Memoria::falladas();
            Memoria::noFallarMas();
        } catch (const std::exception& otra) {
            Memoria::noFallarMas();
            ADD_FAILURE() << donde << ": " << otra.what();
        }
        EXPECT_EQ(acto(), debido) << donde << ", and then once more";
    }
    EXPECT_EQ(Memoria::vivas(), antes) << donde << ": something is still held";
    return fallas > 0;
}

} // namespace

TEST(SinMemoria, CadaPedidoPuedeFallar) {
    std::string debido;
    for (const Escenario& e : escenarios()) {
        long total = 0;
        {
            const Acto acto = e.preparar();
            debido = acto();
            EXPECT_EQ(acto(), debido) << e.nombre;
        }
        {
            const Acto acto = e.preparar();
            Memoria::noFallarMas();
            const std::string otra = acto();
            total = Memoria::pedidas();
        }
        const long cuantos = std::getenv("KV_TODO") != nullptr ? total : std::min(kPuntos, total);
        long avisadas = 0;
        for (long k = 0; k < cuantos; ++k) {
            for (const bool siempre : {false, true})
                avisadas += fallarUnaVez(e, 1 + k * total / cuantos, siempre, debido) ? 1 : 0;
        }
        EXPECT_GT(avisadas, 0) << e.nombre;
        std::cout << e.nombre << ": " << cuantos << " of " << total << " allocations, " << avisadas
                  << " of " << 2 * cuantos << " failures told as such\n";
    }
}

} // namespace kv::fallas
