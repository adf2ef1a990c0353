'! budget 7
' Compiled patterns count, too.
On Error Resume Next
Set d = CreateObject("Scripting.Dictionary")
Do
  i = i + 1
  Set d(i) = New RegExp
  d(i).Pattern = "(?:abcdefghij){500}"
  x = d(i).Test("a")
Loop
