-- Values of the language are not filtered; the refusal names what was asked for, with every operator
on refusal(kind)
	set l to {1, 2}
	try
		if kind = 1 then get every item of l whose it = 1
		if kind = 2 then get every item of l whose it ≠ 1
		if kind = 3 then get every item of l where it > 1 and it < 3
		if kind = 4 then get every item of l that it ≥ 1 or it ≤ 3
		if kind = 5 then get every item of l whose name starts with "a"
		if kind = 6 then get every item of l whose its name ends with "a"
		if kind = 7 then get every item of l whose it contains {2}
		if kind = 8 then get every item of l whose it is in {2}
		if kind = 9 then get every item of l whose not (it comes before 1)
	on error m number n
		if n = -1728 then return text from (offset_("whose", m)) to -2 of m
	end try
end refusal
on offset_(word_, m)
	repeat with i from 1 to (length of m) - (length of word_)
		if text i thru (i + (length of word_) - 1) of m is word_ then return i
	end repeat
end offset_
log {refusal(1), refusal(2)} --> {"whose it = 1", "whose it ≠ 1"}
log {refusal(3), refusal(4)} --> {"whose it > 1 and it < 3", "whose it ≥ 1 or it ≤ 3"}
log {refusal(5), refusal(6)} --> {"whose name starts with \"a\"", "whose name ends with \"a\""}
log {refusal(7), refusal(8), refusal(9)} --> {"whose it contains {2}", "whose {2} contains it", "whose not it < 1"}
on refused(kind)
	set l to {1, 2}
	try
		if kind = 1 then get first item of l whose it = 2
		if kind = 2 then get words of "a b" whose it starts with "a"
		if kind = 3 then get item 1 of (every character of "ab" whose it is in {"a"})
	on error number n
		return n
	end try
end refused
log {refused(1), refused(2), refused(3)} --> {-1728, -1728, -1728}

-- How scripts filter instead
on kept(l, f)
	script filter
		property test : f
	end script
	set out to {}
	repeat with x in l
		if filter's test(contents of x) then set end of out to contents of x
	end repeat
	return out
end kept
on odd(n)
	return n mod 2 = 1
end odd
log kept({1, 2, 3, 4, 5}, odd) --> {1, 3, 5}
