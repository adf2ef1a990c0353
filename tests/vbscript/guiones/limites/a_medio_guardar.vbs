'! compile 1033 5:7
x = 1
For i = 1 To 3
  x = x + i
  y = "se corta a