' A pattern that takes for ever is cut off.
Set r = New RegExp
r.Pattern = "(a+)+$"
x = r.Test(String(40, "a") & "b") ' error 7
r.Pattern = "(a|aa)+$"
x = r.Test(String(60, "a") & "b") ' error 7
