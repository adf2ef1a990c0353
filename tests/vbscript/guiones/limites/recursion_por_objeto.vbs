' Through a default member, each of which takes a slice of the machine's own stack.
Class C
  Public Default Property Get V : V = Me + 1 : End Property
End Class
Set c1 = New C
x = c1 + 1 ' error 28
