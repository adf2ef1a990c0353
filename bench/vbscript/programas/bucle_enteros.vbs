' SPDX-License-Identifier: Apache-2.0
Function Bucle
    Dim i, s
    s = 0
    For i = 1 To 10000000
        s = s + i Mod 7
    Next
    Bucle = s
End Function
r = Bucle
