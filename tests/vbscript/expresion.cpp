// SPDX-License-Identifier: Apache-2.0
#include "vbscript/expresion.h"

#include <algorithm>
#include <array>

namespace vbscript {

namespace {

using Valor = Expresion::Valor;
using Clase = Expresion::Clase;

template <class T>
bool compara(const std::string& op, const T& a, const T& b) {
    if (op == "=") return a == b;
    if (op == "<>") return a != b;
    if (op == "<") return a < b;
    if (op == ">") return b < a;
    return op == "<=" ? !(b < a) : !(a < b);
}

struct Hoja {
    const char* texto;
    Valor valor;
};

// Variables, elements and entries have the values that preparacion() gives them.
const std::array<Hoja, 9> numeros{{{"0", 0},
                                   {"7", 7},
                                   {"40000", 40000},
                                   {"n", 12},
                                   {"local", 3},
                                   {"lista(1)", 250},
                                   {"tabla(1, 1)", -4},
                                   {"dic(\"n\")", 1000},
                                   {"obj.Numero", 99}}};
const std::array<Hoja, 9> textos{{{"\"\"", ""},
                                  {"\"bar\"", "bar"},
                                  {"\"5\"", "5"},
                                  {"t", "Caldera"},
                                  {"lista(2)", "el"},
                                  {"tabla(0, 1)", "fila"},
                                  {"dic(\"t\")", "entrada"},
                                  {"obj.Texto", "del objeto"},
                                  {"\"a\"\"b\"", "a\"b"}}};
const std::array<Hoja, 4> verdades{
    {{"True", true}, {"False", false}, {"v", true}, {"lista(3)", false}}};
const std::array<const char*, 14> sueltas{
    {"Null", "Empty", "1.5", "\"zeta\"", "\"1,5\"", "CDate(3)", "CCur(2.5)", "CByte(200)", "nulo",
     "lista(0)", "2147483647", "CSng(0.1)", "nadie", "dic(\"no hay\")"}};

} // namespace

std::string enTexto(const Expresion::Valor& v) {
    if (const auto* n = std::get_if<std::int64_t>(&v)) return std::to_string(*n);
    if (const auto* b = std::get_if<bool>(&v)) return *b ? "Verdadero" : "Falso";
    return std::get<std::string>(v);
}

class Generador {
  public:
    Generador(std::mt19937& azar, bool conSentido) : azar_(azar), conSentido_(conSentido) {}

    Expresion de(Clase c, int hondo) {
        if (!conSentido_) c = static_cast<Clase>(hasta(3));
        if (hondo == 0 || hasta(6) == 0) return hoja(c);
        switch (c) {
        case Clase::Numero:
            return numero(hondo - 1);
        case Clase::Texto:
            return texto(hondo - 1);
        default:
            return verdad(hondo - 1);
        }
    }
    std::uint32_t hasta(std::uint32_t n) { return static_cast<std::uint32_t>(azar_() % n); }

  private:
    Expresion hoja(Clase c) {
        Expresion e;
        if (!conSentido_ && hasta(2) == 0) {
            e.nombre_ = sueltas.at(hasta(sueltas.size()));
            return e;
        }
        if (c == Clase::Numero && hasta(4) == 0) {
            e.nombre_ = "sello";
            return e;
        }
        const Hoja& h = c == Clase::Numero  ? numeros.at(hasta(numeros.size()))
                        : c == Clase::Texto ? textos.at(hasta(textos.size()))
                                            : verdades.at(hasta(verdades.size()));
        e.nombre_ = h.texto;
        e.hoja_ = h.valor;
        return e;
    }
    Expresion nodo(std::string nombre, int nivel, std::vector<Expresion> partes) {
        Expresion e;
        e.nombre_ = std::move(nombre);
        e.nivel_ = nivel;
        e.suelto_ = hasta(3) != 0;
        e.partes_ = std::move(partes);
        return e;
    }
    Expresion funcion(const char* nombre, Clase c, int hondo) {
        return nodo(nombre, 100, {de(c, hondo)});
    }
    Expresion dos(const char* op, int nivel, Clase a, Clase b, int hondo) {
        Expresion primera = de(a, hondo); // arguments of a call have no order
        Expresion segunda = de(b, hondo);
        return nodo(op, nivel, {std::move(primera), std::move(segunda)});
    }
    Expresion propia(Clase c, int hondo) {
        constexpr std::array<const char*, 6> nombres{"Igual", "PorValor",  "Sella",
                                                     "Sella", "obj.Igual", "Eval"};
        return funcion(nombres.at(hasta(conSentido_ ? 5 : 6)), c, hondo);
    }

