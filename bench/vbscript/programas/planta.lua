-- SPDX-License-Identifier: Apache-2.0
-- Values of a line, gathered after every answer.
total = total or 0
lecturas = lecturas or 0
avisos = avisos or 0
presion = presion or {}
caudal = caudal or {}
LimiteAlto = 900
LimiteBajo = 10

function Escalar(crudo, desde, hasta)
    return desde + (hasta - desde) * crudo / 1000
end

if lecturas == 0 then
    maximo = -1
    minimo = 100000
end
lecturas = lecturas + 1
turno = lecturas % 3
base = (lecturas * 37) % 1000
for i = 0, 9 do
    crudo = (base + i * 91) % 1000
    presion[i] = Escalar(crudo, 0, 16)
    caudal[i] = crudo * 2 + turno
    if crudo > maximo then maximo = crudo end
    if crudo < minimo then minimo = crudo end
    total = total + crudo
end
promedio = total / (lecturas * 10)
alarma = false
if maximo > LimiteAlto then
    alarma = true
    estado = "ALTO"
elseif minimo < LimiteBajo then
    estado = "BAJO"
else
    estado = "NORMAL"
end
if turno == 0 then
    nombre = "manana"
elseif turno == 1 then
    nombre = "tarde"
else
    nombre = "noche"
end
suma = 0
for i = 0, 9 do
    suma = suma + presion[i] * caudal[i]
end
texto = "Turno: " .. nombre .. " Estado: " .. estado .. " Lecturas: " .. lecturas
texto = texto .. " Max: " .. maximo .. " Min: " .. minimo
detalle = ""
for i = 0, 9 do
    detalle = detalle .. "P" .. i .. "=" .. caudal[i] .. ";"
end
nivel = base / 10
bomba = 0
if nivel > 50 then bomba = 1 end
valvula = 1 - bomba
horas = lecturas / 3600
consumo = horas * 12.5 + bomba
linea = texto .. " | " .. detalle .. " | " .. bomba .. valvula
largo = #linea
if alarma then avisos = avisos + 1 end
