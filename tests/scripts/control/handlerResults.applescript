-- The value of a handler is that of its last statement
on silent()
	return
end silent
5
silent()
try
	log {result}
on error m number n
	log n --> -2753
end try
on last_(n)
	if n > 0 then
		repeat 2 times
			n * 10
		end repeat
	end if
end last_
log last_(2) --> 20
on tried()
	try
		error "x" number 5
	on error number n
		return n
	end try
end tried
log tried() --> 5
on choose_(n)
	if n = 1 then
		return "one"
	else if n = 2 then
		return "two"
	else
		if n < 0 then return "below"
	end if
	"other"
end choose_
log {choose_(1), choose_(2), choose_(3), choose_(-1)} --> {"one", "two", "other", "below"}
log (get 5) + 1 --> 6
