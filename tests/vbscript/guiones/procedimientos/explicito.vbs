Option Explicit
' Undeclared names are run-time errors.
Dim a

a = 1
b = 2 ' error 500
a = c ' error 500
Sub S(x)
  Dim y
  y = x
  z = 1 ' error 500
End Sub
S 1
ExecuteGlobal "deOtro = 3"
Echo deOtro '= 3
On Error Resume Next
a = noEsta
Echo Err.Description '= Variable is undefined
