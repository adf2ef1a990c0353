' One-liners whose answer surprises.
Echo -3^2 '= 9
Echo 2^3^2 '= 64
Echo 7 Mod 4 + 2 '= 5
Echo -7 \ 2 '= -3
Echo -7 Mod 3 '= -1
Echo 4.6 \ 1.5 '= 2
Echo 10.5 \ 1 '= 10
x = 3000000000 Mod 2 ' error 6
Echo 32767 + 1, TypeName(32767 + 1) '= 32768 Long
Echo TypeName(-32768) '= Long
Echo CByte(200) + CByte(100), TypeName(CByte(200) + CByte(100)) '= 300 Integer
Echo TypeName(6 / 3) '= Double
Echo CInt(2.5) '= 2
Echo Round(2.5) '= 2
Echo Round(0.985, 2) '= 0,98
Echo Int(-2.7) '= -3
Echo &HFFFF '= -1
Echo &HFFFF& '= 65535
Echo &17 '= 15
Echo True + True '= -2
Echo Not 5 '= -6
If Not 5 Then Echo "si" '= si
Echo (3 > 2) * 10 '= -10
Echo 3 > 2 > 1 '= Falso
Echo CByte(True) '= 255
Echo "5" + 3 '= 8
Echo "5" + "3" '= 53
Echo "2" * "2" & "2" + "2" '= 422
Echo 1 & 2 + 3 '= 15
Echo "10" > "9" '= Falso
Echo "10" > 9 '= Verdadero
t = "5" : n = CInt(5)
Echo t = n '= Falso
x = ("abc" = 5) ' error 13
Echo Null = Null '= Null
Echo Null & "a" '= a
Echo False And Null '= Falso
Echo IsNumeric("&hFF") '= Verdadero
Echo IsNumeric("") '= Falso
Echo 0.1 + 0.2 = 0.3, 0.1 + 0.2 '= Falso 0,3
Echo 1/3 '= 0,333333333333333
Echo Sqr(2) '= 1,4142135623731
Echo UBound(Split("", ",")) '= -1
Echo Replace("abcdef", "a", "*", 3) '= cdef
Echo Len(Trim(vbTab)) '= 1
Echo Hex(-1) '= FFFF
Echo Hex(-32768) '= FFFF8000
Echo DateAdd("m", 1, #1/31/1995#) '= 28/02/1995
Echo DateDiff("yyyy", #12/31/2023#, #1/1/2024#) '= 1
Echo DateSerial(2024, 1, 0) '= 31/12/2023
On Error Resume Next
If 1/0 Then
  Echo "dentro" '= dentro
End If
On Error GoTo 0
vueltas = 0
For x = 0 To 1 Step 0.1 : vueltas = vueltas + 1 : Next
Echo vueltas '= 11
Function F(v) : F = v : End Function
Function G() : llamado = True : G = True : End Function
llamado = False
b = F(False) And G()
Echo llamado '= Verdadero
x = 5 = 5
Echo x '= Verdadero
Sub S(v) : v = 99 : End Sub
x = 1
S (x)
Echo x '= 1
S x
Echo x '= 99
Set d = CreateObject("Scripting.Dictionary")
Echo IsEmpty(d("missing")), d.Count '= Verdadero 1
x = Mid("abc", 0) ' error 5
Echo Rnd '= 0,7055475
