-- What numbers say by themselves
on says(n)
	try
		error number n
	on error m
		return m
	end try
end says
log {says(-128), says(-50), says(-108), says(-600), says(-1712)} --> {"User canceled.", "Parameter error.", "Out of memory.", "Application isn’t running.", "AppleEvent timed out."}
log {says(-2700), says(-2702), says(-2706), says(-2708), says(-2763)} --> {"An error has occurred.", "The result of a numeric operation was too large.", "Stack overflow.", "Attempt to create a value larger than the allowable size.", "No result was returned from some part of this expression."}
log {says(-1713), says(-1720), says(-1727), says(-1743 + 12), says(-2755)} --> {"No user interaction allowed.", "Invalid range.", "Expected a reference.", "Unknown object type.", "Exit statement was not in a repeat loop."}
log {says(500), says(9999), says(-99999)} --> {"An error of type 500 has occurred.", "An error of type 9999 has occurred.", "An error of type -99999 has occurred."}
-- What the language itself says
on textOf(kind)
	try
		if kind = 1 then return word 5 of "a b"
		if kind = 2 then return length of 5
		if kind = 3 then return items of 5
		if kind = 4 then return -"a"
		if kind = 5 then return name of {1}
		if kind = 6 then set a of {b:1} to 2
		if kind = 7 then set {x, y} to {1}
		if kind = 8 then return "a" * 2
		if kind = 9 then return {} + 1
		if kind = 10 then return missing value + 1
		if kind = 11 then return x_ of "t"
	on error m
		return m
	end try
end textOf
log textOf(1) --> "Can’t get word 5 of \"a b\"."
log {textOf(2), textOf(3)} --> {"Can’t get length of 5.", "Can’t get every item of 5."}
log {textOf(4), textOf(8)} --> {"Can’t make \"a\" into type number.", "Can’t make \"a\" into type number."}
log textOf(5) --> "Can’t get name of {1}."
log textOf(6) --> "Can’t set a of {b:1} to 2."
log textOf(7) --> "Can’t get item 2 of {1}."
log {textOf(9), textOf(10)} --> {"Can’t make {} into type number.", "Can’t make missing value into type number."}
log textOf(11) --> "Can’t get x_ of \"t\"."
