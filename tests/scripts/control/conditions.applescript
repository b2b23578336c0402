on sizeWord(x)
	if x > 10 then
		return "big"
	else if x > 5 then
		return "middle"
	else if x = 0 or x = 1 then
		return "tiny"
	else
		return "small"
	end if
end sizeWord
log {sizeWord(11), sizeWord(6), sizeWord(1), sizeWord(3)} --> {"big", "middle", "tiny", "small"}
if not (1 = 2 and 2 = 2) then log "yes" --> "yes"
set flag to (1 = 1) and not (2 = 3)
log flag --> true
set either to (1 = 2) or (3 > 2 and 2 > 1)
log either --> true
try
	if "maybe" then log "never"
on error number n
	log n --> -1700
end try
