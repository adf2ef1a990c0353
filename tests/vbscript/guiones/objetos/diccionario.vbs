' Scripting.Dictionary.
Set d = CreateObject("Scripting.Dictionary")
d.Add "a", 1 : d("b") = 2 : d.Item("c") = 3
Echo d.Count, d("a") + d.Item("b"), d.Exists("c"), d.Exists("C") '= 3 3 Verdadero Falso
d.Add "a", 9 ' error 457
d.Remove "zz" ' error 32811
d.Remove "b" : Echo d.Count, Join(d.Keys, ","), Join(d.Items, ",") '= 2 a,c 1,3
d(1) = "n" : d("1") = "t" : Echo d(1), d("1"), d(1.0), d(CLng(1)), d.Count '= n t n n 4
d.Key("a") = "z" : Echo Join(d.Keys, ","), d("z") '= z,c,1,1 1
d.Key("no") = "x" ' error 32811
d.CompareMode = 1 ' error 5
d.RemoveAll : Echo d.Count '= 0
d.CompareMode = vbTextCompare : d("Clave") = 5 : Echo d("CLAVE"), d.Exists("clave"), d.Count '= 5 Verdadero 1
Set d("o") = d : Echo TypeName(d("o")) '= Dictionary
Set d("o") = Nothing
Echo d.Keys()(0), d.Items()(0) '= Clave 5
d.Nada ' error 438
x = d.Item ' error 450
d.Add 1 ' error 450
d(Array(1)) = 2 ' error 5
d("n") = d("n") + 1 : d("n") = d("n") + 1 : Echo d("n") '= 2
Set e = CreateObject("scripting.dictionary")
For i = 1 To 1000 : e(i) = i * 2 : Next
For i = 1 To 1000 Step 2 : e.Remove i : Next
s = 0 : For Each k In e : s = s + e(k) : Next
Echo e.Count, s '= 500 501000
For Each k In e.Keys : e.Remove k : Next
Echo e.Count '= 0
e(Empty) = 1 : e("") = 2 : e(0) = 3 : Echo e.Count, e(Empty) '= 3 1
