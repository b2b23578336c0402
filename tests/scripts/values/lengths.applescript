-- Numbers to check by: an inch is 0.0254 metres, a foot 12 inches, a yard 3 feet, a mile 1760 yards
on near(x)
	return ((x * 1000000) as integer) / 1000000
end near
log {1 as miles as kilometers as number, 1 as inches as centimeters as number, 1 as yards as feet as number, 1 as feet as inches as number} --> {1.609344, 2.54, 3.0, 12.0}
log {1 as kilometers as meters as integer, 250 as centimeters as meters as real, near(1 as meters as feet as number)} --> {1000, 2.5, 3.28084}
log {class of (3 as meters), class of (3 as metres), 3 as meters, 2.5 as feet} --> {meters, meters, meters 3.0, feet 2.5}
log {144 as square feet as square yards as number, 1 as square kilometers as square meters as number, 1 as square miles as square kilometers as number} --> {16.0, 1.0E+6, 2.589988110336}
log {1 as cubic feet as cubic inches as number, 1 as cubic yards as cubic feet as number, 1 as cubic meters as cubic centimeters as number} --> {1728.0, 27.0, 1.0E+6}
log {1 as gallons as quarts as number, near(1 as gallons as liters as number), 2 as litres as liters as number} --> {4.0, 3.785412, 2.0}
log {1 as kilograms as grams as number, 1 as pounds as ounces as number, near(1 as pounds as kilograms as number)} --> {1000.0, 16.0, 0.453592}
log {100 as degrees Celsius as degrees Fahrenheit as number, 32 as degrees Fahrenheit as degrees Celsius as number, 0 as degrees Celsius as degrees Kelvin as number, -40 as degrees Celsius as degrees Fahrenheit as number} --> {212.0, 0.0, 273.15, -40.0}
-- A quantity is no number: its number is got by coercion, other kinds are refused
log {(5 as meters) as text, (5 as meters) as integer, (2.6 as meters) as integer, (5 as meters) = 5} --> {"5.0", 5, 3, false}
on refused(x, target)
	try
		return x as target
	on error number n
		return n
	end try
end refused
log {refused(1 as meters, grams), refused(1 as liters, meters), refused(1 as square meters, meters), refused(1 as degrees Celsius, pounds), refused("x", meters)} --> {-1700, -1700, -1700, -1700, -1700}
log {refused(true, meters), refused({1, 2}, meters)} --> {-1700, -1700}
