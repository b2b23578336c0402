-- The element before or after another one
set t to "a b c d"
set l to {1, 2, 3}
log {item before item 2 of l, item after item -2 of l, item after item 1 of l} --> {1, 3, 2}
log {word after word 2 of t, word before word -1 of t, character before last character of "xyz"} --> {"c", "c", "y"}
log (word before word 4 of t) & "x" --> "cx"
set p to a reference to word after word 2 of t
log contents of p --> "c"

on failing(which_, l)
	try
		if which_ = 1 then return item after item 3 of l
		if which_ = 2 then return item before item 1 of l
		if which_ = 3 then return item after item -1 of l
		return before item 2 of l
	on error m number n
		return {n, m}
	end try
end failing
log failing(1, l) --> {-1728, "Can’t get item 4 of {1, 2, 3}."}
log failing(2, l) --> {-1728, "Can’t get item 0 of {1, 2, 3}."}
log failing(3, l) --> {-1728, "Can’t get item 0 of {1, 2, 3}."}
log failing(4, l) --> {-1728, "Can’t get before item 2 of {1, 2, 3}."}
