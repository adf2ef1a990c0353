' Declarations are hoisted.
Echo Tarde, Lejos(1) '= 5 2
If False Then
  Const Tarde = 5
  Dim nunca(3)
  Function Lejos(x) : Lejos = x + 1 : End Function
End If
Echo UBound(nunca) '= 3
Const A = -1, B = "x", C = &HFF
Echo A & B & C '= -1x255
A = 2 ' error 501
Public P1, P2(2)
Private P3
P1 = 1 : P3 = 2
Echo P1 + P3, UBound(P2) '= 3 2
Function Gana : Gana = 1 : End Function
Function Gana : Gana = 2 : End Function
Echo Gana '= 2
Sub Local
  Dim A
  Const B = 9
  A = 7
  Echo A, B '= 7 9
End Sub
Local
Echo A, B '= -1 x
Lejos = 3 ' error 501
vbCr = 1 ' error 501
Len = 2 ' error 501
Stop
Randomize 5 : Randomize
