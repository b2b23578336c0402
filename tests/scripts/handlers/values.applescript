property alpha : 7
on double(x)
	return x * 2
end double
on plus(x)
	return x + alpha
end plus
script holder
	property alpha : 100
	property g : double
	property h : plus
	on viaOther(x)
		return g(x)
	end viaOther
end script
log holder's g(4) --> 8
log holder's viaOther(6) --> 12
log holder's h(1) --> 8
on lifted(f)
	script
		property |λ| : f
	end script
end lifted
log lifted(plus)'s |λ|(1) --> 8
copy lifted(double) to twin
log twin's |λ|(5) --> 10
log class of double --> handler
log {double = double, double = plus} --> {true, false}
