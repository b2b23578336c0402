on update(n)
	set r to {alpha:0, beta:1, gamma:2}
	repeat n times
		set gamma of r to (gamma of r) + 1
	end repeat
	return gamma of r
end update
return update(2000000)
