-- Rename Files
-- Find files by some letters of their names, or drop them: they get one name with a number each, after you have seen what they would be called.

property appletsearchname : "Find the files by some letters of their names, select them and press Return."
property appletdropname : "Drop the files here that are to be renamed."

on open theFiles
	set answer to display dialog "What shall the " & countedFiles(count theFiles) & " be called? A number and the ending of the file come behind." default answer "Holiday" buttons {"Cancel", "Show"} default button "Show" cancel button "Cancel"
	set baseName to text returned of answer
	if baseName is "" or baseName contains "/" then error "“" & baseName & "” cannot be the name of a file." number 501
	set {oldPaths, newPaths, plans} to planned(theFiles, baseName)
	set chosen to choose from list plans with prompt "These files are renamed. Take away those that are not to be." default items plans OK button name "Rename" with multiple selections allowed
	if chosen is false then return
	renameAll(oldPaths, newPaths, plans, chosen)
end open

on countedFiles(n)
	if n is 1 then return "file"
	return (n as text) & " files"
end countedFiles

-- The path of each file, the path that it gets, and a line that says so.
on planned(theFiles, baseName)
	set oldPaths to {}
	set newPaths to {}
	set plans to {}
	repeat with i from 1 to count theFiles
		set oldPath to POSIX path of item i of theFiles
		set newName to baseName & " " & i & extensionOf(oldPath)
		set end of oldPaths to oldPath
		set end of newPaths to folderOf(oldPath) & newName
		set end of plans to nameOf(oldPath) & " → " & newName
	end repeat
	return {oldPaths, newPaths, plans}
end planned

on renameAll(oldPaths, newPaths, plans, chosen)
	set progress total steps to count chosen
	set progress description to "Renaming…"
	set skipped to {}
	repeat with i from 1 to count plans
		if item i of plans is in chosen then
			set progress additional description to item i of plans
			try
				-- Nothing is overwritten, whatever has appeared in the meantime.
				do shell script "test ! -e " & quoted form of item i of newPaths & " && mv -n " & quoted form of item i of oldPaths & " " & quoted form of item i of newPaths
				set progress completed steps to progress completed steps + 1
			on error number n
				if n is -128 then error number n
				set end of skipped to item i of plans
			end try
		end if
	end repeat
	if skipped is not {} then
		set AppleScript's text item delimiters to linefeed
		display alert "Some files were not renamed" message "There are files of that name already, or you may not write there:" & linefeed & linefeed & (skipped as text) as warning
	end if
end renameAll

on folderOf(thePath)
	set AppleScript's text item delimiters to "/"
	return ((text items 1 thru -2 of thePath) as text) & "/"
end folderOf

on nameOf(thePath)
	set AppleScript's text item delimiters to "/"
	return last text item of thePath
end nameOf

-- With its dot; empty without one.
on extensionOf(thePath)
	set theName to nameOf(thePath)
	set AppleScript's text item delimiters to "."
	if (count text items of theName) < 2 then return ""
	return "." & last text item of theName
end extensionOf
