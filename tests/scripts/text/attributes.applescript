-- What is considered when nothing is said, and each attribute by itself
log {"a" = "A", "é" = "e", "a-b" = "ab", "a b" = "ab", "a.b" = "ab", "2" < "10"} --> {true, false, false, false, false, false}
considering case
	log {"a" = "A", "a" = "a", "É" = "é"} --> {false, true, false}
end considering
ignoring diacriticals
	log {"é" = "e", "É" = "e", "ñandú" = "NANDU", "o" = "p"} --> {true, true, true, false}
end ignoring
ignoring white space
	log {"a b" = "ab", ("a" & tab & return & linefeed & "b") = "ab", "a-b" = "ab"} --> {true, true, false}
end ignoring
ignoring hyphens
	log {"a-b" = "ab", "-" = "", "a b" = "ab"} --> {true, true, false}
end ignoring
ignoring punctuation
	log {"a,b.c!" = "abc", "What? he inquired." = "what he inquired", "a b" = "ab"} --> {true, true, false}
end ignoring
considering numeric strings
	log {"10" > "9", "v2" < "v10", "1.10.1" > "1.9.4", "01" = "1"} --> {true, true, true, true}
end considering
log {"10" > "9", "v2" < "v10", "1.10.1" > "1.9.4", "01" = "1"} --> {false, false, false, false}

-- Several at once, one within the other, one but the other
ignoring white space, punctuation and hyphens
	log "well - known." = "wellknown" --> true
end ignoring
ignoring white space, diacriticals and case
	log "Ça va" = "cava" --> true
end ignoring
considering case but ignoring diacriticals
	log {"É" = "E", "É" = "e"} --> {true, false}
end considering
ignoring diacriticals but considering case
	log {"É" = "E", "É" = "e"} --> {true, false}
end ignoring
considering case but ignoring white space and punctuation
	log {"a, B" = "aB", "a, B" = "ab"} --> {true, false}
end considering
considering case
	ignoring case
		log "a" = "A" --> true
	end ignoring
	ignoring white space
		log {"a b" = "ab", "a B" = "ab"} --> {true, false}
	end ignoring
	log "a b" = "ab" --> false
end considering
log "a" = "A" --> true

-- All that compares text obeys
considering case
	log {"abc" contains "B", "abc" starts with "A", "abc" ends with "C", "B" is in "abc", {"a"} contains "A", {a:"X"} = {a:"x"}, {"x", {"Y"}} = {"x", {"y"}}} --> {false, false, false, false, false, false, false}
	log {"a" < "B", "b" < "A"} --> {true, false}
end considering
ignoring diacriticals
	log {"café" contains "FE", "élan" starts with "el", "café" ends with "e", {"é"} contains "e", {a:"é"} = {a:"e"}} --> {true, true, true, true, true}
end ignoring
ignoring white space
	log {"a b c" contains "bc", "a bc" starts with "ab", "ab c" ends with "bc"} --> {true, true, true}
end ignoring
