' Comparisons of mixed operands.
n = 5 : t = "5" : u = "abc"
Echo n = t, n < t, t > n, t = "5" '= Falso Verdadero Verdadero Verdadero
Echo t = 5, t < 6, 6 > t, "5" = n, "10" < n '= Verdadero Verdadero Verdadero Verdadero Verdadero
x = u = 5 ' error 13
x = u > 5 ' error 13
Echo u = n, "abc" = n '= Falso Falso
Echo "a" < "b", "B" < "a", "a" = "A", "" < "a", "ab" > "a" '= Verdadero Verdadero Falso Verdadero Verdadero
Echo Empty = 0, Empty = "", Empty = False, Empty = Empty, vacio < 1 '= Verdadero Verdadero Verdadero Verdadero Verdadero
Echo 1 = 1.0, True = -1, True = 1, #1/1/2024# < #1/2/2024#, CByte(5) = 5 '= Verdadero Verdadero Falso Verdadero Verdadero
Echo "True" = True, "Verdadero" = True '= Verdadero Falso
Echo TypeName(Null = 1), TypeName(Null <> Null), TypeName(1 < Null) '= Null Null Null
x = (Array(1) = 1) ' error 13
x = 1 Is 2 ' error 424
Echo Nothing Is Nothing '= Verdadero
Echo CCur(1.5) = 1.5, CCur(2) > CCur(1) '= Verdadero Verdadero
Echo "ñ" > "n", "10" < "9" '= Verdadero Verdadero
