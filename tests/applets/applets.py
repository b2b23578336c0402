#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: real applets, made by osacompile from the sources below, run by the applet shell on a display of their own and used by keyboard and signals.

    applets.py BIN [PATTERN]      BIN holds osacompile and quoddle-shell

Pictures of windows are left in the folder that QUODDLE_ARTEFACTS names, if any.
"""
import shutil
import signal
import subprocess
import time

import harness
from harness import binaries, until


LOOP = """
on run
	set progress total steps to 100
	set progress description to "Working"
	try
		do shell script "echo started > FOLDER/started"
		repeat
			set x to 1
		end repeat
	on error number n
		try
			delay 0.01 -- hears of the stop once more if it was the command above that was stopped
		end try
		do shell script "echo " & n & " > FOLDER/caught"
		error number n
	end try
end run
"""


class Applets(harness.AppletCase):
    def test_runs_and_ends(self):
        applet = self.start("Plain", 'do shell script "echo done > FOLDER/out"')
        applet.ends()
        self.assertEqual(applet.process.returncode, 0)
        self.assertEqual(applet.said("out"), "done\n")

    def test_knows_its_bundle_and_what_is_in_it(self):
        applet = self.start("Where", """
			set p to quoted form of (POSIX path of (path to me) & linefeed & POSIX path of (path to current application))
			do shell script "mkdir -p FOLDER/Where.app/Contents/Resources/en.lproj"
			do shell script "echo '\\"k\\" = \\"text\\";' > FOLDER/Where.app/Contents/Resources/en.lproj/Localizable.strings"
			do shell script "echo " & p & (localized string "k") & " > FOLDER/where"
		""")
        applet.ends()
        self.assertEqual(applet.said("where"), f"{self.folder}/Where.app/\n{self.folder}/Where.app/text\n")

    def test_shows_progress_and_stops(self):
        applet = self.start("Stopped", LOOP)
        until(lambda: applet.said("started"), "the script to start")
        applet.window()
        applet.picture("progress")
        applet.key("Escape")
        applet.ends()
        self.assertEqual(applet.said("caught"), "-128\n")

    def test_closing_the_window_stops(self):
        applet = self.start("Closed", LOOP)
        until(lambda: applet.said("started"), "the script to start")
        applet.key("alt+F4")
        applet.ends()
        self.assertEqual(applet.said("caught"), "-128\n")

    def test_a_quit_request_stops_and_ends(self):
        applet = self.start("Terminated", LOOP)
        until(lambda: applet.said("started"), "the script to start")
        applet.process.send_signal(signal.SIGTERM)
        applet.ends()
        self.assertEqual(applet.said("caught"), "-128\n")

    def test_an_error_is_shown_and_ends_the_applet(self):
        applet = self.start("Failing", 'error "It went wrong." number 501')
        applet.window()
        time.sleep(0.3)
        applet.picture("error")
        self.assertIsNone(applet.process.poll())
        applet.key("Return")
        applet.ends()

    def test_an_error_at_once_hangs_on_its_window(self):
        applet = self.start("Hasty", 'set progress total steps to 10\nerror "It went wrong." number 501')

        def offset():
            places = []
            for window in applet.xdotool("search", "--onlyvisible", "--name", "^Hasty$"):
                numbers = dict(line.split("=") for line in applet.xdotool("getwindowgeometry", "--shell", window))
                places.append((int(numbers["X"]) + int(numbers["WIDTH"]) // 2, int(numbers["Y"])))
            return [places[1][i] - places[0][i] for i in (0, 1)] if len(places) == 2 else None

        # The distance includes the frame that the window manager gives the sheet.
        until(lambda: offset() and abs(offset()[0]) <= 6 and 0 <= offset()[1] <= 40, "the sheet to be over its window")
        applet.picture("hasty")
        applet.key("Return")
        applet.ends()

    def test_files_reach_the_open_handler(self):
        for name in ("one", "two"):
            (self.folder / name).write_text("x")
        applet = self.start("Opening", """
on open theFiles
	repeat with f in theFiles
		do shell script "basename " & quoted form of POSIX path of f & " >> FOLDER/out"
	end repeat
end open
""", files=[str(self.folder / "one"), str(self.folder / "two")])
        applet.ends()
        self.assertEqual(applet.said("out"), "one\ntwo\n")

    def test_stays_idles_and_asks_before_quitting(self):
        applet = self.start("Staying", """
property turns : 0
on idle
	set turns to turns + 1
	do shell script "echo " & turns & " >> FOLDER/idle"
	if turns > 1 then return 100
	return 1
end idle
on quit
	do shell script "echo quit >> FOLDER/idle"
	if turns > 1 then continue quit
end quit
""", options=["-s"])
        until(lambda: "1\n" in applet.said("idle"), "the first idle call")
        applet.rests()  # a quit that comes while the handler ends would be refused
        applet.process.send_signal(signal.SIGTERM)
        until(lambda: "quit" in applet.said("idle"), "the quit handler")
        until(lambda: "2\n" in applet.said("idle"), "the applet to stay after a quit it refused")
        applet.rests()
        applet.process.send_signal(signal.SIGTERM)
        applet.ends()

    def test_a_missing_or_damaged_script_ends_quietly(self):
        applet = self.start("Damaged", "return 1")
        applet.ends()
        main = self.folder / "Damaged.app/Contents/Resources/Scripts/main.scpt"
        good = main.read_bytes()
        for bad in (b"", good[:40], b"FasdUAS 1.101.10" + bytes(200), None):
            if bad is None:
                main.unlink()
            else:
                main.write_bytes(bad)
            done = subprocess.run([str(binaries() / "quoddle-shell"), str(self.folder / "Damaged.app")], env=self.display.environment, timeout=60, capture_output=True)
            self.assertEqual(done.returncode, 0, bad)

    def test_damaged_information_is_read_and_told_of_once(self):
        applet = self.start("Uninformed", "return 1", prepare=lambda bundle: (bundle / "Contents/Info.plist").write_text("{ no list"))
        applet.window()
        applet.rests()
        self.assertEqual(applet.said("Uninformed.log").count("Info.plist is left out"), 1)


if __name__ == "__main__":
    harness.main(Applets)
