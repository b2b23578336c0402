-- Patterns
on swap({a, b})
	return {b, a}
end swap
log {swap({1, 2}), swap({1, 2, 3})} --> {{2, 1}, {2, 1}}
on deep({a, {b, {c}}}, {x:p, y:{q}})
	return {a, b, c, p, q}
end deep
log deep({1, {2, {3}}}, {y:{5}, x:4}) --> {1, 2, 3, 4, 5}
try
	swap({1})
on error number n
	log n --> -1728
end try

-- Lists and records come as themselves, numbers and texts as values
on change(l, r, n, t)
	set end of l to "new"
	set k of r to "new"
	set n to n + 1
	set t to t & "new"
end change
set {l, r, n, t} to {{}, {k:1}, 1, "t"}
change(l, r, n, t)
log {l, r, n, t} --> {{"new"}, {k:"new"}, 1, "t"}
on fresh(l)
	copy l to m
	set end of m to 1
	return m
end fresh
log {fresh(l), l} --> {{"new", 1}, {"new"}}

on none()
	return "none"
end none
log {none(), none(1, 2), my none()} --> {"none", "none", "none"}
on two(a, b)
	return a & b
end two
try
	two(1)
on error m number n
	log {n, m} --> {-1701, "The b parameter is missing for two."}
end try
log {two(two("a", "b"), two("c", two("d", "e"))), two({}, {})} --> {"abcde", {}}
on early(x)
	if x > 0 then return "above"
	repeat with i from 1 to 5
		if i = 3 then return i
	end repeat
	return "never"
end early
log {early(1), early(-1)} --> {"above", 3}
on last_()
	5
	set x to 6
end last_
log last_() --> 6
on conditional(b)
	if b then
		"then"
	else
		"else"
	end if
end conditional
log {conditional(true), conditional(false)} --> {"then", "else"}
