local function countUp(limit) local i = 0 while i < limit do i = i + 1 end return i end
print(countUp(10000000))
