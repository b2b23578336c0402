set a to {1, 2, 3}
set b to a
set end of a to 4
log b --> {1, 2, 3, 4}
copy a to c
set item 1 of a to "x"
log c --> {1, 2, 3, 4}
log b --> {"x", 2, 3, 4}
set beginning of a to 0
log a --> {0, "x", 2, 3, 4}
set item -1 of a to {5, 6}
set item 2 of item 5 of a to 7
log a --> {0, "x", 2, 3, {5, 7}}
log rest of {1, 2, 3} --> {2, 3}
log reverse of {1, 2, 3} --> {3, 2, 1}
log items 2 thru -2 of {1, 2, 3, 4} --> {2, 3}
log middle item of {1, 2, 3} --> 2
log integers of {1, "a", 2} --> {1, 2}
log count {1, 2, 3} --> 3
log every item of {} --> {}
log item 1 of {{1}} --> {1}
try
	item 4 of {1, 2, 3}
on error m number n
	log {n, m} --> {-1728, "Can’t get item 4 of {1, 2, 3}."}
end try
try
	set item 9 of a to 1
on error number n
	log n --> -10006
end try
set a to 2
log item a of {4, 5, 6} --> 5
log items a thru 3 of {4, 5, 6} --> {5, 6}
log (item a of {4, 6}) div 2 + a --> 5
