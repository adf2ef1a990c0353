-- SPDX-License-Identifier: Apache-2.0
return function()
    local d, t = {}, 0
    for i = 1, 100000 do d["clave" .. i] = i end
    for i = 1, 100000 do t = t + d["clave" .. i] end
    return t
end
