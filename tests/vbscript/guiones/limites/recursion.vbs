'! budget 28
On Error Resume Next
Function F(n) : F = F(n + 1) + 1 : End Function
x = F(1)
