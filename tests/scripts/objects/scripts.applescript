script Counter
	property n : 0
	on bump()
		set n to n + 1
		return n
	end bump
	on whoAmI()
		return my label()
	end whoAmI
	on label()
		return "parent"
	end label
end script
script Child
	property parent : Counter
	on bump()
		return 100 + (continue bump())
	end bump
	on label()
		return "child"
	end label
end script
tell Counter to bump()
log Counter's bump() --> 2
copy Counter to other
log other's bump() --> 3
log n of Counter --> 2
log Child's bump() --> 103
log n of Counter --> 3
log Child's whoAmI() --> "child"
set n of Counter to 50
log Counter's n --> 50
on makeCounter(start)
	script
		property current : start
		on step()
			set current to current + start
			return current
		end step
	end script
end makeCounter
set a to makeCounter(5)
set b to makeCounter(7)
a's step()
log {a's step(), b's step()} --> {15, 14}
on closure()
	set captured to 1
	script inner
		on raise()
			set captured to captured + 10
			return captured
		end raise
	end script
	inner's raise()
	inner's raise()
	return captured
end closure
log closure() --> 21
tell Counter
	set n to 1
	log its n --> 50
	log bump() --> 51
end tell
log class of Counter --> script
property shared : 3
script Nested
	on readShared()
		return shared
	end readShared
	script Deeper
		on readIt()
			return shared + 1
		end readIt
	end script
end script
log Nested's readShared() --> 3
log Nested's Deeper's readIt() --> 4
