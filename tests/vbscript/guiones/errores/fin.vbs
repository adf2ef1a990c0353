'! run 1234 5:3
' An error nobody handles ends the run where it happened.
Sub A : B : End Sub
Sub B
  Err.Raise 1234, "x", "y"
End Sub
Echo "antes" '= antes
A
