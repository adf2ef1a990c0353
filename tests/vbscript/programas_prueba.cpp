// SPDX-License-Identifier: Apache-2.0
#include "vbscript/engine.h"
#include "vbscript/entorno.h"

#include <array>
#include <gtest/gtest.h>
#include <random>

// Random programs, each written in two ways that mean the same: plainly and at module level; and in
// a procedure, with loops, choices and assignments said with other statements and some lines run as
// text. What their variables hold in the end is the same.

namespace vbscript {

namespace {

constexpr int kVariables = 5;
constexpr const char* kTodas =
    "v0 & \"|\" & v1 & \"|\" & v2 & \"|\" & v3 & \"|\" & v4 & \"|\" & a(0) "
    "& \"|\" & a(1) & \"|\" & a(2) & \"|\" & dicho & \"|\" & Err.Number";

struct Sentencia {
    enum Clase { Asigna, Elemento, Dice, Falla, Si, Para, Elige, Sale } clase = Asigna;
    int variable = 0;
    std::array<std::string, 2> expresion; ///< as either way has it
    std::array<std::string, 2> otra;
    int desde = 0, hasta = 0, paso = 1;
    std::vector<Sentencia> cuerpo, resto;
};

class Autor {
  public:
    explicit Autor(std::mt19937& azar) : azar_(azar) {}
    std::vector<Sentencia> bloque(int hondo, bool enBucle = false) {
        std::vector<Sentencia> todas;
        for (int k = 1 + uno(4); k > 0; --k)
            todas.push_back(sentencia(hondo, enBucle));
        return todas;
    }

  private:
    int uno(int n) { return static_cast<int>(azar_() % static_cast<std::uint32_t>(n)); }
    std::string variable() { return "v" + std::to_string(uno(kVariables)); }

    /// Whole numbers below 1000 on either side of 0, so that nothing overflows.
    std::array<std::string, 2> numero(int hondo) {
        const int que = uno(hondo > 0 ? 8 : 3);
        if (que == 0) return ambas(std::to_string(uno(40)));
        if (que == 1) return ambas(variable());
        if (que == 2) return ambas("a(Abs(" + variable() + ") Mod 3)");
        const auto x = numero(hondo - 1);
        const auto y = numero(hondo - 1);
        if (que == 3)
            return {"((" + x[0] + " - " + y[0] + ") Mod 997)",
                    "((-(" + y[1] + ") + " + x[1] + ") Mod 997)"};
        if (que == 4) return {"Abs(" + x[0] + ")", "Igual(Abs(" + x[1] + "))"};
        const char* const op = que < 6 ? " + " : " * ";
        return {"((" + x[0] + op + y[0] + ") Mod 997)", "((" + y[1] + op + x[1] + ") Mod 997)"};
    }
    std::array<std::string, 2> condicion() {
        const auto x = numero(1);
        const auto y = numero(1);
        if (uno(2) == 0) return {x[0] + " < " + y[0], y[1] + " > " + x[1]};
        return {x[0] + " = " + y[0] + " Or " + x[0] + " > 5",
                "Not (" + x[1] + " <> " + y[1] + " And " + x[1] + " <= 5)"};
    }
    static std::array<std::string, 2> ambas(const std::string& t) { return {t, t}; }

    Sentencia sentencia(int hondo, bool enBucle) {
        Sentencia s;
        s.clase = static_cast<Sentencia::Clase>(uno(hondo > 0 ? (enBucle ? 8 : 7) : 4));
        s.variable = uno(kVariables);
        s.expresion =
            s.clase == Sentencia::Si || s.clase == Sentencia::Sale ? condicion() : numero(2);
        s.otra = numero(1);
        if (s.clase < Sentencia::Si || s.clase == Sentencia::Sale) return s;
        s.paso = std::array{1, 2, -1}[static_cast<std::size_t>(uno(3))];
        s.desde = uno(4);
        s.hasta = s.desde + s.paso * uno(4);
        s.cuerpo = bloque(hondo - 1, s.clase == Sentencia::Para || enBucle);
        s.resto = bloque(hondo - 1, enBucle);
        return s;
    }

