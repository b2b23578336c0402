property alpha : 7
on double(x)
	return x * 2
end double
on made()
	script tw
		on f(x)
			return double(x) + alpha
		end f
		script inner
			on g(y)
				return double(y) + f(1)
			end g
		end script
	end script
	return tw
end made
log made()'s f(3) --> 13
log made()'s inner's g(4) --> 17
copy made() to twin
set alpha to 8
log twin's f(3) --> 14
script orphan
	property parent : AppleScript
	on g()
		return double(1)
	end g
end script
try
	orphan's g()
on error number n
	log n --> -1708
end try
script quiet
end script
run quiet -- does not run the script around it again
log parent of quiet --> «script»
on later()
	script one
		on h()
			script two
				property p : 1
				on k()
					set p to p + alpha
					return p
				end k
			end script
			two's k()
			return two's k()
		end h
	end script
	return one's h()
end later
log later() --> 17
