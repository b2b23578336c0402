on log x
	continue log {"seen", x}
end log
on delay x
	continue delay 0
	return x
end delay
log 1 --> {"seen", 1}
log (delay 5000) --> {"seen", 5000}
