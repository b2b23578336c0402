log {{1, 2} = {1, 2}, {1, 2} = {2, 1}, {1, 2} = {1}, {} = {}, {1, {2}} = {1, {2}}, {1, {2}} = {1, {3}}} --> {true, false, false, true, true, false}
log {{"a"} = {"A"}, {1} = {1.0}, {1} = 1, {"1"} = {1}, {missing value} = {missing value}} --> {true, true, false, false, true}
log {{1, 2, 3} contains 2, {1, 2, 3} contains {2, 3}, {1, 2, 3} contains {1, 3}, {1, 2, 3} contains {}, {} contains 1} --> {true, true, false, true, false}
log {{1, {2}} contains {{2}}, {1, {2}} contains {2}, {{1, 2}} contains {1, 2}, {{1, 2}} contains {{1, 2}}} --> {true, false, false, true}
log {{1.0} contains 1, {"a"} contains "A", {1, 2} contains "2", {{a:1}} contains {{a:1}}} --> {true, true, false, true}
log {2 is in {1, 2}, {2} is in {1, 2}, {} is in {1}, {{2}} is in {1, {2}}, "b" is not in {"a"}} --> {true, true, true, true, true}
log {{1, 2, 3} starts with 1, {1, 2, 3} starts with {1, 2}, {1, 2, 3} starts with {2}, {{1}, 2} starts with {{1}}} --> {true, true, false, true}
log {{1, 2, 3} ends with 3, {1, 2, 3} ends with {2, 3}, {1, 2, 3} ends with {3, 2}, {1} ends with {0, 1}} --> {true, true, false, false}
log {{1, 2} does not contain 3, {1, 2} doesn't contain 2, {3} is not contained by {1, 2}, {1} is contained by {1, 2}} --> {true, false, true, true}
log {missing value is in {missing value}, true is in {1}, real is in {integer, real}} --> {true, false, true}
set l to {1, 2}
copy l to m
log {l = m, l is m, l is not m} --> {true, true, false}
set end of m to 3
log {l = m, m contains l, m starts with l} --> {false, true, true}

-- As deep as memory allows
set l to {}
set m to {}
repeat 20000 times
	set l to {l, 1}
	set m to {m, 1}
end repeat
log {l = m, {l, 2} = {m, 3}} --> {true, false}
