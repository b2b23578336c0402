script Animal
	property legs : 4
	property noise : "..."
	on speak()
		return my noise
	end speak
	on describe()
		return my noise & " on " & my legs
	end describe
	on who()
		return me
	end who
end script
script Dog
	property parent : Animal
	property noise : "woof"
	on speak()
		return "<" & (continue speak()) & ">"
	end speak
end script
script Puppy
	property parent : Dog
	property legs : 3
	on speak()
		return (continue speak()) & "?"
	end speak
	on describe()
		continue describe()
	end describe
end script
log {Animal's speak(), Dog's speak(), Puppy's speak()} --> {"...", "<woof>", "<woof>?"}
log {Animal's describe(), Dog's describe(), Puppy's describe()} --> {"... on 4", "woof on 4", "woof on 3"}
log {Dog's legs, legs of Puppy, Puppy's noise} --> {4, 3, "woof"}
log {Dog's who(), Puppy's who()} --> {«script Dog», «script Puppy»}
log {parent of Dog, parent of Puppy, parent of parent of Puppy} --> {«script Animal», «script Dog», «script Animal»}
-- A property that is inherited is one for all; one's own hides it
set Dog's legs to 5
log {Animal's legs, Dog's legs, Puppy's legs} --> {5, 5, 3}
set Puppy's legs to 2
log {Animal's legs, Puppy's legs} --> {5, 2}
