'! times 3
' The file is added again: scalars and arrays keep what they hold.
Dim total, lista(3), dinamica()
Const Paso = 2
total = total + Paso
lista(1) = lista(1) + 1
If total = 2 Then ReDim dinamica(2)
dinamica(1) = dinamica(1) + 1
Echo total, lista(1), dinamica(1) '= 2 1 1 | 4 2 2 | 6 3 3
