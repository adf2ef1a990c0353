' Format functions in both countries.
Echo FormatNumber(1234567.891), FormatNumber(0.285, 2), FormatNumber(-5), FormatNumber(1234.5, 0) '= 1.234.567,89 0,29 -5,00 1.235
Echo FormatNumber(0.5, 2, False), FormatNumber(-5, 1, True, True), FormatNumber(1234, 0, , , False), FormatNumber("2,5", 1) '= ,50 (5,0) 1234 2,5
Echo FormatCurrency(1234.5), FormatCurrency(-2), FormatPercent(0.256), FormatPercent(0.5, 0) '= $ 1.234,50 $ -2,00 25,60% 50%
Echo FormatDateTime(#3/5/2024 14:07:09#), FormatDateTime(#3/5/2024#, 1), FormatDateTime(#3/5/2024#, 2) '= 05/03/2024 14:07:09 martes, 5 de marzo de 2024 05/03/2024
Echo FormatDateTime(#3/5/2024 14:07:09#, 3), FormatDateTime(#3/5/2024 14:07:09#, 4) '= 14:07:09 14:07
Echo FormatNumber(0), FormatNumber(-0.001), FormatNumber(999999.999), FormatNumber(1e20, 0) '= 0,00 0,00 1.000.000,00 100.000.000.000.000.000.000
x = FormatNumber("x") ' error 13
x = FormatNumber(1, -2) ' error 5
x = FormatDateTime(Now, 7) ' error 5
SetLocale 1033
Echo FormatCurrency(-1234.5), FormatCurrency(3), FormatPercent(0.256), FormatDateTime(#3/5/2024#, vbLongDate) '= ($1,234.50) $3.00 25.60% Tuesday, March 05, 2024
Echo FormatDateTime(#3/5/2024 14:07:09#, 3), MonthName(1), WeekdayName(1) '= 2:07:09 PM January Sunday
