-- The right operand becomes what the left one is, in order and containment; "is in" the other way about
log {5 < "10", "5" < 10, "12" starts with 1, "123" contains 2, 2 is in "123"} --> {true, false, true, true, true}
log {"x" contains {"x"}, {"x"} contains "x", {1, 2} contains "2", {1, 2} contains 2.0} --> {true, true, false, true}
log {1 < 1.5, 1.5 < "2", "b" > "a", "10" > 9} --> {true, true, true, false}
log {"1" = 1, 1 = "1", {1} = 1, "a" = {"a"}, true = "true"} --> {false, false, false, false, false}
log {3 > "2", "3.0" as real = 3, 1 ≤ true as integer} --> {true, true, true}
on refused(kind)
	try
		if kind = 1 then return 1 < "a"
		if kind = 2 then return 1 < missing value
		if kind = 3 then return (date "1/1/2020") < 5
		if kind = 4 then return {a:1} < {a:2}
		if kind = 5 then return 1 + {1, 2}
	on error number n
		return n
	end try
end refused
log {refused(1), refused(2), refused(3), refused(4), refused(5)} --> {-1700, -1700, -1700, -1700, -1700}
log {{1} + 1, "2" + "3", "1.5" + 1, {"4"} * 2} --> {2, 5, 2.5, 8}
log {"a" & 1 + 2, ("1" & 2) + 3, "4" * "2", "9" / 3} --> {"a3", 15, 8, 3.0}
