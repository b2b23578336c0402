script inner
	property k : 3
	on f(x)
		return x + k
	end f
end script
script lib
	property held : inner
end script
property other : lib
log my f(1) of held of other  --> 4
log my other's held's k --> 3
on g()
	my f(2) of held of other
end g
on h(loc)
	my f(3) of held of loc
end h
log g() --> 5
log h(other) --> 6
