log {2 + 3 * 4, (2 + 3) * 4, 10 - 4 - 3, 2 * 3 mod 4, 24 / 4 / 3, 7 div 2 * 2} --> {14, 20, 3, 2, 2.0, 6}
log {-2 ^ 2, 2 ^ 3 ^ 2, 2 ^ -1, -(2 ^ 2), 2 * 3 ^ 2, - -3} --> {4.0, 512.0, 0.5, -4.0, 18.0, 3}
log {1 + 2 & 3 * 4, "a" & 1 + 1, 1 & 2 & 3} --> {{3, 12}, "a2", {1, 2, 3}}
log {"1" & "2" as integer, 1 + "2" as text, {1} & 2 as text} --> {12, "3", "12"}
log {1 + 1 = 2, 1 < 2 = true, 3 > 2 is true, 1 & 2 = {1, 2}} --> {true, true, true, true}
log {not 1 = 2, not true or true, not (true or true), not not true, not true = false} --> {true, true, false, true, true}
log {true or false and false, (true or false) and false, false and true or true} --> {true, false, true}
log {"ab" & "c" contains "bc", 2 + 1 is in {3}, {1} & 2 starts with 1, "a" & "b" = "ab"} --> {true, true, true, true}
log {item 1 of {4} + 1, length of "ab" * 2, character 1 of "xy" & "z", -(item 1 of {5})} --> {5, 4, "xz", -5}
log {4's class is integer, {1, 2}'s length + 1, "ab"'s length = 2} --> {true, 3, true}

-- What need not be known is not computed
on fails()
	error "computed" number 77
end fails
log {false and fails(), true or fails(), false and (1 / 0 = 1)} --> {false, true, false}
try
	true and fails()
on error number n
	log n --> 77
end try
try
	false or fails()
on error number n
	log n --> 77
end try
log {true and "true", "false" or true, not "true"} --> {true, true, false}
on asCondition(x)
	try
		return x and true
	on error m number n
		return m
	end try
end asCondition
log {asCondition(5), asCondition("yes"), asCondition(missing value)} --> {"Can’t make 5 into type boolean.", "Can’t make \"yes\" into type boolean.", "Can’t make missing value into type boolean."}

-- Operands are computed once, from left to right
property order : {}
on seen(x)
	set end of order to x
	return x
end seen
log {seen(1) + seen(2) * seen(3), order} --> {7, {1, 2, 3}}
set order to {}
log {{seen("a"), seen("b")}, {k:seen("c")}, order} --> {{"a", "b"}, {k:"c"}, {"a", "b", "c"}}
