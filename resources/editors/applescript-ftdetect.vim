" SPDX-License-Identifier: MIT
au BufNewFile,BufRead *.applescript setfiletype applescript
au BufNewFile,BufRead * if !did_filetype() && getline(1) =~# '^#!.*\<osascript\>' | setfiletype applescript | endif
