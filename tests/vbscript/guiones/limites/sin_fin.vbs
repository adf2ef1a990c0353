'! budget 17
On Error Resume Next
Do
  x = x + 1
Loop
