def sieve(n):
    flags = []
    for _ in range(n + 1):
        flags.append(True)
    found = 0
    for i in range(2, n + 1):
        if flags[i]:
            found = found + 1
            for j in range(i * i, n + 1, i):
                flags[j] = False
    return found
print(sieve(2000000))
