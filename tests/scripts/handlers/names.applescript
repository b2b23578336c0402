on pad(s, length)
	return s & length
end pad
log pad("a", 3) --> "a3"
on setkv(key, value)
	set key to key + 1
	return {key, value, length of "abc"}
end setkv
log setkv(1, 2) --> {2, 2, 3}
on greet(name as text)
	return "hi " & name
end greet
log greet("Bo") --> "hi Bo"
on nth(l, index, reverse)
	return {item index of l, item reverse of l, reverse of l}
end nth
log nth({4, 5}, 1, 2) --> {4, 5, {5, 4}}
on any(f, xs)
	return xs
end any
log any(1, {2}) --> {2}
on note(t)
	return t
end note
log note("x") & (my note("y")) --> "xy"
on years()
	set t to 0
	repeat with year from 2008 to 2010
		set t to t + year
	end repeat
	repeat with day in {1, 2}
		set t to t + day
	end repeat
	return {t, year of date "Jan 1, 2001"}
end years
log years() --> {6030, 2001}
on closed(class)
	script
		on get_it()
			return class
		end get_it
	end script
	return result's get_it()
end closed
log closed(5) --> 5
log class of 5 --> integer
on pair([a, b], c)
	return a + b + c
end pair
log pair([1, 2], 3) --> 6
set [w, m] to [weekday, month] of date "Jan 1, 2008"
log {w, m} --> {Tuesday, January}
