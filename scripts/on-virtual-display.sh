#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs a program on a display of its own and saves pictures of it:  on-virtual-display.sh PROGRAM [ARGUMENT…]
# QUODDLE_PICTURE names the file (default applet.png in the current folder); QUODDLE_SECONDS is how long a program that stays is let run (default 20).
set -u
picture=${QUODDLE_PICTURE:-$PWD/applet.png}
seconds=${QUODDLE_SECONDS:-20}

# The server finds a free number itself and says so once it listens.
manager=
exec {ready}< <(exec Xvfb -displayfd 1 -screen 0 1024x640x24 -nolisten tcp -noreset 2>/dev/null)
server=$!
trap 'kill $manager $server 2>/dev/null' EXIT
read -r -u "$ready" number || { echo "The virtual display did not start." >&2; exit 1; }
export DISPLAY=":$number"
openbox >/dev/null 2>&1 &
manager=$!
# A window that is shown while the manager starts may be taken off the screen again.
for _ in $(seq 50); do
	xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id' && break
	sleep 0.1
done

"$@" &
program=$!
# The last picture with a window on it is kept: an applet that is done hides its window.
for _ in $(seq $((seconds * 4))); do
	if xwininfo -root -tree 2>/dev/null | grep -q 'quoddle-shell'; then
		import -window root "$picture.new.png" 2>/dev/null && mv "$picture.new.png" "$picture"
	fi
	kill -0 $program 2>/dev/null || break
	sleep 0.25
done
if kill -0 $program 2>/dev/null; then
	kill $program
	# One that asks something may want its answer first.
	for _ in $(seq 20); do kill -0 $program 2>/dev/null && sleep 0.1; done
	kill -KILL $program 2>/dev/null
	wait $program 2>/dev/null
	status=0
else
	wait $program
	status=$?
fi
[ -f "$picture" ] && echo "Picture of the window: $picture"
exit $status
