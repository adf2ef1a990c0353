' With.
Class C
  Public a
  Public hijo
  Public Function Doble(x) : Doble = 2 * x : End Function
End Class
Set o = New C
With o
  .a = 1
  Echo .a + .Doble(4) '= 9
  Set .hijo = New C
  With .hijo
    .a = 5
    Echo .a '= 5
  End With
  Echo .a, .hijo.a '= 1 5
End With
.a = 1 ' error 505
With Nothing
  x = 1
  .a = 1 ' error 91
End With
On Error Resume Next
With 5 : x = 2 : End With
Echo Err.Number '= 424
With New C
  .a = 7 : Echo .a '= 7
End With
On Error GoTo 0

' A dot after a blank begins an argument.
Class Maquina
  Public Dir, Valor, Escrito, Otra
  Public Sub Escribir(d, v) : Escrito = Escrito & d & "=" & v & ";" : End Sub
  Public Function Doble(x) : Doble = 2 * x : End Function
End Class
Sub Anotar(v) : anotado = anotado & v & ";" : End Sub
Function Suma(a, b) : Suma = a + b : End Function
anotado = ""
Set maq = New Maquina
Set mwx = New Maquina
Set maq.Otra = mwx
With maq
  .Dir = "1.1.10" : .Valor = 7
  mwx.Escribir .Dir, .Valor
  mwx.Escribir .Dir, - .Valor
  mwx.Escribir _
    .Dir, _
    .Valor + .Valor
  .Escribir .Dir, .Doble(.Valor)
  .Otra.Escribir .Dir, .Valor = 7
  Anotar .Valor
  Anotar .Otra.Escrito
  If .Valor = 7 Then Anotar .Dir Else Anotar .Valor
  x = .Valor + .Valor : Echo x '= 14
  Echo Suma(.Valor, .Valor) '= 14
  Call Anotar(.Valor)
  Anotar (.Valor)
  Anotar(.Valor)
  mwx. Dir = 3
  mwx.Valor = .Valor
  With .Otra
    Anotar .Dir
    maq.Escribir .Dir, .Valor
  End With
  Select Case .Valor
  Case .Doble(3.5) : Anotar .Dir
  End Select
  For i = .Valor To .Valor : Anotar .Valor : Next
End With
Echo mwx.Escrito '= 1.1.10=7;1.1.10=-7;1.1.10=14;1.1.10=Verdadero;
Echo maq.Escrito '= 1.1.10=14;3=7;
Echo Replace(anotado, mwx.Escrito, "*") '= 7;*;1.1.10;7;7;7;3;1.1.10;7;
' Elsewhere it goes on with what stands before it, also over lines.
mwx _
  .Escribir "a", 1
Echo Right(mwx.Escrito, 4) '= a=1;
Anotar .Dir ' error 450
