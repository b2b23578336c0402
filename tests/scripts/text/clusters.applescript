-- a base letter with a combining mark, and a pair of surrogates, are one character each
set s to "e" & (character id 769) & "x" & (character id 128512)
log count s --> 3
log id of character 1 of s --> {101, 769}
log id of character 3 of s --> 128512
