on kind(x)
	if x = missing value then return "nothing"
	if class of x is in {integer, real} then
		if x < 0 then
			return "below"
		else if x = 0 then
			return "zero"
		end if
		return "above"
	else if class of x is text then
		if x is "" then return "empty"
		return "text"
	else
		return "other"
	end if
end kind
log {kind(missing value), kind(-1.5), kind(0), kind(7), kind(""), kind("x"), kind({})} --> {"nothing", "below", "zero", "above", "empty", "text", "other"}
if "true" then set x to "text is taken"
log x --> "text is taken"
on refused(x)
	try
		if x then return "taken"
		return "not taken"
	on error m number n
		return {n, m}
	end try
end refused
log {refused(true), refused(false), refused("false")} --> {"taken", "not taken", "not taken"}
log refused("yes") --> {-1700, "Can’t make \"yes\" into type boolean."}
log refused(5) --> {-1700, "Can’t make 5 into type boolean."}
log refused({}) --> {-1700, "Can’t make {} into type boolean."}
log refused(missing value) --> {-1700, "Can’t make missing value into type boolean."}
if false then
	set x to 1
else
end if
if true then
end if
log x --> "text is taken"
if x is "no" then
	set x to 1
else if x is "nor this"
	set x to 2
else
	set x to 3
end if
log x --> 3
if x = 3 then if x < 5 then set x to 4
log x --> 4
if x = 4
	set x to 5
end
log x --> 5
