set d to date "Wednesday, January 31, 2018 1:05:09 PM"
log d + 1 --> date "Wednesday, January 31, 2018 at 1:05:10 PM"
log d + 1 * days --> date "Thursday, February 1, 2018 at 1:05:09 PM"
log d - (13 * hours + 5 * minutes + 9) --> date "Wednesday, January 31, 2018 at 12:00:00 AM"
log (d + 2 * weeks) - d --> 1209600
log d - (d + 90) --> -90
log {class of (d - d), class of (d + 1)} --> {integer, date}
log (date "1/1/2030") - (date "1/1/2000") --> 9.467712E+8
log {minutes, hours, days, weeks} --> {60, 3600, 86400, 604800}

-- Leap years, centuries and ends of years
log (date "February 28, 2020") + days --> date "Saturday, February 29, 2020 at 12:00:00 AM"
log (date "February 28, 2019") + days --> date "Friday, March 1, 2019 at 12:00:00 AM"
log {month of ((date "February 28, 2000") + days), month of ((date "February 28, 2100") + days)} --> {February, March}
log (date "December 31, 1999 11:59:59 PM") + 1 --> date "Saturday, January 1, 2000 at 12:00:00 AM"
log weekday of ((date "January 1, 2001") - 1) --> Sunday

-- Comparison goes by time, however the date came about
log {d < d + 1, d > d + 1, d ≤ d, d = d + 0, d ≠ d + 1} --> {true, false, true, true, true}
log {d comes before d + 1, d comes after d + 1} --> {true, false}
log {date "1/31/2018 1:05:09 PM" = d, date "1/31/2018 13:05:09" = d, {d} contains d + 0} --> {true, true, true}
log {d = "x", d = 5} --> {false, false}
try
	60 + d
on error number n
	log n --> -1700
end try
try
	d * 2
on error number n
	log n --> -1700
end try
try
	d + "soon"
on error m number n
	log {n, m} --> {-1700, "Can’t make \"soon\" into type number."}
end try
