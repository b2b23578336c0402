-- Values of the language are not filtered; the refusal names what was asked for
set l to {1, 2, 3}
set refused to {}
try
	get every item of l whose class is integer
on error number n
	set end of refused to n
end try
try
	get items of l where it > 1
on error number n
	set end of refused to n
end try
try
	get first item of l whose it = 2
on error number n
	set end of refused to n
end try
try
	get words of "a b" that it starts with "a"
on error number n
	set end of refused to n
end try
try
	get item 1 of (every character of "ab" whose it is in {"a"})
on error number n
	set end of refused to n
end try
try
	get count of (items of {{n:1}} whose n ≥ 1 and n does not contain 2)
on error number n
	set end of refused to n
end try
log refused --> {-1728, -1728, -1728, -1728, -1728, -1728}
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
