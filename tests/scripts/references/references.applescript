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
