set r to {name:"x", age:3, |odd key|:true}
log r --> {name:"x", age:3, |odd key|:true}
log age of r --> 3
set age of r to (age of r) + 1
log r's age --> 4
log class of r --> record
log class of {class:integer} --> integer
log length of {a:1, b:2} --> 2
log |odd key| of r --> true
try
	height of r
on error number n
	log n --> -1728
end try
try
	set height of r to 1
on error number n
	log n --> -10006
end try
