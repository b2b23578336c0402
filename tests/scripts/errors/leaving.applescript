-- What runs and what does not, and what holds again when an error is caught
set trail to {}
try
	set end of trail to 1
	error "out"
	set end of trail to 2
on error
	set end of trail to 3
end try
set end of trail to 4
try
	set end of trail to 5
end try
try
	error "nobody asks"
end try
log trail --> {1, 3, 4, 5}
on quiet()
	try
		return "from try"
	on error
		return "from error"
	end try
end quiet
on deep(n)
	if n = 0 then error "at the bottom" number 12
	deep(n - 1)
	return "never"
end deep
try
	log deep(20)
on error m number n
	log m & n --> "at the bottom12"
end try
log quiet() --> "from try"
