'! budget 28
Class C
  Public Default Property Get V : V = Me + 1 : End Property
End Class
Set c1 = New C
On Error Resume Next
x = c1 + 1
