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
