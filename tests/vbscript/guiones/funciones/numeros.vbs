' Numbers.
Echo Abs(-5), Abs(-1.5), Abs("-3"), TypeName(Abs(-5)), IsNull(Abs(Null)), Abs(-32768) '= 5 1,5 3 Integer Verdadero 32768
Echo Sgn(-2), Sgn(0), Sgn("5"), Sqr(9), Exp(0), Log(1), Sin(0), Cos(0), Tan(0) '= -1 0 1 3 1 0 0 1 0
Echo Round(4 * Atn(1), 4), Round(Exp(1), 4) '= 3,1416 2,7183
x = Sqr(-1) ' error 5
x = Log(0) ' error 5
x = Exp(1000) ' error 6
Echo Int(2.7), Int(-2.7), Fix(2.7), Fix(-2.7), Int("3,9"), TypeName(Int(2.5)), TypeName(Int(2)) '= 2 -3 2 -2 3 Double Integer
Echo Round(0.5), Round(1.5), Round(2.675, 2), Round(-2.5), Round(1234.567, 1), TypeName(Round(2.5)) '= 0 2 2,68 -2 1234,6 Double
x = Round(1, -1) ' error 5
Echo Int(CCur("-1,5")), Fix(CCur("-1,5")), Round(CCur("1,25"), 1) '= -2 -1 1,2
Echo RGB(255, 128, 0), RGB(300, 0, 0), vbRed, vbWhite '= 33023 255 255 16777215
a = Rnd(-1) : b = Rnd(-1) : Echo a = b, Rnd(0) = b '= Verdadero Verdadero
Randomize 7 : r = Rnd : Echo r >= 0 And r < 1, TypeName(r) '= Verdadero Single
