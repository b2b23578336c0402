-- Letters before letters, whatever their case; marks decide where the letters are alike
log {"a" < "B", "B" < "c", "Z" < "a", "ab" < "abc", "" < "a"} --> {true, true, false, true, true}
log {"a" < "A", "a" > "A", "a" ≤ "A", "a" ≥ "A"} --> {false, false, true, true}
log {"e" < "é", "é" < "f", "z" < "é", "resume" < "résumé", "résumé" < "resumes"} --> {true, true, false, true, true}
log {"1" < "a", " " < "a", "_" < "a"} --> {true, true, true}
log {"abc" comes before "abd", "b" comes after "a", "a" comes before "A", "a" does not come after "A"} --> {true, true, false, true}
set l to {"pear", "Apple", "fig", "Fig"}
repeat with i from 1 to 3
	repeat with j from i + 1 to 4
		if item j of l < item i of l then set {item i of l, item j of l} to {item j of l, item i of l}
	end repeat
end repeat
log item 1 of l & item 4 of l --> "Applepear"
-- The same character, written in two ways
log "é" = "e" & character id 769 --> true
log {"5" < 10, 5 < "10", "abc" < 5} --> {false, true, false}
try
	5 < "abc"
on error m number n
	log {n, m} --> {-1700, "Can’t make \"abc\" into type number."}
end try
try
	{1, 2} < {1, 3}
on error number n
	log n --> -1700
end try
try
	missing value > 1
on error number n
	log n --> -1700
end try
