set crlf to return & linefeed
log paragraphs of ("a" & return & "b" & linefeed & "c" & crlf & "d") --> {"a", "b", "c", "d"}
log {paragraphs of ("a" & linefeed), paragraphs of ("a" & crlf), paragraphs of (linefeed & "a")} --> {{"a", ""}, {"a", ""}, {"", "a"}}
log paragraphs of ("a" & linefeed & linefeed & "b") --> {"a", "", "b"}
log paragraphs of ("a" & linefeed & return & "b") --> {"a", "", "b"}
log paragraphs of ("a" & crlf & crlf & "b") --> {"a", "", "b"}
log count paragraphs of ("a" & (character id 8233) & "b") --> 1
log {count paragraphs of "abc", paragraph 1 of linefeed, paragraph -1 of linefeed} --> {1, "", ""}
set t to "one a" & linefeed & "two b" & return & "three c"
log {paragraph 2 of t, last paragraph of t, first paragraph of t, middle paragraph of t} --> {"two b", "three c", "one a", "two b"}
log {paragraphs 2 thru 3 of t, paragraphs -2 thru -1 of t} --> {{"two b", "three c"}, {"two b", "three c"}}
log text from paragraph 1 to paragraph 2 of t = "one a" & linefeed & "two b" --> true
log text from paragraph 2 to paragraph 3 of t = "two b" & return & "three c" --> true
log {word 1 of paragraph 2 of t, words of paragraph 3 of t, character 1 of last paragraph of t} --> {"two", {"three", "c"}, "t"}
log {count t's paragraphs, number of paragraphs of t} --> {3, 3}
repeat with p in paragraphs of t
	set final to p as text
end repeat
log final --> "three c"
try
	paragraph 4 of t
on error number n
	log n --> -1728
end try
