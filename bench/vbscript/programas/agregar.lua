-- SPDX-License-Identifier: Apache-2.0
return function()
    local s = ""
    for i = 1, 100000 do s = s .. "x" end
    return #s
end
