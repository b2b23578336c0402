import re

t = "“Quoddle” goes one by one; "
for _ in range(12):
    t = t + t
vowels = 0
for i in range(len(t)):
    if t[i] == "o":
        vowels += 1
found = 0
words = re.findall(r"\w+", t)
for i in range(len(words)):
    if words[i] == "one":
        found += 1
print(f"{vowels}, {found}")
