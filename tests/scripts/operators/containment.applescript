log "hello" contains "ELL" --> true
log "hello" starts with "he" --> true
log "hello" ends with "LO" --> true
log {1, 2, 3} contains {2, 3} --> true
log {1, 2, 3} contains {1, 3} --> false
log {1, {2}} contains {2} --> false
log 2 is in {1, 2} --> true
log {1, 2, 3} starts with 1 --> true
log {1, 2, 3} ends with {2, 3} --> true
log {a:1, b:2} contains {b:2} --> true
log "x" is not in "abc" --> true
