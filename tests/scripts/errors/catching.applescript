try
	error "boom" number 42 from {1} partial result {2, 3}
on error m number n from f partial result p
	log {m, n, f, p} --> {"boom", 42, {1}, {2, 3}}
end try
try
	error "plain"
on error m number n
	log n --> -2700
end try
try
	error number -128
on error m number n
	log {m, n} --> {"User canceled.", -128}
end try
try
	try
		error "inner" number 7
	on error number 8
		log "never"
	end try
on error m number n
	log {m, n} --> {"inner", 7}
end try
try
	try
		1 / 0
	on error m number n from f
		error m number n from f
	end try
on error m number n
	log {m, n} --> {"Can’t divide 1.0 by zero.", -2701}
end try
on thrower(n)
	if n = 0 then error "deep" number 99
	thrower(n - 1)
end thrower
set afterwards to "unset"
try
	thrower(50)
on error number n
	set afterwards to n
end try
log afterwards --> 99
repeat with i from 1 to 3
	try
		if i = 2 then error "skip"
		set seen to i
	end try
end repeat
log seen --> 3
tell {1, 2, 3}
	try
		error "in a tell"
	end try
	log count items --> 3
end tell
considering case
	try
		error "x"
	end try
	log "a" = "A" --> false
end considering
try
	error "cancelled" number -128
on error number -128
	log "matched" --> "matched"
end try
try
	try
		error "other" number -5
	on error m number -128
		log "never"
	end try
on error number n
	log n --> -5
end try
on textOf(each)
	try
		error number each
	on error m
		return m
	end try
end textOf
log textOf(-1700) --> "Can’t make «script» into type item."
log textOf(-1708) --> "«script» doesn’t understand the “item” message."
log textOf(-2753) --> "The variable «script» is not defined."
log textOf(-43) --> "File «script» wasn’t found."
log textOf(999) --> "An error of type 999 has occurred."
try
	error number -1728 from {1} to text
on error m from f to t
	log {m, f, t} --> {"Can’t get {1}.", {1}, text}
end try
try
	error "x"
on error from f to t
	log {f, t} --> {«script», item}
end try
try
	1 / 0
on error m
	log m --> "Can’t divide 1.0 by zero."
end try
