log 1 = 1.0 --> true
log 1 = "1" --> false
log "a" = "A" --> true
log {1, 2} = {1, 2.0} --> true
log {a:1, b:2} = {b:2, a:1} --> true
log "abc" < "abd" --> true
log "B" > "a" --> true
log 2 < 10 --> true
log 10 < "9" --> false
log "é" = "e" --> false
log 3 is not 4 --> true
log not (1 > 2) --> true
log true and (1 = 2 or 3 = 3) --> true
log false and missingHandler() --> false
log string = text --> true
