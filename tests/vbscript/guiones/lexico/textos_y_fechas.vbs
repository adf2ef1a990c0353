' Literals of text and dates.
Echo "a ""b"" c" '= a "b" c
Echo Len(""""), Len("") '= 1 0
Echo #1/15/2024 2:30:00 PM# '= 15/01/2024 14:30:00
Echo #2024-02-29# '= 29/02/2024
Echo #14:30:15# '= 14:30:15
Echo # 3/4/2024 # '= 04/03/2024
Echo #4 March 2024#, #Mar 4, 2024# '= 04/03/2024 04/03/2024
Echo TypeName(#1:00#) '= Date
Echo Len("ñandú"), Asc("ñ"), AscW("€"), Asc("€") '= 5 241 8364 128
