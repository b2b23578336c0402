set s to "The quick brown fox"
log word 2 of s --> "quick"
log last word of s --> "fox"
log words 2 thru 3 of s --> {"quick", "brown"}
log text 5 thru 9 of s --> "quick"
log text 1 thru word 2 of s --> "The quick"
log characters 1 thru 3 of s --> {"T", "h", "e"}
log character -1 of s --> "x"
log count words of s --> 4
log count s --> 19
log length of "" --> 0
log every paragraph of ("a" & return & "b" & linefeed & "c") --> {"a", "b", "c"}
log paragraphs of ("a" & linefeed) --> {"a", ""}
log length of every word of "a bcd" --> 2
log character 1 of every word of "a bcd" --> {"a", "b"}
log reverse of characters of "abc" --> {"c", "b", "a"}
log id of "Aé" --> {65, 233}
log character id {72, 105} --> "Hi"
log quoted form of "it's" --> "'it'\\''s'"
try
	word 9 of s
on error number n
	log n --> -1728
end try
log item 2 of (words of "ab cd") --> "cd"
log (text items of "abc")'s item 2 --> "b"
log first item of every word of "x y" --> "x"
log items 2 thru 3 of words of "a b c" --> {"b", "c"}
log string 2 thru 3 of "abcd" --> "bc"
try
	characters 2 thru 9 of "abc"
on error m
	log m --> "Can’t get characters 2 thru 9 of \"abc\"."
end try
log characters of every word of "ab cd" --> {{"a", "b"}, {"c", "d"}}
log words of paragraphs 1 thru 2 of ("a b" & linefeed & "c" & linefeed & "d") --> {{"a", "b"}, {"c"}}
