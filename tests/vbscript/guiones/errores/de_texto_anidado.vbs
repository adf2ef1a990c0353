'! run 13 7:3 in 2:3 If True Then
' The innermost text is the one to look into.
Sub Fuera
  Dim t
  t = "If True Then" & vbLf & "  y = CInt(""no"")" & vbLf & "End If"
  x = 1
  Execute "x = 2" & vbLf & "Execute t"
End Sub
Fuera
