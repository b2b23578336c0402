def sort_list(l, low, high):
    if low >= high:
        return
    pivot, i, j = l[(low + high) // 2], low, high
    while i <= j:
        while l[i] < pivot:
            i = i + 1
        while l[j] > pivot:
            j = j - 1
        if i <= j:
            l[i], l[j] = l[j], l[i]
            i = i + 1
            j = j - 1
    sort_list(l, low, j)
    sort_list(l, i, high)
l, seed = [], 12345
for _ in range(100000):
    seed = (seed * 421 + 1663) % 7875
    l.append(seed)
sort_list(l, 0, 99999)
print(l[0], l[49999], l[99999])
