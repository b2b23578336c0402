-- Every part of an error, given and not given
on parts(kind)
	try
		if kind = 1 then error "m" number 5 from {1} to integer partial result {2}
		if kind = 2 then error "only text"
		if kind = 3 then error number 501
		if kind = 4 then error "with number" number 6 + 1
		if kind = 5 then error 5
		if kind = 6 then error "n" number "8"
		if kind = 7 then error "a" & 1 & "b" number -7
	on error m number n from f to t partial result p
		return {m, n, f, t, p}
	end try
end parts
log parts(1) --> {"m", 5, {1}, integer, {2}}
log items 1 thru 2 of parts(2) --> {"only text", -2700}
log items 1 thru 2 of parts(3) --> {"An error of type 501 has occurred.", 501}
log items 1 thru 2 of parts(4) --> {"with number", 7}
log items 1 thru 2 of parts(5) --> {"5", -2700}
log items 1 thru 2 of parts(6) --> {"n", 8}
log items 1 thru 2 of parts(7) --> {"a1b", -7}
