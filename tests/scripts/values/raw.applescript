-- Codes in chevrons are the words that have them
log {«class long», «class ctxt», «class list», «class bool», «class doub», «class reco», «class scpt»} --> {integer, text, list, boolean, real, record, script}
log {«class long» = integer, «class ctxt» is text, 5 as «class doub», "7" as «class long», class of 5 = «class long»} --> {true, true, 5.0, 7, true}
log {«class abcd», class of «class abcd», «class abcd» = «class abcd», «class abcd» = «class abce»} --> {«class abcd», class, true, false}
log {«constant ****yes », «constant misccura», «constant ****abcd»} --> {yes, current application, «constant ****abcd»}
log {«property leng» of "abc", «property pcls» of 5, «class leng» of {1, 2}} --> {3, integer, 2}
log {«class cwor» 2 of "a b", every «class cha » of "ab", count every «class cobj» of {1, 2}} --> {"b", {"a", "b"}, 2}
set r to {«class abcd»:1, «property efgh»:2}
log {r, «class abcd» of r} --> {{«class abcd»:1, «class efgh»:2}, 1}
set «class abcd» of r to 5
log «class abcd» of r --> 5
log {«data abcd0102», class of «data abcd0102», «data abcd0A0b»} --> {«data abcd0102», «class abcd», «data abcd0A0B»}
log {«data abcd01» = «data abcd01», «data abcd01» = «data abcd02», «data abcd01» = «data abce01»} --> {true, false, false}
log {«data utxt00410042» as text, «data utf8C3A9» as text, «data TEXT4142» as text, «data utxtD83DDE00» as text} --> {"AB", "é", "AB", "😀"}
on «event abcdefgh» x given «class prm1»:p
	return {x, p}
end «event abcdefgh»
log («event abcdefgh» 1 given «class prm1»:2) --> {1, 2}
on «event abcdijkl»
	return "called"
end «event abcdijkl»
log («event abcdijkl») --> "called"
try
	«event zzzzzzzz» 1
on error number n
	log n --> -1708
end try
try
	«class abcd» of 5
on error m number n
	log {n, m} --> {-1728, "Can’t get «class abcd» of 5."}
end try
