' The same statements on operands that lie in different places, which run as different steps: own
' variables, parameters by reference, variables of the module.
Dim a, b, e(3), x, r
Function Pinta(v)
    If Err.Number <> 0 Then Pinta = "E" & Err.Number & " " Else Pinta = TypeName(v) & ":" & v & " "
    Err.Clear
End Function
cuerpo = "r = """" : "
For Each derecho In Array("b", "7", "0", "-3", "40000", "2.5")
    For Each op In Array("+", "-", "*", "/", "\", "Mod", "=", "<>", "<", ">", "<=", ">=")
        cuerpo = cuerpo & "x = Empty : x = a " & op & " " & derecho & " : r = r & Pinta(x)" & vbLf
    Next
    For Each op In Array("=", "<>", "<", ">", "<=", ">=")
        cuerpo = cuerpo & "x = 0 : If a " & op & " " & derecho & " Then x = 1" & vbLf & "r = r & Pinta(x)" & vbLf
    Next
Next
For Each lugar In Array("a", "2", "2.5")
    cuerpo = cuerpo & "e(" & lugar & ") = b : r = r & Pinta(0) : x = Empty : x = e(" & lugar & ") : r = r & Pinta(x)" & vbLf
Next
ExecuteGlobal "Function Propias(ByVal a, ByVal b)" & vbLf & "On Error Resume Next : Dim e(3), x, r" & vbLf & cuerpo & "Propias = r : End Function"
ExecuteGlobal "Function Ajenas(a, b, x, r)" & vbLf & "On Error Resume Next : Dim e(3)" & vbLf & cuerpo & "Ajenas = r : End Function"
ExecuteGlobal "Sub DelModulo" & vbLf & "On Error Resume Next : Erase e" & vbLf & cuerpo & "End Sub"
valores = Array(0, 3, -32768, 32767, 100000, -2147483648, 2147483647, 2.5, -0.5, 1E300, "2", "x", Empty, Null, True, _
    CByte(200), CSng(0.25), CCur("1,5"), DateSerial(2024, 1, 2))
distintos = 0 : iguales = 0
For Each v In valores
    For Each w In valores
        a = v : b = w
        DelModulo
        texto = r
        If texto = Propias(v, w) And texto = Ajenas(v, w, x, r) Then
            iguales = iguales + 1
        Else
            distintos = distintos + 1
        End If
    Next
Next
Echo iguales, distintos '= 361 0
Echo Left(Propias(32767, 1), 58) '= Long:32768 Integer:32766 Integer:32767 Double:32767 Intege
