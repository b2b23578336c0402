on sortList(l, low, high)
	if low ≥ high then return
	set pivot to item ((low + high) div 2) of l
	set i to low
	set j to high
	repeat while i ≤ j
		repeat while item i of l < pivot
			set i to i + 1
		end repeat
		repeat while item j of l > pivot
			set j to j - 1
		end repeat
		if i ≤ j then
			set held to item i of l
			set item i of l to item j of l
			set item j of l to held
			set i to i + 1
			set j to j - 1
		end if
	end repeat
	sortList(l, low, j)
	sortList(l, i, high)
end sortList
on run
	set l to {}
	set seed to 12345
	repeat 100000 times
		set seed to (seed * 421 + 1663) mod 7875
		set end of l to seed
	end repeat
	sortList(l, 1, 100000)
	return {item 1 of l, item 50000 of l, item 100000 of l}
end run
