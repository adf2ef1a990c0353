// SPDX-License-Identifier: Apache-2.0
// What a look over a text finds that compiles and is hardly meant.

#include "vbscript/checking.h"
#include "vbscript/engine.h"
#include "vbscript/entorno.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace vbscript {

namespace {

Known conocido() {
    Known k;
    k.names = {"MW_1_1_10", "MW_1_1_10_STATUS"};
    k.also = [](std::string_view n) { return n == "tambien"; };
    k.objects = {{"mw", {"writeMW", "READBLOQ"}}, {"Label", {"Caption"}}};
    return k;
}

/// Each warning in short: "line:column kind name[ nearest]".
std::string avisos(std::string_view texto) {
    std::string todo;
    for (const Warning& w : lookOver(texto, conocido()).warnings) {
        todo += todo.empty() ? "" : ", ";
        todo += std::to_string(w.line) + ":" + std::to_string(w.column) + " ";
        if (w.kind == Warning::Kind::Unreachable) todo += "sobra";
        if (w.kind == Warning::Kind::DeclaredTwice)
            todo += "dos " + w.name + " " + std::to_string(w.firstLine);
        if (w.kind == Warning::Kind::UnknownMember) todo += w.object + "." + w.name;
        if (w.kind == Warning::Kind::NeverAssigned) todo += w.name;
        if (!w.nearest.empty()) todo += " " + w.nearest;
    }
    return todo;
}

struct Caso {
    const char* texto;
    const char* avisos;
};

void comprobar(std::initializer_list<Caso> casos) {
    for (const Caso& c : casos)
        EXPECT_EQ(avisos(c.texto), c.avisos) << c.texto;
}

} // namespace

TEST(Avisos, UnNombreQueNadieDa) {
    comprobar({
        {"nivel = MW_1_1_10\nx = nivle * 2", "2:5 nivle nivel"},
        {"x = mw_1_1_10 + MW_1_1_10_status + tambien + vbCr & UCase(\"a\")", ""},
        {"x = MW_1_1_01", "1:5 MW_1_1_01 MW_1_1_10"},
        {"tope = 1\nx = otpe", "2:5 otpe tope"}, // two letters swapped are one slip
        {"x = UCse(1) + Left(\"a\", 1)", "1:5 UCse UCase"},
        {"x = x + 1", ""},
        {"Dim d : d.Add 1", "1:9 d"},
        {"Dim d : Set d = CreateObject(\"Scripting.Dictionary\") : d.Add 1, 2", ""},
        {"Dim t(3) : t(1) = 4 : For i = 0 To 3 : y = t(i) : Next", ""},
        {"ReDim t(3) : y = t(1)", ""},
        {"x = a + a + a", "1:5 a"},
        {"Set o = New Clsae\nClass Clase : End Class", "1:9 Clsae Clase"},
        {"Foo 1\nSub Fooo(x) : End Sub", "1:1 Foo Fooo"},
        {"For Each e In lista : y = e : Next", "1:15 lista"},
        {"If Err.Number = 0 Then Err.Clear", ""},
        {"Set r = New RegExp : x = r.Test(\"a\")", ""},
        {"Execute \"a = 1\"\nx = a", ""},
        {"ExecuteGlobal \"a = 1\"\nx = a", ""},
        {"x = Eval(\"1\") + a", "1:17 a"},
        {"x = [raro nombre]", "1:5 raro nombre"},
    });
}

TEST(Avisos, DondeUnNombreVale) {
    comprobar({
        {"Sub A : x = 1 : End Sub\nA\ny = x", "3:5 x"}, // A's own
        {"Dim x\nSub A : x = 1 : End Sub\nA\ny = x", ""},
        {"Dim x\nSub A : Dim x : x = 1 : End Sub\nA\ny = x", "2:13 dos x 1, 4:5 x"},
        {"x = 1\nSub A : y = x : End Sub", ""},
        {"Sub A : x = 1 : End Sub\nSub B : y = x : End Sub", "2:13 x"},
        {"Function F(a) : F = F + a + b : End Function", "1:29 b"},
        {"Const C = 1\nSub A : Const D = 2 : y = C + D : End Sub\nz = D", "3:5 D"},
        {"Class K\nPrivate v\nSub S : y = v + w : End Sub\nEnd Class", "3:17 w"},
    });
}

