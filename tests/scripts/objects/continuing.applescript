-- Children made by a handler, and what is passed on to the parent
script Animal
	property legs : 5
	property noise : "..."
	on speak()
		return my noise
	end speak
	on describe()
		return my noise & " on " & my legs
	end describe
end script
script Dog
	property parent : Animal
end script
on kitten(n)
	script
		property parent : Animal
		property noise : n
	end script
end kitten
set {tom, tim} to {kitten("mew"), kitten("purr")}
log {tom's speak(), tim's describe()} --> {"mew", "purr on 5"}
script Stepper
	property total : 0
	on step(n)
		set total to total + n
		return total
	end step
end script
script Doubler
	property parent : Stepper
	on step(n)
		continue step(n * 2)
	end step
end script
log {Doubler's step(5), Stepper's step(1), total of Doubler} --> {10, 11, 11}
try
	Dog's bark()
on error m number n
	log {n, m} --> {-1708, "«script Dog» doesn’t understand the “bark” message."}
end try
script Lone
	on step(n)
		continue step(n)
	end step
end script
try
	Lone's step(1)
on error number n
	log n --> -2784
end try
