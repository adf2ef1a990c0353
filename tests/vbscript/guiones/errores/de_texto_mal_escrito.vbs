'! run 1010 3:1 in 2:5 x = 1
' A text that does not compile.
ExecuteGlobal "x = 1" & vbLf & "Dim 7"