    Expresion numero(int hondo) {
        switch (hasta(9)) {
        case 0:
            return dos("+", 9, Clase::Numero, Clase::Numero, hondo);
        case 1:
            return dos("-", 9, Clase::Numero, Clase::Numero, hondo);
        case 2:
            return dos("*", 12, Clase::Numero, Clase::Numero, hondo);
        case 3:
            return dos("\\", 11, Clase::Numero, Clase::Numero, hondo);
        case 4:
            return dos("Mod", 10, Clase::Numero, Clase::Numero, hondo);
        case 5:
            return nodo("-", 14, {de(Clase::Numero, hondo)});
        case 6:
            return funcion("Len", Clase::Texto, hondo);
        case 7:
            return conSentido_ ? dos("Xor", 3, Clase::Numero, Clase::Numero, hondo)
                               : dos("/", 12, Clase::Numero, Clase::Numero, hondo);
        default:
            return propia(Clase::Numero, hondo);
        }
    }
    Expresion texto(int hondo) {
        switch (hasta(9)) {
        case 0:
            return dos("+", 9, Clase::Texto, Clase::Texto, hondo);
        case 1:
            return funcion("CStr", static_cast<Clase>(hasta(2)), hondo);
        case 2:
            return funcion("UCase", Clase::Texto, hondo);
        case 3:
            return propia(Clase::Texto, hondo);
        case 4:
            return nodo("Mid", 100, {de(Clase::Texto, hondo), hoja(Clase::Numero)});
        default:
            return dos("&", 8, static_cast<Clase>(hasta(3)), static_cast<Clase>(hasta(3)), hondo);
        }
    }
    Expresion verdad(int hondo) {
        constexpr std::array<const char*, 6> comparaciones{"=", "<>", "<", ">", "<=", ">="};
        const Clase c = hasta(2) == 0 ? Clase::Numero : Clase::Texto;
        switch (hasta(6)) {
        case 0:
            return dos("And", 5, Clase::Verdad, Clase::Verdad, hondo);
        case 1:
            return dos("Or", 4, Clase::Verdad, Clase::Verdad, hondo);
        case 2:
            return nodo("Not", 6, {de(Clase::Verdad, hondo)});
        case 3:
            return propia(Clase::Verdad, hondo);
        default:
            return dos(comparaciones.at(hasta(comparaciones.size())), 7, c, c, hondo);
        }
    }

