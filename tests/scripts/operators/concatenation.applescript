log "a" & 66 --> "a66"
log 66 & "a" --> {66, "a"}
log 1 & 2 --> {1, 2}
log {1} & 2 & {3, 4} --> {1, 2, 3, 4}
log {a:1, b:2} & {b:3, c:4} --> {a:1, b:2, c:4}
log {1} & {a:5} --> {1, 5}
log "x" & {1, 2} --> "x12"
log "n = " & 1.5 & ", " & true --> "n = 1.5, true"
log {a:1} & {} --> {a:1}
log {} & {a:1} --> {a:1}
log {a:1} & {2} --> {1, 2}
log "a" & {b:1} --> {"a", 1}
log [1, 2] & {3} --> {1, 2, 3}
log class of [1] --> list
log "x" & current application --> "xcurrent application"
set r to {a:1}
set s to r & {}
set a of s to 2
log r --> {a:1}
