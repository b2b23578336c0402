-- Find and Open
-- Type a few letters of a name, look at what is found with the space bar, open it with Return. Files that are dropped are opened, too.

property appletsearchname : "Type some letters of the name: “prort.pdf” finds “Project Report.pdf”."
property appletdropname : "Drop files here to open them, each with its own application."
property askedAbove : 10 -- how many files are opened without a question

on open theFiles
	if (count theFiles) > askedAbove then
		display dialog "Do you want to open " & (count theFiles) & " files?" buttons {"Cancel", "Open"} default button "Open" cancel button "Cancel" with icon caution
	end if
	set progress total steps to count theFiles
	repeat with aFile in theFiles
		set thePath to POSIX path of aFile
		set progress description to "Opening " & thePath
		try
			-- The program goes on when this applet has ended, so nothing more is heard of it.
			do shell script "command -v xdg-open && setsid -f xdg-open " & quoted form of thePath & " > /dev/null 2>&1"
		on error
			error "“" & thePath & "” could not be opened: the program “xdg-open” is missing. Install the package “xdg-utils”." number 501
		end try
		set progress completed steps to progress completed steps + 1
	end repeat
end open