    std::mt19937& azar_;
};

std::string llano(const std::vector<Sentencia>& todas, int nivel = 0) {
    std::string t;
    for (const Sentencia& s : todas) {
        const std::string v = "v" + std::to_string(s.variable);
        const std::string i = "i" + std::to_string(nivel);
        const std::string& e = s.expresion[0];
        switch (s.clase) {
        case Sentencia::Asigna:
            t += v + " = " + e + "\n";
            break;
        case Sentencia::Elemento:
            t += "a(Abs(" + s.otra[0] + ") Mod 3) = " + e + "\n";
            break;
        case Sentencia::Dice:
            t += "dicho = dicho & " + e + " & \";\"\n";
            break;
        case Sentencia::Falla:
            t += v + " = " + e + " \\ cero\n";
            break;
        case Sentencia::Si:
            t += "If " + e + " Then\n" + llano(s.cuerpo, nivel) + "Else\n" + llano(s.resto, nivel) +
                 "End If\n";
            break;
        case Sentencia::Para:
            t += "For " + i + " = " + std::to_string(s.desde) + " To " + std::to_string(s.hasta) +
                 " Step " + std::to_string(s.paso) + "\n" + llano(s.cuerpo, nivel + 1) + v + " = " +
                 i + "\nNext\n";
            break;
        case Sentencia::Elige:
            t += "Select Case " + e + "\nCase 1, " + s.otra[0] + "\n" + llano(s.cuerpo, nivel) +
                 "Case Else\n" + llano(s.resto, nivel) + "End Select\n";
            break;
        case Sentencia::Sale:
            t += "If " + e + " Then Exit For\n";
            break;
        }
    }
    return t;
}

/// The other way. `n` numbers what it has to make up.
std::string distinto(const std::vector<Sentencia>& todas, int& n, int nivel = 0) {
    std::string t;
    for (const Sentencia& s : todas) {
        const std::string v = "v" + std::to_string(s.variable);
        const std::string i = "i" + std::to_string(nivel);
        const std::string propia = "t" + std::to_string(++n);
        const std::string& e = s.expresion[1];
        switch (s.clase) {
        case Sentencia::Asigna:
            t += n % 3 == 0   ? "Execute \"" + v + " = " + e + "\" : "
                 : n % 3 == 1 ? "Pone " + v + ", " + e + " : "
                              : v + " = Eval(\"" + e + "\") : ";
            break;
        case Sentencia::Elemento:
            t += "Pone a(Abs(" + s.otra[1] + ") Mod 3), " + e + "\n";
            break;
        case Sentencia::Dice:
            t +=
                propia + " = " + e + " : dicho = Join(Array(dicho, " + propia + ", \";\"), \"\")\n";
            break;
        case Sentencia::Falla:
            t += "Divide " + v + ", " + e + "\n";
            break;
        case Sentencia::Si:
            t += "Select Case True : Case " + e + "\n" + distinto(s.cuerpo, n, nivel) +
                 "\nCase Else : " + distinto(s.resto, n, nivel) + "\nEnd Select\n";
            break;
        case Sentencia::Para:
            t += i + " = " + std::to_string(s.desde) + " : Do While " + i +
                 (s.paso > 0 ? " <= " : " >= ") + std::to_string(s.hasta) + "\n" +
                 distinto(s.cuerpo, n, nivel + 1) + v + " = " + i + " : " + i + " = " + i + " + (" +
                 std::to_string(s.paso) + ")\nLoop\n";
            break;
        case Sentencia::Elige:
            t += propia + " = " + e + " : If " + propia + " = 1 Then :\n" +
                 distinto(s.cuerpo, n, nivel) + "\nElseIf " + propia + " = " + s.otra[1] +
                 " Then\n" + distinto(s.cuerpo, n, nivel) + "\nElse " +
                 distinto(s.resto, n, nivel) + "\nEnd If\n";
            break;
        case Sentencia::Sale:
            t += "If " + e + " Then : Exit Do : End If\n";
            break;
        }
    }
    return t;
}

} // namespace

TEST(Programas, LoMismoDichoDeDosManeras) {
    std::mt19937 azar(16);
    Entorno entorno;
    Engine motor(entorno);
    const std::string comienzo = "v0 = 1 : v1 = 2 : v2 = -3 : v3 = 40 : v4 = 0 : cero = 0\n"
                                 "a(0) = 5 : a(1) = 6 : a(2) = 7 : dicho = \"\" : Err.Clear\n";
    ASSERT_TRUE(motor.addCode("Sub Pone(ByRef p, ByVal q) : p = q : End Sub\n"
                              "Function Igual(x) : Igual = x : End Function\n"
                              "Sub Divide(p, q) : p = q \\ 0 : End Sub\n"));
    for (int k = 0; k < 1500 && !HasFailure(); ++k) {
        const auto programa = Autor(azar).bloque(3);
        const std::string uno = "Dim a(2)\nOn Error Resume Next\n" + comienzo + llano(programa) +
                                "uno = " + kTodas + "\n";
        int n = 0;
        const std::string otro = "Dim otro\nSub Todo\nDim v0, v1, v2, v3, v4, cero, dicho, a(2)\n"
                                 "On Error Resume Next\n" +
                                 comienzo + distinto(programa, n) + "\notro = " + kTodas +
                                 "\nEnd Sub\nTodo\n";
        for (const std::string& t : {uno, otro})
            ASSERT_TRUE(motor.addCode(t))
                << motor.error().line << ": " << motor.error().description << "\n"
                << t;
        EXPECT_EQ(motor.text(motor.value(*motor.global("uno"))),
                  motor.text(motor.value(*motor.global("otro"))))
            << k << ":\n"
            << uno << "\n"
            << otro;
    }
}

} // namespace vbscript
