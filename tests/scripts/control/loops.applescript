set out to {}
repeat with i from 10 to 1 by -4
	set end of out to i
end repeat
log out --> {10, 6, 2}
set n to 0
repeat 3 times
	set n to n + 1
end repeat
log n --> 3
repeat while n < 5
	set n to n + 1
end repeat
repeat until n ≥ 7
	set n to n + 1
end repeat
log n --> 7
repeat
	set n to n + 1
	if n > 9 then exit repeat
end repeat
log n --> 10
set l to {1, 2, 3}
repeat with e in l
	set contents of e to e * 2
end repeat
log l --> {2, 4, 6}
set total to 0
repeat with e in l
	if contents of e = 4 then
		repeat with j from 1 to 3
			if j = 2 then exit repeat
			set total to total + 100
		end repeat
	else
		set total to total + e
	end if
end repeat
log total --> 108
repeat with i from 1 to 0
	log "never"
end repeat
repeat with w in words of "one two"
	set lastWord to contents of w
end repeat
log lastWord --> "two"
repeat with x from 0.5 to 1.5 by 0.5
	set lastX to x
end repeat
log lastX --> 1.5
