def update(n):
    r = {"first": 0, "second": 1, "third": 2}
    for _ in range(n):
        r["third"] = r["third"] + 1
    return r["third"]
print(update(2000000))
