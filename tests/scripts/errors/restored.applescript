-- Targets, loops and values after an error is caught
on restored()
	tell {1, 2}
		try
			tell {3}
				error "x"
			end tell
		on error
			return it
		end try
	end tell
end restored
log restored() --> {1, 2}
set out to {}
repeat with i from 1 to 4
	try
		if i = 2 then error "two"
		if i = 4 then exit repeat
		set end of out to i
	on error m
		set end of out to m
	end try
end repeat
log {out, i} --> {{1, "two", 3}, 4}
script thrower
	on f()
		error "from a script" number 21
	end f
end script
try
	tell thrower to f()
on error m number n
	log {m, n} --> {"from a script", 21}
end try
on value()
	try
		set x to 5
		error "x"
	on error number n
		set x to x + n
	end try
	return x
end value
log value() --> -2695
