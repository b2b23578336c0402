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
