' SPDX-License-Identifier: Apache-2.0
Function Bucle
    Dim i, s
    s = 0.5
    For i = 1 To 10000000
        s = s * 0.999 + 1.5
    Next
    Bucle = s
End Function
r = Bucle
