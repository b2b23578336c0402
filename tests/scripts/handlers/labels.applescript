on rock around clock
	return {"around", clock}
end rock
log (rock around 12) --> {"around", 12}
to find_ of x in l above a below b
	return {x, l, a, b}
end find_
log (find_ of 1 in 2 above 3 below 4) --> {1, 2, 3, 4}
log (find_ of 1 below 4 above 3 in 2) --> {1, 2, 3, 4}
on crossed of x at a by b from c into d onto e thru f
	return {x, a, b, c, d, e, f}
end crossed
log (crossed of 0 at 1 by 2 from 3 into 4 onto 5 thru 6) --> {0, 1, 2, 3, 4, 5, 6}
on placed of x about a against b apart from c aside from d beneath e
	return {x, a, b, c, d, e}
end placed
log (placed of 0 about 1 against 2 apart from 3 aside from 4 beneath 5) --> {0, 1, 2, 3, 4, 5}
on sided of x beside a between b for c instead of d on e
	return {x, a, b, c, d, e}
end sided
log (sided of 0 beside 1 between 2 for 3 instead of 4 on 5) --> {0, 1, 2, 3, 4, 5}
on over_ of x out of a over b since c under d
	return {x, a, b, c, d}
end over_
log (over_ of 0 out of 1 over 2 since 3 under 4) --> {0, 1, 2, 3, 4}
on given_ of x given a:p, b:q
	return {x, p, q}
end given_
log (given_ of 0 given a:1, b:2) --> {0, 1, 2}
log (given_ of 0 given b:2, a:1) --> {0, 1, 2}
log (given_ of 0 with a and b) --> {0, true, true}
log (given_ of 0 with a without b) --> {0, true, false}
log (given_ of 0 with b given a:5) --> {0, 5, true}
on flagged given loud:l
	return l
end flagged
log {(flagged with loud), (flagged without loud), (flagged given loud:"very")} --> {true, false, "very"}
try
	given_ of 0 given a:1
on error number n
	log n --> -1701
end try
try
	find_ of 1 in 2 above 3
on error number n
	log n --> -1701
end try

on lay:x beyond:y
	return {x, y}
end lay:beyond:
on single:x
	return x * 2
end single:
log (my lay:1 beyond:{2}) --> {1, {2}}
log (my single:4) --> 8
log (my single:(my single:1)) --> 4
log my lay_beyond_(3, 4) --> {3, 4}
script other
	on add:a onTop:b
		return a + b
	end add:onTop:
end script
log (other's add:1 onTop:2) --> 3
tell other to log (its add:3 onTop:4) --> 7
