def sum_up(limit):
    x = 0.0
    for i in range(1, limit + 1):
        x = x + 1.5 / (i + 0.5)
    return x
print(sum_up(5000000))
