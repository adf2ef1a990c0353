-- SPDX-License-Identifier: Apache-2.0
local function ordenar(a, izq, der)
    local i, j = izq, der
    local p = a[(izq + der) // 2]
    while i <= j do
        while a[i] < p do i = i + 1 end
        while a[j] > p do j = j - 1 end
        if i <= j then
            local t = a[i]
            a[i] = a[j]
            a[j] = t
            i = i + 1
            j = j - 1
        end
    end
    if izq < j then ordenar(a, izq, j) end
    if i < der then ordenar(a, i, der) end
end
return function()
    local a, x = {}, 12345
    for k = 0, 99999 do
        x = (x * 1103 + 12345) % 65536
        a[k] = x
    end
    ordenar(a, 0, 99999)
    return a[50000]
end
