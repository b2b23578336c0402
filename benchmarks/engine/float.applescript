on sumUp(limit)
	set x to 0.0
	repeat with i from 1 to limit
		set x to x + 1.5 / (i + 0.5)
	end repeat
	return x
end sumUp
return sumUp(5000000)
