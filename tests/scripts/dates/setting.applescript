on made()
	return (date "Wednesday, January 31, 2018 1:05:09 PM") + 0 -- a date of its own for each call
end made

-- What a part cannot hold is carried into the others
set d to made()
set month of d to February
log d --> date "Saturday, March 3, 2018 at 1:05:09 PM"
set d to made()
set day of d to 0
log d --> date "Sunday, December 31, 2017 at 1:05:09 PM"
set d to made()
set time of d to days + 61
log d --> date "Thursday, February 1, 2018 at 12:01:01 AM"
set d to made()
set time of d to -1
log d --> date "Tuesday, January 30, 2018 at 11:59:59 PM"
set d to date "February 29, 2020"
set year of d to 2021
log d --> date "Monday, March 1, 2021 at 12:00:00 AM"
set d to made()
set hours of d to 25
log d --> date "Thursday, February 1, 2018 at 1:05:09 AM"
set d to made()
set {minutes of d, seconds of d} to {59, 60}
log d --> date "Wednesday, January 31, 2018 at 2:00:00 PM"

-- The other parts stay
set d to made()
set {year of d, month of d, day of d} to {2001, May, 6}
log d --> date "Sunday, May 6, 2001 at 1:05:09 PM"
set month of d to 12
log month of d --> December
set {hours of d, minutes of d, seconds of d} to {0, 0, 1}
log {time of d, time string of d} --> {1, "12:00:01 AM"}
set year of d to "1999"
log {year of d, weekday of d} --> {1999, Monday}
tell made()
	set its day to 1
	log {its day, its weekday} --> {1, Monday}
end tell

-- set shares a date, copy does not
set a to made()
set b to a
copy a to c
set day of b to 1
log {day of a, day of c} --> {1, 31}
set l to {made()}
copy l to twins
set year of item 1 of l to 1990
log {year of item 1 of l, year of item 1 of twins} --> {1990, 2018}
set e to a + 0
set day of e to 15
log day of a --> 1
try
	set month of a to "spring"
on error number n
	log n --> -1700
end try
