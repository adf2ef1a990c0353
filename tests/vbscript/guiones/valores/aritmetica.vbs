' Promotion, overflow, mixed operands.
Echo TypeName(1 + 1), TypeName(1 + 100000), TypeName(1 + 1.5), TypeName(2147483647 + 1) '= Integer Long Double Double
Echo TypeName(CByte(1) + CByte(1)), TypeName(CByte(1) - CByte(2)), TypeName(CByte(1) + 1) '= Byte Integer Integer
Echo TypeName(CSng(1) + 1), TypeName(CSng(1) + 100000), TypeName(CSng(1) + 1.5) '= Single Double Double
Echo TypeName(CCur(1) + 1), TypeName(CCur(1) * 1.5), TypeName(CSng(1) / CSng(2)) '= Currency Double Single
Echo TypeName(True + 1), TypeName(Empty + 1), TypeName(Empty + Empty), TypeName(-True) '= Integer Integer Integer Integer
Echo 32767 * 2, 200 * 200, -32768 - 1 '= 65534 40000 -32769
Echo CCur(1.23456), CCur(10) / 3, CCur("1,5") * 2 '= 1,2346 3,33333333333333 3
x = CCur(900000000000000) * 2 ' error 6
x = 1e308 * 10 ' error 6
x = 1 / 0 ' error 11
x = 0 / 0 ' error 6
x = 1 \ 0 ' error 11
x = 1 Mod 0 ' error 11
x = 1 \ 0.4 ' error 11
x = 3000000000 \ 2 ' error 6
x = "a" + 1 ' error 13
x = "a" * 1 ' error 13
x = Array(1) + 1 ' error 13
x = Nothing + 1 ' error 91
Echo "3" * "4", "10" - 3, " 2 " + 1, "&H10" + 0, "1e2" + 1 '= 12 7 3 16 101
Echo Empty + "a", "a" + Empty, TypeName(Null + 1), TypeName(Null & Null) '= a a Null Null
Echo #1/31/2024# + 1, TypeName(#1/31/2024# + 1) '= 01/02/2024 Date
Echo #3/1/2024# - #2/1/2024#, TypeName(#3/1/2024# - #2/1/2024#) '= 29 Double
Echo -7 Mod 3, 7 Mod -3, 7.5 Mod 2, 8.5 Mod 3, 12 \ 5, -12 \ 5, 1.5 \ 1, 2.5 \ 1 '= -1 1 0 2 2 -2 2 2
Echo (-8) ^ 2, 2 ^ 0.5, 0 ^ 0 '= 64 1,4142135623731 1
x = (-8) ^ 0.5 ' error 5
Echo -Empty, -"5", -CByte(5), TypeName(-CByte(5)) '= 0 -5 -5 Integer
Echo 5 And 3, 5 Or 3, 5 Xor 3, Not 0, True And 3, "7" And 3 '= 1 7 6 -1 3 3
Echo True And True, Not True, TypeName(True And 1), TypeName(1.5 And 1), TypeName(Empty And 1) '= Verdadero Falso Integer Long Long
Echo True Or Null, TypeName(True And Null), TypeName(Null Or False), 2.5 And 255, 3.5 And 255 '= Verdadero Null Null 2 4
x = 3000000000 And 1 ' error 6
x = "a" And True ' error 13
s = "ab" : t = s
s = s & s & "-" & s : s = s & "," & 7 & s
Echo s, t '= abab-ab,7abab-ab ab
