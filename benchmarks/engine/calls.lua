local function same(x) return x end
local function callMany(n) local total = 0 for _ = 1, n do total = total + same(1) end return total end
print(callMany(2000000))
