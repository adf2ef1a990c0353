' Strings.
Echo Len("abc"), Len(12345), Len(Empty), IsNull(Len(Null)), LenB("ab") '= 3 5 0 Verdadero 4
Echo Left("abc", 2), Left("abc", 9), Left("abc", 0) & "!", Right("abc", 2), Right("abc", 9) '= ab abc ! bc abc
Echo Mid("abcdef", 3), Mid("abcdef", 3, 2), Mid("abc", 9) & "!", Mid("abc", 2, 0) & "!" '= cdef cd ! !
x = Left("abc", -1) ' error 5
x = Mid("abc", 1, -1) ' error 5
x = Mid("abc", -1) ' error 5
Echo InStr("abcabc", "c"), InStr(4, "abcabc", "c"), InStr("abc", "x"), InStr("", "a"), InStr("abc", "") '= 3 6 0 0 1
Echo InStr(1, "ABC", "b", 1), InStr(1, "ABC", "b", 0), InStr("ABC", "b"), InStr(9, "abc", "c"), IsNull(InStr(Null, "a")) '= 2 0 0 0 Verdadero
x = InStr(0, "abc", "b") ' error 5
Echo InStrRev("abcabc", "c"), InStrRev("abcabc", "c", 5), InStrRev("abc", "x"), InStrRev("abc", ""), InStrRev("ABC", "b", -1, 1) '= 6 3 0 3 2
Echo Replace("aXbXc", "X", "-"), Replace("aXbxc", "x", "-", 1, -1, 1), Replace("aaa", "a", "b", 1, 2), Replace("abc", "", "x") '= a-b-c a-b-c bba abc
Echo Replace("abc", "c", "") & "!", Replace("", "a", "b") & "!", Replace("aaaa", "aa", "a") '= ab! ! aa
x = Replace(Null, "a", "b") ' error 94
Echo "[" & Trim("  a b  ") & "]", "[" & LTrim("  a ") & "]", "[" & RTrim(" a  ") & "]" '= [a b] [a ] [ a]
Echo UCase("añoß"), LCase("ÁÑÜ"), UCase("ÿ"), IsNull(UCase(Null)) '= AÑOß áñü Ÿ Verdadero
Echo "[" & Space(3) & "]", String(3, "ab"), String(2, 65), Len(String(0, "x")), IsNull(String(2, Null)) '= [   ] aaa AA 0 Verdadero
x = Space(-1) ' error 5
x = String(2, "") ' error 5
Echo StrReverse("abc"), StrComp("a", "b"), StrComp("b", "a"), StrComp("a", "A", 1), StrComp("a", "A") '= cba -1 1 0 1
x = StrComp("a", "b", 5) ' error 5
x = StrReverse(Null) ' error 94
Echo Escape("año €/1"), Unescape("a%F1o%u20AC%zz") '= a%F1o%20%u20AC/1 año€%zz
Echo LeftB("abcd", 4), RightB("abcd", 2), MidB("abcd", 3, 2), InStrB("abcd", "b"), AscW(ChrB(65)) '= ab d b 3 65
Echo Join(Split("a1b1c", 1), "+"), UBound(Split("a", ",")), Split("a,", ",")(1) & "!" '= a+b+c 0 !
Echo InStr(1, "", ""), Len(vbCrLf), Asc(vbTab), vbNullString = "", Len(vbNullChar) '= 0 2 9 Verdadero 1
