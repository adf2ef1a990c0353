' SPDX-License-Identifier: Apache-2.0
' Values of a line, gathered after every answer.
Dim total, lecturas, maximo, minimo, promedio, alarma, turno, estado, texto, detalle
Dim presion(9), caudal(9)
Const LimiteAlto = 900
Const LimiteBajo = 10

Function Escalar(crudo, desde, hasta)
    Escalar = desde + (hasta - desde) * crudo / 1000
End Function

If lecturas = 0 Then
    maximo = -1
    minimo = 100000
End If
lecturas = lecturas + 1
turno = lecturas Mod 3
base = (lecturas * 37) Mod 1000
For i = 0 To 9
    crudo = (base + i * 91) Mod 1000
    presion(i) = Escalar(crudo, 0, 16)
    caudal(i) = crudo * 2 + turno
    If crudo > maximo Then maximo = crudo
    If crudo < minimo Then minimo = crudo
    total = total + crudo
Next
promedio = total / (lecturas * 10)
alarma = False
If maximo > LimiteAlto Then
    alarma = True
    estado = "ALTO"
ElseIf minimo < LimiteBajo Then
    estado = "BAJO"
Else
    estado = "NORMAL"
End If
Select Case turno
    Case 0
        nombre = "manana"
    Case 1
        nombre = "tarde"
    Case Else
        nombre = "noche"
End Select
suma = 0
For i = 0 To 9
    suma = suma + presion(i) * caudal(i)
Next
texto = "Turno: " & nombre & " Estado: " & estado & " Lecturas: " & lecturas
texto = texto & " Max: " & maximo & " Min: " & minimo
detalle = ""
For i = 0 To 9
    detalle = detalle & "P" & i & "=" & caudal(i) & ";"
Next
nivel = base / 10
bomba = 0
If nivel > 50 Then bomba = 1
valvula = 1 - bomba
horas = lecturas / 3600
consumo = horas * 12.5 + bomba
linea = texto & " | " & detalle & " | " & bomba & valvula
largo = Len(linea)
If alarma Then avisos = avisos + 1
