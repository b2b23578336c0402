log {June as integer, June as number, December as real, Saturday as integer} --> {6, 6, 12.0, 7}
log {June < July, November > April, Sunday < Monday, June ≤ 6} --> {true, true, true, true}
set d to date "Friday, November 9, 2007 11:35:50 AM"
try
	set weekday of d to Monday
on error number n
	log n --> -10006
end try
log {weekday of d, day of d} --> {Friday, 9}
try
	set date string of d to "x"
on error number n
	log n --> -1700
end try
try
	pi as month
on error number n
	log n --> -1700
end try
