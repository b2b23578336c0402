-- Lists in the list, records, letters; the length is fixed at the start
set m to {{1, 2}, {3, 4}}
repeat with x in m
	set item 1 of x to 0
	set end of x to "e"
end repeat
log m --> {{0, 2, "e"}, {0, 4, "e"}}
set total to 0
repeat with x in {{n:1}, {n:2}}
	set total to total + (n of x)
end repeat
log total --> 3
set letters to {}
repeat with c in "añ😀"
	set end of letters to contents of c
end repeat
log letters --> {"a", "ñ", "😀"}
set n to 0
set g to {1, 2}
repeat with x in g
	set end of g to 0
	set n to n + 1
end repeat
log {n, count g} --> {2, 4}
set l to {1, 2, 3}
set n to 0
repeat with x in l
	set l to {}
	set n to n + 1
end repeat
log {n, contents of x} --> {3, 3}
repeat with x in {}
	set n to -1
end repeat
log n --> 3
repeat with w in words of "one two"
	set final to w as text
end repeat
log final --> "two"
on first_(l)
	repeat with x in l
		return contents of x
	end repeat
end first_
log first_({"f", "g"}) --> "f"
repeat with i in {3, 1, 2}
	if i > 2 then log (i as integer) --> 3
end repeat
