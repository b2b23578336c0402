on steps(a, b, c)
	set out to {}
	repeat with i from a to b by c
		set end of out to i
	end repeat
	return out
end steps
log {steps(1, 3, 1), steps(5, 1, -2), steps(-1, 1, 1), steps(3, 1, 1), steps(1, 1, 5), steps(1, 10, 4)} --> {{1, 2, 3}, {5, 3, 1}, {-1, 0, 1}, {}, {1}, {1, 5, 9}}
-- The borders are computed once, and changing the variable changes no turn
set {m, turns} to {3, 0}
repeat with i from 1 to m
	set m to 10
	set turns to turns + 1
end repeat
log {turns, i} --> {3, 3}
set turns to 0
repeat with i from 1 to 5
	set i to i + 10
	set turns to turns + 1
end repeat
log {turns, i} --> {5, 15}
repeat with i from 1 to "3"
end repeat
log i --> 3
repeat with i from 1 to 10
	if i = 4 then exit repeat
end repeat
log i --> 4
on times_(n)
	set c to 0
	repeat n times
		set c to c + 1
	end repeat
	return c
end times_
log {times_(3), times_(0), times_(-2)} --> {3, 0, 0}
set n to 0
repeat while n < 4
	set n to n + 1
end repeat
repeat while n < 4
	set n to 100
end repeat
log n --> 4
repeat until n ≥ 6
	set n to n + 1
end repeat
repeat until n ≥ 6
	set n to 100
end repeat
log n --> 6
