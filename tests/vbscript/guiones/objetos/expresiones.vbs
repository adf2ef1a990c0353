' RegExp.
Set r = New RegExp
r.Pattern = "(\d+)-(\w+)?"
Echo r.Test("x 12-ab"), r.Test("ab"), r.Global, r.IgnoreCase '= Verdadero Falso Falso Falso
Set m = r.Execute("a 12-ab, 3-")
Echo m.Count, m(0), m(0).Value, m(0).FirstIndex, m(0).Length, m(0).SubMatches(0) '= 1 12-ab 12-ab 2 5 12
r.Global = True
Set m = r.Execute("a 12-ab, 3-")
Echo m.Count, m.Item(1), IsEmpty(m(1).SubMatches(1)), m(1).SubMatches.Count '= 2 3- Verdadero 2
For Each x In m : s = s & x.Value & ";" : Next
Echo s '= 12-ab;3-;
Echo r.Replace("1-a 2-b", "[$2:$1]"), r.Replace("1-a", "$$ $& $9") '= [a:1] [b:2] $ 1-a $9
r.Pattern = "b" : Echo r.Replace("abc", "<$`|$'>") '= a<a|c>c
r.IgnoreCase = True : r.Pattern = "ÑANDÚ" : Echo r.Test("un ñandú") '= Verdadero
r.Pattern = "ó" : Set m = r.Execute("€ canción ó") : Echo m.Count, m(0).FirstIndex, m(1).FirstIndex '= 2 7 10
r.Pattern = "^b" : Echo r.Test("a" & vbLf & "b") '= Falso
r.Multiline = True : Echo r.Test("a" & vbLf & "b") '= Verdadero
r.Pattern = "a*" : Echo r.Replace("baac", "-") '= -b--c-
r.Pattern = "(a)|b" : Echo r.Replace("ab", "[$1]") '= [a][]
r.Pattern = "(\w)\1" : Echo r.Test("abb"), r.Test("abc") '= Verdadero Falso
r.Pattern = "a.+?c" : Echo r.Execute("abcabc")(0) '= abc
r.Pattern = "x(?=y)" : Echo r.Test("xy"), r.Test("xz") '= Verdadero Falso
r.Pattern = "\x41\u0042" : Echo r.Test("AB") '= Verdadero
r.Pattern = "[[:alpha:]]" : Echo r.Test("a"), r.Test("[]") '= Falso Verdadero
r.Pattern = "[\]\-x]" : Echo r.Test("-") '= Verdadero
r.Pattern = "(" : x = r.Test("a") ' error 5020
r.Pattern = "[a" : x = r.Test("a") ' error 5019
r.Pattern = "*a" : x = r.Test("a") ' error 5018
r.Pattern = "[z-a]" : x = r.Test("a") ' error 5021
r.Pattern = "(?<=a)b" : x = r.Test("ab") ' error 5017
r.Pattern = "a++" : x = r.Test("ab") ' error 5018
r.Pattern = "(*FAIL)" : x = r.Test("ab") ' error 5018
Echo TypeName(CreateObject("VBScript.RegExp")) '= IRegExp2
x = r.Nada ' error 438
r.Global = False : r.Pattern = "" : Echo r.Test("abc"), r.Replace("abc", "-") '= Verdadero -abc
