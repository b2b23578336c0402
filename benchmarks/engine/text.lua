local function build(n)
  local s = {}
  for i = 1, n do s[#s + 1] = "word," end -- appending to one string is quadratic in Lua
  s = table.concat(s)
  local parts = {}
  for part in (s):gmatch("([^,]*),") do parts[#parts + 1] = part end
  return #table.concat(parts, "; ")
end
print(build(200000))
