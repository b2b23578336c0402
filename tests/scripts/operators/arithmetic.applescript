log 1 + 2 --> 3
log 536870911 + 1 --> 5.36870912E+8
log -536870912 - 1 --> -5.36870913E+8
log 6 / 3 --> 2.0
log 7 div 2 --> 3
log -7 div 2 --> -3
log -7 mod 2 --> -1
log 7.5 mod 2 --> 1.5
log 2 ^ 10 --> 1024.0
log -2 ^ 2 --> 4.0
log 2 + 3 * 4 --> 14
log (2 + 3) * 4 --> 20
log "3" + 4 --> 7
log "1.5" * 2 --> 3.0
log 10000.0 --> 1.0E+4
log 0.1 + 0.2 --> 0.3
log true as integer --> 1
log 1.5 as integer --> 2
log 2.5 as integer --> 2
log 40000 * 40000 --> 1.6E+9
set i to 3
set i to i - 5
log i --> -2
