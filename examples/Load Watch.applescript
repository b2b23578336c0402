-- Load Watch
-- Stays open and looks at the machine's load every few seconds. The bar shows the load against the number of processors.

property processors : 1
property highest : 0

on run
	set processors to (do shell script "nproc") as integer
	set progress total steps to processors * 100
	look()
end run

on idle
	look()
	return 5
end idle

on look()
	set theLoad to (do shell script "cut -d ' ' -f 1 /proc/loadavg") as real
	if theLoad > highest then set highest to theLoad
	set stepsDone to (theLoad * 100) as integer
	if stepsDone > processors * 100 then set stepsDone to processors * 100
	set progress completed steps to stepsDone
	set progress description to "Load: " & theLoad
	set progress additional description to "Highest so far: " & highest & " on " & processors & " processors"
	delay 1
end look

on quit
	continue quit
end quit
