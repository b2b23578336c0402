-- Folder Watch
-- Stays open and tells of files that come into a folder, and of those that leave it. A file that is still growing is told of when it is whole.

property secondsBetween : 3
property namesTold : 3 -- of more files at once only the number is told

property watched : "" -- the path of the folder
property known : {} -- the files that have been told of
property growing : {} -- lines of name and size of files that were not there before

on run
	set watched to POSIX path of (choose folder with prompt "Watch")
	set known to namesIn(linesNow())
	set growing to {}
	showState()
end run

on idle
	if watched is not "" then look()
	return secondsBetween
end idle

on look()
	set nowThere to linesNow()
	set {arrived, stillGrowing, nowKnown} to {{}, {}, {}}
	repeat with aLine in nowThere
		set theName to nameIn(aLine)
		if theName is in known then
			set end of nowKnown to theName
		else if (contents of aLine) is in growing then
			set end of arrived to theName
			set end of nowKnown to theName
		else
			set end of stillGrowing to contents of aLine
		end if
	end repeat
	set departed to {}
	repeat with aName in known
		if (contents of aName) is not in nowKnown then set end of departed to contents of aName
	end repeat
	set {known, growing} to {nowKnown, stillGrowing}
	announce(arrived, "New in ")
	announce(departed, "Gone from ")
	if arrived is not {} or departed is not {} then showState()
end look

on announce(theNames, place)
	if theNames is {} then return
	if (count theNames) > namesTold then
		set message to counted(count theNames)
	else
		set message to joined(theNames, ", ")
	end if
	display notification message with title place & folderName()
end announce

on showState()
	set progress total steps to -1
	set progress description to "Watching “" & folderName() & "”"
	set progress additional description to counted(count known) & " there"
	delay 0.5
end showState

-- A line for each file: its name, a slash, its size. Hidden files and what lies in folders are left out.
on linesNow()
	try
		return paragraphs of (do shell script "cd " & quoted form of watched & " && find . -maxdepth 1 -type f ! -name '.*' -printf '%f/%s\\n' | sort")
	on error number n
		if n is -128 then error number -128
		set gone to watched
		set watched to ""
		error "The folder " & gone & " cannot be read any more." number 501
	end try
end linesNow

on namesIn(theLines)
	set theNames to {}
	repeat with aLine in theLines
		set end of theNames to nameIn(aLine)
	end repeat
	return theNames
end namesIn

on nameIn(aLine)
	return text 1 thru ((offset of "/" in aLine) - 1) of aLine
end nameIn

on counted(n)
	if n is 1 then return "1 file"
	return (n as text) & " files"
end counted

on folderName()
	set text item delimiters to "/"
	set theName to text item -2 of watched
	set text item delimiters to ""
	return theName
end folderName

on joined(theList, separator)
	set text item delimiters to separator
	set theText to theList as text
	set text item delimiters to ""
	return theText
end joined
