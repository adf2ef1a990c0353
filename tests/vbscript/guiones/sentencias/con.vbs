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
