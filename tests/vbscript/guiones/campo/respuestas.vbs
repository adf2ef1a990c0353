' Answers that scripts of the field count on.
Echo TypeName(CCur(2) * 1.5), TypeName(CCur(2) * 3), TypeName(CCur(2) + 1.5), TypeName(CCur(2) * "1,5") '= Double Currency Currency Double
Echo TypeName(CCur(2) * CSng(2)), TypeName(CSng(2) * CCur(2)), TypeName(CCur(2) / 2) '= Currency Currency Double
Echo 1 Or Null, Null Or 6, TypeName(Null Or 0), TypeName(5 And Null), 0 And Null '= 1 6 Null Null 0
Echo 5 Imp Null, TypeName(True Imp Null), False Imp Null, Null Imp 7, TypeName(1 Xor Null) '= -6 Null Verdadero 7 Null
Echo CBool("#TRUE#"), CBool("#FALSE#"), CBool("true") '= Verdadero Falso Verdadero
x = CBool("#true") ' error 13
x = 0 / 0 ' error 6
n = 0 : x = n / n ' error 6
x = 1 / 0 ' error 11
x = n \ n ' error 11
x = LBound(Nothing) ' error 91
x = UBound(Nothing) ' error 91
x = UBound(5) ' error 13
Echo IsNull(InStr(Null, "a")), IsNull(InStr("a", Null)), IsNull(InStr(1, Null, "a", 1)) '= Verdadero Verdadero Verdadero
x = InStrRev(Null, "a") ' error 94
x = InStrRev("a", Null) ' error 94
x = InStrRev("abc", "b", Null) ' error 94
x = InStrRev("abc", "b", 0) ' error 5
x = InStrRev("abc", "b", -2) ' error 5
x = InStrRev("abc", "b", -1, 2) ' error 5
x = InStrRev("abc", "b", -1, -1) ' error 5
x = Split("a b", " ", -1, 2) ' error 5
x = Split("a b", " ", -1, -1) ' error 5
x = Split("a b", " ", -2) ' error 5
Echo InStrRev("aBcb", "B", -1, 1), UBound(Split("aXbxc", "x", -1, 1)), InStr(1, "aB", "b", 2) '= 4 2 2
x = DateValue(44000) ' error 13
x = TimeValue(0.5) ' error 13
Echo DateValue(#1/2/2024 3:04:05#), TimeValue("3:04"), CDate(44000) '= 02/01/2024 03:04:00 18/06/2020
Err.Raise &H8007000E ' error 7
Err.Raise &H80020012 ' error 11
Err.Raise &H800A0009 ' error 9
Err.Raise &H80040154 ' error 429
Err.Raise vbObjectError + 513 ' error -2147220991
On Error Resume Next
Err.Raise &H8007000E : Echo Err.Description, Err.Source '= Out of memory Microsoft VBScript runtime error
