-- SPDX-License-Identifier: Apache-2.0
-- Usage: lua5.4 medir.lua PROGRAM.lua ... ; prints "name seconds" of the best of several runs.
local function mejor(f, veces)
    local menor = math.huge
    for _ = 1, veces do
        local t = os.clock()
        f()
        menor = math.min(menor, os.clock() - t)
    end
    return menor
end
for _, ruta in ipairs(arg) do
    local nombre = ruta:match("([^/]+)%.lua$")
    if nombre == "planta" then
        local archivo = assert(io.open(ruta))
        local texto = archivo:read("a")
        archivo:close()
        local vueltas = 20000
        local corrida = assert(load(texto))
        print("planta", mejor(function() for _ = 1, vueltas do corrida() end end, 5) / vueltas)
        print("planta_compilar", mejor(function() for _ = 1, vueltas do load(texto) end end, 5) / vueltas)
    else
        print(nombre, mejor(dofile(ruta), 5))
    end
end
