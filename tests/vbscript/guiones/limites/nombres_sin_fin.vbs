'! budget 7
' New names without end.
On Error Resume Next
Do : i = i + 1 : ExecuteGlobal "variable_con_un_nombre_" & i & " = 1" : Loop
