local function sieve(n)
  local flags = {}
  for i = 1, n do flags[i] = true end
  local found = 0
  for i = 2, n do
    if flags[i] then
      found = found + 1
      for j = i * i, n, i do flags[j] = false end
    end
  end
  return found
end
print(sieve(2000000))
