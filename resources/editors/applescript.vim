" Vim syntax file for AppleScript
" SPDX-License-Identifier: MIT
if exists('b:current_syntax')
  finish
endif
let s:saved_cpo = &cpo
set cpo&vim

syn case ignore
syn spell toplevel
syn sync fromstart

" Of two matches at one place the later one counts: terms of more words come after those of fewer.
@MATCHES@

syn match applescriptNumber /\v%(<\d+%(\.\d*)?|\.\d+)%(e[+-]?\d+)?/
syn match applescriptNumber /\v<\d+%(st|nd|rd|th)>/
syn match applescriptName /\v\|%([^|\\]|\\.)+\|/ contains=@NoSpell
syn match applescriptRawCode /«[^»]*»/ contains=@NoSpell
syn match applescriptContinuation /¬/
syn match applescriptEscape /\\["\\nrt]/ contained
syn region applescriptText start=/"/ skip=/\\./ end=/"/ contains=applescriptEscape,@Spell
syn match applescriptComment /\%(--\|#\).*$/ contains=@Spell
syn region applescriptComment start=/(\*/ end=/\*)/ contains=applescriptComment,@Spell fold extend

hi def link applescriptKeyword Statement
hi def link applescriptCommand Function
hi def link applescriptConstant Constant
hi def link applescriptClass Type
hi def link applescriptProperty Identifier
hi def link applescriptParameter Label
hi def link applescriptNumber Number
hi def link applescriptRawCode PreProc
hi def link applescriptContinuation Special
hi def link applescriptText String
hi def link applescriptEscape SpecialChar
hi def link applescriptComment Comment

let b:current_syntax = 'applescript'
let &cpo = s:saved_cpo
unlet s:saved_cpo
