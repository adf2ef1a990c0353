' SPDX-License-Identifier: Apache-2.0
Function Correr
    Dim s, i
    s = ""
    For i = 1 To 100000
        s = s & "x"
    Next
    Correr = Len(s)
End Function
r = Correr
