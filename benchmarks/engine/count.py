def count_up(limit):
    i = 0
    while i < limit:
        i = i + 1
    return i
print(count_up(10000000))
