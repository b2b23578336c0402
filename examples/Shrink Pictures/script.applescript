-- Shrink Pictures
-- Drop photos on its window: each gets a smaller copy beside it, as a JPEG file. The originals stay as they are, and nothing is overwritten.

property longestSide : 1600 -- pixels
property quality : 85 -- per cent
property pictureEndings : {"jpg", "jpeg", "png", "tif", "tiff", "webp", "bmp", "gif", "heic"}

property appletdropname : "Drop pictures here to make smaller copies of them."
property appletsearchname : "Find pictures by their name; Return makes smaller copies of those that are selected."

-- The drop zone and the search ask about each file.
on appletfileisacceptable(theFile)
	return endingOf(POSIX path of theFile) is in pictureEndings
end appletfileisacceptable

on open thePictures
	set converter to pictureConverter()
	set progress total steps to count thePictures
	set progress completed steps to 0
	set progress description to "Shrinking " & countedPictures(count thePictures) & "…"
	set {savedBytes, failures} to {0, {}}
	repeat with aPicture in thePictures
		set thePath to POSIX path of aPicture
		set progress additional description to nameOf(thePath)
		try
			set savedBytes to savedBytes + shrink(thePath, converter)
		on error message number n
			if n is -128 then error number -128 -- Stop
			set end of failures to nameOf(thePath) & ": " & message
		end try
		set progress completed steps to progress completed steps + 1
	end repeat
	if failures is not {} then
		reportFailures(failures)
	else
		set savedMegabytes to (round (savedBytes / 10000)) / 100
		display notification "The copies are " & savedMegabytes & " MB smaller than the pictures." with title "Shrink Pictures"
	end if
end open

-- Writes the copy and answers by how many bytes it is smaller.
on shrink(thePath, converter)
	set copyPath to freePath(withoutEnding(thePath) & " small", "jpg")
	set side to longestSide as text
	set boundingBox to side & "x" & side & ">" -- a picture that is small already keeps its size
	try
		-- Only the first of several frames, upright, on white where it lets something through.
		do shell script converter & " " & quoted form of (thePath & "[0]") & " -auto-orient -background white -flatten -resize " & quoted form of boundingBox & " -quality " & quality & " " & quoted form of ("jpg:" & copyPath) & " 2>&1"
	on error
		do shell script "rm -f " & quoted form of copyPath
		error "this is no picture that can be read." number 502
	end try
	return (bytesOf(thePath)) - (bytesOf(copyPath))
end shrink

on reportFailures(failures)
	set text item delimiters to linefeed
	set theList to failures as text
	set text item delimiters to ""
	display alert countedPictures(count failures) & " could not be made smaller." message theList
end reportFailures

-- ImageMagick goes by two names.
on pictureConverter()
	try
		return do shell script "command -v magick || command -v convert"
	on error
		error "Making pictures smaller needs ImageMagick. Install the package “imagemagick”, then drop the pictures again." number 501
	end try
end pictureConverter

-- A path that nothing has yet: "Photo small.jpg", "Photo small 2.jpg" and so on.
on freePath(base, ending)
	set candidate to base & "." & ending
	set n to 1
	repeat while (do shell script "test -e " & quoted form of candidate & " && echo taken || true") is "taken"
		set n to n + 1
		set candidate to base & " " & n & "." & ending
	end repeat
	return candidate
end freePath

on bytesOf(thePath)
	return (do shell script "stat -L -c %s " & quoted form of thePath) as real
end bytesOf

on countedPictures(n)
	if n is 1 then return "1 picture"
	return (n as text) & " pictures"
end countedPictures

-- The path of a folder ends with the separator.
on nameOf(thePath)
	if thePath ends with "/" and thePath is not "/" then set thePath to text 1 thru -2 of thePath
	return last item of partsOf(thePath, "/")
end nameOf

-- In a name without a dot there is none.
on endingOf(thePath)
	set parts to partsOf(nameOf(thePath), ".")
	if (count parts) < 2 then return ""
	return last item of parts
end endingOf

on withoutEnding(thePath)
	set ending to endingOf(thePath)
	if ending is "" then return thePath
	return text 1 thru -(2 + (length of ending)) of thePath
end withoutEnding

on partsOf(theText, separator)
	set saved to text item delimiters
	set text item delimiters to separator
	set parts to text items of theText
	set text item delimiters to saved
	return parts
end partsOf