    std::mt19937& azar_;
    bool conSentido_;
};

Expresion Expresion::conSentido(std::mt19937& azar) {
    Generador g(azar, true);
    return g.de(static_cast<Clase>(g.hasta(3)), 1 + static_cast<int>(g.hasta(5)));
}

Expresion Expresion::sinSentido(std::mt19937& azar) {
    Generador g(azar, false);
    return g.de(Clase::Texto, 1 + static_cast<int>(g.hasta(4)));
}

std::string Expresion::operando(std::size_t k) const {
    const Expresion& e = partes_[k];
    // Of operators that bind alike the left one comes first.
    const bool hace = e.nivel_ < nivel_ || (e.nivel_ == nivel_ && (k == 1 || partes_.size() == 1));
    return hace || (!e.suelto_ && e.nivel_ < 100) ? "(" + e.texto() + ")" : e.texto();
}

std::string Expresion::texto() const {
    if (partes_.empty()) return nombre_;
    if (nivel_ == 100) {
        std::string lista = partes_[0].texto();
        if (partes_.size() > 1) lista += ", " + partes_[1].texto();
        return nombre_ + "(" + lista + ")";
    }
    if (partes_.size() == 1) return nombre_ + " " + operando(0);
    return operando(0) + " " + nombre_ + " " + operando(1);
}

std::optional<Valor> Expresion::valor() const {
    Contexto c;
    Valor v = calcular(c);
    if (c.imposible) return std::nullopt;
    return v;
}

Valor Expresion::calcular(Contexto& c) const {
    if (nombre_ == "sello") return c.sello;
    if (partes_.empty()) return hoja_;
    return nivel_ == 100 ? calcularFuncion(c) : calcularOperador(c);
}

Valor Expresion::calcularFuncion(Contexto& c) const {
    Valor v = partes_[0].calcular(c);
    if (nombre_ == "Sella") ++c.sello;
    if (nombre_ == "Len") return static_cast<std::int64_t>(std::get<std::string>(v).size());
    if (nombre_ == "CStr") return enTexto(v);
    if (nombre_ == "UCase") {
        std::string t = std::get<std::string>(v);
        std::transform(t.begin(), t.end(), t.begin(),
                       [](char l) { return l >= 'a' && l <= 'z' ? static_cast<char>(l - 32) : l; });
        return t;
    }
    if (nombre_ == "Mid") {
        const auto desde = std::get<std::int64_t>(partes_[1].calcular(c));
        const std::string& t = std::get<std::string>(v);
        c.imposible = c.imposible || desde < 1;
        if (desde < 1 || desde > static_cast<std::int64_t>(t.size())) return std::string();
        return t.substr(static_cast<std::size_t>(desde - 1));
    }
    return v;
}

Valor Expresion::calcularOperador(Contexto& c) const {
    const Valor a = partes_[0].calcular(c);
    if (nombre_ == "Not") return !std::get<bool>(a);
    const Valor b = partes_.size() > 1 ? partes_[1].calcular(c) : a;
    if (nombre_ == "&") return enTexto(a) + enTexto(b);
    if (nombre_ == "And") return std::get<bool>(a) && std::get<bool>(b);
    if (nombre_ == "Or") return std::get<bool>(a) || std::get<bool>(b);
    if (nivel_ == 7) {
        const auto* t = std::get_if<std::string>(&a);
        return t ? compara(nombre_, *t, std::get<std::string>(b))
                 : compara(nombre_, std::get<std::int64_t>(a), std::get<std::int64_t>(b));
    }
    if (const auto* t = std::get_if<std::string>(&a)) return *t + std::get<std::string>(b);
    const std::int64_t x = std::get<std::int64_t>(a);
    const std::int64_t y = std::get<std::int64_t>(b);
    std::int64_t r = 0;
    if (partes_.size() == 1) {
        r = -x;
    } else if (nombre_ == "\\" || nombre_ == "Mod") {
        c.imposible = c.imposible || y == 0;
        if (y != 0) r = nombre_ == "Mod" ? x % y : x / y;
    } else {
        r = nombre_ == "+" ? x + y : nombre_ == "-" ? x - y : nombre_ == "Xor" ? x ^ y : x * y;
    }
    c.imposible = c.imposible || r > INT32_MAX || r < INT32_MIN;
    return c.imposible ? Valor(std::int64_t{1}) : Valor(r);
}

const char* Expresion::preparacion() {
    return R"(
Function Igual(x) : Igual = x : End Function
Function PorValor(ByVal x) : PorValor = x : End Function
Function Sella(ByVal x) : sello = sello + 1 : Sella = x : End Function
Class Objeto
  Public Numero, Texto, p
  Public Function Igual(x) : Igual = x : End Function
  Public Property Let Pone(x) : p = x : End Property
End Class
Dim lista(3), tabla(1, 1), n, t, v, nulo, sello, local
Set dic = CreateObject("Scripting.Dictionary")
Set obj = New Objeto
n = 12 : t = "Caldera" : v = True : nulo = Null : sello = 0 : local = 3
lista(1) = 250 : lista(2) = "el" : lista(3) = False
tabla(1, 1) = -4 : tabla(0, 1) = "fila"
dic("n") = 1000 : dic("t") = "entrada"
obj.Numero = 99 : obj.Texto = "del objeto"
Sub Recibe(o, p) : Ver p : End Sub
Sub RecibeValor(o, ByVal p) : Ver p : End Sub
)";
}

} // namespace vbscript
