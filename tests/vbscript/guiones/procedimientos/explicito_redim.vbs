' What counts as declared under Option Explicit.
Option Explicit
ReDim nuevo(3)
nuevo(3) = 7 : Echo UBound(nuevo), nuevo(3) '= 3 7
Sub Propio
  ReDim local(1, 2) : local(1, 2) = 5
  Echo UBound(local, 2), local(1, 2) '= 2 5
  ReDim nuevo(0)
End Sub
Propio
Echo UBound(nuevo) '= 0
ReDim Preserve nuevo(1) : Echo UBound(nuevo) '= 1
x = 3 ' error 500
Sub Ejecuta
  Execute "Dim q : q = 4"
  q = q + 1 : Echo q, TypeName(q) '= 5 Integer
  Execute "q = q * 2" : Echo q '= 10
  Execute "Dim m(2)" : m(1) = 6 : Echo m(1), UBound(m) '= 6 2
  Mas q : Echo q '= 11
  Execute "Function Nueva : Nueva = 9 : End Function" : Echo Nueva, Nueva() '= 9 9
  z = 1
End Sub
Sub Mas(ByRef v) : v = v + 1 : End Sub
Ejecuta ' error 500
q = 1 ' error 500
