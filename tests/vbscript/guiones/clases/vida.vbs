' Class_Initialize and Class_Terminate.
Class V
  Public id
  Sub Class_Initialize : vivos = vivos + 1 : End Sub
  Sub Class_Terminate : vivos = vivos - 1 : muertos = muertos & id : End Sub
End Class
Dim vivos, muertos
vivos = 0
Set a = New V : a.id = "a" : Echo vivos '= 1
Set a = Nothing : Echo vivos, muertos '= 0 a
Set a = New V : a.id = "b"
Set a = New V : Echo vivos, muertos '= 1 ab
a = 5 : Echo vivos '= 0
Sub Adentro : Dim l : Set l = New V : l.id = "l" : End Sub
muertos = "" : Adentro : Echo vivos, muertos '= 0 l
Set b = New V : Set c = b : Set b = Nothing : Echo vivos '= 1
c = Empty : Echo vivos '= 0
Function Hacer : Set Hacer = New V : End Function
Set b = Hacer : Echo vivos '= 1
Hacer : Echo vivos '= 1
Hacer.id = "t" : Echo vivos '= 1
lista = Array(Hacer, Hacer) : Echo vivos '= 3
lista = 0 : Echo vivos '= 1
Sub Usa(x) : End Sub
Usa New V : Echo vivos '= 1
Usa Hacer() : Echo vivos '= 1
With New V : .id = "w" : Echo vivos '= 2
End With
Echo vivos '= 1
Sub Falla : Dim l : Set l = New V : l.noHay : End Sub
On Error Resume Next
Falla
Echo vivos, Err.Number '= 1 438
Set b = Nothing
Class Salvado
  Sub Class_Terminate : Set rescate = Me : End Sub
End Class
Dim rescate
Set s = New Salvado : Set s = Nothing
Echo TypeName(rescate) '= Salvado
Set rescate = Nothing
Echo TypeName(rescate) '= Nothing
