on add(x, y)
	return x + y
end add
on area of w by h given scale:s, doubled:d
	if d then return w * h * s * 2
	return w * h * s
end area
on move:x toward:y
	return x & y
end move:toward:
on noResult()
	return
end noResult
on lastValue()
	1
	2
end lastValue
log add(1, 2) --> 3
log my add(3, 4) --> 7
log (area of 2 by 3 given scale:2, doubled:false) --> 12
log (area of 2 by 3 with doubled given scale:1) --> 12
log (my move:"a" toward:"b") --> "ab"
log lastValue() --> 2
log add(1, 2, 99) --> 3
try
	add(1)
on error number n
	log n --> -1701
end try
try
	set x to noResult()
	x
on error number n
	log n --> -2753
end try
try
	add(noResult(), 1)
on error number n
	log n --> -2763
end try
try
	nobody(1)
on error m number n
	log {n, m} --> {-1708, "«script» doesn’t understand the “nobody” message."}
end try
