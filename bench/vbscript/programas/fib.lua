-- SPDX-License-Identifier: Apache-2.0
local function fib(n)
    if n < 2 then return n end
    return fib(n - 1) + fib(n - 2)
end
return function() return fib(27) end
