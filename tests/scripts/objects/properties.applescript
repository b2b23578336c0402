property top : 1
property derived : top + 1
script Base
	property n : 10
	property l : {}
	property viaTop : top
	on bump()
		set n to n + 1
		return n
	end bump
	on bumpMine()
		set my n to (my n) + 100
		return my n
	end bumpMine
end script
log {n of Base, Base's n, derived, viaTop of Base} --> {10, 10, 2, 1}
Base's bump()
log Base's n --> 11
log Base's bumpMine() --> 111
set n of Base to 0
set Base's l to {1}
set end of Base's l to 2
log {Base's bump(), l of Base} --> {1, {1, 2}}

-- One script shared, one copied
set same to Base
copy Base to other
set same's n to 50
log {Base's n, other's n} --> {50, 1}
set end of l of other to 3
log {l of Base, l of other, count other's l} --> {{1, 2}, {1, 2, 3}, 3}
log {same = Base, other = Base} --> {true, false}
log {class of Base, name of Base, Base} --> {script, "Base", «script Base»}

-- Each call makes a script of its own
on counter(start)
	script Counting
		property n : start
		on next_()
			set n to n + 1
		end next_
	end script
	return Counting
end counter
set {a, b} to {counter(0), counter(10)}
a's next_()
a's next_()
b's next_()
log {n of a, n of b, a = b} --> {2, 11, false}
log a's next_() --> 3
tell a
	set its n to 100
	log n of it --> 100
	log next_() --> 101
end tell
log {{a, b}'s length, n of item 2 of {a, b}, {me, a} contains a} --> {2, 11, true}
set held to {inner:a}
set n of inner of held to 7
log n of a --> 7
on changing()
	set top to top + 1
	return top
end changing
log {changing(), top, my top, derived} --> {2, 2, 2, 2}
set my top to 9
log {top, top of me} --> {9, 9}
