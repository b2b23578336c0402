-- What a reference shows, follows and changes
property l : {1, 2, 3}
property r : {a:1, b:{2, 3}}
property t : "one two"
log {a reference to l, a reference to item 2 of {1, 2}, a reference to word 1 of "a b"} --> {l of «script», item 2 of {1, 2}, word 1 of "a b"}
set p to a reference to item 2 of l
set contents of p to "x"
log {l, contents of p, class of p} --> {{1, "x", 3}, "x", text}
set item 2 of l to 20
log {contents of p, p + 1, p & "", p as text} --> {20, 21, {20, ""}, "20"}
set whole to a reference to l
set l to {7, 8, 9}
log {contents of whole, item 2 of whole, length of whole} --> {{7, 8, 9}, 8, 3}
set q to a ref to b of r
set end of contents of q to 4
set item 1 of q to "first"
log {r, length of q, item 3 of q, count q} --> {{a:1, b:{"first", 3, 4}}, 3, 4, 3}
set contents of (a reference to a of r) to 9
log a of r --> 9
set w to a reference to word 2 of t
log contents of w --> "two"
log {length of w, w & "!", w = "two"} --> {3, "two!", false}
set both to a reference to items 1 thru 2 of l
log contents of both --> {7, 8}
set item 1 of l to 70
log {contents of both, contents of (a reference to last item of l), contents of (a reference to every item of l)} --> {{70, 8}, 9, {70, 8, 9}}
set missing_ to a reference to item 9 of l
try
	contents of missing_
on error number n
	log n --> -1728
end try
try
	set contents of missing_ to 0
on error number n
	log n --> -10006
end try
log {contents of 5, contents of "a", contents of {1}} --> {5, "a", {1}}

-- Given to handlers, kept in lists and records, equal to nothing but references to the same
on bump(x)
	set contents of x to (contents of x) + 1
end bump
property counted : 1
bump(a reference to counted)
bump(a reference to item 3 of l)
log {counted, l} --> {2, {70, 8, 10}}
set kept to {a reference to counted}
set counted to 50
log {contents of item 1 of kept, (item 1 of kept) * 2} --> {50, 100}
set k to {ref_:a reference to counted}
set contents of ref_ of k to 51
log counted --> 51
log {(a reference to counted) = 51, contents of (a reference to counted) = 51} --> {false, true}
script s
	property m : {1, 2}
end script
set z to a reference to m of s
set end of z to 3
log {m of s, z's item 1, z} --> {{1, 2, 3}, 1, m of «script s»}
tell application "System Events"
	log POSIX path of alias "Macintosh HD:tmp:" --> "/tmp/"
	log POSIX path of "Macintosh HD:etc" --> "/etc"
end tell
