-- Lists made from a list share its items until one of them changes.
set a to {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}
set b to a & 21 & 22
set c to a & "c"
set d to rest of b
set item 20 of b to "b"
set end of a to "a"
set beginning of c to "first"
set item 1 of d to "d"
set end of d to "last"
log {item 20 of a, item 21 of a, count of a} --> {20, "a", 21}
log {item 20 of b, item 21 of b, item 22 of b, count of b} --> {"b", 21, 22, 22}
log {item 1 of c, item 2 of c, item 22 of c, count of c} --> {"first", 1, "c", 22}
log {item 1 of d, item 19 of d, item 21 of d, item 22 of d, count of d} --> {"d", 20, 22, "last", 22}
set e to items 3 thru 4 of b
set item 1 of e to "e"
log {e, item 3 of b} --> {{"e", 4}, 3}
log count of (a & a) --> 42

-- What is taken off one end and put at the other, far beyond the first buffer and beyond collections.
set queue to {}
repeat with i from 1 to 3000
	set queue to queue & i
end repeat
set total to 0
repeat 40000 times
	set total to total + (item 1 of queue)
	set queue to (rest of queue) & (item 1 of queue)
end repeat
log {count of queue, item 1 of queue, item 3000 of queue, total} --> {3000, 1001, 1000, 59020000}

-- Lists that hold a list many times, or themselves, are compared and made text in a moment.
set many to {""}
set others to {""}
repeat 50 times
	set many to {many, many}
	set others to {others, others}
end repeat
log many = others --> true
log length of (many as text) --> 0
set itself to {1}
set item 1 of itself to itself
try
	itself < 2
on error number n
	log n --> -1700
end try
set zeros to {}
repeat 60000 times
	set end of zeros to 0
end repeat
log zeros contains ((items 1 thru 30000 of zeros) & 1) --> false
log ({1} & zeros & {1}) contains ((items 1 thru 30000 of zeros) & 1) --> true

-- A list grows at its beginning and at its end in a moment, alone and beside others that share its items.
set row to {}
repeat with i from 1 to 200000
	set beginning of row to i
	if i mod 2 = 0 then set end of row to -i
end repeat
log {count of row, item 1 of row, item 200000 of row, item 200001 of row, item -1 of row} --> {300000, 200000, 1, -2, -200000}
set tail to rest of row
set beginning of tail to "t"
set beginning of row to "l"
set end of tail to "e"
log {item 1 of tail, item 2 of tail, item -1 of tail, item 1 of row, item 2 of row, item -1 of row} --> {"t", 199999, "e", "l", 200000, -200000}
set few to items 3 thru 4 of row
set beginning of few to 0
log {few, item 2 of row} --> {{0, 199999, 199998}, 200000}

-- Changing the list from which a small part was taken moves nothing.
set counted to {}
repeat with i from 1 to 100000
	set end of counted to i
end repeat
set total to 0
repeat with i from 1 to 99901
	set part to items i thru (i + 99) of counted
	set item i of counted to 0
	set total to total + (item 1 of part) - (item i of counted)
end repeat
log total --> 4.990154851E+9

-- Sizes that are not allowed are errors.
set many to {1, 2, 3, 4, 5}
repeat 22 times
	set many to many & many
end repeat
set end of many to 6
log count of many --> 20971521
try
	set many to many & many
on error number n
	log {n, count of many} --> {-2708, 20971521}
end try
set huge to "a"
repeat 26 times
	set huge to huge & huge
end repeat
try
	get id of huge
on error number n
	log n --> -2708
end try
