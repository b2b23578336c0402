log {7 div 2, -7 div 2, 7 div -2, -7 div -2} --> {3, -3, -3, 3}
log {7 mod 2, -7 mod 2, 7 mod -2, -7 mod -2} --> {1, -1, 1, -1}
log {5.5 div 2, -5.5 div 2, 7.0 div 2, 1 div 1, 1 div 3} --> {2, -2, 3, 1, 0}
log {5.5 mod 2, -5.5 mod 2, 7 mod 2.0, 7.0 mod 2, 1 mod 1} --> {1.5, -1.5, 1.0, 1.0, 0}
log {class of (7 div 2), class of (7.0 div 2), class of (7 mod 2), class of (7.5 mod 2), class of (6 / 2)} --> {integer, integer, integer, real, real}
log {6 / 3, 7 / 2, 0 / 5, 1 / 3, 2 / 3, -1 / 4} --> {2.0, 3.5, 0.0, 0.333333333333, 0.666666666667, -0.25}
log {5 mod 0.3, 1.0E+10 mod 7, "7" div "2", "7" mod 4} --> {0.2, 4.0, 3, 3}
set {q, m} to {-17 div 5, -17 mod 5}
log {q, m, q * 5 + m} --> {-3, -2, -17}
-- Whole numbers stay whole, one real makes a real
log {1 + 1, 3 - 5, 2 * 3, 1 + 1.0, 2 * 3.5, 3 - 1.0, -(1.5), 0 - 0.0} --> {2, -2, 6, 2.0, 7.0, 2.0, -1.5, 0.0}
log {2 ^ 2, 2 ^ 0.5, 4 ^ 0.5, 2 ^ -1, 9 ^ 0, class of (2 ^ 2)} --> {4.0, 1.414213562373, 2.0, 0.5, 1.0, real}
log {0.1 + 0.2 = 0.3, 0.5 + 0.25 = 0.75, 1 = 1.0, 2 ≤ 2.0, 1.5 > 1} --> {false, true, true, true, true}
