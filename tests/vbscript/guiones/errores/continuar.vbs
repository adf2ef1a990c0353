' On Error Resume Next, rule by rule.
On Error Resume Next
x = 5 : x = 1 / 0
Echo x, Err.Number, Err.Description '= 5 11 Division by zero
y = 1 : Echo Err.Number '= 11
Err.Clear : Echo Err.Number, Err.Description = "" '= 0 Verdadero
If 1 / 0 Then
  Echo "entra" '= entra
Else
  x = "mal"
End If
If False Then
ElseIf 1 / 0 Then
  Echo "entra" '= entra
End If
n = 0
Do While 1 / 0
  n = n + 1 : If n = 2 Then Exit Do
Loop
Echo n '= 2
n = 0
Do : n = n + 1 : Loop While 1 / 0
Echo n '= 1
Do : n = n + 1 : Loop Until 1 / 0
Echo n '= 2
Select Case 1 / 0
  Case Else x = "mal"
End Select
Echo x '= 5
Err.Clear : n = 0
For i = 1 To 1 / 0
  n = n + 1 : Echo Err.Number '= 11
Next
Echo n, Err.Number '= 1 92
Dim visto
Sub SinManejo : a = 1 : b = 1 / 0 : despues = "mal" : End Sub
Err.Clear
SinManejo : Echo Err.Number, IsEmpty(despues) '= 11 Verdadero
Sub ConManejo : On Error Resume Next : z = 1 / 0 : visto = Err.Number : End Sub
Err.Clear
ConManejo : Echo visto, Err.Number '= 11 11
Function Rompe : Rompe = 7 : x = 1 / 0 : End Function
v = 3 : v = Rompe : Echo v '= 3
a = Array(1, 2) : a(5) = 1 : Echo Err.Number, a(0) '= 9 1
Set o = 5 : Echo Err.Number, IsEmpty(o) '= 424 Verdadero
s = "a" : s = s & "b" & Array(1) : Echo s '= a
On Error GoTo 0
Echo Err.Number '= 0
On Error Resume Next
Err.Clear
Select Case 1
  Case 2 : x = "mal"
  Case 1 / 0, 1 : Echo "entra", Err.Number '= entra 11
  Case 1 : x = "mal"
End Select
Err.Clear
For Each v In 5 : x = "mal" : Next
Echo x = "mal", Err.Number '= Falso 451
Err.Clear
For Each v In Nothing : x = "mal" : Next
Echo x = "mal", Err.Number '= Falso 91
Sub SinFondo : SinFondo : End Sub
Err.Clear
SinFondo : Echo Err.Number, Err.Description '= 28 Out of stack space
