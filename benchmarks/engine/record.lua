local function update(n)
  local r = {first = 0, second = 1, third = 2}
  for _ = 1, n do r.third = r.third + 1 end
  return r.third
end
print(update(2000000))
