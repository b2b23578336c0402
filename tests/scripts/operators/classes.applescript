log {class of 1, class of 1.0, class of "a", class of true, class of {}, class of {a:1}, class of me} --> {integer, real, text, boolean, list, record, script}
log {class of (current date), class of missing value, class of integer, class of class, class of yes, class of hyphens} --> {date, class, class, class, constant, constant}
log {class of (1 = 1), class of (7 div 2), class of (6 / 2), class of (2 ^ 2), class of (1 & 2), class of ("a" & 1), class of length of "a"} --> {boolean, integer, real, real, list, text, integer}
log {class of 1 is number, class of 1 is in {integer, real}, class of "a" is in {string}, class of {} = list, integer = real} --> {false, true, true, true, false}
log {class of item 1 of {1.5}, class of (item 1 of {{}}), class of word 1 of "a", class of words of "a", class of characters 1 thru 1 of "a"} --> {real, list, text, list, list}
log {missing value = missing value, missing value is not missing value, missing value = null, missing value = "missing value", null} --> {true, false, false, false, null}
log {yes, no, ask, yes = true, yes as text} --> {yes, no, ask, false, "yes"}
log {January = January, January = 1, Monday = 2, January < March, Monday = Tuesday} --> {true, false, false, true, false}
log {true = 1, true = "true", true = true, 1 = {1}, "" = {}, 0 = false} --> {false, false, true, false, false, false}
log {integer, «class long», «class ctxt», «class abcd», «class list»} --> {integer, integer, text, «class abcd», list}
log {«class long» = integer, «constant ****yes », class of «class abcd», class of «constant ****abcd»} --> {true, yes, class, constant}
log {«data abcd0102», class of «data abcd0102», «data abcd0102» = «data abcd0102», «data abcd0102» = «data abcd0103»} --> {«data abcd0102», «class abcd», true, false}
log {«data utxt00410042» as text, «data utf8C3A9» as text, «data TEXT4142» as text} --> {"AB", "é", "AB"}
