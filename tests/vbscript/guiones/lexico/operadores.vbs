' Spellings and precedence of operators.
Echo 1 =< 2, 2 => 1, 1 >< 2 '= Verdadero Verdadero Verdadero
Echo 1 <= 2, 2 >= 3, 1 <> 1 '= Verdadero Falso Falso
Echo 2 + 3 * 4, 2 * 3 \ 4, 10 \ 3 * 2, 7 Mod 3 \ 2 '= 14 1 1 0
Echo 2 ^ -1, -2 ^ 2, 2 * -3 '= 0,5 4 -6
Echo "a" & 1 + 1 = "a2" '= Verdadero
Echo Not 1 = 2, Not True And False '= Verdadero Falso
Echo True Or True And False, True Xor True Or True '= Verdadero Falso
Echo 1 Or 2 And 4, 5 Eqv 3, 5 Imp 3 '= 1 -7 -5
Echo - - 3, + - 2 '= 3 -2
Echo 8 / 2 / 2, 2 - 1 - 1 '= 2 0
Echo True Eqv False Imp True '= Verdadero
Set a = CreateObject("Scripting.Dictionary") : Set b = a
Echo a Is b, Not a Is Nothing '= Verdadero Verdadero
