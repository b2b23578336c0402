-- Handlers of commands and of events, called by their words
on open theFiles
	return {"open", theFiles}
end open
log (open {1, 2}) --> {"open", {1, 2}}
on idle
	return 30
end idle
log (idle) --> 30
on quit
	return "stays"
end quit
log (quit) --> "stays"
script app_
	on run
		return "ran"
	end run
	on open x
		return {"app", x}
	end open
	on reopen
		return "again"
	end reopen
end script
tell app_
	log {open 5, reopen} --> {{"app", 5}, "again"}
end tell
log (run app_) --> "ran"
log (open 6) --> {"open", 6}
on «event abcdwxyz» x
	return x * 2
end «event abcdwxyz»
log («event abcdwxyz» 21) --> 42
