-- Every spelling of a comparison, with values below, alike and above
on equals_(a, b)
	return {a = b, a is b, a equals b, a is equal to b, a equal b, a equal to b, a is equal b}
end equals_
log {equals_(1, 1), equals_(1, 2)} --> {{true, true, true, true, true, true, true}, {false, false, false, false, false, false, false}}
on differs(a, b)
	return {a ≠ b, a /= b, a is not b, a isn't b, a is not equal to b, a isn't equal to b, a doesn't equal b, a does not equal b, a is not equal b}
end differs
log {differs(1, 1), differs(1, 2)} --> {{false, false, false, false, false, false, false, false, false}, {true, true, true, true, true, true, true, true, true}}
on higher(a, b)
	return {a > b, a is greater than b, a greater than b, a comes after b, a is not less than or equal to b, a isn't less than or equal to b, a is not less than or equal b}
end higher
log {higher(1, 2), higher(2, 2), item 1 of higher(3, 2)} --> {{false, false, false, false, false, false, false}, {false, false, false, false, false, false, false}, true}
log higher(3, 2) --> {true, true, true, true, true, true, true}
on lower(a, b)
	return {a < b, a is less than b, a less than b, a comes before b, a is not greater than or equal to b, a isn't greater than or equal to b}
end lower
log {lower(1, 2), lower(2, 2)} --> {{true, true, true, true, true, true}, {false, false, false, false, false, false}}
on notBelow(a, b)
	return {a ≥ b, a >= b, a is greater than or equal to b, a greater than or equal to b, a is not less than b, a isn't less than b, a does not come before b, a doesn't come before b}
end notBelow
log {notBelow(2, 2), notBelow(1, 2)} --> {{true, true, true, true, true, true, true, true}, {false, false, false, false, false, false, false, false}}
on notAbove(a, b)
	return {a ≤ b, a <= b, a is less than or equal to b, a less than or equal to b, a is not greater than b, a isn't greater than b, a does not come after b, a doesn't come after b}
end notAbove
log {notAbove(2, 2), notAbove(3, 2)} --> {{true, true, true, true, true, true, true, true}, {false, false, false, false, false, false, false, false}}
on holds(a, b)
	return {a contains b, a contain b, b is in a, b is contained by a, not (a does not contain b), not (a doesn't contain b), not (b is not in a), not (b isn't in a), not (b is not contained by a), not (b isn't contained by a)}
end holds
log {holds("abc", "b"), holds({1, 2}, 3)} --> {{true, true, true, true, true, true, true, true, true, true}, {false, false, false, false, false, false, false, false, false, false}}
on beginsEnds(a, b, c)
	return {a starts with b, a start with b, a begins with b, a begin with b, a ends with c, a end with c}
end beginsEnds
log {beginsEnds("abc", "a", "c"), beginsEnds({1, 2}, 2, 1)} --> {{true, true, true, true, true, true}, {false, false, false, false, false, false}}
log {6 / 4, 6 ÷ 4, 7 div 2, 7 mod 2, 2 ^ 3, 2 * 3, +3, -3} --> {1.5, 1.5, 3, 1, 8.0, 6, 3, -3}
