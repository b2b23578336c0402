set AppleScript's text item delimiters to ","
log text items of "a,b,,c" --> {"a", "b", "", "c"}
log text item 2 of "a,b" --> "b"
set parts to {"x", 1, true}
log parts as text --> "x,1,true"
set AppleScript's text item delimiters to {" and ", ";"}
log text items of "a and b;c AND d" --> {"a", "b", "c", "d"}
log {1, 2} as text --> "1 and 2"
considering case
	log text items of "a AND b" --> {"a AND b"}
end considering
set AppleScript's text item delimiters to ""
log text items of "ab" --> {"a", "b"}
log {1, 2} as text --> "12"
set AppleScript's text item delimiters to ","
log text items of "" --> {}
repeat with d in {"/"}
	set AppleScript's text item delimiters to d
	log text items of "a/b" --> {"a", "b"}
end repeat
set AppleScript's text item delimiters to 1
log text items of "a1b" --> {"a", "b"}
set AppleScript's text item delimiters to ""
