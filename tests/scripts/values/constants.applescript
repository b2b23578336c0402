log {missing value, true, false, yes, no, ask, null} --> {missing value, true, false, yes, no, ask, null}
log {current application, class of missing value, missing value as text, missing value & 1} --> {current application, class, "missing value", {missing value, 1}}
log {case, hyphens, diacriticals, white space, punctuation, numeric strings, expansion} --> {case, hyphens, diacriticals, white space, punctuation, numeric strings, expansion}
log {bold, italic, plain, underline} --> {bold, italic, plain, underline}
log {yes as text, hyphens as text, "" & no, {yes} contains yes, yes = no} --> {"yes", "hyphens", "no", true, false}
log {Monday = Monday, Monday is in {Monday, Tuesday}, {Monday} as text, Monday & ""} --> {true, true, "Monday", {Monday, ""}}
log {it, me, it = me} --> {«script», «script», true}
log {pi * 2, pi as integer, class of pi} --> {6.28318530718, 3, real}
log {minutes * 2, 1 * hours / minutes, days div hours, weeks / days} --> {120, 60.0, 24, 7.0}
set b to (1 = 1)
log {b, b as text, b as integer, not b, {b} & b, b is true} --> {true, "true", 1, false, {true, true}, true}
log {AppleScript, class of AppleScript's version, AppleScript's pi = pi} --> {«script AppleScript», text, true}
