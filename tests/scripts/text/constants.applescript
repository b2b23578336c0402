log {id of return, id of linefeed, id of tab, id of space, id of quote} = {13, 10, 9, 32, 34} --> true
log {"\r" = return, "\n" = linefeed, "\t" = tab, "\"" = quote, " " = space, "\\" = character id 92} --> {true, true, true, true, true, true}
log {return = linefeed, tab = space, return & linefeed = linefeed & return} --> {false, false, false}
log {class of return, class of tab, class of quote, class of pi} --> {text, text, text, real}
log {length of (tab & tab), quote & "a" & quote, "a" & space & "b"} --> {2, "\"a\"", "a b"}
log {AppleScript's quote, quote of AppleScript, length of AppleScript's return} --> {"\"", "\"", 1}
log pi --> 3.14159265359
log {pi > 3.1415926535, pi < 3.1415926536, round_(pi)} --> {true, true, 3}
on round_(x)
	return x as integer
end round_
log "two
lines" = "two" & linefeed & "lines" --> true
log "a\\b\"c" --> "a\\b\"c"
log {"", "a" & "" & "b", "" & 1} --> {"", "ab", "1"}
log {quoted form of "it's", quoted form of "", quoted form of "a b", quoted form of "$x"} --> {"'it'\\''s'", "''", "'a b'", "'$x'"}
log {missing value, class of missing value} --> {missing value, class}
log {string, Unicode text, text, string = text, Unicode text = text} --> {string, Unicode text, text, true, true}
log {class of "a", class of "a" is string, class of "a" is Unicode text, "a" is text} --> {text, true, true, false}
