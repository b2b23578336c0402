-- Case, bars, letters of other alphabets, words of the language within names
set Value1 to 1
log {value1, VALUE1, vaLue1} --> {1, 1, 1}
set |two words| to 2
set |é!| to 3
set |if| to 4
log {|two words|, |é!|, |if|} --> {2, 3, 4}
set _under to 5
set x_1y to 6
log {_under, x_1y} --> {5, 6}
set itemize to 7
set ending to 8
set ofThem to 9
set notes to 10
set andOr to 11
log {itemize, ending, ofThem, notes, andOr} --> {7, 8, 9, 10, 11}
set |repeat| to {|if|:1, |end repeat|:2}
log {|if| of |repeat|, |end repeat| of |repeat|, |repeat|} --> {1, 2, {|if|:1, |end repeat|:2}}
on |do it|(|a b|)
	return |a b| & "!"
end |do it|
log {|do it|("x"), my |do it|("y")} --> {"x!", "y!"}
-- The article says nothing
set the list1 to {1, 2}
log the first item of the list1 --> 1
log {the length of the list1, the second item of list1} --> {2, 2}
tell the list1 to log the last item --> 2
-- Spellings of the same
log {4 as number is 4, app_ of {app_:1}, word 1 of "a b" is in {"a"}} --> {true, 1, true}
log {3rd item of {1, 2, 3}, 3 is in {3}, item 1 in {9}, {9}'s item 1, item 1 of {9}} --> {3, true, 9, 9, 9}
log {1st item of {7}, 2nd item of {7, 8}, 12th character of "abcdefghijklm", 1rd item of {7}} --> {7, 8, "l", 7}
log {first item of {1, 2}, second item of {1, 2}, fifth character of "abcde", ninth character of "123456789"} --> {1, 2, "e", "9"}
property prop_ : 1
prop other_ : 2
log {prop_, other_} --> {1, 2}
