-- However a block is left, what was considered before is considered again
on leaving()
	considering case
		return "a" = "A"
	end considering
end leaving
log {leaving(), "a" = "A"} --> {false, true}
try
	considering case
		error "out"
	end considering
end try
log "a" = "A" --> true
repeat 2 times
	considering case
		exit repeat
	end considering
end repeat
log "a" = "A" --> true
considering case
	try
		ignoring case
			error "out"
		end ignoring
	on error
		log "a" = "A" --> false
	end try
	log "a" = "A" --> false
end considering

-- A handler called within a block, delimiters within a block
script comparer
	on same(a, b)
		return a = b
	end same
end script
considering case
	log comparer's same("a", "A") --> false
	ignoring case
		log comparer's same("a", "A") --> true
	end ignoring
end considering
set AppleScript's text item delimiters to "X"
log {text items of "axb", (count text items of "XxX")} --> {{"a", "b"}, 4}
considering case
	log {text items of "axbXc", text item 2 of "axbXc"} --> {{"axb", "c"}, "c"}
end considering
set AppleScript's text item delimiters to "e"
ignoring diacriticals
	log text items of "aébec" --> {"a", "b", "c"}
end ignoring
log text items of "aébec" --> {"aéb", "c"}
ignoring application responses
	set done to 1 + 1
end ignoring
log done --> 2
