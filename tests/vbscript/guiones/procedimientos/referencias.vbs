' By reference, by value.
Sub Mas(x) : x = x + 1 : End Sub
Sub NoMas(ByVal x) : x = x + 1 : End Sub
n = 1
Mas n : Echo n '= 2
Call Mas(n) : Echo n '= 3
Mas (n) : Echo n '= 3
Mas(n) : Echo n '= 3
Call Mas((n)) : Echo n '= 3
NoMas n : Echo n '= 3
Dim a(2)
Mas a(1) : Echo a(1) '= 1
Call Mas(a(1)) : Echo a(1) '= 2
Sub Llenar(v) : ReDim v(2) : v(0) = "lleno" : End Sub
Llenar nuevo
Echo nuevo(0) '= lleno
Sub Cambiar(v) : v(0) = "cambiado" : End Sub
Cambiar nuevo : Echo nuevo(0) '= cambiado
Sub NoCambiar(ByVal v) : v(0) = "otra vez" : End Sub
NoCambiar nuevo : Echo nuevo(0) '= cambiado
Sub Crecer(elemento) : ReDim Preserve nuevo(5) : End Sub
Crecer nuevo(1) ' error 10
ReDim Preserve nuevo(3) : Echo UBound(nuevo) '= 3
Sub Tras(x) : Mas x : Mas x : End Sub
Tras n : Echo n '= 5
Class C : Public v : End Class
Set o = New C : o.v = 1
Mas o.v : Echo o.v '= 1
Sub Salida(ByRef r) : r = "puesto" : End Sub
Salida sinDeclarar : Echo sinDeclarar '= puesto
Sub Alias(x, y)
  x = 1 : y = 2
  Echo x '= 2
End Sub
Alias n, n
Function Suma(x, y) : Suma = x + y : x = 0 : End Function
p = 4 : q = Suma(p, 1) + p
Echo q, p '= 5 0
m = 4
r = m + Suma(m, 1)
Echo r '= 9
Dim z(1)
z(0) = 1
Sub PorElemento(x)
  x = 9 : Echo z(0) '= 9
  z(0) = 8 : Echo x '= 8
End Sub
PorElemento z(0)
