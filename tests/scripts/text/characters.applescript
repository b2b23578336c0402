set s to "abcdef"
log {character 1 of s, character -1 of s, 3rd character of s, last character of s, tenth character of "0123456789"} --> {"a", "f", "c", "f", "9"}
log {middle character of "abc", middle character of "abcd", middle character of "a"} --> {"b", "b", "a"}
log {characters 2 thru 3 of s, characters 5 thru -1 of s, characters -2 thru -1 of s, characters of ""} --> {{"b", "c"}, {"e", "f"}, {"e", "f"}, {}}
log {text 2 thru 3 of s, text 2 thru -2 of s, text -2 thru -1 of s, text 3 thru 3 of s, text 3 thru 2 of s} --> {"bc", "bcde", "ef", "c", "bc"}
log {text beginning thru 2 of s, text 5 thru end of s, text from beginning to character 2 of s, text from character 5 to end of s} --> {"ab", "ef", "ab", "ef"}
log {item 2 of s, items of "ab", items 1 thru 2 of s, first item of s} --> {"b", {"a", "b"}, {"a", "b"}, "a"}
log {every character of "ab", characters of "ab" as text, (reverse of characters of "abc") as text} --> {{"a", "b"}, "ab", "cba"}
log {count "hello", count characters of "hello", number of characters of "hello", "hello"'s length, length of ""} --> {5, 5, 5, 5, 0}
log {character 2 of text 2 thru 4 of s, text 1 thru 2 of text 2 thru 4 of s} --> {"c", "bc"}
log text of s --> "abcdef"
log some character of "zzz" --> "z"

-- A cluster of marks, joiners, flags and skin tones is one character
log {length of ("e" & character id 769), length of "👨‍👩‍👧", length of "🇫🇷🇩🇪", length of "😀"} --> {1, 1, 2, 1}
log {characters of "a👍🏽b", text 2 thru 3 of "a😀b"} --> {{"a", "👍🏽", "b"}, "😀b"}
log {id of "A", id of "AB", id of "😀", id of ("e" & character id 769)} --> {65, {65, 66}, 128512, {101, 769}}
log {character id 65, character id {72, 105}, string id {72, 105}, character id 128512} --> {"A", "Hi", "Hi", "😀"}
log {id of return, id of linefeed, id of tab, id of space, id of quote} --> {13, 10, 9, 32, 34}

on failing(from_, to_)
	try
		return text from_ thru to_ of "abc"
	on error m number n
		return {n, m}
	end try
end failing
log failing(1, 10) --> {-1728, "Can’t get text 1 thru 10 of \"abc\"."}
log failing(-4, -1) --> {-1728, "Can’t get text -4 thru -1 of \"abc\"."}
try
	character 0 of "abc"
on error m number n
	log {n, m} --> {-1728, "Can’t get character 0 of \"abc\"."}
end try
try
	text 2 thru -1 of "a"
on error number n
	log n --> -1728
end try
try
	set character 1 of s to "x"
on error number n
	log {n, s} --> {-10006, "abcdef"}
end try
