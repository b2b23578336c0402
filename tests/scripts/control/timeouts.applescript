with timeout of 5 seconds
	set a to 1
	with timeout of 1 second
		set b to a + 1
	end timeout
end timeout
log {a, b} --> {1, 2}
set n to 2
with timeout of n * 30 seconds
	set a to "computed"
end timeout
log a --> "computed"
on leaving()
	with timeout of 60 seconds
		return "left"
	end timeout
end leaving
log leaving() --> "left"
repeat with i from 1 to 3
	with timeout of 60 seconds
		if i = 2 then exit repeat
	end timeout
end repeat
log i --> 2
try
	with timeout of 60 seconds
		error "out" number 3
	end timeout
on error number n
	log n --> 3
end try
try
	with timeout of "x" seconds
		set a to 0
	end timeout
on error number n
	log n --> -1700
end try
