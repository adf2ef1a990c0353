' Arrays.
Dim a(3), d(), m(2, 3)
Echo UBound(a), LBound(a), UBound(m), UBound(m, 2), IsEmpty(a(0)) '= 3 0 2 3 Verdadero
a(0) = 1 : a("1") = 2 : a(1.5) = 3 : a(2.5) = 4
Echo a(0), a(1), a(2) '= 1 2 4
x = a(4) ' error 9
a(-1) = 1 ' error 9
x = a(0, 0) ' error 9
x = m(1) ' error 9
x = d(0) ' error 9
x = UBound(d) ' error 9
x = UBound(a, 2) ' error 9
x = UBound(5) ' error 13
x = a("x") ' error 13
m(1, 2) = "m"
Echo m(1, 2), IsEmpty(m(2, 1)) '= m Verdadero
ReDim a(5) ' error 10
ReDim d(2) : d(2) = 5
ReDim Preserve d(4) : Echo d(2), UBound(d) '= 5 4
ReDim d(4) : Echo IsEmpty(d(2)) '= Verdadero
ReDim e(1, 1) : e(1, 1) = 9
ReDim Preserve e(1, 3) : Echo e(1, 1), UBound(e, 2) '= 9 3
ReDim Preserve e(2, 3) ' error 9
ReDim Preserve e(3) ' error 9
ReDim nueva(-1) : Echo UBound(nueva) '= -1
b = a : b(0) = 100 : Echo a(0), b(0) '= 1 100
Erase a : Echo IsEmpty(a(0)), UBound(a) '= Verdadero 3
Erase d
x = d(0) ' error 9
Erase x ' error 13
f = Array(Array(1, 2), Array(3))
Echo f(0)(1), f(1)(0) '= 2 3
f(0)(1) = 20 : Echo f(0)(1) '= 20
g = f(0) : g(1) = 30 : Echo f(0)(1), g(1) '= 20 30
Echo Split("a;b", ";")(1), Array(7, 8)(1) '= b 8
Function Lista : Lista = Array(4, 5, 6) : End Function
Echo Lista()(2) '= 6
Set o = CreateObject("Scripting.Dictionary")
a(1) = Array(1) : Set a(2) = o
a(2)("k") = 5 : Echo o("k") '= 5
a(1) = o ' error 450
Set a(1) = 5 ' error 424
h = Array() : Echo UBound(h) '= -1
Echo Join(Array(1, "b", 2.5), "-"), Join(Array("a", "b")) '= 1-b-2,5 a b
Echo Join(Filter(Array("uno", "dos", "tres"), "o")), Join(Filter(Array("uno", "DOS"), "o", False)) '= uno dos DOS
Echo Join(Filter(Array("uno", "DOS"), "o", True, vbTextCompare)) '= uno DOS
Echo Join(Split("a,b,c", ",", 2), "|"), Join(Split("aXbxc", "x", -1, 1), "|"), Join(Split("a b"), "|") '= a|b,c a|b|c a|b
Sub PorValor(ByVal v) : v(0) = 1 : End Sub
z = Array(0) : PorValor z : Echo z(0) '= 0
