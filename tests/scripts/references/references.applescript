set l to {1, 2, 3}
set r to a reference to item 2 of l
log contents of r --> 2
set item 2 of l to "changed"
log contents of r --> "changed"
set contents of r to 5
log l --> {1, 5, 3}
log r + 1 --> 6
log class of r --> integer
property big : {}
repeat with i from 1 to 5
	set end of my big to i
end repeat
log item 3 of my big --> 3
tell l
	log item 1 --> 1
	log length of it --> 3
end tell
log some item of {4, 4} --> 4
log (item 2 of {1, 2}) + (item 1 of {5}) --> 7
property alpha : 1
set v to a reference to alpha
set alpha to 9
log {contents of v, v + 1} --> {9, 10}
set contents of v to 6
log alpha --> 6
log {v} --> {alpha of «script»}
on referred(r)
	set contents of r to 3
	return r
end referred
log contents of referred(v) --> 3
log alpha --> 3
script s
	property n : 1
end script
log {a reference to n of s} --> {n of «script s»}
on ofLocal()
	set q to 5
	a reference to q
end ofLocal
try
	ofLocal()
on error number n
	log n --> -1700
end try
-- a reference equals no value; what looks at the value follows it
set found to {}
repeat with x in {"a", "b"}
	set end of found to {x = "a", x is in {"a"}, contents of x, x & "!"}
end repeat
log found --> {{false, true, "a", "a!"}, {false, false, "b", "b!"}}
set l to {1, {2}}
set c to contents of l
set item 1 of c to 9
log l --> {1, {2}}
log {beginning of l, end of l} --> {1, {2}}
try
	end of {}
on error m number n
	log {m, n} --> {"Can’t get end of {}.", -1728}
end try
log {a reference to item 2 of {1, 2}} --> {item 2 of {1, 2}}
script sized
	property size_ : 4
end script
property target : 1
set target to sized
set r to a reference to target
log {size_ of (contents of r), contents of sized is sized} --> {4, true}
