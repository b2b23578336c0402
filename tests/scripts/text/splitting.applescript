-- Text items: one delimiter, several, nested in each other, none; what they join with
log {AppleScript's text item delimiters, text items of "abc"} --> {{""}, {"a", "b", "c"}}
set AppleScript's text item delimiters to ","
log {text items of "a,,b,", text items of ",", text items of "abc"} --> {{"a", "", "b", ""}, {"", ""}, {"abc"}}
log {text item 2 of "a,b,c", text item -1 of "a,b,c", first text item of "a,b", last text item of "a,b", middle text item of "a,b,c"} --> {"b", "c", "a", "b", "b"}
log {text items 2 thru 3 of "a,b,c", text 1 thru text item 2 of "a,b,c", text from text item 2 to text item 3 of "a,b,c", text from text item 2 to -1 of "a,b,c"} --> {{"b", "c"}, "a,b", "b,c", "b,c"}
log {count text items of "a,b,c", number of text items of "a"} --> {3, 1}
log {{1, 2} as text, {{1, 2}, {3}} as text, {} as text, {"x"} as text, "x" & {1, 2}, {1, 2.5, true, missing value} as text} --> {"1,2", "1,2,3", "", "x", "x1,2", "1,2.5,true,missing value"}
try
	text item 9 of "a,b"
on error m
	log m --> "Can’t get text item 9 of \"a,b\"."
end try
set AppleScript's text item delimiters to {", ", ","}
log {text items of "a, b,c", {1, 2, 3} as text} --> {{"a", "b", "c"}, "1, 2, 3"}
set AppleScript's text item delimiters to {"ab", "a"}
log text items of "xabya" --> {"x", "y", ""}
set AppleScript's text item delimiters to {return & linefeed, return, linefeed}
log text items of ("a" & return & linefeed & "b" & linefeed & "c" & return & "d") --> {"a", "b", "c", "d"}
set AppleScript's text item delimiters to "and"
log {text items of "thisANDthat", text items of "andand"} --> {{"this", "that"}, {"", "", ""}}
set AppleScript's text item delimiters to "aa"
log text items of "aaaaa" --> {"", "", "a"}
set AppleScript's text item delimiters to {}
log text items of "ab" --> {"a", "b"}
set {kept, AppleScript's text item delimiters} to {AppleScript's text item delimiters, "-"}
set joined to {1, 2} as text
set AppleScript's text item delimiters to kept
log {joined, kept} --> {"1-2", {}}
tell AppleScript to set text item delimiters to "; "
log {"a", "b"} as text --> "a; b"
set text item delimiters to ":"
log {text item 1 of "a:b", text item delimiters of AppleScript} --> {"a", ":"}
on replaced(s, from_, into_)
	set AppleScript's text item delimiters to from_
	set parts to text items of s
	set AppleScript's text item delimiters to into_
	set s to parts as text
	set AppleScript's text item delimiters to ""
	return s
end replaced
log {replaced("a.b.c", ".", "::"), replaced("banana", "an", ""), replaced("x", "y", "z"), replaced("", "y", "z")} --> {"a::b::c", "ba", "x", ""}
