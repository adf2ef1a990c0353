' SPDX-License-Identifier: Apache-2.0
' Scripts that try to hold the plant up, one behind every line of '#. Each asks for far more than a
' second of work; banco_hostiles tells by how much it gets it.
'# regexp_referencia_atras
Set r = New RegExp : r.Pattern = "(a+)\1+b" : s = String(200000, "a") : Do : x = r.Test(s) : Loop
'# regexp_referencia_corta
Set r = New RegExp : r.Pattern = "^(.*)\1$" : s = String(1000000, "a") & "b" : Do : x = r.Test(s) : Loop
'# regexp_referencia_perezosa
Set r = New RegExp : r.Pattern = "(.+?)x\1" : s = String(500000, "a") : Do : x = r.Test(s) : Loop
'# regexp_referencia_sin_caja
Set r = New RegExp : r.IgnoreCase = True : r.Pattern = "(a*)(A*)\1\2c" : s = String(300000, "a") : Do : x = r.Test(s) : Loop
'# regexp_referencia_dos
Set r = New RegExp : r.Pattern = "(\w+)\s(\w+)\s\2\s\1" : s = String(100000, "a") & " " & String(100000, "b") & " " & String(100000, "b") & " c" : Do : x = r.Test(s) : Loop
'# regexp_referencia_global
Set r = New RegExp : r.Global = True : r.Pattern = "(a{1000,})\1b|c" : s = String(400000, "a") & "c" : Do : x = r.Replace(s, "-") : Loop
'# regexp_referencia_unicode
Set r = New RegExp : r.IgnoreCase = True : r.Pattern = "^(.*)\1x" : s = String(400000, "ñ") : Do : x = r.Test(s) : Loop
'# regexp_referencia_repetida
Set r = New RegExp : r.Pattern = "(a{10000})(\1){100,}b" : s = String(1200000, "a") : Do : x = r.Test(s) : Loop
'# regexp_estrellas
Set r = New RegExp : r.Pattern = "(a*)*b" : s = String(30000, "a") : Do : x = r.Test(s) : Loop
'# regexp_mas_de_mas
Set r = New RegExp : r.Pattern = "^(a+)+$" : s = String(40, "a") & "!" : Do : x = r.Test(s) : Loop
'# regexp_alternativa
Set r = New RegExp : r.Pattern = "^(a|aa)+$" : s = String(60, "a") & "b" : Do : x = r.Test(s) : Loop
'# regexp_alternativa_larga
Set r = New RegExp : r.Pattern = "(a|b|ab)*c" : s = "" : For i = 1 To 50000 : s = s & "ab" : Next : Do : x = r.Test(s) : Loop
'# regexp_puntos
Set r = New RegExp : r.Pattern = "(.*)(.*)(.*)(.*)x" : s = String(20000, "a") : Do : x = r.Test(s) : Loop
'# regexp_puntos_perezosos
Set r = New RegExp : r.Pattern = ".*?.*?.*?=.*?b" : s = String(20000, "a") & "=" : Do : x = r.Test(s) : Loop
'# regexp_comas
Set r = New RegExp : r.Pattern = "^(.*?,){25}P" : s = "" : For i = 1 To 40 : s = s & i & "," : Next : Do : x = r.Test(s) : Loop
'# regexp_adelanto
Set r = New RegExp : r.Pattern = "(?=(a+))a*b\1" : s = String(200000, "a") : Do : x = r.Test(s) : Loop
'# regexp_adelanto_negado
Set r = New RegExp : r.Pattern = "(?!.*b)(.*)c" : s = String(300000, "a") : Do : x = r.Test(s) : Loop
'# regexp_cada_letra
Set r = New RegExp : r.Global = True : r.Pattern = "." : s = String(3000000, "a") : Do : Set m = r.Execute(s) : Loop
'# regexp_vacia_global
Set r = New RegExp : r.Global = True : r.Pattern = "" : s = String(4000000, "a") : Do : x = r.Replace(s, "") : Loop
'# regexp_reemplazo_anterior
Set r = New RegExp : r.Global = True : r.Pattern = "a" : s = String(3000, "a") : Do : x = r.Replace(s, "$`") : Loop
'# regexp_reemplazo_largo
Set r = New RegExp : r.Global = True : r.Pattern = "a" : w = String(2000, "$") : s = String(5000, "a") : Do : x = r.Replace(s, w) : Loop
'# regexp_muchas_alternativas
p = "z0" : For i = 1 To 4000 : p = p & "|z" & i : Next
Set r = New RegExp : r.Pattern = p : s = String(2000000, "z") : Do : x = r.Test(s) : Loop
'# regexp_patron_enorme
Set r = New RegExp : r.Pattern = String(32000, "(") & "a" & String(32000, ")") : On Error Resume Next : Do : x = r.Test("a") : Loop
'# regexp_compilar_siempre
Set r = New RegExp : p = String(30000, "b") : Do : i = i + 1 : r.Pattern = p & i : x = r.Test("c") : Loop
'# regexp_compilar_clases
Set r = New RegExp : p = "" : For i = 1 To 6000 : p = p & "[^b]" : Next : Do : i = i + 1 : r.Pattern = p & i : x = r.Test("c") : Loop
'# regexp_repeticiones
Set r = New RegExp : r.Pattern = "((a{1,100}){1,100}){1,100}b" : s = String(20000, "a") : On Error Resume Next : Do : x = r.Test(s) : Loop
'# regexp_repeticion_grande
Set r = New RegExp : r.Pattern = "((((a{9}){9}){9}){9}){9}b" : s = String(200000, "a") : On Error Resume Next : Do : x = r.Test(s) : Loop
'# regexp_muchos_grupos
p = "" : For i = 1 To 800 : p = p & "(a?)" : Next
Set r = New RegExp : r.Global = True : r.Pattern = p : s = String(50000, "a") : Do : Set m = r.Execute(s) : Loop
'# regexp_sujeto_largo
Set r = New RegExp : r.Pattern = "b" : s = String(15000000, "a") : Do : x = r.Test(s) : Loop
'# regexp_sujeto_ancho
Set r = New RegExp : r.Pattern = "b" : s = String(8000000, "ñ") : Do : x = r.Test(s) : Loop
'# regexp_sin_caja_largo
Set r = New RegExp : r.IgnoreCase = True : r.Pattern = "[^a]b" : s = String(10000000, "A") : Do : x = r.Test(s) : Loop
'# regexp_multilinea
Set r = New RegExp : r.Multiline = True : r.Global = True : r.Pattern = "^(.*)$" : s = "" : For i = 1 To 100000 : s = s & vbLf & i : Next : Do : Set m = r.Execute(s) : Loop
'# regexp_coincidencia_y_grupos
Set r = New RegExp : r.Global = True : r.Pattern = "(a)(a)(a)(a)(a)" : s = String(500000, "a") : Do : For Each m In r.Execute(s) : x = m.SubMatches(4) : Next : Loop
'# regexp_frontera
Set r = New RegExp : r.Pattern = "(\b\w+\b\W*)+\b\w+\b\1?z" : s = "" : For i = 1 To 100000 : s = s & "ab " : Next : Do : x = r.Test(s) : Loop
'# regexp_condicion_de_largo
Set r = New RegExp : r.Pattern = "^(?:a?){50}a{50}$" : s = String(49, "a") : Do : x = r.Test(s) : Loop
'# regexp_atrapa_errores
On Error Resume Next
Set r = New RegExp : r.Pattern = "(x+x+)+y" : s = String(5000, "x") : Do : x = r.Test(s) : Loop
'# join_medio_millon
ReDim a(500000) : For i = 0 To 500000 : a(i) = "elemento" & i : Next
Do : s = Join(a, ",") : Loop
'# join_numeros
ReDim a(500000) : For i = 0 To 500000 : a(i) = i + 0.5 : Next
Do : s = Join(a, ";") : Loop
'# join_vacios
ReDim a(2000000) : Do : s = Join(a, "") : Loop
'# join_separador_grande
ReDim a(500) : b = String(20000, "b") : Do : s = Join(a, b) : Loop
'# filter_medio_millon
ReDim a(500000) : For i = 0 To 500000 : a(i) = "elemento" & i : Next
Do : b = Filter(a, "9", True, 1) : Loop
'# filter_numeros
ReDim a(500000) : For i = 0 To 500000 : a(i) = i * 1.5 : Next
Do : b = Filter(a, "9,5") : Loop
'# filter_textos_largos
ReDim a(300) : s = String(30000, "a") : For i = 0 To 300 : a(i) = s : Next
Do : b = Filter(a, String(15000, "a") & "b", True, 1) : Loop
'# filter_nada
ReDim a(2000000) : Do : b = Filter(a, "x") : Loop
'# split_letras
s = String(3000000, "a") : On Error Resume Next : Do : b = Split(s, "a") : Loop
'# split_mitad
s = Space(200000) : Do : b = Split(s, " ") : Loop
'# split_sin_caja
s = String(5000000, "a") : Do : b = Split(s, "B", -1, 1) : Loop
'# split_separador_largo
s = String(5000000, "a") : b = String(2000000, "a") & "b" : Do : x = Split(s, b) : Loop
'# replace_letra
s = String(5000000, "a") : Do : x = Replace(s, "a", "b") : Loop
'# replace_sin_caja
s = String(4000000, "a") : Do : x = Replace(s, "B", "c", 1, -1, 1) : Loop
'# replace_crece
s = String(5000, "a") : b = String(2000, "b") : Do : x = Replace(s, "a", b) : Loop
'# replace_largo
s = String(4000000, "a") : b = String(1000000, "a") & "b" : Do : x = Replace(s, b, "") : Loop
'# instr_largo
s = String(10000000, "a") : Do : x = InStr(s, "b") : Loop
'# instr_casi
s = String(6000000, "a") : b = String(3000000, "a") & "b" : Do : x = InStr(s, b) : Loop
'# instr_quince
s = String(10000000, "a") : b = String(14, "a") & "b" : Do : x = InStr(s, b) : Loop
'# instr_sin_caja
s = String(10000000, "a") : Do : x = InStr(1, s, "B", 1) : Loop
'# instrrev_largo
s = String(10000000, "a") : Do : x = InStrRev(s, "b") : Loop
'# instrrev_sin_caja
s = String(5000000, "a") : Do : x = InStrRev(s, "B", -1, 1) : Loop
'# ucase
s = String(10000000, "a") : Do : x = UCase(s) : Loop
'# strreverse
s = String(10000000, "a") : Do : x = StrReverse(s) : Loop
'# space
Do : x = Space(15000000) : Loop
'# string_de
Do : x = String(15000000, "a") : Loop
'# trim
s = Space(15000000) : Do : x = Trim(s) : Loop
'# mid_grande
s = String(10000000, "a") : Do : x = Mid(s, 2) : Loop
'# left_grande
s = String(10000000, "a") : Do : x = Left(s, 9999999) : Loop
'# leftb
s = String(5000000, "a") : Do : x = LeftB(s, 3) : Loop
'# instrb
s = String(2000000, "a") : Do : x = InStrB(s, "b") : Loop
'# strcomp_sin_caja
s = String(10000000, "a") : t = s & "" : Do : x = StrComp(s, t, 1) : Loop
'# comparar_iguales
s = String(10000000, "a") : t = s & "b" : u = s & "c" : Do : x = (t = u) : Loop
'# comparar_en_condicion
s = String(7000000, "a") : t = s & "b" : u = s & "b" : Do While t = u : n = n + 1 : Loop
'# comparar_en_case
s = String(7000000, "a") : t = s & "b" : u = s & "b" : Do : Select Case t : Case "x", u : n = n + 1 : End Select : Loop
'# escape
s = String(1500000, "ñ") : Do : x = Escape(s) : Loop
'# unescape
s = String(5000000, "%") : Do : x = Unescape(s) : Loop
'# concatenar
s = String(10000000, "a") : Do : x = s & "b" : Loop
'# concatenar_tres
s = String(4000000, "a") : Do : x = s & s & "b" : Loop
'# agregar
Do : s = s & "0123456789" : If Len(s) > 20000000 Then s = "" 
Loop
'# cadena_numero
s = String(10000000, "1") : On Error Resume Next : Do : x = CDbl(s) : x = IsNumeric(s) : Loop
'# cadena_fecha
s = String(10000000, "1") : On Error Resume Next : Do : x = IsDate(s) : x = CDate(s) : Loop
'# fecha_de_partes
s = "" : For i = 1 To 200000 : s = s & "1/" : Next : On Error Resume Next : Do : x = IsDate(s) : Loop
'# formato
Do : x = FormatNumber(1e300, 90) : x = FormatCurrency(1e300, 90) : x = FormatPercent(1e300, 90) : Loop
'# fechas
d = #1/1/2000# : Do : d = DateAdd("s", 1, d) : x = DateDiff("ww", d, #1/1/2030#) & DatePart("ww", d, 2, 3) & MonthName(3) : Loop
'# bucle_vacio
Do : Loop
'# bucle_para
For i = 1 To 1e300 : Next
'# bucle_paso_cero
For i = 1 To 2 Step 0 : Next
'# bucle_anidado
For i = 1 To 1000000 : For j = 1 To 1000000 : For k = 1 To 1000000 : n = n + 1 : Next : Next : Next
'# bucle_mientras
While True : n = n + 1 : Wend
'# bucle_errores
On Error Resume Next : Do : x = 1 / 0 : Loop
'# bucle_errores_en_condicion
On Error Resume Next : Do While 1 / 0 : Loop
'# bucle_cada_uno
ReDim a(3000000) : Do : For Each v In a : Next : Loop
'# cada_uno_copia
ReDim a(2000000) : Sub S(v) : For Each w In a : Exit For : Next : End Sub
Do : S a(1) : Loop
'# raise_megas
On Error Resume Next : s = String(3000000, "a") : Do : Err.Raise 9, s, s, s : Loop
'# raise_descripcion_ancha
On Error Resume Next : s = String(3000000, "ñ") : Do : Err.Raise 9, "x", s : x = Err.Description : Loop
'# err_puesto
s = String(5000000, "a") : Do : Err.Description = s : Err.Source = s : Err.HelpFile = s : Loop
'# err_leido
On Error Resume Next : Err.Raise 9, , String(4000000, "a") : Do : x = Err.Description : Loop
'# recursion
Sub R : R : End Sub : On Error Resume Next : Do : R : Loop
'# recursion_doble
Sub R : On Error Resume Next : R : R : End Sub : R
'# recursion_por_defecto
Class C : Public Default Property Get V : On Error Resume Next : V = Me + Me : End Property : End Class
Set o = New C : x = o + 1
'# recursion_eval
Function F(n) : On Error Resume Next : x = Eval("G(n)") : x = Eval("G(n)") : End Function : Function G(n) : G = F(n) : End Function : x = F(1)
'# recursion_matrices
Function F(ByVal a, n) : On Error Resume Next : a(n) = n : F = F(a, n + 1) : End Function
ReDim m(3000) : Do : x = F(m, 0) : Loop
'# execute_largo
s = "" : For i = 1 To 30000 : s = s & "x = x + " & i & vbLf : Next : Do : n = n + 1 : Execute s & "'" & n : Loop
'# execute_mal_escrito
s = "x = 1" & vbLf & String(1500000, " ") & "(" : On Error Resume Next : Do : Execute s : Loop
'# execute_comentario
s = "'" & String(2000000, "a") : Do : Execute s : Loop
'# execute_comentarios_distintos
s = "'" & String(500000, "a") : Do : n = n + 1 : Execute s & n : Loop
'# execute_nombres
Do : n = n + 1 : ExecuteGlobal "nombre" & n & " = " & n : Loop
'# execute_procedimientos
b = "" : For i = 1 To 200 : b = b & "x = x + 1 : " : Next
Do : n = n + 1 : ExecuteGlobal "Sub P" & n & " : " & b & " : End Sub" : Loop
'# execute_clases
Do : n = n + 1 : ExecuteGlobal "Class K" & n & " : Public a, b, c, d : Sub M : a = b : End Sub : End Class" : Loop
'# execute_constantes
Do : n = n + 1 : ExecuteGlobal "Const K" & n & " = """ & String(20000, "a") & """" : Loop
'# execute_mismo_nombre
Do : n = n + 1 : ExecuteGlobal "Function F : F = " & n & " : End Function" : x = F : Loop
'# execute_parentesis
s = "x = " & String(190, "(") & "1" & String(190, ")") & " : " : t = "" : For i = 1 To 500 : t = t & s : Next
Do : n = n + 1 : Execute t & "'" & n : Loop
'# execute_literales
s = "x = Array(1" : For i = 1 To 100000 : s = s & "," & i : Next : Do : n = n + 1 : Execute s & ") '" & n : Loop
'# execute_ambiguo
s = "" : For i = 1 To 150 : s = s & "If x Then : " : Next : s = s & "x = 1" : On Error Resume Next
Do : n = n + 1 : Execute s & "'" & n : Loop
'# execute_muchos_dim
s = "Dim v0" : For i = 1 To 20000 : s = s & ", v" & i : Next : Do : n = n + 1 : Execute s & "'" & n : Loop
'# eval_cadena
s = "1" : For i = 1 To 900 : s = s & "+1" : Next : Do : n = n + 1 : x = Eval(s & "+" & n) : Loop
'# eval_larga
s = """" & String(900000, "a") & """" : Do : x = Eval(s) : Loop
'# execute_en_procedimiento
Sub P : Dim a : For i = 1 To 1e9 : Execute "a" & i & " = " & i : Next : End Sub : P
'# matriz_crece
ReDim a(0) : Do : n = n + 1 : ReDim Preserve a(n) : Loop
'# matriz_encoge
Do : ReDim a(3000000) : ReDim Preserve a(1) : Loop
'# matriz_copia
ReDim a(1500000) : Do : b = a : b(1) = 1 : Loop
'# matriz_por_valor
Sub S(ByVal m) : m(0) = 1 : End Sub
ReDim a(1500000) : Do : S a : Loop
'# matriz_de_textos_copia
ReDim a(1000000) : For i = 0 To 1000000 : a(i) = "x" : Next : Do : b = a : b(1) = 1 : Loop
'# matriz_borrar
Dim f(1000000) : Do : Erase f : Loop
'# matriz_de_matrices
ReDim a(2000) : Do : For i = 0 To 2000 : a(i) = Array(1, 2, 3, 4, 5, 6, 7, 8) : Next : b = a : b(0) = 1 : Loop
'# matriz_devuelta
Function F : ReDim m(1500000) : F = m : End Function
Do : x = F()(3) : Loop
'# matriz_elemento_por_referencia
Sub S(v) : v = v + 1 : End Sub
ReDim a(1500000) : Do : b = a : S b(3) : Loop
'# dimensiones
Do : ReDim a(100, 100, 100) : a(1, 1, 1) = 1 : b = a : b(1, 1, 1) = 2 : Loop
'# diccionario_crece
Set d = CreateObject("Scripting.Dictionary") : Do : n = n + 1 : d(n) = n : Loop
'# diccionario_claves
Set d = CreateObject("Scripting.Dictionary") : For i = 1 To 300000 : d(i) = i : Next : Do : k = d.Keys : Loop
'# diccionario_valores
Set d = CreateObject("Scripting.Dictionary") : For i = 1 To 300000 : d(i) = i : Next : Do : For Each v In d.Items : Exit For : Next : Loop
'# diccionario_cambiar_clave
Set d = CreateObject("Scripting.Dictionary") : For i = 1 To 200000 : d(i) = i : Next : Do : d.Key(1) = 0 : d.Key(0) = 1 : Loop
'# diccionario_clave_larga
Set d = CreateObject("Scripting.Dictionary") : s = String(7000000, "a") : d(s) = 1 : t = s & "" : Do : x = d(t) : Loop
'# diccionario_clave_larga_sin_caja
Set d = CreateObject("Scripting.Dictionary") : d.CompareMode = 1 : s = String(3000000, "a") : d(s) = 1 : t = UCase(s) : Do : x = d.Exists(t) : Loop
'# diccionario_quitar
Set d = CreateObject("Scripting.Dictionary") : Do : d(1) = 1 : d.Remove 1 : Loop
'# diccionario_quitar_todo
Set d = CreateObject("Scripting.Dictionary") : Do : For i = 1 To 100000 : d(i) = "x" : Next : d.RemoveAll : Loop
'# diccionario_en_diccionario
Set d = CreateObject("Scripting.Dictionary") : Do : Set e = CreateObject("Scripting.Dictionary") : Set e("x") = d : Set d = e : Loop
'# diccionario_recorrer
Set d = CreateObject("Scripting.Dictionary") : For i = 1 To 300000 : d(i) = i : Next : Do : For Each v In d : Exit For : Next : Loop
'# objetos_cadena
Class N : Public s : End Class
Do : Set c = Nothing : For i = 1 To 100000 : Set o = New N : Set o.s = c : Set c = o : Next : Set o = Nothing : Loop
'# objetos_circulo
Class N : Public s : End Class
Do : Set a = New N : Set a.s = a : Loop
'# objetos_al_terminar
Class N : Sub Class_Terminate : Do : Loop : End Sub : End Class
Set a = New N : Set a = Nothing
'# objetos_al_terminar_muchos
Class N : Sub Class_Terminate : On Error Resume Next : For i = 1 To 1000 : x = 1 / 0 : Next : End Sub : End Class
ReDim a(20000) : For i = 0 To 20000 : Set a(i) = New N : Next : ReDim a(0) : Do : Loop
'# objetos_que_renacen
Class N : Sub Class_Terminate : Set g = New N : Set g = Nothing : Set g = New N : End Sub : End Class
Dim g : Set g = New N : Set g = Nothing : Do : Loop
'# objetos_con_matriz
Class N : Public m(100000) : End Class
Do : Set a = New N : Loop
'# objetos_quedan_al_parar
Class N : Sub Class_Terminate : For i = 1 To 1e9 : Next : End Sub : End Class
ReDim a(1000) : For i = 0 To 1000 : Set a(i) = New N : Next
Sub Colgar : ReDim b(1000) : For i = 0 To 1000 : Set b(i) = New N : Next : Do : Loop : End Sub : Colgar
'# getref
Function F(g) : On Error Resume Next : x = g(g) : x = g(g) : End Function : Set r = GetRef("F") : x = F(r)
'# archivo_escribir
Set f = CreateObject("Scripting.FileSystemObject") : Do : Set t = f.CreateTextFile("a.txt") : t.Write String(1000000, "a") : t.Close : Loop
'# archivo_lineas
Set f = CreateObject("Scripting.FileSystemObject") : Set t = f.CreateTextFile("a.txt") : Do : t.WriteLine "una línea" : Loop
'# archivo_abrir
Set f = CreateObject("Scripting.FileSystemObject") : Do : Set t = f.OpenTextFile("a.txt", 8, True) : t.WriteLine "x" : Loop
'# archivo_grande
Set f = CreateObject("Scripting.FileSystemObject") : s = String(10000000, "a") : Do : Set t = f.CreateTextFile("a.txt") : t.Write s : t.Write s : t.Write s : Loop
'# archivo_leer
Set f = CreateObject("Scripting.FileSystemObject") : f.CreateTextFile("a.txt").Write String(8000000, "a") : Do : x = f.OpenTextFile("a.txt").ReadAll : Loop
'# archivo_leer_lineas
Set f = CreateObject("Scripting.FileSystemObject") : f.CreateTextFile("a.txt").WriteBlankLines 100000
Do : Set t = f.OpenTextFile("a.txt") : Do Until t.AtEndOfStream : x = t.ReadLine : Loop : Loop
'# archivo_leer_de_a_uno
Set f = CreateObject("Scripting.FileSystemObject") : f.CreateTextFile("a.txt").Write String(8000000, "a") : Set t = f.OpenTextFile("a.txt")
Do : x = t.Read(3000000) : Set t = f.OpenTextFile("a.txt") : Loop
'# archivo_renglones_en_blanco
Set f = CreateObject("Scripting.FileSystemObject") : Do : Set t = f.CreateTextFile("a.txt") : For i = 1 To 100 : t.WriteBlankLines 100000 : Next : Loop
'# archivo_copiar
Set f = CreateObject("Scripting.FileSystemObject") : f.CreateTextFile("a.txt").Write String(14000000, "a") : Do : n = n + 1 : f.CopyFile "a.txt", "b.txt" : Loop
'# archivo_muchos
Set f = CreateObject("Scripting.FileSystemObject") : Do : n = n + 1 : f.CreateTextFile("a" & n & ".txt").Close : Loop
'# carpeta_listar
Set f = CreateObject("Scripting.FileSystemObject") : For i = 1 To 3000 : f.CreateTextFile("a" & i & ".txt").Close : Next
Do : n = f.GetFolder("\").Files.Count : Loop
'# carpeta_largo
Set f = CreateObject("Scripting.FileSystemObject") : For i = 1 To 2000 : f.CreateTextFile("a" & i & ".txt").Close : Next
Do : n = f.GetFolder("\").Size : Loop
'# carpeta_crear
Set f = CreateObject("Scripting.FileSystemObject") : p = "" : On Error Resume Next : Do : p = p & "\d" : f.CreateFolder p : n = f.GetFolder("\").Size : Loop
'# archivo_existe
Set f = CreateObject("Scripting.FileSystemObject") : p = String(200, "a") : Do : x = f.FileExists(p) : Loop
'# ruta_absoluta
Set f = CreateObject("Scripting.FileSystemObject") : p = "" : For i = 1 To 300000 : p = p & "a\..\" : Next : Do : x = f.GetAbsolutePathName(p) : Loop
'# ruta_partes
Set f = CreateObject("Scripting.FileSystemObject") : p = String(5000000, "a") : Do : x = f.GetBaseName(p) & f.GetParentFolderName(p) : Loop
'# mensajes
s = String(3000000, "a") : Do : MsgBox s, 0, s : Loop
'# preguntas
s = String(3000000, "ñ") : Do : x = InputBox(s, s, s) : Loop
'# azar
Do : Randomize : x = Rnd * Rnd : Loop
'# potencias
Do : x = 1.0000001 ^ 1e9 : x = Exp(Sin(x)) : Loop
'# tipos
Set d = CreateObject("Scripting.Dictionary") : Do : x = TypeName(d) & VarType(d) : Loop
'# idioma
Do : SetLocale "en-US" : SetLocale "es-AR" : Loop
'# argumentos
s = "Sub S(a0" : t = "S 0" : For i = 1 To 200 : s = s & ", a" & i : t = t & ", " & i : Next
ExecuteGlobal s & ") : End Sub" : Do : ExecuteGlobal t : Loop
'# case_miles
s = "Select Case x" & vbLf : For i = 1 To 20000 : s = s & "Case """ & i & """" & vbLf : Next : s = s & "End Select"
x = "no" : Do : Execute s : Loop
'# execute_al_final
s = "" : For i = 1 To 60000 : s = s & "a" & i & " = (b + " & i & ") * Abs(" & i & ")" & vbLf : Next : t = Timer : For i = 1 To 100 : n = n + 1 : Execute s & "'" & n : Next
'# execute_operadores
s = "x = 1" : For i = 1 To 180000 : s = s & " : x = x+1" : Next : Do : n = n + 1 : Execute s & "'" & n : Loop
'# procedimiento_de_muchas_variables
s = "Sub Pro : Dim v0" : For i = 1 To 60000 : s = s & ", v" & i : Next : ExecuteGlobal s & " : End Sub" : Do : Pro : Loop
'# procedimiento_de_muchas_variables_y_errores
s = "Sub Pro : On Error Resume Next : Dim v0" : For i = 1 To 60000 : s = s & ", v" & i : Next : ExecuteGlobal s & " : Do : x = 1 / 0 : Loop : End Sub" : Pro
'# clase_de_muchas_variables
s = "Class K : Public v0" : For i = 1 To 50000 : s = s & ", v" & i : Next : ExecuteGlobal s & " : End Class" : Do : Set o = New K : Loop
'# diccionario_de_objetos
Class N : End Class
Set d = CreateObject("Scripting.Dictionary") : Do : Set o = New N : Set d(o) = o : Loop
'# diccionario_de_dobles
Set d = CreateObject("Scripting.Dictionary") : Do : n = n + 1 : d(n * 1048576.0) = n : Loop
'# diccionario_de_fechas
Set d = CreateObject("Scripting.Dictionary") : Do : n = n + 1 : d(DateAdd("d", n Mod 100000, #1/1/2000#)) = n : Loop
'# cadenas_cortas
ReDim a(1000000) : Do : For i = 0 To 1000000 : a(i) = "x" & i : Next : Loop
'# comparar_casi_iguales
s = String(3000000, "a") : t = s & "b" : u = s & "c" : Do : n = n + 1 : If t < u Then x = (u > t) : x = (t <> u)
Loop
'# errores_hondos
Sub R(n) : If n = 0 Then x = 1 / 0 Else R n - 1
End Sub
On Error Resume Next : Do : R 1900 : Loop
'# errores_en_texto
On Error Resume Next : s = "x = 1" & vbLf & "x = 1 / 0 '" & String(100000, "a") : Do : ExecuteGlobal s : Loop
'# matches_recorridos
Set r = New RegExp : r.Global = True : r.Pattern = "\d+" : s = "" : For i = 1 To 50000 : s = s & i & " " : Next
Do : Set m = r.Execute(s) : For Each x In m : y = x.Value & x.FirstIndex : Next : Loop
'# select_de_textos_largos
s = String(1000000, "a") : Do : Select Case s : Case s & "b", s & "c", s & "d" : x = 1 : End Select : Loop
'# instr_repetitivo
s = String(3000000, "a") : b = String(15, "a") & "b" : Do : x = InStr(s, b) : x = InStrRev(s, b) : Loop
'# join_de_filas
ReDim a(3000) : For i = 0 To 3000 : a(i) = Array(1, 2) : Next : On Error Resume Next : Do : s = Join(a) : Loop
