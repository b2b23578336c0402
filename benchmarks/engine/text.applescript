on build(n)
	set s to ""
	repeat with i from 1 to n
		set s to s & "word,"
	end repeat
	set AppleScript's text item delimiters to ","
	set parts to text items of s
	set AppleScript's text item delimiters to "; "
	set joined to parts as text
	set AppleScript's text item delimiters to ""
	return length of joined
end build
return build(200000)