TEST(Avisos, LoQueUnProcedimientoDaPorSuArgumento) {
    const std::string da = "Sub Da(r) : r = 1 : End Sub\n";
    const std::string lee = "Sub Lee(r) : y = r : End Sub\n";
    const std::string sigue = "Sub Sigue(r) : Da r : End Sub\n";
    const std::string porValor = "Sub PorValor(ByVal r) : r = 1 : End Sub\n";
    const std::string todos = da + lee + sigue + porValor;
    EXPECT_EQ(avisos(todos + "Da a : x = a"), "");
    EXPECT_EQ(avisos(todos + "Call Da(a(1)) : Dim a(3) : x = a(2)"), "");
    EXPECT_EQ(avisos(todos + "Sigue a : x = a"), "");
    EXPECT_EQ(avisos(todos + "Lee a"), "5:5 a");
    EXPECT_EQ(avisos(todos + "PorValor a"), "5:10 a");
    EXPECT_EQ(avisos(todos + "Da (a)"), "5:5 a") << "a value, not a variable";
    EXPECT_EQ(avisos("x = Abs(nivle)"), "1:9 nivle") << "functions of the language assign nothing";
    EXPECT_EQ(avisos("mw.writeMW \"MW_1\", nivle"), "1:20 nivle");
    EXPECT_EQ(avisos("Class K\nSub Da(r) : r = 1 : End Sub\nEnd Class\n"
                     "Set k1 = New K : k1.Da a : x = a"),
              "");
    EXPECT_EQ(avisos(da + "Set f = GetRef(\"Da\") : f a : x = a"), "");
}

TEST(Avisos, LosMiembrosDeUnObjetoConocido) {
    comprobar({
        {"mw.writMW \"a\", 1", "1:4 mw.writMW writeMW"},
        {"MW.WRITEMW \"a\", 1 : label.caption = \"x\" : Label = \"y\"", ""},
        {"Label.Captoin = 3", "1:7 Label.Captoin Caption"},
        {"With mw : .Readblok \"a\" : .readbloq \"a\" : End With", "1:12 mw.Readblok READBLOQ"},
        {"With mw : With Label : .Caption = 1 : .Nada = 2 : End With : .Otra : End With",
         "1:40 Label.Nada, 1:63 mw.Otra"},
        {"Sub S(mw) : mw.Cualquiera : End Sub", ""},
        {"Set x = CreateObject(\"Scripting.Dictionary\") : x.Cualquiera", ""},
    });
}

TEST(Avisos, LoQueSobra) {
    comprobar({
        {"Sub S\nExit Sub\nx = 1\ny = 2\nEnd Sub", "3:1 sobra"},
        {"Sub S\nIf MW_1_1_10 Then Exit Sub\nx = 1\nEnd Sub", ""},
        {"Sub S\nIf MW_1_1_10 Then Exit Sub : x = 1\nEnd Sub", "2:30 sobra"},
        {"Do\nSelect Case MW_1_1_10\nCase 1\nExit Do\nx = 1\nCase Else\ny = 1\nEnd Select\nLoop",
         "5:1 sobra"},
        {"For i = 1 To 2\nExit For\nNext\nx = 1", ""},
        {"Function F : F = 1 : End Function\nFunction F : F = 2 : End Function", "2:1 dos F 1"},
    });
}

