-- a comment to the end of the line
# another kind
(* a comment
over lines, with -- and # and "quotes (* and another within *) still outside the code
*)
log 1 (* within a line *) + 1 --> 2
log "(* text *) -- text # text" --> "(* text *) -- text # text"
set x to 5 # behind a statement
log x (* (* (* deep *) *) *) --> 5
log {1, ¬
	2, ¬
	3} --> {1, 2, 3}
set l to {"a", (* one *) "b", ¬
	"c"}
log count l --> 3
if x = 5 then ¬
	set x to 6
log x --> 6
set t to "long " & ¬
	"text " & ¬
	"over lines"
log t --> "long text over lines"
on f(a, ¬
	b)
	return a & b -- result
end f
log f("x", ¬
	"y") --> "xy"
(**)
(* * ** *)
--
#
log "#" & "--" & "¬" --> "#--¬"
log length of "a
b" --> 3
	log  {  1,2 ,3  }   --> {1, 2, 3}
log (1 + (2 * (3))) --> 7
