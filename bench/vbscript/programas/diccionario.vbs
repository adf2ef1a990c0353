' SPDX-License-Identifier: Apache-2.0
Function Correr
    Dim d, i, t
    Set d = CreateObject("Scripting.Dictionary")
    For i = 1 To 100000
        d("clave" & i) = i
    Next
    t = 0
    For i = 1 To 100000
        t = t + d("clave" & i)
    Next
    Correr = t
End Function
r = Correr
