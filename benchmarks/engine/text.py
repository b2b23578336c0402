def build(n):
    s = ""
    for i in range(n):
        s = s + "word,"
    return len("; ".join(s.split(",")))
print(build(200000))
