on fib(n)
	if n < 2 then return n
	return fib(n - 1) + fib(n - 2)
end fib
on depth(n)
	if n = 0 then return 0
	return 1 + depth(n - 1)
end depth
on endless(n)
	return endless(n + 1)
end endless
log fib(20) --> 6765
log depth(9000) --> 9000
try
	endless(1)
on error number n
	log n --> -2706
end try
