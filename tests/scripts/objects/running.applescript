-- What a script does when it is run, and what it keeps between runs
script Task
	property runs : 0
	set runs to runs + 1
	"run " & runs
end script
log {run Task, run Task, runs of Task} --> {"run 1", "run 2", 2}
script Explicit
	on run
		return "explicit"
	end run
end script
log (run Explicit) --> "explicit"
tell Explicit to run
log result --> "explicit"
script Outer
	property outside : "outer"
	script Inner
		property seen : "inner"
		on both()
			return {outside, seen}
		end both
	end script
	on inside()
		return Inner's both()
	end inside
end script
log {Outer's inside(), Outer's Inner's both(), seen of Inner of Outer} --> {{"outer", "inner"}, {"outer", "inner"}, "inner"}
set outside of Outer to "changed"
log Outer's Inner's both() --> {"changed", "inner"}
log {class of Inner of Outer, name of Outer's Inner} --> {script, "Inner"}
on titled(n)
	script |two words|
		property it_ : n
	end script
	return |two words|
end titled
log {name of titled(1), it_ of titled(2)} --> {"two words", 2}
log {class of me, me = me} --> {script, true}
