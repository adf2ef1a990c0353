' Absurd requests fail before anything is allocated.
x = String(2000000000, "x") ' error 14
x = Space(2000000000) ' error 14
ReDim a(1000000000) ' error 7
ReDim a(50000, 50000, 50000) ' error 7
ReDim a(2147483646) ' error 7
t = String(1000000, "a")
x = Replace(t, "a", "0123456789012345678901234567890123456789") ' error 14
