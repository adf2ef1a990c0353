' Dates; the test's clock stands at 15/3/2024 14:30:15.
Echo Now, Date, Time, Timer '= 15/03/2024 14:30:15 15/03/2024 14:30:15 52215,25
d = #3/15/2024 14:30:15#
Echo Year(d), Month(d), Day(d), Hour(d), Minute(d), Second(d) '= 2024 3 15 14 30 15
Echo Weekday(d), Weekday(d, vbMonday), WeekdayName(2), WeekdayName(1, True, vbMonday), MonthName(3), MonthName(9, True) '= 6 5 lunes lun marzo sep
Echo DateSerial(2024, 2, 30), DateSerial(2023, 14, 1), DateSerial(24, 1, 1), DateSerial(99, 1, 1), DateSerial(2024, 3, -1) '= 01/03/2024 01/02/2024 01/01/2024 01/01/1999 28/02/2024
Echo TimeSerial(14, 30, 15), TimeSerial(1, -30, 0), TimeSerial(25, 0, 0) '= 14:30:15 00:30:00 31/12/1899 01:00:00
Echo DateValue("15/3/2024 10:00"), TimeValue("15/3/2024 10:00") '= 15/03/2024 10:00:00
Echo DateAdd("d", 1, #2/28/2024#), DateAdd("m", -1, #3/31/2024#), DateAdd("yyyy", 1, #2/29/2024#), DateAdd("q", 1, d) '= 29/02/2024 29/02/2024 28/02/2025 15/06/2024 14:30:15
Echo DateAdd("h", 10, d), DateAdd("n", -31, d), DateAdd("s", 45, d), DateAdd("ww", 1, d), DateAdd("w", 1, d) '= 16/03/2024 00:30:15 15/03/2024 13:59:15 15/03/2024 14:31:00 22/03/2024 14:30:15 16/03/2024 14:30:15
Echo DateDiff("d", #1/1/2024#, d), DateDiff("h", #3/15/2024#, d), DateDiff("n", #14:00#, #14:30:59#), DateDiff("s", #1:00#, #1:01#) '= 74 14 30 60
Echo DateDiff("m", #1/31/2024#, #2/1/2024#), DateDiff("q", #3/31/2024#, #4/1/2024#), DateDiff("ww", #3/9/2024#, #3/10/2024#), DateDiff("w", #3/1/2024#, #3/15/2024#) '= 1 1 1 2
Echo DateDiff("d", #1/2/2024#, #1/1/2024#), DateDiff("yyyy", #1/1/2024#, #12/31/2024#) '= -1 0
Echo DatePart("yyyy", d), DatePart("q", d), DatePart("y", d), DatePart("w", d), DatePart("ww", d), DatePart("n", d) '= 2024 1 75 6 11 30
Echo DatePart("ww", #1/1/2024#), DatePart("ww", #12/31/2024#, vbMonday, vbFirstFourDays), DatePart("ww", #1/1/2023#, vbMonday, vbFirstFullWeek) '= 1 1 52
x = DateAdd("x", 1, d) ' error 5
x = DateAdd("yyyy", 9000, d) ' error 5
x = MonthName(13) ' error 5
x = WeekdayName(0) ' error 5
x = Year("hola") ' error 13
x = DateSerial(99999, 1, 1) ' error 6
Echo IsNull(Year(Null)), Year("15/3/2024"), Year(45000) '= Verdadero 2024 2023
Echo CDbl(#1/1/1900#), CDbl(#12/30/1899 6:00#), CLng(#1/1/2000#), Int(d) = CDbl(Date) '= 2 0,25 36526 Verdadero
Echo #12/29/1899 6:00# + 0, Day(#12/29/1899 6:00#), Hour(#12/29/1899 6:00#) '= 29/12/1899 06:00:00 29 6
