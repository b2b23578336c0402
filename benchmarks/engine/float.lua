local function sumUp(limit) local x = 0.0 for i = 1, limit do x = x + 1.5 / (i + 0.5) end return x end
print(sumUp(5000000))
