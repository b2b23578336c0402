log {class of 5, class of true, class of text, class of class of 5} --> {integer, boolean, class, class}
log {(class of 5) is integer, class of 5 as text, {k:class of 5}, class of 5 & 1} --> {true, "integer", {k:integer}, {integer, 1}}
log {class of current application, class of missing value, class of pi, class of yes} --> {application, class, real, constant}
