'! budget 7
On Error Resume Next
Set d = CreateObject("Scripting.Dictionary")
Do : i = i + 1 : d(i) = String(1000, "x") : Loop
