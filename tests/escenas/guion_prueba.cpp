// SPDX-License-Identifier: Apache-2.0
// The plant engineer's script among the answers.

#include "apoyo/planta.h"
#include "script/errores.h"
#include "script/miembros.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

namespace kv {
namespace {

constexpr const char* kGuion = "/kv/DRIVER_KV2200_Config.MDrivScrip";
constexpr const char* kLog = "/kv/LOGS_DRIVER/251116 DriverKV2200 ArchivoLog.txt";

class ConGuion : public testing::Test {
  protected:
    void arrancar(const std::string& guion) {
        p.archivos.poner(kGuion, guion);
        p.arrancarYConectar();
        p.avanzar(900);
    }
    [[nodiscard]] std::optional<double> global(const char* nombre) {
        return p.motor.scriptControl.valorDe(nombre);
    }
    [[nodiscard]] Color color() const { return p.motor.vista.lblEstadoScript.color(); }
    [[nodiscard]] std::size_t enElLog(const std::string& que) {
        const std::string log = p.archivos.contenido(kLog);
        std::size_t veces = 0;
        for (auto i = log.find(que); i != std::string::npos; i = log.find(que, i + 1))
            ++veces;
        return veces;
    }
    Configuracion config = Configuracion()
                               .puerto()
                               .estacion(1, "10.0.0.1", 1)
                               .bloque(1, "10", "1")
                               .bloque(1, "11", "600")
                               .bloque(1, "12", "600")
                               .bloque(1, "13", "600", true, 1, 3);
    Planta p{config};
    Estaciones& plc{p.en("10.0.0.1")};
};

} // namespace

TEST_F(ConGuion, VeLosValoresGuardaSusTotalesYMuestraUnTexto) {
    arrancar("Dim corridas\r\ncorridas = corridas + 1\r\n"
             "doble = MW_1_1_10 * 2 : estado = MW_1_1_10_STATUS\r\n"
             "Label.Caption = \"corrida \" & corridas\r\n");
    EXPECT_EQ(global("doble"), 232);
    EXPECT_EQ(global("estado"), 6);
    EXPECT_EQ(global("corridas"), static_cast<double>(plc.pedidos.size()));
    EXPECT_EQ(color(), Color::Verde);
    const auto compilados = p.motor.scriptControl.compilaciones();
    p.avanzar(10'000);
    EXPECT_EQ(p.motor.scriptControl.compilaciones(), compilados) << "compiled when it changes only";
    EXPECT_EQ(p.motor.vista.Label10.texto(),
              "corrida " + std::to_string(p.motor.recepcion.respuestas()));
}

TEST_F(ConGuion, UnErrorSeVeSeDiceUnaVezConSuLugarYNoParaNada) {
    arrancar("a = 1\r\nb = a + \"x\"\r\n");
    p.avanzar(10'000);
    EXPECT_EQ(color(), Color::Rojo);
    EXPECT_EQ(enElLog("DRIVER_KV2200_Config.MDrivScrip(2, "), 1U) << p.archivos.contenido(kLog);
    EXPECT_TRUE(p.tramasTiene("  *Guion* DRIVER_KV2200_Config.MDrivScrip(2, "));
    EXPECT_TRUE(p.ok(0));
    p.archivos.poner(kGuion, "If falta");
    p.avanzar(2000);
    EXPECT_EQ(color(), Color::Rojo);
    p.archivos.poner(kGuion, "b = 3");
    p.avanzar(2000);
    EXPECT_EQ(color(), Color::Verde);
    EXPECT_EQ(global("b"), 3);
    p.archivos.borrar(kGuion);
    p.avanzar(2000);
    EXPECT_EQ(color(), Color::Verde) << "no file is an empty script";
    p.archivos.poner(kGuion, "b = 4\r\n" + std::string(kMaximoDelGuion, '\''));
    p.avanzar(10'000);
    EXPECT_EQ(color(), Color::Rojo) << "too long is not empty";
    EXPECT_EQ(enElLog("MDrivScrip: El guion tiene m\xE1s de 2 MiB (1001)"), 1U)
        << p.archivos.contenido(kLog);
    EXPECT_NE(global("b"), 4);
    p.archivos.poner(kGuion, "\xEF\xBB\xBF"
                             "b = 4");
    p.avanzar(2000);
    EXPECT_EQ(color(), Color::Rojo);
    EXPECT_EQ(enElLog("MDrivScrip(1, 1): El archivo tiene la marca de UTF-8"), 1U)
        << p.archivos.contenido(kLog);
    p.archivos.poner(kGuion, "b = 5");
    p.avanzar(2000);
    EXPECT_EQ(color(), Color::Verde);
    EXPECT_EQ(global("b"), 5);
}

TEST_F(ConGuion, EscribeYFuerzaPorLosNombresDeLasVariables) {
    arrancar("If MW_1_1_10 = 116 And Not hecho Then\r\n  hecho = True\r\n"
             "  mw.writeMW \"mw_1_1_10\", 25\r\n  mw.READBLOQ \"MW_1_1_11\"\r\n"
             "  mw.writeMW \"MW_7_7_7\", 1 : mw.READBLOQ \"nada\"\r\nEnd If\r\n");
    p.avanzar(5000);
    EXPECT_EQ(p.valor(0), 25);
    EXPECT_EQ(color(), Color::Verde) << "refusals do not reach the script";
    const std::string dicho = p.motor.trazas.txtDemandaLecturaEscritura.texto();
    EXPECT_EQ(dicho.find("7.7.7"), std::string::npos) << "a script's writes go to the records only";
    EXPECT_NE(p.archivos.contenido("/kv/LOGS_DRIVER/251116 DriverKV2200 Escrituras.txt")
                  .find(";guion;7.7.7;?;1;rechazada: no se encuentra PLC"),
              std::string::npos);
    EXPECT_NE(dicho.find(" Forzado OK 1.1.11"), std::string::npos);
    EXPECT_NE(dicho.find(" NO EXISTE PUERTO O PLC "), std::string::npos);
}

TEST_F(ConGuion, PideTodoLoQueElDriverHaceParaOtros) {
    arrancar(
        "If MW_1_1_10 = 116 And Not hecho Then\r\n  hecho = True\r\n"
        "  lugar = mw.escribirDireccion(\"1.1.10\", 25)\r\n"
        "  no = mw.escribirDireccion(\"7.7.7\", 25)\r\n"
        "  mw.Activar_Dir \"1.1.11\", False\r\n"
        "  mw.ModificarScanDeBloque 2, 30\r\n"
        "  mw.forzarBloque_porNivel_NVeces 3, -1\r\n"
        "  mw.forzarPoleo \"1.1.14\"\r\n"
        "  mw.forzarBloque_porID 99 : mw.forzarBloque_porID -1 : mw.forzarBloque_porID 1E300\r\n"
        "  mw.Activar_Desactivar_Bloque_Por_Solicitud 99, True\r\nEnd If\r\n");
    p.avanzar(5000);
    EXPECT_EQ(color(), Color::Verde);
    EXPECT_EQ(p.valor(0), 25);
    EXPECT_EQ(global("lugar"), 0) << "the write's place in its table";
    EXPECT_EQ(global("no"), -1);
    EXPECT_FALSE(p.bloque(1).activo);
    EXPECT_EQ(p.bloque(2).scanSegundos, 30);
    EXPECT_FALSE(p.bloque(3).activo) << "its level was switched off";
    EXPECT_EQ(p.bloque(4).clave, "1.1.14") << "made because it was asked for";
    EXPECT_TRUE(p.ok(4));
    const auto leidos = [&](int registro) {
        return std::count_if(plc.pedidos.begin(), plc.pedidos.end(),
                             [&](const auto& pedido) { return pedido.trama[3] == registro; });
    };
    const auto antes = leidos(0x11);
    p.archivos.poner(kGuion, "If Not otra Then otra = True : mw.forzarBloque_porID 1 : "
                             "mw.Activar_Desactivar_Bloque_Por_Solicitud 3, True : "
                             "mw.forzarBloque_porNivel 2");
    p.avanzar(6000);
    EXPECT_GT(leidos(0x11), antes);
    EXPECT_TRUE(p.bloque(1).activo);
    EXPECT_TRUE(p.bloque(3).activo);
    EXPECT_NE(
        p.motor.trazas.txtDemandaLecturaEscritura.texto().find(" Ningun bloque tiene el nivel 2"),
        std::string::npos);
    p.archivos.poner(kGuion, "mw.Activar_Dir \"1.1.10\"");
    p.avanzar(2000);
    EXPECT_EQ(enElLog("(450)"), 1U) << "an argument is missing";
}

TEST_F(ConGuion, LoQueAnotaEnElLogTieneFin) {
    arrancar("mw.Log \"primera\" & vbCrLf & \"orden\" : mw.Log String(600, \"x\")\r\n");
    EXPECT_NE(p.archivos.contenido(kLog).find("DRIVER>mw.Log>primera orden, DescError:"),
              std::string::npos)
        << p.archivos.contenido(kLog);
    EXPECT_EQ(enElLog(std::string(500, 'x') + ", DescError"), enElLog("primera"));
    EXPECT_EQ(enElLog(std::string(501, 'x')), 0U);
    p.archivos.poner(kGuion, "n = n + 1\r\nFor i = 1 To 500 : mw.Log \"muchas \" & n : Next");
    p.avanzar(50'000);
    EXPECT_EQ(enElLog("muchas ") + 2 * enElLog("primera"), 60U);
    EXPECT_EQ(enElLog("el guion anota demasiado"), 1U);
    p.avanzar(30'000);
    EXPECT_GE(enElLog("muchas "), 60U) << "the next minute has its own";
    EXPECT_GE(*global("n"), 30) << "the plant is polled all the same";
}

TEST_F(ConGuion, VisteSuTextoYPreguntaSinEsperar) {
    arrancar("a = Label.BackColor : v = Label.Visible\r\n"
             "Label = \"caliente\" : Label.BackColor = vbRed : Label.ForeColor = RGB(1, 2, 3)\r\n"
             "Label.Visible = False : b = Label.BackColor : w = Label.Visible\r\n"
             "If InputBox(\"cuanto\", \"t\", \"7\") = \"7\" Then siete = 7\r\n");
    const Etiqueta& l = p.motor.vista.Label10;
    EXPECT_EQ(color(), Color::Verde);
    EXPECT_EQ(l.texto(), "caliente");
    EXPECT_EQ(l.aspecto(), (AspectoDeEtiqueta{255, 0x030201, false}));
    EXPECT_EQ(global("b"), 255);
    EXPECT_EQ(global("siete"), 7) << "the proposed text is the answer";
    p.archivos.poner(kGuion, "Label.BackColor = 1E10");
    p.avanzar(2000);
    EXPECT_EQ(color(), Color::Rojo);
    EXPECT_EQ(l.aspecto().fondo, 255);
}

TEST_F(ConGuion, UnoQueNoTerminaSeDetieneYSeReintentaALosSesentaSegundos) {
    p.ajuste("Guion_Pasos_Maximos", "5000");
    arrancar("veces = veces + 1\r\nOn Error Resume Next\r\nDo\r\nLoop\r\nveces = 99\r\n");
    EXPECT_EQ(color(), Color::Rojo);
    EXPECT_EQ(global("veces"), 1);
    p.avanzar(58'000);
    EXPECT_EQ(global("veces"), 1) << "not at every answer";
    EXPECT_TRUE(p.ok(0)) << "polling goes on";
    p.avanzar(5000);
    EXPECT_EQ(global("veces"), 2);
    EXPECT_EQ(enElLog("DRIVER>Guion>"), 1U);
    p.archivos.poner(kGuion, "veces = 10");
    p.avanzar(2000);
    EXPECT_EQ(global("veces"), 10) << "at once when the file changes";
    EXPECT_EQ(color(), Color::Verde);
}

TEST_F(ConGuion, UnoQueNoTerminaSeDetieneALosTantosPasosAunqueElRelojNoCorra) {
    p.ajuste("Guion_Pasos_Maximos", "20000");
    arrancar("antes = 1\r\nDo\r\n  vueltas = vueltas + 1\r\nLoop\r\n");
    EXPECT_EQ(color(), Color::Rojo);
    const auto vueltas = global("vueltas");
    ASSERT_TRUE(vueltas && *vueltas > 100);
    EXPECT_TRUE(p.ok(0)) << "polling goes on";
    p.archivos.poner(kGuion, "vueltas = 0\r\nDo\r\n  vueltas = vueltas + 1\r\nLoop\r\n");
    p.avanzar(2000);
    EXPECT_NEAR(*global("vueltas"), *vueltas, 500) << "the same number of steps every time";
    p.archivos.poner(kGuion, "antes = 2");
    p.avanzar(2000);
    EXPECT_EQ(color(), Color::Verde);
}

TEST_F(ConGuion, UnoQueLlenaLaMemoriaEmpiezaDeNuevoYLoDice) {
    p.ajuste("Guion_Memoria_Maxima_KiB", "1024");
    arrancar("If IsEmpty(lleno) Then Label.Caption = Label.Caption & MW_1_1_10 & \";\"\r\n"
             "Do : lleno = lleno & String(1000, \"a\") : Loop\r\n");
    EXPECT_EQ(color(), Color::Rojo);
    EXPECT_EQ(p.motor.vista.Label10.texto(), "116;");
    p.avanzar(130'000);
    EXPECT_EQ(p.motor.vista.Label10.texto(), "116;116;116;") << "with an empty module every minute";
    EXPECT_EQ(enElLog("El guion empieza de nuevo"), 1U);
    EXPECT_TRUE(p.tramasTiene("  *Guion* El guion empieza de nuevo"));
}

TEST_F(ConGuion, UnTextoNuevoEncuentraUnModuloNuevoYLoPublicado) {
    arrancar("viejo = 5\r\nFunction F : F = 1 : End Function\r\n"
             "mw.READBLOQ \"MW_1_1_10_2\" : MW_1_1_10_2 = 9\r\n"
             "MW_1_1_10 = 7 : MW_1_1_10_STATUS = 7\r\n");
    p.archivos.poner(kGuion, "vacio = CLng(IsEmpty(viejo))\r\nvisto = MW_1_1_10\r\n"
                             "estado = MW_1_1_10_STATUS : bit = MW_1_1_10_2\r\n"
                             "On Error Resume Next\r\nx = F()\r\nfalla = Err.Number\r\n");
    p.avanzar(2000);
    EXPECT_EQ(global("vacio"), -1);
    EXPECT_EQ(global("visto"), 116) << "the plant's value, whatever the old text made of it";
    EXPECT_EQ(global("estado"), 6);
    EXPECT_EQ(global("bit"), 1);
    EXPECT_EQ(global("falla"), 13);
    const auto compilados = p.motor.scriptControl.compilaciones();
    p.avanzar(5000);
    EXPECT_EQ(p.motor.scriptControl.compilaciones(), compilados);
}

TEST_F(ConGuion, LosBitsQuePidioSonDeSuEstacionDondeEsteDespues) {
    arrancar("If IsEmpty(pedido) Then mw.READBLOQ \"MW_1_1_10_5\"\r\npedido = True\r\n");
    EXPECT_EQ(global("MW_1_1_10_5_STATUS"), 6);
    p.en("10.0.0.3").registros[{1, 0x10}] = 0x20;
    p.archivos.poner(
        "/kv/DRIVER_KV2200_Config.ini",
        Configuracion().puerto().estacion(1, "10.0.0.3", 1).bloque(1, "10", "1").texto());
    p.motor.operador.recargar();
    p.avanzar(20'000);
    EXPECT_EQ(global("MW_1_1_10_5"), 1);
    EXPECT_EQ(global("MW_1_1_10_5_STATUS"), 6);
}

TEST_F(ConGuion, UnErrorEnTextoEjecutadoDiceLosDosLugares) {
    arrancar("a = 1\r\nExecuteGlobal \"b = 1\" & vbLf & \"c = 1 / 0\"\r\n");
    EXPECT_TRUE(p.tramasTiene("MDrivScrip(2, 1): División por cero, en la línea 2, columna 1 del "
                              "texto que ahí se ejecuta: b = 1 (11)"));
}

TEST_F(ConGuion, ElIdiomaEsUnAjuste) {
    arrancar("t = CStr(1.5)\r\nMsgBox \"aviso\"\r\n"
             "If t = \"1,5\" Then largo = 3 Else largo = 4\r\n");
    EXPECT_EQ(global("largo"), 3);
    p.ajuste("Idioma", "en-US");
    p.avanzar(10'000);
    EXPECT_EQ(global("largo"), 4);
}

TEST(Guion, LaRutaSaleDeLaConfiguracion) {
    EXPECT_EQ(rutaDelGuion("C:\\Driver\\DRIVER_KV2200_Config.ini"),
              "C:\\Driver\\DRIVER_KV2200_Config.MDrivScrip");
    EXPECT_EQ(rutaDelGuion("C:\\Inicio\\a.INI"), "C:\\MDrivScripcio\\a.MDrivScrip");
    EXPECT_EQ(rutaDelGuion("/p/x.mdriv.ini"), "/p/x.MDrivScrip.ini");
    EXPECT_EQ(rutaDelGuion("/p/Linea1.KalmorKV2200"), "");
    EXPECT_EQ(direccionDeNombre("MW_2_5_40010_3"), "2.5.40010.3");
    EXPECT_EQ(direccionDeNombre("otra_cosa"), "otra.cosa");
}

/// What the manual says that a script may ask of the driver, against what it may.
TEST(GuionDocumentado, LosMiembrosDelManualSonLosQueHay) {
    std::ifstream manual(KV_FUENTES "/docs/guion_en_el_escritorio.md");
    const std::map<std::string, char> letras{
        {"name", 't'},  {"address", 't'}, {"key", 't'},   {"text", 't'},    {"value", 'n'},
        {"block", 'n'}, {"level", 'n'},   {"times", 'n'}, {"seconds", 'n'}, {"state", 's'}};
    std::string deMw, deLabel;
    for (std::string linea, tabla; std::getline(manual, linea);) {
        if (linea == "| `mw` | Does |" || linea == "| `Label` | Is |") tabla = linea;
        if (linea.empty()) tabla.clear();
        if (tabla.empty() || tabla == linea || linea.starts_with("|---")) continue;
        const std::string celda = linea.substr(0, linea.find(" | "));
        for (auto desde = celda.find('`'); desde != std::string::npos;) {
            const auto hasta = celda.find('`', desde + 1);
            std::istringstream uno(celda.substr(desde + 1, hasta - desde - 1));
            std::string palabra;
            uno >> palabra;
            std::string& todos = tabla.starts_with("| `mw`") ? deMw : deLabel;
            todos += palabra + " ";
            while (uno >> palabra)
                todos += letras.at(palabra.substr(0, palabra.find(',')));
            todos += ";";
            desde = celda.find('`', hasta + 1);
        }
    }
    std::string hay;
    for (const MiembroDeMw& m : miembrosDeMw())
        hay += std::string(m.nombre) + " " + std::string(m.argumentos) + ";";
    EXPECT_EQ(deMw, hay);
    hay.clear();
    for (const std::string_view m : kMiembrosDeLabel)
        hay += std::string(m) + " ;";
    EXPECT_EQ(deLabel, hay);
}

} // namespace kv
