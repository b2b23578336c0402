set {a, {b, c}} to {1, {2, 3}}
log {a, b, c} --> {1, 2, 3}
set {a, b} to {b, a}
log {a, b} --> {2, 1}
set {x:p, y:q} to {y:6, x:5}
log p - q --> -1
copy {1, {2}} to {d, e}
set end of e to 3
log e --> {2, 3}
on f({u, v}, {w:z})
	return {v, u, z}
end f
log f({1, 2}, {w:3}) --> {2, 1, 3}
try
	set {g, h} to {1}
on error number n
	log n --> -1728
end try
