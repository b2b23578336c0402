def same(x):
    return x
def call_many(n):
    total = 0
    for _ in range(n):
        total = total + same(1)
    return total
print(call_many(2000000))
