-- The value of each statement is the result
5 + 1
log result --> 6
set x to 7
log result --> 7
copy 8 to x
log result --> 8
set {a, b} to {1, 2}
log result --> {1, 2}
if true then 9
log result --> 9
tell {1, 2, 3}
	item 2
end tell
log result --> 2
considering case
	"a" = "A"
end considering
log result --> false
with timeout of 10 seconds
	10
end timeout
log result --> 10
try
	11
end try
log result --> 11
try
	error "x"
on error
	12
end try
log result --> 12
repeat with i from 1 to 3
	i * 2
end repeat
log result --> 6
count {1, 2}
log result --> 2
3
set x to result + 1
log x --> 4
