' For, For Each, Do, While.
For i = 1 To 3 : s = s & i : Next
Echo s, i '= 123 4
For i = 3 To 1 Step -1 : s = s & i : Next
Echo s, i '= 123321 0
For i = 5 To 1 : s = "mal" : Next
Echo i '= 5
For i = "1" To "3" : t = t & i : Next
Echo t '= 123
For i = Empty To 2 : u = u & i : Next
Echo u '= 012
For i = 1 To 10 : If i = 3 Then i = 8
  v = v & i
Next
Echo v '= 128910
For i = 1 To 5 : If i = 3 Then Exit For
Next
Echo i '= 3
orden = ""
Function P(x) : orden = orden & x : P = x : End Function
For i = P(1) To P(2) Step P(3) : Next
Echo orden '= 123
limite = 3 : n = 0
For i = 1 To limite : limite = 10 : n = n + 1 : Next
Echo n '= 3
For i = 32766 To 32768 : w = w & TypeName(i) & " " : Next
Echo w '= Integer Integer Long
For i = 2147483646 To 2147483647 : Next
Echo i, TypeName(i) '= 2147483648 Double
n = 0
For i = 1 To 5 Step 2 : i = i + 0.5 : n = n + 1 : Next
Echo n, i '= 2 6
For i = 1 To 3 : i = CStr(i) : Next
Echo i, TypeName(i) '= 4 Double
Sub SinComienzo
  Dim k, j
  On Error Resume Next
  For j = 1 To 2
    k = 0
    For k = "x" To 3 : Next
    Echo Err.Number, k '= 92 0 | 92 0
  Next
End Sub
SinComienzo
For i = 0 To 1 Step 0.25 : c = c + 1 : Next
Echo c, i '= 5 1,25
n = 0
Do : n = n + 1 : Loop While n < 3
Do Until n = 6 : n = n + 1 : Loop
Do While n < 8 : n = n + 1 : Loop
Do : n = n + 1 : Loop Until n > 9
While n < 12 : n = n + 1 : Wend
Echo n '= 12
Do
  For i = 1 To 3
    Exit Do
  Next
Loop
Echo i '= 1
Do : Exit Do : Loop
a = Array(3, 1, 2)
For Each e In a : e = e * 2 : r = r & e : Next
Echo r, a(0) '= 624 3
Dim m(1, 1)
m(0, 0) = 1 : m(1, 0) = 2 : m(0, 1) = 3 : m(1, 1) = 4
r = ""
For Each e In m : r = r & e : Next
Echo r '= 1234
Set d = CreateObject("Scripting.Dictionary")
d("b") = 1 : d("a") = 2
r = ""
For Each e In d : r = r & e : Next
Echo r '= ba
For Each e In 5 : Next ' error 451
On Error Resume Next
For Each e In 5 : Next
Echo Err.Number '= 451
