log {"a" & "b", "a" & 1, "a" & 1.0, "a" & true, "a" & missing value, "a" & integer, "a" & Monday} --> {"ab", "a1", "a1.0", "atrue", "amissing value", "ainteger", "aMonday"}
log {1 & "a", true & "a", missing value & 1, Monday & 1, integer & real} --> {{1, "a"}, {true, "a"}, {missing value, 1}, {Monday, 1}, {integer, real}}
log {{1} & "a" & "b", "a" & ({1} & "b"), ("a" & 1) & 2, "a" & (1 & 2)} --> {{1, "a", "b"}, "a1b", "a12", "a12"}
log {{} & "a", {} & {}, {} & {{}}, {1} & {{2}}} --> {{"a"}, {}, {{}}, {1, {2}}}
log {(1 as text) & 2, 1 & (2 as text), "" & 1.5} --> {"12", {1, "2"}, "1.5"}
log ("a" & 1 + 2) & "b" --> "a3b"
log "x" & -1 & "y" --> "x-1y"
set s to ""
repeat with i from 1 to 5
	set s to s & i
end repeat
log {s, class of s} --> {"12345", text}
repeat with each in {"p", 7}
	set s to s & each
end repeat
log s --> "12345p7"
on tail()
	return "t"
end tail
log "a" & tail() & (tail() & 2) --> "att2"
log "n: " & (count {1, 2}) & "/" & length of "abc" --> "n: 2/3"
log {{a:1} & {b:2}, {a:1} & {a:2, c:3}, {a:1} & 2, 2 & {a:1}} --> {{a:1, b:2}, {a:1, c:3}, {1, 2}, {2, 1}}
log {a:1} & {} & {b:2} --> {a:1, b:2}
