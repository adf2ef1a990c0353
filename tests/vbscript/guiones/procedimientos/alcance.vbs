' Which variable a name means.
g = 1
Sub VeGlobal : g = g + 1 : End Sub
VeGlobal : Echo g '= 2
Sub Local1 : l = 5 : End Sub
Local1 : Echo IsEmpty(l) '= Verdadero
Sub Veces
  Dim n, v
  n = n + 1 : v = v & n
  Echo v '= 1 | 1
End Sub
Veces : Veces
Function Len2(Len) : Len2 = Len : End Function
Echo Len2(3), Len("ab") '= 3 2
Sub Tapar : Dim g : g = 100 : End Sub
Tapar : Echo g '= 2
ExecuteGlobal "nuevoGlobal = 4"
Sub VerNuevo
  Echo nuevoGlobal '= 4
End Sub
VerNuevo
