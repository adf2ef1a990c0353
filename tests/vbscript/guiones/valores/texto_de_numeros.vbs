' How numbers and dates are written.
Echo 1.5, -0.5, 100, 1e15, 123456789012345, 1e14 '= 1,5 -0,5 100 1E+15 123456789012345 100000000000000
Echo 0.1, 0.0001, 0.00001, 1.25e-7 '= 0,1 0,0001 1E-05 1,25E-07
Echo 1e100, -1.5e20, 2/3, 100/3 '= 1E+100 -1,5E+20 0,666666666666667 33,3333333333333
Echo CSng(1/3), CSng(16777216), CSng(0.1) '= 0,3333333 1,677722E+07 0,1
Echo 1e3, 123456.789, 0.1 + 0.2 '= 1000 123456,789 0,3
Echo #1/2/2024#, #1/2/2024 3:04:05#, #3:04:05# '= 02/01/2024 02/01/2024 03:04:05 03:04:05
Echo True & "", CStr(False), Empty & "x" '= Verdadero Falso x
Echo CDate(0.5), CDate(1), CDate(-1.25) '= 12:00:00 31/12/1899 29/12/1899 06:00:00
SetLocale "en-US"
Echo 1.5, True, #1/2/2024 15:04:05#, #1/2/2024# '= 1.5 True 1/2/2024 3:04:05 PM 1/2/2024
Echo CDbl("1,234.5"), CDate("2/1/2024"), FormatNumber(1234.5) '= 1234.5 2/1/2024 1,234.50
Echo SetLocale("es-ar"), GetLocale() '= 1033 11274
Echo CDbl("1.234,5"), CDbl("1.5"), CDate("2/1/2024") '= 1234,5 15 02/01/2024
SetLocale 12345 ' error 447
SetLocale "xx" ' error 447
ExecuteGlobal "punto = 1.5" : Echo punto, Eval("2.5 * 2") '= 1,5 5
