log 9000 as inches --> inches 9000.0
log class of (9000 as inches) --> inches
log (9000 as inches) as feet --> feet 750.0
log 1 as miles as metres as real --> 1609.344
log 10000 as square feet as square yards as number --> 1111.111111111111
log 2 as gallons as quarts as integer --> 8
log 1 as cubic yards as cubic feet as number --> 27.0
log 100 as pounds as ounces as text --> "1600.0"
log 1 as kilograms as grams as integer --> 1000
log {212 as degrees Fahrenheit as degrees Celsius, 0 as degrees Celsius as degrees Kelvin} --> {degrees Celsius 100.0, degrees Kelvin 273.15}
log "12" as inches as feet --> feet 1.0
log (12 as inches) = (12 as inches) --> true
log (12 as inches) = (12 as feet) --> false
try
	1 as miles as grams
on error m number n
	log {n, m} --> {-1700, "Can’t make miles 1.0 into type grams."}
end try
try
	(1 as feet) + 1
on error m number n
	log {n, m} --> {-1700, "Can’t make feet 1.0 into type number."}
end try
log {1.6, "2"} as point --> {2, 2}
log {0, 65535.0, 7} as RGB color --> {0, 65535, 7}
try
	{1, 2, 3} as bounding rectangle
on error number n
	log n --> -1700
end try
set png to «class PNGf»
log png --> «class PNGf»
log class of (alias "/") is in {alias, «class furl»} --> true
