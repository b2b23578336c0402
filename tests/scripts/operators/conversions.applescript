-- What each class becomes: itself, a value of another class, or the number of the error
property targets : {boolean, integer, real, number, text, list, record, date}
on table(x)
	set row to {}
	repeat with target in targets
		try
			set end of row to x as (contents of target)
		on error number n
			set end of row to n
		end try
	end repeat
	return row
end table
log table(5) --> {-1700, 5, 5.0, 5, "5", {5}, -1700, -1700}
log items 1 thru 2 of table(1) & items 1 thru 2 of table(0) --> {true, 1, false, 0}
log table(2.5) --> {-1700, 2, 2.5, 2.5, "2.5", {2.5}, -1700, -1700}
log items 1 thru 3 of table(true) & items 5 thru 8 of table(true) --> {true, 1, 1.0, "true", {true}, -1700, -1700}
log table("12") --> {-1700, 12, 12.0, 12, "12", {"12"}, -1700, -1700}
log table("abc") --> {-1700, -1700, -1700, -1700, "abc", {"abc"}, -1700, -1700}
log items 1 thru 5 of table("true") --> {true, -1700, -1700, -1700, "true"}
log table({}) --> {-1700, -1700, -1700, -1700, "", {}, -1700, -1700}
log table({7}) --> {-1700, 7, 7.0, 7, "7", {7}, -1700, -1700}
log table({1, 2}) --> {-1700, -1700, -1700, -1700, "12", {1, 2}, -1700, -1700}
log table({a:1}) --> {-1700, -1700, -1700, -1700, -1700, {1}, {a:1}, -1700}
log table(missing value) --> {-1700, -1700, -1700, -1700, "missing value", {missing value}, -1700, -1700}
log table(integer) --> {-1700, -1700, -1700, -1700, "integer", {integer}, -1700, -1700}
log items 2 thru 8 of table(May) --> {5, 5.0, 5, "May", {May}, -1700, -1700}
log items 1 thru 8 of table(hyphens) --> {-1700, -1700, -1700, -1700, "hyphens", {hyphens}, -1700, -1700}
set d to date "1/2/2020"
log items 1 thru 5 of table(d) --> {-1700, -1700, -1700, -1700, "Thursday, January 2, 2020 at 12:00:00 AM"}
script s
end script
log items 1 thru 5 of table(s) --> {-1700, -1700, -1700, -1700, -1700}
log item 6 of table(s) --> {«script s»}
log {5 as string, 5 as Unicode text, "5" as string, {1, "b"} as string} --> {"5", "5", "5", "1b"}

log {integer as «class pcls», missing value as «class pcls», {a:1} as record, d as date = d, true as boolean} --> {integer, missing value, {a:1}, true, true}

-- One of several classes: the class it has, else the first that works
log {5 as {text, integer}, 5 as {text, list}, "5" as {list, real}, {1} as {record, integer}} --> {5, "5", {"5"}, 1}
log {{"5"} as integer, {true} as boolean, {{3}} as integer, {5} as real} --> {5, true, 3, 5.0}
on failure(x, target)
	try
		x as (contents of target)
	on error m from f to t
		return {m, f, t}
	end try
end failure
log failure({1, 2}, integer) --> {"Can’t make {1, 2} into type integer.", {1, 2}, integer}
log failure({a:1}, text) --> {"Can’t make {a:1} into type text.", {a:1}, text}
log failure("a", boolean) --> {"Can’t make \"a\" into type boolean.", "a", boolean}
log failure(me, integer) --> {"Can’t make «script» into type integer.", «script», integer}
log failure({1, {a:2}}, text) --> {"Can’t make {1, {a:2}} into type text.", {1, {a:2}}, text}
log failure(missing value, integer) --> {"Can’t make missing value into type integer.", missing value, integer}
