Option Explicit
'! run 500 4:1
Dim x
x = y + 1
