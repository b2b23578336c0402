set r to {a:1, b:{c:2, d:{3, 4}}}
set c of b of r to "deep"
set item 1 of d of b of r to "deeper"
set end of d of b of r to 5
log r --> {a:1, b:{c:"deep", d:{"deeper", 4, 5}}}
set {a of r, c of b of r} to {c of b of r, a of r}
log {a of r, r's b's c} --> {"deep", 1}
set s to r
copy r to t
set a of s to "both"
log {a of r, a of t} --> {"both", "deep"}
set e to b of r
set c of e to 77
log {c of b of r, c of b of t} --> {77, 1}

-- Joining makes a record of its own; the left value stays
set u to r & {a:0, z:26}
log {a of u, z of u, count u, count r} --> {"both", 26, 3, 2}
set a of u to 1
log a of r --> "both"
set v to {}
repeat with i from 1 to 2
	set v to v & {n:i}
end repeat
log v --> {n:1}
log {{a:1} & {b:2} & {c:3}, {a:1, b:2} & {b:3, c:4}} --> {{a:1, b:2, c:3}, {a:1, b:2, c:4}}
log {{a:1} & {5}, {5} & {a:1, b:2}, {a:1, b:2} as list} --> {{1, 5}, {5, 1, 2}, {1, 2}}

-- Records in lists
set l to {{n:1}, {n:2}}
set n of item 2 of l to "two"
log l --> {{n:1}, {n:"two"}}
repeat with each in l
	set n of each to 0
end repeat
log l --> {{n:0}, {n:0}}
tell item 1 of l to set its n to 9
log n of first item of l --> 9
try
	set q of r to 1
on error m number n
	log n --> -10006
end try
try
	a of {b:1}
on error m number n
	log {n, m} --> {-1728, "Can’t get a of {b:1}."}
end try
try
	item 1 of {a:1}
on error m number n
	log {n, m} --> {-1728, "Can’t get item 1 of {a:1}."}
end try
