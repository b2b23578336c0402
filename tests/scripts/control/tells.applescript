-- What it and me are
tell 5 to log it --> 5
tell {1, 2, 3}
	log {item 2, length of it, its length, count it, reverse} --> {2, 3, 3, 3, {3, 2, 1}}
	tell item 1 to log it --> 1
	log it --> {1, 2, 3}
	log me --> «script»
end tell
tell "hello world"
	log {word 2, length, character 1, its length, count words} --> {"world", 11, "h", 11, 2}
	tell word 1
		log {it, last character} --> {"hello", "o"}
	end tell
end tell
property p : 3
tell {p:5, q:6}
	log {p, my p, its p, its q} --> {3, 3, 5, 6}
end tell
tell me to set p to 4
log p --> 4
tell {1, 2} to set end of it to 3
set l to {1}
tell l to set end of it to 2
tell l
	set item 1 of it to 0
	set beginning of it to -1
end tell
log l --> {-1, 0, 2}
tell (date "1/2/2020") to log {its year, its month, day of it} --> {2020, January, 2}
script s
	property n : 4
	on g()
		return {n, it, me}
	end g
end script
tell s
	log g() --> {4, «script s», «script s»}
	set its n to 9
	set n to 10
	log {n, its n} --> {10, 9}
end tell
log {n, n of s} --> {10, 9}
log it --> «script»
tell AppleScript
	log {pi > 3, text item delimiters} --> {true, {""}}
end tell
on inside()
	return it
end inside
tell {1}
	log my inside() --> «script»
end tell
on left_()
	tell {1, 2}
		return it
	end tell
end left_
log {left_(), it} --> {{1, 2}, «script»}
try
	tell {9}
		error "out"
	end tell
end try
log it --> «script»
