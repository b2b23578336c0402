-- To the nearest, halves to the even neighbour
log {0.5 as integer, 1.5 as integer, 2.5 as integer, 3.5 as integer} --> {0, 2, 2, 4}
log {-0.5 as integer, -1.5 as integer, -2.5 as integer, -3.5 as integer} --> {0, -2, -2, -4}
log {2.49 as integer, 2.51 as integer, -2.51 as integer, 1.0 as integer, 0.4999 as integer} --> {2, 3, -3, 1, 0}
log {"7.5" as integer, "8.5" as integer, "-7" as integer, "2.51" as integer} --> {8, 8, -7, 3}
log {1.5 as {integer, text}, 2.5 as {integer}, 1 as {text, integer}, "abc" as {integer, text}} --> {2, 2, 1, "abc"}
-- A position that is a real is rounded as well
log {item 2.0 of {4, 5, 6}, character 1.0 of "abc"} --> {5, "a"}
