-- Backup Check
-- Makes sure that the newest file in the backup folder is younger than a week, and complains when it is not.

property backupFolder : "~/Backups"
property maximumAge : 7 * days

on run
	set progress description to "Checking " & backupFolder & "…"
	set progress total steps to -1
	set folderPath to do shell script "eval echo " & backupFolder
	try
		do shell script "test -d " & quoted form of folderPath
	on error
		error "There is no backup folder at " & folderPath & ". Make one, or change “backupFolder” at the top of the script." number 501
	end try
	set newest to do shell script "find " & quoted form of folderPath & " -type f -printf '%T@\\n' | sort -n | tail -1 | cut -d . -f 1"
	if newest is "" then error "The backup folder " & folderPath & " is empty." number 502
	set age to ((do shell script "date +%s") as real) - (newest as real)
	if age > maximumAge then error "The newest backup is " & (age div days) & " days old." number 503
	set progress description to "The newest backup is " & (age div hours) & " hours old. All is well."
	delay 3
end run
