-- The variable is a reference to the item: what looks at the value follows it
set l to {1, 2, 3}
repeat with x in l
	set contents of x to x * 10
end repeat
log l --> {10, 20, 30}
repeat with x in l
	set x to 5
end repeat
log {l, x} --> {{10, 20, 30}, 5}
set out to {}
repeat with x in {1, 2}
	set end of out to {x + 1, class of x, x as text, x & "", (contents of x) = 1, x = 1}
end repeat
log out --> {{2, integer, "1", {1, ""}, true, false}, {3, integer, "2", {2, ""}, false, false}}
repeat with x in {"ab", "c"}
	set end of out to length of x
end repeat
log items 3 thru 4 of out --> {2, 1}
set kept to {}
repeat with x in {7, 8}
	set end of kept to x
end repeat
log kept --> {item 1 of {7, 8}, item 2 of {7, 8}}
log {contents of item 1 of kept, (item 2 of kept) + 0, kept = {7, 8}} --> {7, 8, false}
repeat with x in {1, 2, 3}
	if contents of x = 2 then exit repeat
end repeat
log {x, x as integer} --> {item 2 of {1, 2, 3}, 2}
