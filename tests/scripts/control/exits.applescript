-- Leaving the inner loop stays in the outer; leaving by return leaves all
set pairs to {}
repeat with i from 1 to 3
	repeat with j from 1 to 3
		if j = i then exit repeat
		set end of pairs to {i, j}
	end repeat
	if i = 3 then exit repeat
end repeat
log pairs --> {{2, 1}, {3, 1}, {3, 2}}
on search(l, x)
	repeat with i from 1 to count l
		repeat with j from 1 to count item i of l
			if item j of item i of l = x then return {i, j}
		end repeat
	end repeat
	return missing value
end search
log {search({{1, 2}, {3}}, 3), search({{1}}, 9)} --> {{2, 1}, missing value}
set odd to {}
repeat with i from 1 to 6
	repeat 1 times
		if i mod 2 = 0 then exit repeat
		set end of odd to i
	end repeat
end repeat
log odd --> {1, 3, 5}
repeat with i from 1 to 2
	try
		if i = 1 then error "next"
		exit repeat
	end try
end repeat
log i --> 2
