'! snippets
' One text a line ("\n" breaks it), and the error that the compiler gives, with its place where
' that is the point.
x = 1 _ y ' error 1032 1:7
x = é ' error 1032 1:5
x = "abc ' error 1033 1:5
x = #99/99/2024# ' error 1002
x = 1.8e308 ' error 1031
x = &HFFFFFFFFF ' error 1031
[abc ' error 1007
S(1, 2) ' error 1044 1:1
o.S(1, 2) ' error 1044
Call S(1, 2) ' ok
S (1), 2 ' ok
x = (1 + 2 ' error 1006
x = 1 + ' error 1002
x = ) ' error 1023
If x Then\ny = 1 ' error 1014 2:7
If x\ny = 1\nEnd If ' error 1017 1:5
Do\nx = 1 ' error 1019
For i = 1 To 2\nLoop ' error 1020 2:1
For i = 1\nNext ' error 1013 1:10
For a.b = 1 To 2\nNext ' error 1040
For a(1) = 1 To 2\nNext ' error 1040
For Each x Of y\nNext ' error 1046
For i = 1 To 2\nNext i ' error 1025 2:6
Loop ' error 1038
Next ' error 1055
While x\nLoop ' error 1018
Select x\nEnd Select ' error 1021
Select Case x\nCase 1\nEnd If ' error 1022
Select Case x\nCase Else\nCase 2\nEnd Select ' error 1002
With x\nEnd If ' error 1029
Sub A\nEnd Function ' error 1016
Function A\nEnd Sub ' error 1015
Sub A\nSub B\nEnd Sub\nEnd Sub ' error 1002
Exit For ' error 1039
Sub A\nExit Function\nEnd Sub ' error 1039
For i = 1 To 2\nExit Do\nNext ' error 1039
Dim x\nDim x ' error 1041
Dim A\nSub A\nEnd Sub ' error 1041
Sub A\nEnd Sub\nSub A\nEnd Sub ' ok
Const A = 1\nDim A ' error 1041
Sub A(x)\nDim x\nEnd Sub ' error 1041
Sub A(x, X)\nEnd Sub ' error 1041
Const A = B ' error 1045
Const A = -1, B = "x", C = #1/1/2024# ' ok
Dim a(n) ' error 1026
Dim a(1.5) ' error 1026
Dim 1a ' error 1010
Me.x = 1 ' error 1037
Property Get X\nEnd Property ' error 1048
Class A\nClass B\nEnd Class\nEnd Class ' error 1002
Class A\nx = 1\nEnd Class ' error 1002
Class A\nProperty X\nEnd Property\nEnd Class ' error 1002
Class A\nPublic Property X\nEnd Property\nEnd Class ' error 1049
Class A\nProperty Let X\nEnd Property\nEnd Class ' error 1054
Class A\nProperty Get X(i)\nEnd Property\nProperty Let X(v)\nEnd Property\nEnd Class ' error 1051
Class A\nSub Class_Initialize(x)\nEnd Sub\nEnd Class ' error 1053
Class A\nPublic Default Property Get X\nEnd Property\nPublic Default Function Y\nEnd Function\nEnd Class ' error 1052
Class A\nPrivate Default Function Y\nEnd Function\nEnd Class ' error 1057
Class A\nPublic Default Property Let Y(x)\nEnd Property\nEnd Class ' error 1058
Class A\nDim x, x\nEnd Class ' error 1041
Class A\nEnd Sub ' error 1047
x = 1 End If ' error 1042
Do : x = 1 Loop ' error 1025
Do Forever\nLoop ' error 1028
On Error Goto 10 ' error 1002
GoTo x ' error 1002
Dim x As Integer ' error 1025
Set x 5 ' error 1011
x = 1 2 ' error 1025 1:7
5 = x ' error 1024
x = New ' error 1010
aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa = 1 ' error 1030
