on sieve(n)
	set flags to {}
	repeat n times
		set end of flags to true
	end repeat
	set found to 0
	repeat with i from 2 to n
		if item i of flags then
			set found to found + 1
			repeat with j from i * i to n by i
				set item j of flags to false
			end repeat
		end if
	end repeat
	return found
end sieve
return sieve(2000000)
