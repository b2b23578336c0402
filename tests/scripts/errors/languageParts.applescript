-- The parts of errors of the language: the value, the class that was wanted, the reference
try
	"a" as integer
on error m number n from f to t
	log {m, n, f, t} --> {"Can’t make \"a\" into type integer.", -1700, "a", integer}
end try
try
	item 5 of {1}
on error m number n from f
	log {m, n, f} --> {"Can’t get item 5 of {1}.", -1728, item 5 of {1}}
end try
try
	{a:1} as text
on error from f to t
	log {f, t} --> {{a:1}, text}
end try
try
	unset + 1
on error m number n from f
	log {m, n} --> {"The variable unset is not defined.", -2753}
end try
try
	absent()
on error m number n from f
	log {m, n} --> {"«script» doesn’t understand the “absent” message.", -1708}
end try

-- Part of them, in the order of the language
try
	error "x" number 3 from "f"
on error number n from f
	log {n, f} --> {3, "f"}
end try
try
	error "x" partial result {1, 2}
on error partial result p
	log p --> {1, 2}
end try
try
	error "x" from 7
on error from f
	log f --> 7
end try
try
	error "bare"
on error
	log "caught" --> "caught"
end try
set m to "old"
try
	error "new"
on error m
end try
log m --> "new"
