-- Jotter
-- Keeps short notes in a text file. Other scripts and the terminal use its handlers:
--
--     osascript -e 'tell application "Jotter" to jot("Call Ann")'
--     osascript -e 'tell application "Jotter" to jottings("ann")'
--     osascript -e 'tell application "Jotter" to strike("Call Ann")'
--     osascript -e 'tell application "Jotter" to review()'

property notesFile : "Jottings.txt" -- in the home folder

on run
	set progress total steps to -1
	set progress description to "Taking notes"
	set progress additional description to notesPath()
	delay 1
end run

-- Shows the notes. Those that are chosen there are struck out.
on review()
	set notes to jottings("")
	if notes is {} then
		display dialog "There are no notes yet." buttons {"OK"} default button "OK"
		return
	end if
	set chosen to choose from list notes with prompt "Your notes. Which are done?" OK button name "Strike Out" cancel button name "Keep All" with multiple selections allowed and empty selection allowed
	if chosen is false then return
	repeat with aNote in chosen
		strike(contents of aNote)
	end repeat
end review

-- Takes a note, and answers how many there are.
on jot(aNote)
	set aNote to oneLine(aNote as text)
	if aNote is "" then error "There is nothing to jot down." number 501
	do shell script "printf '%s\\n' " & quoted form of aNote & " >> " & quoted form of notesPath()
	return count jottings("")
end jot

-- The notes in which some text occurs; all of them for "".
on jottings(wanted)
	set found to {}
	repeat with aNote in paragraphs of (do shell script "cat " & quoted form of notesPath() & " 2>/dev/null || true")
		if (contents of aNote) is not "" and (wanted is "" or aNote contains wanted) then set end of found to contents of aNote
	end repeat
	return found
end jottings

-- Takes a note away, and answers whether there was one. The file is written beside and renamed.
on strike(aNote)
	set kept to ""
	set isFound to false
	repeat with other in jottings("")
		if not isFound and (contents of other) is aNote then
			set isFound to true
		else
			set kept to kept & other & linefeed
		end if
	end repeat
	if isFound then do shell script "printf '%s' " & quoted form of kept & " > " & quoted form of (notesPath() & ".new") & " && mv " & quoted form of (notesPath() & ".new") & " " & quoted form of notesPath()
	return isFound
end strike

on notesPath()
	return (system attribute "HOME") & "/" & notesFile
end notesPath

on oneLine(theText)
	set theLines to paragraphs of theText
	set text item delimiters to " "
	set theText to theLines as text
	set text item delimiters to ""
	return theText
end oneLine

-- The notes are asked for by others at any time; there is nothing to do meanwhile.
on idle
	return 3600
end idle
