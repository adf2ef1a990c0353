' If in all its shapes.
If True Then Echo 1 '= 1
If False Then x = 1 Else x = 2
Echo x '= 2
If False Then x = 3 : x = 4 Else x = 5 : x = x + 1
Echo x '= 6
If True Then If False Then x = 7 Else x = 8
Echo x '= 8
If True Then x = 9 : y = 1 End If
Echo x + y '= 10
If x = 1 Then
  x = 10
ElseIf x = 9 Then x = 11 : z = 1
ElseIf True Then
  x = 12
Else x = 13
End If
Echo x '= 11
If False Then
Else x = 14 End If
Echo x '= 14
If Null Then x = 15 Else x = 16
Echo x '= 16
If "True" Then x = 17
If "0" Then x = 18
Echo x '= 17
If False Then
  If True Then
    x = 1
  End If
ElseIf 2 Then
  If False Then x = 1
  x = 19
End If
Echo x '= 19
If "hola" Then x = 1 ' error 13
For i = 1 To 3 : If i = 2 Then Exit For
Next
Echo i '= 2
For i = 1 To 3 : If i < 9 Then x = i
Next : Echo x '= 3
