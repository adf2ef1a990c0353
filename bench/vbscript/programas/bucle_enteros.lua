-- SPDX-License-Identifier: Apache-2.0
return function()
    local s = 0
    for i = 1, 10000000 do s = s + i % 7 end
    return s
end
