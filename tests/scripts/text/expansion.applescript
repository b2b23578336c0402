log "bœuf" = "boeuf" --> false
ignoring expansion
	log "bœuf" = "boeuf" --> true
	log "bœuf" = "BOEUF" --> true
	log "le bœuf" contains "oe" --> true
	log "Straße" starts with "strass" --> true
	log "Ærø" comes before "af" --> true
end ignoring
log "bœuf" contains "oe" --> false
