-- Numbers that are matched, errors that are passed on, and what is not run
on sorted(n)
	try
		try
			error "e" number n
		on error number 3
			return "three"
		end try
	on error number 4
		return "four"
	end try
end sorted
log {sorted(3), sorted(4)} --> {"three", "four"}
try
	sorted(5)
on error m number n
	log {m, n} --> {"e", 5}
end try
try
	try
		1 div 0
	on error m number n from f
		error "again: " & m number n from f
	end try
on error m number n
	log {m, n} --> {"again: Can’t divide 1 by zero.", -2701}
end try
try
	try
		error "first"
	on error
		error "second" number 2
	end try
on error m number n
	log {m, n} --> {"second", 2}
end try
