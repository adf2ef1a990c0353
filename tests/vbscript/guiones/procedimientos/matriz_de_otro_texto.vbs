' An array that one text declares is the same one for a procedure of another.
ExecuteGlobal "Dim ajena(3)"
ExecuteGlobal "Sub Llenar : ajena(1) = 5 : ajena(2) = ajena(1) & ""%"" : End Sub"
Llenar
Echo ajena(1), ajena(2) '= 5 5%
