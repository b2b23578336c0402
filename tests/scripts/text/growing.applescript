-- Texts that grow share their room with what they were before
set s to "the text in the middle"
set parts to {s}
repeat with i from 1 to 4
	set s to "<" & s
	set end of parts to s
	set s to s & ">"
	set end of parts to s
end repeat
log s --> "<<<<the text in the middle>>>>"
log {item 1 of parts, item 2 of parts, item 3 of parts, item 6 of parts} --> {"the text in the middle", "<the text in the middle", "<the text in the middle>", "<<<the text in the middle>>"}

-- Two that grow from one text do not write into each other's room
set s to "x" & "the text in the middle"
set a to "a" & s
set b to "b" & s
set c to s & "c"
set d to s & "d"
log {a, b, c, d, s} --> {"axthe text in the middle", "bxthe text in the middle", "xthe text in the middlec", "xthe text in the middled", "xthe text in the middle"}

-- A piece of a text grows by itself
set p to text 2 thru 4 of s
log {"1" & p, p & "2", p & p, s & s, s} --> {"1the", "the2", "thethe", "xthe text in the middlexthe text in the middle", "xthe text in the middle"}

-- A text in front of which it has grown may be the very text itself
set s to "0123456789abcdefg"
repeat 3 times
	set s to s & s
	set s to (text 1 thru 2 of s) & s
end repeat
log {length of s, text 1 thru 8 of s, text -8 thru -1 of s} --> {150, "01010101", "9abcdefg"}

-- A line end joined from two parts is one character
set s to return & "0123456789abcdefg"
log {length of s, length of ("x" & linefeed & s), length of (linefeed & s), length of (return & linefeed & s), length of (return & (linefeed & "0123456789abcdefg"))} --> {18, 20, 19, 19, 18}
