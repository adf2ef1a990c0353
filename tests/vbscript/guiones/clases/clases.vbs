' Classes.
Class Contador
  Private n_, lista_(2), otra_()
  Public nombre
  Private Sub Class_Initialize : n_ = 10 : nombre = "c" : End Sub
  Public Property Get N : N = n_ : End Property
  Public Property Let N(v)
    If v < 0 Then Err.Raise 5
    n_ = v
  End Property
  Public Default Function Mas(k) : Mas = n_ + k : End Function
  Public Property Get Item(i) : Item = lista_(i) : End Property
  Public Property Let Item(i, v) : lista_(i) = v : End Property
  Public Sub Dos(ByRef a, ByRef b) : a = 1 : b = n_ : End Sub
  Public Function Yo : Set Yo = Me : End Function
  Public Sub Sumar : N = N + 1 : Me.N = Me.N + 1 : Privado : End Sub
  Private Sub Privado : n_ = n_ + 100 : End Sub
  Public Sub Agrandar : ReDim otra_(3) : otra_(3) = 7 : End Sub
  Public Function Ultima : Ultima = otra_(UBound(otra_)) : End Function
  Function Fact(k) : If k < 2 Then Fact = 1 Else Fact = k * Fact(k - 1)
  End Function
  Public Function Copiar(c) : n_ = c.N : c.Ajeno Me : Copiar = n_ : End Function
  Public Sub Ajeno(c) : c.N = 55 : End Sub
End Class
Set c = New Contador
Echo c.N, c.nombre, c(5), c.Mas(1) '= 10 c 15 11
c.N = 20 : Echo c.N '= 20
c.N = -1 ' error 5
c.Item(1) = "x" : Echo c.Item(1) '= x
c.Dos p, q : Echo p, q '= 1 20
Echo c.Yo.Yo.N, c.Yo().Yo()(1) '= 20 21
c.Sumar : Echo c.N '= 122
c.Agrandar : Echo c.Ultima '= 7
Echo c.Fact(5) '= 120
Set d = New Contador
Echo d.Copiar(c) '= 55
c.Privado ' error 438
x = c.n_ ' error 438
x = c.nada ' error 438
c.nada = 1 ' error 438
c.Mas = 3 ' error 438
Set c.N = c ' error 438
x = c.Mas ' error 450
x = c.Fact(1, 2) ' error 450
Set z = New NoHay ' error 506
Set z = New x ' error 506
Echo TypeName(c), c Is c, c Is d, IsObject(c) '= Contador Verdadero Falso Verdadero
Class Simple : Public v, w : Public arr(2) : End Class
Set s = New Simple
s.v = 5 : Set s.w = s : s.arr(1) = 9
Echo s.v, s.w.w.v, s.arr(1) '= 5 5 9
Set s.w = Nothing
x = s ' error 438
Set n = Nothing
x = n ' error 91
n.v = 1 ' error 91
x = n.v ' error 91
y = 5
x = y.v ' error 424
Set x = 5 ' error 424
Class RegExp : Public Mio : End Class
Set r = New RegExp : Echo TypeName(r) '= IRegExp2
Class Pila
  Private d_
  Sub Class_Initialize : Set d_ = CreateObject("Scripting.Dictionary") : End Sub
  Property Get Datos : Set Datos = d_ : End Property
End Class
Set pl = New Pila
pl.Datos("a") = 3 : pl.Datos.Add "b", 4
Echo pl.Datos("a") + pl.Datos.Item("b"), pl.Datos.Count '= 7 2
For Each k In pl.Datos.Keys : ks = ks & k : Next
Echo ks '= ab
Class Cadena
  Public t
  Function Y(x) : t = t & x : Set Y = Me : End Function
End Class
Set ca = New Cadena
ca.Y("a").Y("b") _
  .Y("c")
Echo ca.t '= abc
Class ConSet
  Private o_
  Public Property Set Hijo(x) : Set o_ = x : End Property
  Public Property Get Hijo : Set Hijo = o_ : End Property
  Public Property Let Valor(x)
    Echo TypeName(x) '= ConSet
  End Property
End Class
Set cs = New ConSet
Set cs.Hijo = cs : Echo cs.Hijo Is cs '= Verdadero
cs.Hijo = 5 ' error 438
cs.Valor = cs
Set cs.Hijo = Nothing
