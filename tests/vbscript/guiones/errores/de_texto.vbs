'! run 11 8:12 in 3:3 Sub DeTexto
' The place is where the host's text stands, and where in the other text.
On Error Resume Next
ExecuteGlobal "Sub DeTexto" & vbCrLf & "  Dim d" & vbCrLf & "  x = 1 / d" & vbCrLf & "End Sub"
DeTexto
Echo Err.Number '= 11
On Error GoTo 0
Sub Pasa : DeTexto : End Sub : x = 1
Pasa
