-- Folder Report
-- Asks for a folder and for what is to be told of it, and writes a report: which files are the largest, which have not been changed for the
-- longest time, which kinds there are, and which have the same contents.

property chapters : {"Largest files", "Oldest files", "Kinds of files", "Files that are there twice"}
property longest : 1000 -- lines in a chapter

on run
	set theFolder to choose folder with prompt "Report"
	set chosen to choose from list chapters with prompt "What shall the report tell?" default items {item 1 of chapters} OK button name "Continue" with multiple selections allowed
	if chosen is false then return
	set lineCount to askedNumber()
	set theReport to reportOn(POSIX path of theFolder, chosen, lineCount)
	set theFile to choose file name with prompt "Save the report as:" default name "Folder Report.txt" default location theFolder
	store(theReport, theFile)
	set answer to display dialog "The report is saved." buttons {"Show", "Done"} default button "Done" with icon note
	if button returned of answer is "Show" then do shell script "setsid -f xdg-open " & quoted form of POSIX path of theFile & " > /dev/null 2>&1"
end run

-- Asks again until the answer is a number that makes sense.
on askedNumber()
	set question to "How many lines shall each chapter have?"
	set suggested to "10"
	repeat
		set suggested to text returned of (display dialog question default answer suggested)
		try
			set theNumber to suggested as integer
			if theNumber > 0 and theNumber ≤ longest then return theNumber
		on error number n
			if n is -128 then error number -128
		end try
		set question to "How many lines? A number from 1 to " & longest & ", please."
	end repeat
end askedNumber

on reportOn(folderPath, chosen, lineCount)
	set progress total steps to count chosen
	set progress description to "Looking through " & folderPath
	set theReport to "Report on " & folderPath & linefeed & ((current date) as text) & linefeed
	repeat with aChapter in chosen
		set progress additional description to contents of aChapter
		set found to do shell script "cd " & quoted form of folderPath & " && " & commandFor(contents of aChapter) & " | head -n " & lineCount
		if found is "" then set found to "None"
		set theReport to theReport & linefeed & aChapter & linefeed & linefeed & found & linefeed
		set progress completed steps to progress completed steps + 1
	end repeat
	return theReport
end reportOn

-- Hidden files and folders are left out.
on commandFor(aChapter)
	set listing to "find . -name '.?*' -prune -o -type f "
	if aChapter is item 1 of chapters then return listing & "-printf '%12s  %P\\n' | sort -rn"
	if aChapter is item 2 of chapters then return listing & "-printf '%TY-%Tm-%Td  %P\\n' | sort"
	if aChapter is item 3 of chapters then return listing & "-printf '%f\\n' | sed 's/.*\\.//' | tr '[:upper:]' '[:lower:]' | sort | uniq -c | sort -rn"
	return listing & "-size +0 -exec md5sum {} + | sort | uniq -w 32 -D | cut -c 35-"
end commandFor

on store(theText, theFile)
	set target to open for access theFile with write permission
	try
		set eof target to 0
		write theText to target as «class utf8»
		close access target
	on error message number n
		close access target
		error message number n
	end try
end store
