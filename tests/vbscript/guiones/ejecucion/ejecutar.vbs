' Execute, ExecuteGlobal, Eval, GetRef.
Execute "a = 1 : b = a + 1" : Echo a, b '= 1 2
Sub Dentro(p)
  Dim l
  l = 5
  Execute "l = l + p : nueva = 3 : Dim otra : otra = 4"
  Echo l, nueva '= 15 3
  Execute "Echo2 nueva + otra"
  Echo Eval("l * 2 + otra") '= 34
  ExecuteGlobal "deAfuera = 9"
  Execute "Execute ""l = l + 1"""
  Echo l '= 16
End Sub
Sub Echo2(v)
  Echo v '= 7
End Sub
Dentro 10
Echo deAfuera, IsEmpty(l), IsEmpty(nueva) '= 9 Verdadero Verdadero
Execute "Function F : F = 1 : End Function"
Echo F() '= 1
Execute "Function F : F = 2 : End Function"
Echo F '= 2
ExecuteGlobal "Class K : Public v : End Class" 
Execute "Set k1 = New K : k1.v = 8" : Echo k1.v '= 8
Echo Eval("1 = 1"), Eval("x = 1"), IsEmpty(x), Eval(5) '= Verdadero Falso Verdadero 5
x = Eval("a = = 1") ' error 1002
x = Eval("Dim z") ' error 1002
x = Eval("") ' error 1002
Execute 5 ' error 13
Execute "x = 1 / 0" ' error 11
Execute "Sub" ' error 1010
Function Doble(n) : Doble = n * 2 : End Function
Set r = GetRef("doble")
Echo r(4), TypeName(r) '= 8 Object
Function Aplicar(f, v) : Aplicar = f(v) : End Function
Echo Aplicar(r, 5), Aplicar(GetRef("Doble"), 6) '= 10 12
Dim dicho, visto
Sub Decir(t) : dicho = t : End Sub
Set q = GetRef("Decir") : q "hola" : Echo dicho '= hola
Set d = CreateObject("Scripting.Dictionary")
Set d("f") = r
Echo d("f")(3) '= 6
x = GetRef("nada") ' error 5
x = GetRef(5) ' error 13
Class Cl
  Private p
  Sub Usar
    Execute "p = 4 : Me.Ver p"
    Echo p '= 4
  End Sub
  Sub Ver(v) : visto = v : End Sub
End Class
Set c = New Cl : c.Usar : Echo visto '= 4
Function DeEval : DeEval = Eval("Doble(3)") + 1 : End Function
Echo DeEval '= 7
Function Usa : ExecuteGlobal "Function Doble(n) : Doble = n * 3 : End Function" : Usa = Doble(2) : End Function
Echo Usa, r(2) '= 6 4
Sub Cambia : ExecuteGlobal "Sub Cambia : quien = ""nueva"" : End Sub" : quien = "vieja" : End Sub
Dim quien
Cambia : Echo quien '= vieja
Cambia : Echo quien '= nueva
