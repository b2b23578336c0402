-- Whose handler is meant: of the script, of the target, of a value
on label()
	return "script"
end label
script thing
	on label()
		return "thing"
	end label
	on own()
		return label() & "/" & my label()
	end own
	on me_()
		return {me, it}
	end me_
end script
log {label(), thing's label(), label() of thing, thing's own()} --> {"script", "thing", "thing", "thing/thing"}
tell thing
	log {label(), my label(), its label(), label() of me} --> {"thing", "script", "thing", "script"}
end tell
tell {1, 2}
	log {my label(), label() of me} --> {"script", "script"}
end tell
log thing's me_() --> {«script thing», «script thing»}
on failing(target)
	try
		tell target to absent()
	on error m number n
		return {n, m}
	end try
end failing
log failing(5) --> {-1708, "5 doesn’t understand the “absent” message."}
log failing("x") --> {-1708, "\"x\" doesn’t understand the “absent” message."}
log failing({1, 2}) --> {-1708, "{1, 2} doesn’t understand the “absent” message."}
log failing(thing) --> {-1708, "«script thing» doesn’t understand the “absent” message."}
try
	my absent
on error m number n
	log n --> -1728
end try
try
	absent of thing
on error m number n
	log {n, m} --> {-1728, "Can’t get absent of «script thing»."}
end try
try
	set absent of thing to 1
on error m number n
	log {n, m} --> {-10006, "Can’t set absent of «script thing» to 1."}
end try
on even(n)
	if n = 0 then return true
	return odd(n - 1)
end even
on odd(n)
	if n = 0 then return false
	return even(n - 1)
end odd
log {even(10), odd(10), even(7)} --> {true, false, false}
on counted(l)
	if l = {} then return 0
	return 1 + counted(rest of l)
end counted
log counted({1, {2, 3}, 4}) --> 3
