' SPDX-License-Identifier: Apache-2.0
Function Correr
    Dim a(1999), i, j, x
    x = 12345
    For i = 0 To 1999
        x = (x * 1103 + 12345) Mod 65536
        a(i) = x
    Next
    For i = 1 To 1999
        x = a(i)
        j = i - 1
        Do While j >= 0
            If a(j) <= x Then Exit Do
            a(j + 1) = a(j)
            j = j - 1
        Loop
        a(j + 1) = x
    Next
    Correr = a(1000)
End Function
r = Correr
