local function build(n)
  local l = {}
  for i = 1, n do l[#l + 1] = i end
  local total = 0
  for _ = 1, 10 do for i = 1, n do total = total + l[i] end end
  return total
end
print(build(200000))
