// SPDX-License-Identifier: Apache-2.0
#include "vbscript/engine.h"
#include "vbscript/entorno.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

// What takes long is charged by its size: a loop around it gets only so many turns out of its
// steps.

namespace vbscript {

namespace {

struct Caso {
    const char* antes;  // once
    const char* vuelta; // in the loop
    int vueltas;        // at most
};

constexpr int kPasos = 20'000;
const std::string kClase = "Class C : Public m(20000) : End Class\n";

const Caso kCasos[] = {
    {"ReDim a(5000)", "s = Join(a, \"\")", 60},
    {"ReDim a(5000)", "b = Filter(a, \"x\")", 60},
    {"s = Space(5000)", "b = Split(s, \" \")", 60},
    {"s = Space(5000)", "b = Replace(s, \" \", \"x\")", 60},
    {"s = Space(50) : t = String(5000, \"x\")", "b = Replace(s, \" \", t)", 100},
    {"s = Space(100000)", "b = InStr(s, \"x\")", 250},
    {"s = Space(100000)", "b = InStrRev(s, \"x\")", 250},
    {"s = Space(100000)", "b = UCase(s)", 250},
    {"", "b = Space(100000)", 250},
    {"s = Space(100000)", "b = Escape(s)", 250},
    {"s = Space(100000)", "MsgBox s", 250},
    {"s = Space(100000) : t = Space(100000)", "b = (s = t)", 250},
    {"s = Space(100000) : t = Space(100000)", "If s <> t Then b = 1", 250},
    {"s = Space(100000)", "Select Case s : Case s & \"\" : End Select", 250},
    {"s = Space(100000)", "If IsNumeric(s) Then b = 1", 250},
    {"s = Space(100000) : On Error Resume Next", "b = s * 1", 250},
    {"s = Space(100000) : On Error Resume Next", "If s Then b = 1", 250},
    {"s = Space(100000) : On Error Resume Next", "Err.Raise 9, s, s", 250},
    {"s = Space(100000)", "Err.Description = s", 250},
    {"Set d = CreateObject(\"Scripting.Dictionary\") : s = Space(100000)", "d(s) = 1", 250},
    {"Set d = CreateObject(\"Scripting.Dictionary\") : s = Space(100000)", "b = d.Exists(s)", 250},
    {"Set d = CreateObject(\"Scripting.Dictionary\") : For i = 1 To 5000 : d(i) = i : Next",
     "b = d.Keys", 400},
    {"Set d = CreateObject(\"Scripting.Dictionary\") : For i = 1 To 5000 : d(i) = i : Next",
     "For Each b In d : Exit For : Next", 400},
    {"Set d = CreateObject(\"Scripting.Dictionary\") : For i = 1 To 5000 : d(i) = i : Next",
     "d.Key(1) = 0 : d.Key(0) = 1", 400},
    {"ReDim a(20000)", "b = a : b(0) = 1", 200},
    {"", "ReDim a(20000)", 200},
    {"Dim f(20000)", "Erase f", 200},
    {"", "Set o = New C", 200},
    {"Set r = New RegExp : r.Pattern = \"x\" : s = Space(100000)", "b = r.Test(s)", 100},
    {"Set r = New RegExp : r.Pattern = \" *[xy]\" : s = Space(300)", "b = r.Test(s)", 2000},
    {"Set r = New RegExp : r.Global = True : r.Pattern = \" \" : s = Space(5000)",
     "b = r.Replace(s, \"\")", 60},
    {"s = \"'\" & Space(100000)", "Execute s", 40},
    {"s = Space(100000)", "fs.CreateTextFile(\"a\").Write s", 250},
    {"fs.CreateTextFile(\"a\").Write Space(100000)", "b = fs.OpenTextFile(\"a\").ReadAll", 250},
};

} // namespace

TEST(Presupuesto, LoQueTardaSeCobraPorSuTamanio) {
    Entorno entorno;
    entorno.carpeta = (std::filesystem::temp_directory_path() / "kv_presupuesto_XXXXXX").string();
    ASSERT_NE(::mkdtemp(entorno.carpeta.data()), nullptr);
    Limits limites;
    limites.maxSteps = kPasos;
    limites.maxMilliseconds = 1'000'000;
    for (const Caso& c : kCasos) {
        Engine motor(entorno, limites);
        const std::string texto = kClase +
                                  "Set fs = CreateObject(\"Scripting.FileSystemObject\")\n" +
                                  c.antes + "\nDo : n = n + 1 : " + c.vuelta + "\nLoop";
        EXPECT_FALSE(motor.addCode(texto));
        EXPECT_TRUE(motor.error().budget) << c.vuelta << ": " << motor.error().description;
        const double vueltas = std::stod("0" + motor.text(motor.value(*motor.global("n"))));
        EXPECT_GT(vueltas, 0) << c.vuelta;
        EXPECT_LE(vueltas, c.vueltas) << c.vuelta;
    }
    std::filesystem::remove_all(entorno.carpeta);
}

// Few steps, and each goes over much of the text.
TEST(Presupuesto, UnaExpresionMiraElReloj) {
    Limits limites;
    limites.maxMilliseconds = 20;
    for (const char* patron :
         {"(\\w+) (\\w+) \\2 \\1", "(?:(\\w+) )+\\1-", ".*?\\w*-", "(a|b|ab)*-"}) {
        Entorno entorno;
        Engine motor(entorno, limites);
        EXPECT_FALSE(motor.addCode("Set r = New RegExp : r.Pattern = \"" + std::string(patron) +
                                   "\"\na = String(30000, \"a\") : b = String(30000, \"b\")\n"
                                   "x = r.Test(a & \" \" & b & \" \" & b & \" c -\")"));
        EXPECT_EQ(motor.error().number, 17) << patron << ": " << motor.error().description;
        EXPECT_LT(entorno.reloj, 40) << patron;
    }
}

} // namespace vbscript
