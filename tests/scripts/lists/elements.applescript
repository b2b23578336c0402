set l to {1, "a", 2.5, {3}, true, {k:4}, "b", 5, missing value}
log {integers of l, reals of l, numbers of l, text of l, strings of l, lists of l, records of l, booleans of l} --> {{1, 5}, {2.5}, {1, 2.5, 5}, {"a", "b"}, {"a", "b"}, {{3}}, {{k:4}}, {true}}
log {first integer of l, last integer of l, integer 2 of l, integer -1 of l, second text of l} --> {1, 5, 5, 5, "b"}
log {count integers of l, count of text of l, number of numbers of l, count l each integer, count l each list} --> {2, 2, 3, 2, 1}
log {every integer of {"x"}, integers of {}, count integers of {}} --> {{}, {}, 0}
log {item 1 of l, 1st item of l, first item of l, front item of l, item -1 of l, last item of l, back item of l} --> {1, 1, 1, 1, missing value, missing value, missing value}
log {third item of {1, 2, 3}, item 3 of {1, 2, 3}, {1, 2, 3}'s item 3, {1, 2, 3}'s last item} --> {3, 3, 3, 3}
log {middle item of {1, 2, 3}, middle item of {1, 2, 3, 4}, middle item of {7}, some item of {9, 9}} --> {2, 2, 7, 9}
log {items 2 thru 3 of {1, 2, 3, 4}, items 2 through -1 of {1, 2, 3}, items -2 thru -1 of {1, 2, 3}, items 3 thru 2 of {1, 2, 3}, items from 1 to 2 of {1, 2, 3}} --> {{2, 3}, {2, 3}, {2, 3}, {2, 3}, {1, 2}}
log {items from item 2 to item 3 of {1, 2, 3}, items beginning thru 2 of {1, 2, 3}, items 2 thru end of {1, 2, 3}} --> {{2, 3}, {1, 2}, {2, 3}}
log {item 1 of item 2 of {1, {2, 3}}, item 2 of item 2 of {1, {2, 3}}, last item of last item of {{1}, {2, 9}}} --> {2, 3, 9}
log {rest of {1, 2}, rest of {1}, reverse of {}, reverse of {1, {2, 3}}} --> {{2}, {}, {}, {{2, 3}, 1}}
log {length of {}, length of {{}}, count {1, {2, 3}}, {1, 2}'s length} --> {0, 1, 2, 2}
on failing(i)
	try
		return item i of {1, 2}
	on error m number n
		return {n, m}
	end try
end failing
log failing(3) --> {-1728, "Can’t get item 3 of {1, 2}."}
log failing(0) --> {-1728, "Can’t get item 0 of {1, 2}."}
log failing(-3) --> {-1728, "Can’t get item -3 of {1, 2}."}
try
	some item of {}
on error m number n
	log {n, m} --> {-1728, "Can’t get some item of {}."}
end try
try
	first item of {}
on error m
	log m --> "Can’t get item 1 of {}."
end try
try
	item 1 of 5
on error m number n
	log {n, m} --> {-1728, "Can’t get item 1 of 5."}
end try
try
	words of {"a b", "c d"}
on error m number n
	log {n, m} --> {-1728, "Can’t get every word of {\"a b\", \"c d\"}."}
end try
log {items of {"a", 1}, every text of {"a", 1}} --> {{"a", 1}, {"a"}}
