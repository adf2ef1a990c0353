' The Err object.
On Error Resume Next
Err.Raise 1234, "fuente", "texto"
Echo Err, Err.Number, Err.Source, Err.Description '= 1234 1234 fuente texto
Err.Clear
Err.Raise 11 : Echo Err.Description, Err.Source '= Division by zero Microsoft VBScript runtime error
Err.Raise 0 : Echo Err.Number '= 5
Err.Raise : Echo Err.Number '= 450
Err.Raise vbObjectError + 5 : Echo Err.Number '= -2147221499
Err.Raise 70000 : Echo Err.Number '= 5
x = 1 / 0 : Echo Err.Source '= Microsoft VBScript runtime error
Err.Raise 9, , "mio" : Echo Err.Description '= mio
Err.Raise 9, "s", "d", "ayuda.chm", 7 : Echo Err.HelpFile, Err.HelpContext '= ayuda.chm 7
Err.Number = 3 : Err.Description = "puesto" : Echo Err.Number, Err.Description '= 3 puesto
If Err Then Echo "hay" '= hay
Err = 0
If Err = 0 Then Echo "no hay" '= no hay
Err.Raise 999 : Echo Err.Description '= Unknown runtime error
Execute "x = (" : Echo Err.Number, Err.Source '= 1002 Microsoft VBScript compilation error
