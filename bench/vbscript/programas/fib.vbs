' SPDX-License-Identifier: Apache-2.0
Function Fib(n)
    If n < 2 Then
        Fib = n
    Else
        Fib = Fib(n - 1) + Fib(n - 2)
    End If
End Function
r = Fib(27)
