local function sortList(l, low, high)
  if low >= high then return end
  local pivot, i, j = l[math.floor((low + high) / 2)], low, high
  while i <= j do
    while l[i] < pivot do i = i + 1 end
    while l[j] > pivot do j = j - 1 end
    if i <= j then l[i], l[j] = l[j], l[i]; i = i + 1; j = j - 1 end
  end
  sortList(l, low, j)
  sortList(l, i, high)
end
local l, seed = {}, 12345
for _ = 1, 100000 do seed = (seed * 421 + 1663) % 7875; l[#l + 1] = seed end
sortList(l, 1, 100000)
print(l[1], l[50000], l[100000])
