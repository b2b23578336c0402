-- Word Count
-- Counts the words of every text file in the files and folders that it is given, and shows which words are used most.
-- Opened by itself it counts in the Documents folder.

property commonest : 5 -- how many of the most frequent words to show
property ignoredLength : 3 -- words up to this length are not listed

on run
	set documentsFolder to do shell script "d=$(xdg-user-dir DOCUMENTS 2>/dev/null); [ -d \"$d\" ] && echo \"$d\" || echo \"$HOME\""
	countWords({documentsFolder})
end run

on open theItems
	set thePaths to {}
	repeat with anItem in theItems
		set end of thePaths to POSIX path of anItem
	end repeat
	countWords(thePaths)
end open

on countWords(thePaths)
	set progress description to "Looking for text files…"
	set progress total steps to -1
	set theFiles to textFiles(thePaths)
	set fileCount to count theFiles
	set progress total steps to fileCount
	set theTally to makeTally()
	repeat with i from 1 to fileCount
		set aFile to item i of theFiles
		set progress description to "Counting words in " & countedFiles(fileCount)
		set progress additional description to aFile
		theTally's addText(do shell script "head -c 60000 " & quoted form of aFile & " | iconv -c -t UTF-8")
		set progress completed steps to i
	end repeat
	set progress description to "" & theTally's total & " words in " & countedFiles(fileCount)
	set progress additional description to "Used most: " & theTally's mostFrequent(commonest)
	delay 3
	return theTally's total
end countWords

on countedFiles(n)
	if n is 1 then return "1 file"
	return (n as text) & " files"
end countedFiles

on textFiles(thePaths)
	set arguments to ""
	repeat with aPath in thePaths
		set arguments to arguments & " " & quoted form of aPath
	end repeat
	set found to do shell script "find" & arguments & " -type f -size -200k ! -path '*/.*' -exec grep -Il . {} + 2>/dev/null | sort | head -400"
	return paragraphs of found
end textFiles

-- A tally keeps words sorted by their first letter, so that looking one up stays quick.
on makeTally()
	script Tally
		property total : 0
		property theLetters : "abcdefghijklmnopqrstuvwxyz"
		property theWords : {}
		property theCounts : {}
		
		on addText(theText)
			repeat with aWord in words of theText
				addWord(contents of aWord)
			end repeat
		end addText
		
		on addWord(aWord)
			set total to total + 1
			if length of aWord ≤ ignoredLength then return
			set bucket to letterIndex(aWord)
			if bucket = 0 then return
			set theList to item bucket of theWords
			repeat with i from 1 to count theList
				if item i of theList = aWord then
					set item i of item bucket of theCounts to (item i of item bucket of theCounts) + 1
					return
				end if
			end repeat
			set end of theList to aWord
			set end of item bucket of theCounts to 1
		end addWord
		
		on letterIndex(aWord)
			set code to id of character 1 of aWord
			if code ≥ 97 and code ≤ 122 then return code - 96
			if code ≥ 65 and code ≤ 90 then return code - 64
			return 0
		end letterIndex
		
		on mostFrequent(howMany)
			set best to {}
			repeat howMany times
				set topCount to 0
				set topWord to ""
				repeat with bucket from 1 to 26
					set theList to item bucket of theWords
					set theNumbers to item bucket of theCounts
					repeat with i from 1 to count theList
						if item i of theNumbers > topCount and best does not contain (item i of theList) then
							set topCount to item i of theNumbers
							set topWord to item i of theList
						end if
					end repeat
				end repeat
				if topWord is not "" then set end of best to topWord
			end repeat
			set saved to AppleScript's text item delimiters
			set AppleScript's text item delimiters to ", "
			set answer to best as text
			set AppleScript's text item delimiters to saved
			return answer
		end mostFrequent
	end script
	repeat 26 times
		set end of Tally's theWords to {}
		set end of Tally's theCounts to {}
	end repeat
	return Tally
end makeTally
