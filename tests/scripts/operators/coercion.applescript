log "42" as integer --> 42
log 42 as text --> "42"
log {1, "a", true} as text --> "1atrue"
log 5 as list --> {5}
log {7} as integer --> 7
log 1.5 as {integer, text} --> 2
log "1.5" as number --> 1.5
log {a:1, b:2} as list --> {1, 2}
log text as text --> "text"
log "true" as boolean --> true
log March as integer --> 3
log Sunday as integer --> 1
try
	"five" as integer
on error m number n
	log {n, m} --> {-1700, "Can’t make \"five\" into type integer."}
end try
log {yes as boolean, no as boolean, true as real} --> {true, false, 1.0}
log {"1795305680" as integer, 2 ^ 30 as integer} --> {1.79530568E+9, 1.073741824E+9}
try
	"2147483648" as integer
on error number n
	log n --> -1700
end try
try
	true + 1
on error number n
	log n --> -1700
end try
log {«data utxt2713» as Unicode text, «data utf8C3A9» as text, "é" as «class utf8»} --> {"✓", "é", "é"}
try
	"a" as date
on error number n
	log n --> -1700
end try
