log words of "Hello, world! (a) [b] {c}" --> {"Hello", "world", "a", "b", "c"}
log words of "It's me, don’t stop" --> {"It's", "me", "don’t", "stop"}
log words of "3.14 and 42" --> {"3.14", "and", "42"}
log words of "foo-bar a/b" --> {"foo", "bar", "a", "b"}
log words of "naïve Привет, γειά" --> {"naïve", "Привет", "γειά"}
log {words of "", words of "   ", words of ("," & return & "!")} --> {{}, {}, {}}
set s to "one two three four"
log {first word of s, 2nd word of s, third word of s, word -1 of s, last word of s, word -4 of s} --> {"one", "two", "three", "four", "four", "one"}
log middle word of "one two three" --> "two"
log some word of "only" --> "only"
log {words 2 thru -2 of s, words -2 thru -1 of s, words 3 thru 2 of s} --> {{"two", "three"}, {"three", "four"}, {"two", "three"}}
log {text from word 2 to word 3 of s, text (word 2) thru (word 3) of s, text (word 3) thru -1 of s} --> {"two three", "two three", "three four"}
log text from word 2 to word 2 of "one  two,  three" --> "two"
log {character 1 of word 2 of s, characters 1 thru 2 of word 3 of s, last character of last word of s} --> {"t", {"t", "h"}, "r"}
log {count words of s, number of words of s, count of words of s, count every word of s, length of words of s} --> {4, 4, 4, 4, 4}
log {class of words of s, class of every word of s, rest of words of s, 1} --> {list, list, {"two", "three", "four"}, 1}
log {words 1 thru 2 of s as text, (words of s)'s first item, item 2 of words of s} --> {"onetwo", "one", "two"}
log reverse of words of s --> {"four", "three", "two", "one"}
set refused to {}
repeat with n in {5, -5, 0}
	try
		word n of s
	on error number e
		set end of refused to e
	end try
end repeat
log refused --> {-1728, -1728, -1728}
try
	word 9 of "a b"
on error m
	log m --> "Can’t get word 9 of \"a b\"."
end try
