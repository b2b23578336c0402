-- Labels of one's own, labels that are words of the language, labels in bars
log {a:1, A_2:2} --> {a:1, A_2:2}
log {|a|:1, |a b|:2, |1st|:3} --> {a:1, |a b|:2, |1st|:3}
set r to {name:"n", class:"c", length_:3, id:7, day:1, month:2}
log {name of r, id of r, day of r, month of r, length_ of r} --> {"n", 7, 1, 2, 3}
log class of r --> "c"
log length of r --> 6
log {|name|:"own", name:"word"} --> {|name|:"own", name:"word"}
log {|name| of {|name|:"own", name:"word"}, name of {|name|:"own", name:"word"}} --> {"own", "word"}
log {a:1, class:integer} --> {a:1, class:integer}
log {{a:1, b:2}'s a, b of {a:1, b:2}, (b of {b:{1, 2}})'s item 2, |a b| of {|a b|:2}} --> {1, 2, 2, 2}

-- Order and case of labels say nothing
log {{a:1, b:2} = {b:2, a:1}, {a:1} = {A:1}, {a:1} = {a:2}, {a:1} = {a:1, b:2}, {a:1} = {b:1}} --> {true, true, false, false, false}
log {{a:1, b:2} contains {a:1}, {a:1, b:2} contains {a:2}, {a:1, b:2} contains {c:1}, {a:1, b:2} contains {b:2, a:1}} --> {true, false, false, true}
log {{a:1} is in {a:1, b:2}, {c:1} is in {a:1}, {a:{b:1}} contains {a:{b:1}}} --> {true, false, true}
log {{a:"X"} = {a:"x"}, {a:1} = {1}, {a:1.0} = {a:1}} --> {true, false, true}
log {count {a:1, b:2}, length of {a:{1, 2, 3}}, class of {a:1}} --> {2, 1, record}

-- Values are what the expressions give when the record is made
set x to 5
set s to {a:x, b:x + 1, c:{x, -x}, d:{e:x}}
set x to 6
log s --> {a:5, b:6, c:{5, -5}, d:{e:5}}
on made(a, b)
	return {a:a, b:b, sum:a + b}
end made
log made(1, 2) --> {a:1, b:2, sum:3}
log {sum of made(3, 4), made(3, 4)'s a} --> {7, 3}
set {a:p, d:{e:q}} to s
log {p, q} --> {5, 5}
set {b:p} to s
log p --> 6
try
	set {zz:p} to s
on error number n
	log n --> -1728
end try
log {{a:missing value}, {a:{}}, {a:""}} --> {{a:missing value}, {a:{}}, {a:""}}
