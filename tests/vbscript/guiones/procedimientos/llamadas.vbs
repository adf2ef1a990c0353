' Ways to call.
Dim ultimo
Sub S(a) : ultimo = a : End Sub
S 1 + 1 : Echo ultimo '= 2
S (2) * 3 : Echo ultimo '= 6
S(10) + 1 : Echo ultimo '= 11
S(4) : Echo ultimo '= 4
Call S(5) : Echo ultimo '= 5
S -1 : Echo ultimo '= -1
S "a" & _
  "b" : Echo ultimo '= ab
Sub Dos(a, b) : ultimo = a & "," & b : End Sub
Dos 1, 2 : Echo ultimo '= 1,2
Dos (1), (2) : Echo ultimo '= 1,2
Function Cero : Cero = "cero" : End Function
Echo Cero, Cero() '= cero cero
Function Fact(n) : If n < 2 Then Fact = 1 Else Fact = n * Fact(n - 1)
End Function
Echo Fact(10), Fact(20) '= 3628800 2,43290200817664E+18
Function Nada : End Function
Echo IsEmpty(Nada) '= Verdadero
Function Obj : Set Obj = CreateObject("Scripting.Dictionary") : End Function
Echo TypeName(Obj) '= Dictionary
Function Antes
  Antes = "a"
  Antes = Antes & "b"
  Exit Function
  Antes = "mal"
End Function
Echo Antes '= ab
S ' error 450
S 1, 2 ' error 450
x = S(1, 2) ' error 450
NoExiste 1 ' error 13
x = NoExiste(1) ' error 13
ultimo ' error 13
x = ultimo(1) ' error 13
Sub Oculta(Cero)
  Echo Cero '= 3
End Sub
Oculta 3
Function Ack(m, n)
  If m = 0 Then
    Ack = n + 1
  ElseIf n = 0 Then
    Ack = Ack(m - 1, 1)
  Else
    Ack = Ack(m - 1, Ack(m, n - 1))
  End If
End Function
Echo Ack(2, 3) '= 9
Sub Faltante(a, b)
  Echo TypeName(b) '= Error
End Sub
Call Faltante(1, )
Sub Pequeno : x = 5 End Sub
Pequeno
