' Select Case.
Function F(v)
  Select Case v
    Case 1, 2
      F = "bajo"
    Case 3 F = "tres"
    Case "7"
      F = "letra"
    Case Else F = "otro"
  End Select
End Function
Echo F(1), F(2), F(3), F("7"), F(9) '= bajo bajo tres letra otro
Select Case 1
End Select
Function Contar : n = n + 1 : Contar = 5 : End Function
n = 0
Select Case 5
  Case 5, Contar()
    Echo "primero" '= primero
  Case Contar()
    x = "mal"
End Select
Echo n '= 0
Select Case True
  Case n > 0 : x = "mal"
  Case n = 0 : Echo "si" '= si
End Select
Select Case 1
  Case 1
    Select Case 2
      Case 1 : x = "mal"
      Case Else : x = "dentro"
    End Select
  Case 2 : x = "mal"
End Select
Echo x '= dentro
