set d to date "Wednesday, January 31, 2018 1:05:09 PM"
log {date string of d, short date string of d, time string of d, time of d} --> {"Wednesday, January 31, 2018", "1/31/18", "1:05:09 PM", 47109}
log d as text --> "Wednesday, January 31, 2018 at 1:05:09 PM"
log "at " & d --> "at Wednesday, January 31, 2018 at 1:05:09 PM"
log {d as list, d & 1} = {{d}, {d, 1}} --> true
log {class of year of d, class of day of d, class of time of d, class of date string of d} --> {integer, integer, integer, text}
log {month of d as integer, month of d as text, (month of d) * 1} --> {1, "January", 1}
log {weekday of d as integer, weekday of d as text, "on " & weekday of d} --> {4, "Wednesday", "on Wednesday"}
log text 1 thru 3 of (month of d as text) --> "Jan"
log {month of d is January, month of d = 1, weekday of d is in {Saturday, Sunday}} --> {true, false, false}
log {January, February, March, April, May, June, July, August, September, October, November, December} as text --> "JanuaryFebruaryMarchAprilMayJuneJulyAugustSeptemberOctoberNovemberDecember"
set numbered to {}
repeat with m in {January, February, March, April, May, June, July, August, September, October, November, December}
	set end of numbered to m as integer
end repeat
log numbered --> {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}
set numbered to {}
repeat with w in {Sunday, Monday, Tuesday, Wednesday, Thursday, Friday, Saturday}
	set end of numbered to w as integer
end repeat
log numbered --> {1, 2, 3, 4, 5, 6, 7}
set {year:y, month:m, day:n, hours:h} to d
log {y, m, n, h} --> {2018, January, 31, 13}
repeat with target in {integer, real, record, boolean}
	try
		d as (contents of target)
		log {"became", contents of target}
	on error number n
		set refused to n
	end try
end repeat
log refused --> -1700
try
	era of d
on error m number n
	log {n, m} --> {-1728, "Can’t get era of date \"Wednesday, January 31, 2018 at 1:05:09 PM\"."}
end try
log d as «class isot» as string --> "2018-01-31T13:05:09"
log d as «class isot» --> «data isot323031382D30312D33315431333A30353A3039»
log ((d as «class isot») as date) = d --> true
log (date "Monday, January 1, 0900 12:00:00 AM") as «class isot» as text --> "0900-01-01T00:00:00"
