' Literals of numbers.
Echo TypeName(32767), TypeName(32768), TypeName(2147483647), TypeName(2147483648) '= Integer Long Long Double
Echo 007, TypeName(007) '= 7 Integer
Echo 1., .5, 1e3, 1E-2, TypeName(1.) '= 1 0,5 1000 0,01 Double
Echo 1e-400 '= 0
Echo &HFF, &hff&, &H8000, TypeName(&H8000), &HFFFFFFFF '= 255 255 -32768 Long -1
Echo &O17, &17, &O177777 '= 15 15 -1
Echo &H0000000000FFFF&, &H7FFF, TypeName(&H7FFF&) '= 65535 32767 Integer
hi = "va"
Echo "x" &hi '= xva
Echo "x"&1&"y" '= x1y
Sub Tomar(v)
Echo v '= 255
End Sub
Tomar &HFF
S.5
Sub S(v)
Echo v '= 0,5
End Sub
