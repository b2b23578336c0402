-- A handler as a value decides the order of a list
script sorter
	property inOrder : missing value
	on sort(l)
		repeat with i from 1 to (count l) - 1
			repeat with j from i + 1 to count l
				if inOrder(item j of l, item i of l) then set {item i of l, item j of l} to {item j of l, item i of l}
			end repeat
		end repeat
		return l
	end sort
end script
on smaller(a, b)
	return a < b
end smaller
on greater_(a, b)
	return a > b
end greater_
set sorter's inOrder to smaller
log sorter's sort({3, 1, 2}) --> {1, 2, 3}
set sorter's inOrder to greater_
log sorter's sort({3, 1, 2}) --> {3, 2, 1}
try
	set x to 5
	x(1)
on error m number n
	log {n, m} --> {-1708, "«script» doesn’t understand the “x” message."}
end try
