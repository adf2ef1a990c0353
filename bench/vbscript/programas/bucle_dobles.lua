-- SPDX-License-Identifier: Apache-2.0
return function()
    local s = 0.5
    for i = 1, 10000000 do s = s * 0.999 + 1.5 end
    return s
end
