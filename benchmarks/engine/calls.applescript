on same(x)
	return x
end same
on callMany(n)
	set total to 0
	repeat n times
		set total to total + same(1)
	end repeat
	return total
end callMany
return callMany(2000000)
