// SPDX-License-Identifier: Apache-2.0
#include "vbscript/engine.h"
#include "vbscript/entorno.h"
#include "vbscript/expresion.h"

#include <gtest/gtest.h>

// The same expression computed in every place where a script may have one: what comes out is the
// same everywhere, and what an independent reckoning says.

namespace vbscript {

namespace {

std::string reemplazar(std::string t, const std::string& que, const std::string& por) {
    for (std::size_t k = t.find(que); k != std::string::npos; k = t.find(que, k + por.size()))
        t.replace(k, que.size(), por);
    return t;
}

/// What a script handed over in one place: subtype and content, or the number of the error.
struct Visto {
    std::string valor = "nada";
    int error = 0;
    int sellos = 0; ///< How often Sella ran.
    bool operator==(const Visto&) const = default;
};

std::ostream& operator<<(std::ostream& o, const Visto& v) {
    return o << v.valor << " error " << v.error << " sellos " << v.sellos;
}

/// Where a value may be asked for. "@" stands for the expression, "@@" for it as text in quotes.
/// Each hands one value to Ver.
struct Lugar {
    const char* nombre;
    const char* antes; ///< Declarations, at module level.
    const char* lineas;
};

const Lugar lugares[] = {
    {"variable", "", "x = @ : Ver x"},
    {"elemento", "", "e(1) = @ : Ver e(1)"},
    {"elemento de dos", "", "m(1, 2) = @ : Ver m(1, 2)"},
    {"entrada", "", "d(\"k\") = @ : Ver d(\"k\")"},
    {"entrada por nombre", "", "d.Item(\"k\") = @ : Ver d.Item(\"k\")"},
    {"argumento", "", "Ver 0, @"},
    {"argumento entre parentesis", "", "Call Ver((@))"},
    {"parametro", "", "Recibe 0, @"},
    {"parametro por valor", "", "RecibeValor 0, @"},
    {"argumento de funcion", "", "Ver Igual(@)"},
    {"argumento de incorporada", "", "a = Array(1, @) : Ver a(1)"},
    {"Eval", "", "x = Eval(@@) : Ver x"},
    {"Eval como argumento", "", "Ver Eval(@@)"},
    {"Execute", "", "Execute \"x = \" & @@ : Ver x"},
    {"miembro", "", "obj.p = @ : Ver obj.p"},
    {"propiedad", "", "obj.Pone = @ : Ver obj.p"},
    {"With", "", "With obj : .p = @ : Ver .p : End With"},
    {"resultado", "Function Da : Da = @ : End Function\n", "Ver Da"},
    {"variable local", "Sub Local1 : Dim y : y = @ : Ver y : End Sub\n", "Local1"},
    {"elemento local", "Sub Local2 : Dim f(2) : f(2) = @ : Ver f(2) : End Sub\n", "Local2"},
    {"argumento local", "Sub Local3 : Ver 0, @ : End Sub\n", "Local3"},
    {"Eval local", "Sub Local4 : Dim y : y = Eval(@@) : Ver y : End Sub\n", "Local4"},
    {"por referencia", "Sub Pone(p) : p = @ : End Sub\n", "Pone x : Ver x"},
    {"elemento por referencia", "Sub PoneE(p) : p = @ : End Sub\n", "PoneE e(1) : Ver e(1)"},
    {"de una clase", "Class K\nPublic q\nPublic Sub Hace : q = @ : End Sub\nEnd Class\n",
     "Set ka = New K : ka.Hace : Ver ka.q"},
};

/// Where only a question is answered: x has the value already, Ver must see True. "@" binds
/// tighter than a comparison.
const Lugar preguntas[] = {
    {"If", "", "If @ = x Then : Ver True : End If"},
    {"If al reves", "", "If x = @ Then Ver True"},
    {"If Not", "", "If Not (@ <> x) Then Ver True Else Ver False"},
    {"Case", "", "Select Case x : Case \"zz\", @ : Ver True : Case Else : Ver False : End Select"},
    {"Select", "", "Select Case @ : Case x : Ver True : Case Else : Ver False : End Select"},
    {"While", "", "Do While @ = x : Ver True : Exit Do : Loop"},
    {"Until", "", "Do Until @ <> x : Ver True : Exit Do : Loop"},
    {"comparacion", "", "Ver (@ = x)"},
    {"comparacion en un elemento", "", "e(2) = @ = x : Ver e(2)"},
    {"clave", "", "d.RemoveAll : d(@) = 1 : Ver d.Exists(x)"},
    {"If local", "Sub Local5 : If @ = x Then Ver True Else Ver False\nEnd Sub\n", "Local5"},
};

/// With the truth of x, which is of a kind that has one: all agree with "If x".
const Lugar condiciones[] = {
    {"If", "", "If @ Then Ver True Else Ver False"},
    {"ElseIf", "", "If False Then : ElseIf @ Then : Ver True : Else : Ver False : End If"},
    {"While", "", "r = False : Do While @ : r = True : Exit Do : Loop : Ver r"},
    {"Until", "", "r = True : Do Until @ : r = False : Exit Do : Loop : Ver r"},
    {"If local", "Sub Local7 : If @ Then Ver True Else Ver False\nEnd Sub\n", "Local7"},
};

/// What is joined to "#" in x already has to come out.
const Lugar uniones[] = {
    {"a continuacion", "", "s = \"#\" : s = s & @ : Ver s"},
    {"a continuacion de dos", "", "s = \"\" : s = s & \"#\" & @ : Ver s"},
    {"a continuacion en un elemento", "", "e(1) = \"#\" : e(1) = e(1) & @ : Ver e(1)"},
    {"de una llamada", "", "e(1) = Igual(\"#\") & @ : Ver e(1)"},
    {"de una llamada, argumento", "", "Ver Igual(\"#\") & @"},
    {"delante", "", "Ver Mid(\"#\" & @, 1)"},
    {"de un local", "Sub Local6 : Dim s : s = \"#\" : s = s & @ : Ver s : End Sub\n", "Local6"},
};

/// The same with Null, which only Null leaves as it is.
const Lugar unionesConNulo[] = {
    {"a continuacion", "", "s = nulo : s = s & @ : Ver s"},
    {"a continuacion en un elemento", "", "e(1) = nulo : e(1) = e(1) & @ : Ver e(1)"},
    {"de tres", "", "Ver nulo & Igual(nulo) & @"},
};

class Diferencias : public ::testing::Test {
  protected:
    Diferencias() : motor_(entorno_) {
        auto ver = std::make_shared<HostTable>();
        ver->method("", [this](std::span<const Value> args, HostValues& valores) {
            visto_.valor = huella(args.back(), valores);
            return Value();
        });
        auto fin = std::make_shared<HostTable>();
        fin->method("", [this](std::span<const Value> args, HostValues& valores) {
            visto_.error = static_cast<int>(valores.number(args[0]));
            visto_.sellos = static_cast<int>(valores.number(args[1]));
            return Value();
        });
        motor_.addObject("Ver", ver);
        motor_.addObject("Fin", fin);
        correr(std::string(Expresion::preparacion()) +
               "Dim e(3), m(2, 2), x\nSet d = CreateObject(\"Scripting.Dictionary\")\n");
    }
    static std::string huella(const Value& v, HostValues& valores) {
        const bool hay = !v.is(Type::Null) && !v.is(Type::Array) && !v.is(Type::Object);
        return std::to_string(static_cast<int>(v.type)) + ":" + (hay ? valores.text(v) : "");
    }
    void correr(const std::string& guion) {
        if (!motor_.addCode(guion))
            ADD_FAILURE() << motor_.error().line << ": " << motor_.error().description << "\n"
                          << guion;
    }
    /// One run in one place; an error is caught at the statement that has the expression.
    Visto en(const Lugar& l, const std::string& expresion, const std::string& preludio = "") {
        const auto lleno = [&](const char* molde) {
            const std::string citada = "\"" + reemplazar(expresion, "\"", "\"\"") + "\"";
            return reemplazar(reemplazar(reemplazar(molde, "@@", "\x01"), "@", expresion), "\x01",
                              citada);
        };
        visto_ = Visto();
        correr(lleno(l.antes) + preludio +
               "\nOn Error Resume Next\nsello = 0 : e(1) = Empty : Err.Clear\nProbar\n"
               "Fin Err.Number, sello\nSub Probar\n" +
               lleno(l.lineas) + "\nEnd Sub\n");
        return visto_;
    }

