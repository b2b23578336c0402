def build(n):
    l = []
    for i in range(1, n + 1):
        l.append(i)
    total = 0
    for _ in range(10):
        for i in range(n):
            total = total + l[i]
    return total
print(build(200000))
