on build(n)
	set l to {}
	repeat with i from 1 to n
		set end of l to i
	end repeat
	set total to 0
	repeat 10 times
		repeat with i from 1 to n
			set total to total + (item i of l)
		end repeat
	end repeat
	return total
end build
return build(200000)
