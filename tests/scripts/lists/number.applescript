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
log integers 1 thru 2 of {"a", 5, 6, 7} --> {5, 6}
log items 1 thru integer 2 of {"a", 5, 6, 7} --> {"a", 5, 6}
log rest of {} --> {}
try
	last item of {}
on error m number n
	log {m, n} --> {"Can’t get last item of {}.", -1728}
end try
try
	items 2 thru 9 of {1}
on error m
	log m --> "Can’t get items 2 thru 9 of {1}."
end try
try
	set item 5 of {1} to 2
on error m number n
	log {m, n} --> {"Can’t set item 5 of {1} to 2.", -10006}
end try
