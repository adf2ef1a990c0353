-- SPDX-License-Identifier: Apache-2.0
return function()
    local a, x = {}, 12345
    for i = 0, 1999 do
        x = (x * 1103 + 12345) % 65536
        a[i] = x
    end
    for i = 1, 1999 do
        x = a[i]
        local j = i - 1
        while j >= 0 do
            if a[j] <= x then break end
            a[j + 1] = a[j]
            j = j - 1
        end
        a[j + 1] = x
    end
    return a[1000]
end
