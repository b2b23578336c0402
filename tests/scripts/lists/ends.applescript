set l to {2}
set end of l to 3
set beginning of l to 1
set l's end to 4
log l --> {1, 2, 3, 4}
set the end of l to {5, 6}
log {length of l, item 5 of l} --> {5, {5, 6}}
set end of item 5 of l to 7
set beginning of item 5 of l to 4.5
log last item of l --> {4.5, 5, 6, 7}
copy "z" to end of l
copy "a" to beginning of l
log {first item of l, last item of l, count l} --> {"a", "z", 7}
set l to {1, 2, 3}
set item 2 of l to "x"
set last item of l to "y"
set first item of l to "w"
log l --> {"w", "x", "y"}
set {item 1 of l, item 3 of l} to {item 3 of l, item 1 of l}
log l --> {"y", "x", "w"}

-- What is taken out of a list: a copy of the list, the same items
set a to {{1}, 2}
set b to items of a
set end of item 1 of b to "in"
set item 2 of b to "out"
log {a, b} --> {{{1, "in"}, 2}, {{1, "in"}, "out"}}
set c to a & {}
set item 1 of c to 0
log {count a, class of item 1 of a} --> {2, list}
set r to reverse of a
set item 1 of r to "r"
log a --> {{1, "in"}, 2}
copy a to d
set end of item 1 of d to "deep"
log {item 1 of a, item 1 of d} --> {{1, "in"}, {1, "in", "deep"}}
set e to {a, a}
set item 2 of item 1 of e to "shared"
log item 2 of item 2 of e --> "shared"
copy e to f
set item 2 of item 1 of f to "once"
log item 2 of item 1 of e --> "shared"
on grow(x)
	set end of x to "grown"
end grow
set g to {}
grow(g)
log g --> {"grown"}
set g to {1} & g
log g --> {1, "grown"}
set h to g
set h to h & 2
log {g, h} --> {{1, "grown"}, {1, "grown", 2}}
