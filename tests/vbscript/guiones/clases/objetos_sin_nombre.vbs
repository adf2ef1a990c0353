' New in the midst of things, and an index behind what has none.
Class C
  Public x, lista
  Function Hi(t) : Hi = "hola " & t : dicho = Hi : End Function
  Function Init(a, b) : x = a + b : Set Init = Me : End Function
  Public Property Get Suma : Suma = x + 1 : End Property
End Class
Dim dicho
Call (New C).Hi("a") : Echo dicho '= hola a
Call New C.Hi("b") : Echo dicho '= hola b
Set o = New C.Init(1, 2) : Echo o.x, TypeName(o) '= 3 C
Set o = (New C).Init(3, 4) : Echo o.Suma '= 8
Echo New C.Hi("c"), (New C.Init(5, 6)).x '= hola c 11
o.lista = Array(1, 2) : Echo o.lista(1) '= 2
y = o.x(1) ' error 438
o.x(1) = 2 ' error 438
y = o.Suma(1) ' error 438
y = o.lista(2) ' error 9
