'! run 28 4:17
' Endless recursion is an error, which may be caught.
On Error Resume Next
Function F(n) : F = F(n + 1) + 1 : End Function
x = F(1)
Echo Err.Number, IsEmpty(x) '= 28 Verdadero
Sub Sigue(n) : On Error Resume Next : hondura = n : Sigue n + 1 : End Sub
Dim hondura
Sigue 1 : Echo hondura '= 1999
Sub E : Execute "E" : End Sub
Err.Clear : E : Echo Err.Number '= 28
On Error GoTo 0
x = F(1)
