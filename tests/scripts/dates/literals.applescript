log date "1/2/2020" --> date "Thursday, January 2, 2020 at 12:00:00 AM"
log date "1/2/20" --> date "Thursday, January 2, 2020 at 12:00:00 AM"
log date "Jan 2, 2020" --> date "Thursday, January 2, 2020 at 12:00:00 AM"
log date "January 2, 2020 5:06 PM" --> date "Thursday, January 2, 2020 at 5:06:00 PM"
log date "January 2, 2020 at 17:06:07" --> date "Thursday, January 2, 2020 at 5:06:07 PM"
log date "Thursday, January 2, 2020 at 12:00:00 PM" --> date "Thursday, January 2, 2020 at 12:00:00 PM"
log time of (date "1/2/2020 12:00 AM") --> 0
log time of (date "1/2/2020 12:30 PM") --> 45000
log time of (date "3:00 AM") --> 10800

-- The text may come from anywhere; what is written is read again
set s to "July 4, 1976"
log {year, month, day} of date s --> {1976, July, 4}
log date (s & " 9:30 AM") --> date "Sunday, July 4, 1976 at 9:30:00 AM"
set d to date "Sunday, July 4, 1976 9:30:15 AM"
log (date (d as text)) = d --> true
log (date (date string of d)) = d - (time of d) --> true
log date (short date string of (date "7/4/2016")) --> date "Monday, July 4, 2016 at 12:00:00 AM"
repeat with wrong in {"", "soon", "13/45/2020", "Smarch 3, 2020", "1/2/2020 25:99"}
	try
		date (contents of wrong)
		log {"taken", contents of wrong}
	on error number n
		if contents of wrong is "soon" then log n --> -30720
	end try
end repeat
