log number of {1, 2, 3} --> 3
log number of words of "one two" --> 2
log number of items 2 thru 3 of {1, 2, 3} --> 2
set l to {{1, 2}, {3}}
log number of l --> 2
log number of characters in "abc" --> 3
tell l to log number of items --> 2
log number of {number:"own"} --> "own"
try
	number of 5
on error number n
	log n --> -1728
end try
