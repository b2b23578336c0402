-- Handlers as values: given on, kept in lists and properties, put in scripts and called there
on twice(x)
	return x * 2
end twice
on plusOne(x)
	return x + 1
end plusOne
script caller
	property f : missing value
	on call(x)
		return f(x)
	end call
end script
on map_(l, g)
	set caller's f to g
	set out to {}
	repeat with x in l
		set end of out to caller's call(contents of x)
	end repeat
	return out
end map_
log {map_({1, 2, 3}, twice), map_({1, 2}, plusOne), map_({}, twice)} --> {{2, 4, 6}, {2, 3}, {}}
on fold(l, start, g)
	script folding
		property f : g
		property total : start
	end script
	repeat with x in l
		set folding's total to folding's f(folding's total, contents of x)
	end repeat
	return folding's total
end fold
on add(a, b)
	return a + b
end add
on longer(a, b)
	if length of a > length of b then return a
	return b
end longer
log {fold({1, 2, 3, 4}, 0, add), fold({"a", "ccc", "bb"}, "", longer)} --> {10, "ccc"}
set chosen to item 2 of {twice, plusOne}
set caller's f to chosen
log {caller's call(10), class of chosen, chosen = plusOne, {twice} contains twice} --> {11, handler, true, true}
on adder(n)
	script
		on call(x)
			return x + n
		end call
	end script
end adder
set {five, six} to {adder(5), adder(6)}
log {five's call(1), six's call(1), five's call(six's call(0))} --> {6, 7, 11}
