-- of, in, 's, its and my, in every order
set d to {people:{{name_:"Ann", tags:{"x", "y z"}}, {name_:"Bo", tags:{}}}, note_:"last words here"}
log {name_ of item 1 of people of d, d's people's item 1's name_, name_ of d's people's first item, (people of d)'s last item's name_} --> {"Ann", "Ann", "Ann", "Bo"}
log {item 2 of tags of item 1 of people of d, word 2 of item 2 of tags of first item of d's people, character 1 of word -1 of note_ of d} --> {"y z", "z", "h"}
log {length of tags of item 2 of people in d, d's note_'s length, count words of d's note_, count d's people} --> {0, 15, 3, 2}
set tags of item 2 of people of d to {"new"}
set end of tags of last item of d's people to "newer"
set d's people's item 1's name_ to "Anna"
log {tags of item 2 of people of d, name_ of item 1 of people of d} --> {{"new", "newer"}, "Anna"}
tell d
	log {its note_, length of its people, name_ of item 1 of its people} --> {"last words here", 2, "Anna"}
	tell item 2 of its people
		set its name_ to "Bob"
		log its name_ --> "Bob"
	end tell
end tell
log name_ of item 2 of people of d --> "Bob"
log {characters 1 thru 3 of word 2 of note_ of d, text 1 thru 2 of (word 2 of d's note_), words 1 thru 2 of (note_ of d)} --> {{"w", "o", "r"}, "wo", {"last", "words"}}
log {item 1 of (rest of {1, 2, 3}), first item of reverse of {1, 2, 3}, last item of (items 1 thru 2 of {1, 2, 3})} --> {2, 3, 2}
log {some item of {4}, middle item of {1, 2, 3}, front item of {1, 2}, back item of {1, 2}} --> {4, 2, 1, 2}
log {every item of {1, 2}, items of {1, 2}, every word of "a b", every character of "ab"} --> {{1, 2}, {1, 2}, {"a", "b"}, {"a", "b"}}
property own : 5
on read_()
	return {own, my own, own of me, me's own}
end read_
log read_() --> {5, 5, 5, 5}
tell {own:6}
	log {its own, own of it, my own} --> {6, 6, 5}
end tell
on two()
	return {1, {k:"v w"}}
end two
log {item 1 of two(), k of item 2 of two(), word 2 of k of item 2 of two(), two()'s length} --> {1, "v w", "w", 2}
