script Library
	property titles : {"ab", "cde"}
	property inner : me
	on twice(x)
		return x * 2
	end twice
	on itself()
		return me
	end itself
end script
property lib : Library
on words_of(s)
	return words of s
end words_of
on test()
	return {my lib's twice(4), my lib's titles, my lib's titles's length, its lib's itself()'s twice(1), my words_of("a b")'s length}
end test
log test() --> {8, {"ab", "cde"}, 2, 2, 2}
log (my lib's titles) count --> 2
log (lib's titles count) + (count lib's titles) --> 4
log my (item 2 of lib's titles) --> "cde"
tell lib
	log its titles's item 1 --> "ab"
end tell
