on countUp(limit)
	set i to 0
	repeat while i < limit
		set i to i + 1
	end repeat
	return i
end countUp
return countUp(10000000)
