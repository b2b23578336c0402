considering case
	log "a" = "A" --> false
	log "abc" contains "B" --> false
end considering
ignoring white space
	log "a b" = "ab" --> true
end ignoring
ignoring punctuation and hyphens
	log "well-known." = "wellknown" --> true
end ignoring
ignoring diacriticals
	log "résumé" = "resume" --> true
	log "résumé" contains "SUM" --> true
end ignoring
considering numeric strings
	log "file 2" < "file 10" --> true
end considering
log "file 2" < "file 10" --> false
on inner()
	return "a" = "A"
end inner
considering case
	log inner() --> false
end considering

-- What is alike at first decides nothing yet, and a long text is not read to its end for it.
log "a" & (character id 8205) = "a" --> true
log "résumé" = "RÉSUMÉ" --> true
log {"abc" < "abd", "abc" < "ABCD", "ab-" < "abc", "b" < "á", "abc" < "abcé"} --> {true, true, true, false, true}
considering case
	log {"abc" = "abC", "abc" = "abc"} --> {false, true}
end considering
