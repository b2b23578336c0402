set t to "“Quoddle” goes one by one; "
repeat 12 times
	set t to t & t
end repeat
set vowels to 0
repeat with i from 1 to length of t
	if character i of t is "o" then set vowels to vowels + 1
end repeat
set found to 0
repeat with i from 1 to count of words of t
	if word i of t is "one" then set found to found + 1
end repeat
{vowels, found}
