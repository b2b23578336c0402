local t = "“Quoddle” goes one by one; "
for _ = 1, 12 do t = t .. t end
local vowels = 0
for c in t:gmatch("[%z\1-\127\194-\244][\128-\191]*") do
  if c == "o" then vowels = vowels + 1 end
end
local found = 0
for word in t:gmatch("%w+") do
  if word == "one" then found = found + 1 end
end
print(vowels .. ", " .. found)
