#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: a droplet on a display of its own, its search used by keyboard.

    droplet.py BIN [PATTERN]
"""
import subprocess
import time

import accessibility
import harness
from harness import until

OPENING = """
on open theFiles
    repeat with f in theFiles
        do shell script "echo " & quoted form of POSIX path of f & " >> FOLDER/opened"
    end repeat
end open
"""


class Droplet(accessibility.AccessibleCase):
    def start_among_files(self, name):
        documents = self.folder / "Documents"
        documents.mkdir(exist_ok=True)
        for file in ("Project Report.pdf", "report.txt", "Annual report 2026.odt", "notes.md"):
            (documents / file).write_text("x")
        applet = self.start(name, OPENING, options=["-s"])
        applet.window()
        return applet

    def test_a_file_is_found_and_opened(self):
        applet = self.start_among_files("Opener")
        self.find("Drop files here to open them.", "label")
        applet.picture("droplet-drop")
        self.press(self.find("Find files"))
        self.find("Search", "text")
        applet.rests()
        self.assertIsNone(self.shown("0 found"))
        applet.type("report")
        self.find("3 found", "label")
        applet.picture("droplet-found")
        applet.key("Return")
        until(lambda: applet.said("opened") == f"{self.folder}/Documents/report.txt\n", "the best hit to be opened")
        # The mode and the text in the search field stay.
        self.find("3 found", "label")
        (self.folder / "Documents/report.txt").unlink()
        self.find("2 found", "label")
        applet.kill()

    def test_a_hit_is_looked_at_before_it_is_opened(self):
        applet = self.start_among_files("Looker")
        self.press(self.find("Find files"))
        self.find("Search", "text")
        applet.type("report")
        self.find("3 found", "label")
        applet.press("Down")  # the keyboard goes into the list
        applet.press("space")
        self.comes_to("report.txt")
        self.find("Text", "text")
        applet.picture("droplet-preview")
        applet.press("Down")
        self.comes_to("Project Report.pdf")
        applet.press("space")
        self.comes_to("Looker")
        self.press(self.find("Quick Look", "push button"))
        self.comes_to("Project Report.pdf")
        (self.folder / "Documents/Project Report.pdf").unlink()
        self.find("2 found", "label")
        applet.press("Return")
        until(lambda: applet.said("opened"), "the selected hit to be opened")
        self.comes_to("Looker")
        self.assertIsNone(self.shown("Close"))
        applet.kill()

    def comes_to(self, name):
        until(lambda: self.in_front() == name, f"the keyboard to be in “{name}”")

    def test_a_hook_that_loops_can_be_stopped(self):
        loops = """
            on appletfileisacceptable(f)
                repeat
                    WAIT
                end repeat
            end appletfileisacceptable"""
        file = self.folder / "a.txt"
        file.write_text("x")
        waits = ["", "delay 100", 'do shell script "sleep 100"']
        for number, wait in enumerate(waits + [f"try\n{wait}\nend try" for wait in waits[1:]]):
            applet = self.applet = self.start(f"Loops{number}", OPENING + loops.replace("WAIT", wait), options=["-s"])
            applet.window()
            opening = self.open(applet, file)
            self.find("Waiting for the script", "progress bar")
            applet.picture(f"droplet-hook{number}")
            applet.press("Escape")
            self.assertNotEqual(opening.wait(harness.DEADLINE), 0)  # the file is refused
            self.assertIsNone(applet.process.poll())
            self.assertEqual(applet.said("opened"), "")
            # The applet can also be ended while the hook loops.
            self.open(applet, file)
            bar = self.find("Waiting for the script", "progress bar")
            if number == 0:
                if not self.is_wayland:
                    self.click(bar)  # the click gives the panel the keyboard
                applet.press("ctrl+q")
            else:
                applet.process.terminate()
            applet.ends()

    def test_the_user_goes_on_while_a_hook_takes_its_time(self):
        documents = self.folder / "Documents"
        documents.mkdir()
        for file in ("slow.txt", "other.txt", *(f"some{number}.txt" for number in range(40))):
            (documents / file).write_text("x")
        applet = self.applet = self.start("Slow", OPENING + """
            on appletfileisacceptable(f)
                if POSIX path of f ends with "/slow.txt" then delay 100
                if POSIX path of f contains "/some" then delay 0.2
                return true
            end appletfileisacceptable""", options=["-s"])
        applet.window()
        self.press(self.find("Find files"))
        self.find("Search", "text")
        applet.type("slow")
        self.find("Waiting for the script", "progress bar")
        self.comes_to("Slow")  # the panel has not taken the keyboard
        applet.picture("droplet-hook-search")
        applet.press("ctrl+a")
        applet.type("other")
        self.find("1 found", "label")
        self.assertIsNone(self.shown("Waiting for the script"))
        applet.press("Return")
        until(lambda: applet.said("opened") == f"{documents}/other.txt\n", "the file to be opened")

        opening = self.open(applet, *(documents / f"some{number}.txt" for number in range(40)))
        self.press(self.find("Stop"))
        self.assertNotEqual(opening.wait(harness.DEADLINE), 0)
        self.assertEqual(applet.said("opened"), f"{documents}/other.txt\n")

        self.find("Search", "text")
        applet.press("ctrl+a")
        applet.type("slow")
        self.find("Waiting for the script", "progress bar")
        applet.press("ctrl+q")
        applet.ends()

    def test_a_hook_may_ask_the_user(self):
        file = self.folder / "a.txt"
        file.write_text("x")
        applet = self.start("Asks", OPENING + """
            on appletfileisacceptable(f)
                return button returned of (display dialog "Take it?" buttons {"No", "Yes"} default button "Yes") is "Yes"
            end appletfileisacceptable""", options=["-s"])
        applet.window()
        opening = self.open(applet, file)
        self.find("Yes", "push button")
        time.sleep(1.5)  # longer than a hook may take before the panel comes
        self.assertIsNone(self.shown("Waiting for the script"))
        applet.press("Return")
        self.assertEqual(opening.wait(harness.DEADLINE), 0)
        self.assertEqual(applet.said("opened"), f"{file}\n")
        applet.kill()

    def open(self, applet, *files):
        """Opens files by a second launch; answers its process."""
        opening = subprocess.Popen([str(harness.binaries() / "quoddle-shell"), str(self.folder / (applet.name + ".app")), *map(str, files)],
                                   env=applet.environment(), stderr=subprocess.DEVNULL)
        self.addCleanup(opening.wait)
        self.addCleanup(opening.kill)  # comes before the wait, which would not end where the applet never answers
        return opening

    def press(self, control):
        control.do_action(0)


if __name__ == "__main__":
    harness.main(Droplet)
