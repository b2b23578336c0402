-- A character is found as a whole or not at all, and what is ignored separates nothing.
set AppleScript's text item delimiters to "a"
ignoring expansion
	log text items of "æxay" --> {"æx", "y"}
end ignoring
set AppleScript's text item delimiters to "-"
ignoring hyphens
	log text items of "a-b" --> {"a-b"}
end ignoring
set AppleScript's text item delimiters to {"é", "éé", "x"}
log text items of "aÉÉbxcÉ" --> {"a", "b", "c", ""}
log "crème brûlée" starts with "CRÈ" --> true
log "crème brûlée" ends with "ÉE" --> true
log "crème" starts with "crème brûlée" --> false
log "crème" ends with "la crème" --> false

-- Texts that are alike nearly everywhere.
set long to "a"
repeat 20 times
	set long to long & long
end repeat
log long contains (text 1 thru 300000 of long) & "b" --> false
log long & "b" contains (text 1 thru 300000 of long) & "b" --> true

set halves to "s"
set double to "ß"
repeat 17 times
	set halves to halves & halves
	set double to double & double
end repeat
ignoring expansion
	log double contains (text 2 thru -1 of halves) --> false
	log double contains halves --> true
	log {"Straß" ends with "s", "ßa" starts with "s", "Straß" ends with "ss", "ßa" starts with "SS"} --> {false, false, true, true}
end ignoring

-- Elements are found wherever they stand, in a loop in a moment, and anew when the delimiters change.
set whole to "one, “two” 👍🏽 three" & return & linefeed
repeat 12 times
	set whole to whole & whole
end repeat
set {letters, found} to {0, 0}
repeat with i from 1 to count of characters of whole
	if character i of whole is "👍🏽" then set letters to letters + 1
end repeat
repeat with i from 1 to count of words of whole
	if word i of whole is "two" then set found to found + 1
end repeat
log {letters, found, count of characters of whole} --> {4096, 4096, 77824}
log {word 100 of whole, word -100 of whole, character 50 of whole, character -50 of whole} --> {"one", "three", "👍🏽", "w"}
log {count of paragraphs of whole, paragraph 40 of whole, paragraph -40 of whole, paragraph -1 of whole} --> {4097, "one, “two” 👍🏽 three", "one, “two” 👍🏽 three", ""}
set AppleScript's text item delimiters to ", "
set piece to text item 30 of whole
set AppleScript's text item delimiters to "👍🏽"
set eol to return & linefeed
log piece = "“two” 👍🏽 three" & eol & "one" --> true
log text item 30 of whole = " three" & eol & "one, “two” " --> true
log count of (("a" & return) & (linefeed & "b")) --> 3

-- Ranges are found wherever they stand, in a loop in a moment.
set whole to "one, “two” 👍🏽 three" & return
repeat 13 times
	set whole to whole & whole
end repeat
set {found, others} to {0, {}}
repeat with i from 1 to 6
	set end of others to "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 " & i
end repeat
repeat with i from 1 to 24575
	if words i thru (i + 1) of whole is {"two", "three"} then set found to found + 1
	if word 20 of item (i mod 6 + 1) of others is "1" then set found to found + 1
end repeat
log found --> 12287
log characters 17 thru 18 of whole --> {"e", "e"}
log characters -7 thru -6 of whole --> {" ", "t"}
log paragraphs -2 thru -1 of whole --> {"one, “two” 👍🏽 three", ""}
log words of (text from word 2 to word 4 of whole) --> {"two", "three", "one"}
try
	get integers 1 thru 2 of whole
on error number n
	log n --> -1728
end try

-- What is equal to a letter is found as that letter; control characters are not nothing.
set kelvin to character id 8490
log {kelvin = "k", "20 " & kelvin contains "K", kelvin starts with "k", "k" contains kelvin} --> {true, true, true, true}
set AppleScript's text item delimiters to "s"
log text items of ("a" & (character id 383) & "b") --> {"a", "b"}
set bell to "a" & (character id 7)
log {bell = "a", bell < "a", bell > "a", bell ≥ "a", bell ≤ "a"} --> {false, false, true, true, false}