TEST(Avisos, LosTextosConSuLugarYParaQuienSon) {
    const auto f = lookOver("mw.writeMW \"MW_1\", \"dos\"\nx = \"tres\"\nWith mw\n.READBLOQ \"q\"\n"
                            "otro.writeMW \"z\"\nEnd With",
                            conocido());
    ASSERT_EQ(f.literals.size(), 5U);
    std::string todo;
    for (const LiteralUse& l : f.literals)
        todo += l.text + "@" + std::to_string(l.line) + ":" + std::to_string(l.column) + " " +
                l.object + "." + l.member + "\n";
    EXPECT_NE(todo.find("MW_1@1:12 mw.writeMW\n"), std::string::npos) << todo;
    EXPECT_NE(todo.find("dos@1:20 .\n"), std::string::npos) << todo;
    EXPECT_NE(todo.find("tres@2:5 .\n"), std::string::npos) << todo;
    EXPECT_NE(todo.find("q@4:11 mw.READBLOQ\n"), std::string::npos) << todo;
    EXPECT_NE(todo.find("z@5:14 .\n"), std::string::npos) << todo;
}

TEST(Avisos, NadaLosDesborda) {
    EXPECT_TRUE(lookOver("If x Then", conocido()).warnings.empty()) << "does not compile";
    EXPECT_TRUE(lookOver(std::string(3U << 20, 'a'), conocido()).warnings.empty());
    std::string muchos;
    for (int k = 0; k < 30'000; ++k)
        muchos += "v" + std::to_string(k) + " = w" + std::to_string(k) + " + w1\n";
    const auto f = lookOver(muchos, conocido());
    ASSERT_EQ(f.warnings.size(), mostWarnings);
    EXPECT_TRUE(std::is_sorted(f.warnings.begin(), f.warnings.end(),
                               [](const Warning& a, const Warning& b) { return a.line < b.line; }));
    std::string cadena = "x = a";
    for (int k = 0; k < 100'000; ++k)
        cadena += " & a";
    EXPECT_EQ(avisos(cadena), "1:5 a") << "however long a chain is";
}

TEST(Motor, LasLineasPorLasQuePasaSeDicenSoloSiAlguienQuiere) {
    struct Testigo : LineSink {
        void at(int linea) override { visto += std::to_string(linea) + " "; }
        std::string visto;
    } testigo;
    Entorno entorno;
    Engine motor(entorno);
    const char* texto =
        "For i = 1 To 2\n  x = x + F(i)\nNext\n"
        "k = k + 1 : Execute \"y = 1\" : ExecuteGlobal String(20, vbLf) & \"z = \" & k\n"
        "Function F(n)\n  If n = 2 Then\n    F = 5\n  End If\nEnd Function\n";
    ASSERT_TRUE(motor.addCode(texto));
    EXPECT_EQ(testigo.visto, "");
    motor.tellLinesTo(&testigo);
    ASSERT_TRUE(motor.addCode(std::string(texto) + "'"));
    EXPECT_EQ(testigo.visto.substr(0, 2), "1 ");
    // Procedure headers and loop ends are steps, too; the order of the bodies is what counts.
    std::string cuerpos;
    for (const char c : testigo.visto) {
        if (c == '2' || c == '7' || c == '4') cuerpos += c;
    }
    EXPECT_EQ(cuerpos, "227444");
    EXPECT_EQ(testigo.visto.find("21 "), std::string::npos)
        << "a text of its own has its own lines";
    testigo.visto.clear();
    motor.tellLinesTo(nullptr);
    ASSERT_TRUE(motor.addCode(std::string(texto) + "'"));
    EXPECT_EQ(testigo.visto, "");
}

TEST(Motor, SusVariablesConLoQueTienen) {
    Entorno entorno;
    Engine motor(entorno);
    ASSERT_TRUE(motor.addCode("Dim Uno, dos\nConst C = 1\nUno = 5\nSub S : local = 1 : End Sub\nS\n"
                              "tres = \"x\""));
    std::string todo;
    for (const auto& v : motor.variables())
        todo += v.name + "=" + motor.text(v.value) + " ";
    EXPECT_EQ(todo, "Uno=5 dos= tres=x ");
}

} // namespace vbscript