    template <std::size_t N>
    void igualesEn(const Lugar (&donde)[N], const std::string& expresion, const Visto& esperado,
                   const std::string& preludio) {
        for (const Lugar& l : donde)
            EXPECT_EQ(en(l, expresion, preludio), esperado) << l.nombre << ": " << expresion;
    }
    /// Everywhere the same as in a variable; gives what that was.
    Visto enTodas(const Expresion& e) {
        const std::string texto = e.texto();
        const std::string atada = e.atada() ? texto : "(" + texto + ")";
        const std::string conX = "sello = 0 : x = " + texto;
        const Visto primero = en(lugares[0], texto);
        igualesEn(lugares, texto, primero, "");
        if (primero.error != 0) return primero;
        const auto como = [&](const char* pregunta) {
            Visto v = en({"", "", pregunta}, "", conX);
            v.sellos = primero.sellos;
            return v;
        };
        igualesEn(condiciones, texto, como("If x Then Ver True Else Ver False"), conX);
        igualesEn(uniones, atada, como("Ver \"#\" & x"), conX);
        igualesEn(unionesConNulo, atada, como("Ver nulo & x"), conX);
        const Visto igual = como("Ver (x = x)");
        if (igual.valor == huellaDeTrue) igualesEn(preguntas, atada, igual, conX);
        return primero;
    }

    static constexpr const char* huellaDeTrue = "5:Verdadero";
    Entorno entorno_;
    Engine motor_;
    Visto visto_;
};

constexpr std::uint32_t semilla = 14;
#ifdef KV_CON_SANITIZADORES
constexpr int cuantas = 400;
#else
constexpr int cuantas = 2000;
#endif

} // namespace

TEST_F(Diferencias, LoQueTieneSentidoValeLoMismoEnTodasPartes) {
    std::mt19937 azar(semilla);
    for (int k = 0; k < cuantas && !HasFailure(); ++k) {
        const Expresion e = Expresion::conSentido(azar);
        const auto esperado = e.valor();
        const Visto visto = enTodas(e);
        if (!esperado) continue;
        EXPECT_EQ(visto.error, 0) << e.texto();
        EXPECT_EQ(visto.valor.substr(visto.valor.find(':') + 1), enTexto(*esperado)) << e.texto();
    }
}

TEST_F(Diferencias, LoQueNoTieneSentidoFallaOValeIgualEnTodasPartes) {
    std::mt19937 azar(semilla);
    for (int k = 0; k < cuantas && !HasFailure(); ++k)
        enTodas(Expresion::sinSentido(azar));
}

} // namespace vbscript
