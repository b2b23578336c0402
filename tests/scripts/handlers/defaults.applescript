on f(a, b : 5, c : {1, {x:2}})
	return {a, b, c}
end f
log f(1) --> {1, 5, {1, {x:2}}}
log f(1, 2) --> {1, 2, {1, {x:2}}}
log f(1, 2, 3) --> {1, 2, 3}
on change(l : {1})
	set end of l to 2
	return l
end change
log {change(), change()} --> {{1, 2}, {1, 2}}
on greet given name:n : "you", mark:m : "!", loud:l : false
	return {n & m, l}
end greet
log (greet given name:"Ann") --> {"Ann!", false}
log (greet given mark:"?" with loud) --> {"you?", true}
on least(a : -1, b : missing value, c : {})
	return {a, b, c}
end least
log least() --> {-1, missing value, {}}
try
	f()
on error number n
	log n --> -1701
end try
