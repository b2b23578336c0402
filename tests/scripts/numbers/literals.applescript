log {1, -5, 0, 007, 1.0, -1.5, 0.1, 1.50} --> {1, -5, 0, 7, 1.0, -1.5, 0.1, 1.5}
log {10000.0, 9999.0, 12345.678, 1.23456789123E+8, 1.0E+10} --> {1.0E+4, 9999.0, 1.2345678E+4, 1.23456789123E+8, 1.0E+10}
log {0.01, 0.001, 1.0E-3, 1.0E-4, 5.0E-4, 1.5E-5, 0.00123} --> {0.01, 0.001, 0.001, 1.0E-4, 5.0E-4, 1.5E-5, 0.00123}
log {1E10, 1e3, 1.5e3, 2E-3, 1.0E+2} --> {1.0E+10, 1000.0, 1500.0, 0.002, 100.0}
log {1 / 3, 2 / 3, 100 / 3, 1000 / 3, 100000 / 3, 3 ^ 0.5, 1 / 24} --> {0.333333333333, 0.666666666667, 33.333333333333, 333.333333333333, 3.33333333333333E+4, 1.732050807569, 0.041666666667}
log {2 ^ 53, 2 ^ 64, 2 ^ 31, 2 ^ 60} --> {9.00719925474099E+15, 1.84467440737096E+19, 2.147483648E+9, 1.15292150460685E+18}
log {1 as text, 1.0 as text, 1.5 as text, -5 as text, 10000.0 as text, (1 / 3) as text, (2 ^ 31) as text, 0.001 as text} --> {"1", "1.0", "1.5", "-5", "1.0E+4", "0.333333333333", "2.147483648E+9", "0.001"}
log {(2 ^ 63) as text, "" & 1.0E+20, 1.0E-5 as text} --> {"9.223372036855E+18", "1.0E+20", "1.0E-5"}

-- Texts that spell numbers
log {"7" as number, "7.0" as number, "7" as real, "-7" as number, "1.5" as number, "007" as integer} --> {7, 7.0, 7.0, -7, 1.5, 7}
log {"+7" as integer, ".5" as number, "5." as number, "1e3" as number, "1.5E+3" as number, " 12 " as number} --> {7, 0.5, 5.0, 1000.0, 1500.0, 12}
log {"99999999999" as number, "536870912" as number, "1" + 1, 1 + "1", "1.5" * 2, -"3"} --> {9.9999999999E+10, 5.36870912E+8, 2, 2, 3.0, -3}
on asNumber(s)
	try
		return s as number
	on error m number n
		return m
	end try
end asNumber
log {asNumber(""), asNumber("abc"), asNumber("12abc"), asNumber("1 2"), asNumber("--1")} --> {"Can’t make \"\" into type number.", "Can’t make \"abc\" into type number.", "Can’t make \"12abc\" into type number.", "Can’t make \"1 2\" into type number.", "Can’t make \"--1\" into type number."}
log {"12" as number + 1, (3 as text) & 4, (3 as text) + 4, length of (100 as text)} --> {13, "34", 7, 3}
