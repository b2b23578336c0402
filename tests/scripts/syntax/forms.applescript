-- Statements in one line and in several, with and without the words at the end
if 1 = 1 then log "one" --> "one"
if 1 = 2 then
	log "never"
else if 1 = 1 then
	log "two" --> "two"
end if
repeat 1 times
	log "three" --> "three"
end repeat
tell {4} to log item 1 --> 4
repeat with i from 1 to 1
	log i + 4 --> 5
end
try
	error "six"
on error m
	log m --> "six"
end
considering case
	log "a" = "A" --> false
end
on f(x)
	return x
end
to g(x)
	x
end g
log {f(1), g(2)} --> {1, 2}
script s
	property p : 1
	to h()
		return p
	end
end
log {p of s, s's h()} --> {1, 1}
get 5
log result --> 5
set x to 1
set y to x
copy x to z
put 9 into w
log {x, y, z, w} --> {1, 1, 1, 9}
x
log result --> 1
log "a" & "b" --> "ab"
log (get item 1 of {3}) --> 3
set {a, b} to {1, 2}
set [c, d] to [3, 4]
log {a, b, c, d} --> {1, 2, 3, 4}
log {count {1}, count of {1}, (count {1, 2}), number of items of {1}, {1, 2, 3} count} --> {1, 1, 2, 1, 3}
local q, r
set {q, r} to {1, 2}
log q + r --> 3
log {} --> {}
log {not false, +5, - 5, 5 ÷ 2} --> {true, 5, -5, 2.5}
return
log "never"
