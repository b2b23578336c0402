property counter : 10
global shared
on bump()
	set counter to counter + 1
	set secret to 5
	return counter
end bump
on share()
	global shared
	set shared to "set in a handler"
end share
set shared to "top"
bump()
log counter --> 11
share()
log shared --> "set in a handler"
set secret to 1
bump()
log secret --> 1
on readUnset()
	return neverSet
end readUnset
try
	readUnset()
on error m number n
	log {n, m} --> {-2753, "The variable neverSet is not defined."}
end try
5 + 6
log result --> 11
on setOnOneWay(isSet)
	if isSet then
		set once to "set"
	else
		set other to 1
	end if
	return once
end setOnOneWay
log setOnOneWay(true) --> "set"
try
	setOnOneWay(false)
on error number n
	log n --> -2753
end try
on giveNothing()
	return
end giveNothing
on unsetInALoop()
	set once to 1
	set found to {}
	repeat 2 times
		set end of found to once
		set once to giveNothing()
	end repeat
	return found
end unsetInALoop
try
	unsetInALoop()
on error m
	log m --> "The variable once is not defined."
end try
script kid
	property late : "kid"
end script
on readLate()
	global late
	set earlier to late
	return {earlier, late}
end readLate
on setLate()
	global late
	set late to "top"
end setLate
log kid's readLate() --> {"kid", "kid"}
setLate()
log kid's readLate() --> {"top", "top"}
log readLate() --> {"top", "top"}
log kid's readLate() --> {"top", "top"}
