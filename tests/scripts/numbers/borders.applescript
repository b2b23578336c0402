-- Integers have 30 bits; what is larger is a real
log {536870911, 536870912, -536870911, 1000000000} --> {536870911, 5.36870912E+8, -536870911, 1.0E+9}
log {class of 536870911, class of 536870912, class of (536870911 + 1), class of (536870910 + 1)} --> {integer, real, real, integer}
log {536870911 + 1, 536870912 - 1, -536870911 - 5, 536870911 * 2, 23170 * 23170, 23171 * 23171} --> {5.36870912E+8, 5.36870911E+8, -5.36870916E+8, 1.073741822E+9, 536848900, 5.36895241E+8}
log {100000 * 100000, 46341 * 46341, 30000 * 30000} --> {1.0E+10, 2.147488281E+9, 9.0E+8}
log {-(536870911), 536870911 - 536870911, -(-536870911)} --> {-536870911, 0, 536870911}
set n to 536870910
repeat 2 times
	set n to n + 1
end repeat
log {n, class of n} --> {5.36870912E+8, real}
log {2147483647 as integer, 1.0E+9 as integer, "2147483647" as integer, -2147483647 as integer} --> {2.147483647E+9, 1.0E+9, 2.147483647E+9, -2.147483647E+9}
on asInteger(x)
	try
		return x as integer
	on error number n
		return n
	end try
end asInteger
log {asInteger(2147483648.0), asInteger(1.0E+20), asInteger(-1.0E+20), asInteger("1.0E+10")} --> {-1700, -1700, -1700, -1700}
on outcome(x, y)
	try
		return x ^ y
	on error m number n
		return {n, m}
	end try
end outcome
log {outcome(10, 400), outcome(2, 5000)} --> {{-2702, "The result of a numeric operation was too large."}, {-2702, "The result of a numeric operation was too large."}}
try
	1.0E+308 * 100
on error number n
	log n --> -2702
end try
log {1.0E+308, 1.7E+308, 1.0E-100, outcome(2, 1023) > 8.0E+307} --> {1.0E+308, 1.7E+308, 1.0E-100, true}
on divided(x, y)
	set found to {}
	try
		x / y
	on error m number n
		set end of found to m
	end try
	try
		x div y
	on error m number n
		set end of found to m
	end try
	try
		x mod y
	on error m number n
		set end of found to n
	end try
	return found
end divided
log divided(7, 0) --> {"Can’t divide 7.0 by zero.", "Can’t divide 7 by zero.", -2701}
log divided(1.5, 0.0) --> {"Can’t divide 1.5 by zero.", "Can’t divide 1.5 by zero.", -2701}
