set d to date "Friday, November 9, 2007 11:35:50 AM"
log d --> date "Friday, November 9, 2007 at 11:35:50 AM"
log {year, month, day, weekday, hours, minutes, seconds} of d --> {2007, November, 9, Friday, 11, 35, 50}
log (d + 3 * days) - d --> 259200
set day of d to 32
log month of d --> December
set month of d to 2
set time of d to 0
log time string of d --> "12:00:00 AM"
log short date string of d --> "2/2/07"
log d < (current date) --> true
log class of (current date) --> date
try
	set wrong to "not a date"
	date wrong
on error number n
	log n --> -30720
end try
log date "10:30" of date "Jan 1, 2008" --> date "Tuesday, January 1, 2008 at 10:30:00 AM"
log date "2:30 am" relative to date "Jan 1, 2008 5:00 PM" --> date "Tuesday, January 1, 2008 at 2:30:00 AM"
log date "Feb 2, 2009" of date "Jan 1, 2008 5:00 PM" --> date "Monday, February 2, 2009 at 5:00:00 PM"
set wrong to "nonsense"
try
	date wrong of date "Jan 1, 2008"
on error m
	log m --> "Invalid date and time date nonsense."
end try
