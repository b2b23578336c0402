use framework "Foundation"
property NSString : a reference to current application's NSString
property NSNotFound : a reference to 9.22337203685477E+18 + 5807
property theClass : class "NSArray"
script Delegate
	property parent : class "NSObject"
	property note : "kept"
	on own()
		return my note
	end own
end script
log NSNotFound > 9.0E+18 --> true
log Delegate's own() --> "kept"
log NSString --> NSString of current application
log theClass --> class "NSArray" of current application
on messageOf(call)
	try
		call's perform()
	on error m number n
		return {n, m}
	end try
end messageOf
script bySelector
	on perform()
		return NSString's stringWithString:"x"
	end perform
end script
log messageOf(bySelector) --> {-1708, "“NSString” is part of a framework, and there are no frameworks on this system."}
script byParentheses
	on perform()
		return its (current application's NSURL's fileURLWithPath:"/" isDirectory:true)
	end perform
end script
log messageOf(byParentheses) --> {-1708, "“NSURL” is part of a framework, and there are no frameworks on this system."}
script byClass
	on perform()
		return theClass's alloc()'s init()
	end perform
end script
log messageOf(byClass) --> {-1708, "“NSArray” is part of a framework, and there are no frameworks on this system."}
