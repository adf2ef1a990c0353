' SPDX-License-Identifier: Apache-2.0
Sub Ordenar(a, izq, der)
    Dim i, j, p, t
    i = izq
    j = der
    p = a((izq + der) \ 2)
    Do While i <= j
        Do While a(i) < p
            i = i + 1
        Loop
        Do While a(j) > p
            j = j - 1
        Loop
        If i <= j Then
            t = a(i)
            a(i) = a(j)
            a(j) = t
            i = i + 1
            j = j - 1
        End If
    Loop
    If izq < j Then Ordenar a, izq, j
    If i < der Then Ordenar a, i, der
End Sub
Function Correr
    Dim a(99999), k, x
    x = 12345
    For k = 0 To 99999
        x = (x * 1103 + 12345) Mod 65536
        a(k) = x
    Next
    Ordenar a, 0, 99999
    Correr = a(50000)
End Function
r = Correr
