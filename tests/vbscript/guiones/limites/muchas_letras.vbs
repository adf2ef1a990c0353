' Appending is linear; long chains of objects and arrays are freed without recursion.
s = ""
For i = 1 To 100000 : s = s & "x" : Next
Echo Len(s) '= 100000
Function Cadena : For i = 1 To 1000 : Cadena = Cadena & i & "," : Next
End Function
Echo Len(Cadena) '= 3893
Class Nodo : Public sig : End Class
Set primero = Nothing
For i = 1 To 100000
  Set n = New Nodo : Set n.sig = primero : Set primero = n
Next
Set n = Nothing
Set primero = Nothing
a = Empty
For i = 1 To 100000 : a = Array(a) : Next
a = Empty
t = "ab" : t = t & t : t = t & t & t : Echo t '= abababababab
u = "a" : v = u : u = u & "b" : Echo v, u '= a ab
