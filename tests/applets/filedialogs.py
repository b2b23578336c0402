#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: applets that ask for files, folders and names, as a sheet and as a window; controls found by accessible name, real keys and clicks.

    filedialogs.py BIN [PATTERN]

Pictures are left in the folder that QUODDLE_ARTEFACTS names, if any; QUODDLE_APPEARANCE=dark makes them dark.
"""
import time

import accessibility
import harness
from harness import until

PATHS = """
on paths(these)
	set all to ""
	repeat with each in these
		set all to all & POSIX path of each & linefeed
	end repeat
	return all
end paths
"""


class FileDialogs(accessibility.AccessibleCase):
    def setUp(self):
        super().setUp()
        stuff = self.folder / "stuff"
        for folder in ("Reports/2027", "Tool.app/Contents", "Pictures"):
            (stuff / folder).mkdir(parents=True)
        for name, size in (("beta 2.txt", 400), ("beta 10.txt", 9000), ("alpha.png", 70000), (".secret", 3), ("Tool.app/Contents/Info.plist", 1)):
            (stuff / name).write_bytes(b"x" * size)
        (stuff / "shortcut").symlink_to("beta 2.txt")

    def ask(self, name, question, **more):
        return super().ask(name, question, PATHS, **more)

    def keys(self, title, *names):
        """Presses real keys when the window has come to the front by itself."""
        until(lambda: self.display.title(self.display.front()).startswith(title), "“" + title + "” to be in front")
        time.sleep(0.2)
        self.applet.press(*names)

    def row(self, name):
        return self.find(name, "table cell")

    def names(self):
        return [name for _, name, role in self.showing() if role == "table cell" and name and "\u2068" not in name and not name.endswith(("B", "bytes"))]

    def test_a_file_by_typing_its_name(self):
        self.ask("Sheet", 'set progress total steps to 3\nset progress description to "Working"\ndelay 1.5\njot(POSIX path of («event sysostdf» "Which <b>text</b>?" given «class prmp»:"Take & Read", «class ftyp»:{"txt"}, «class dflc»:(POSIX file "FOLDER/stuff")))')
        confirm = self.find("Take & Read", "push button")
        self.assertFalse(self.is_enabled(confirm))
        self.find("Which <b>text</b>?")
        self.row("beta 2.txt")
        names = self.names()
        for shown in ("Reports", "beta 2.txt", "beta 10.txt", "shortcut"):
            self.assertIn(shown, names)
        for hidden in ("alpha.png", ".secret", "Tool.app"):
            self.assertNotIn(hidden, names)
        self.keys("Open", "b", "e")
        until(lambda: self.is_enabled(confirm), "the button to take what is selected")
        self.picture("file")
        sheet, window = (int(dict(line.split("=") for line in self.applet.xdotool("getwindowgeometry", "--shell", each))["X"]) for each in (
            self.applet.xdotool("getactivewindow")[0], self.applet.window()))
        self.assertLess(sheet, window)  # the sheet is wider than its window and hangs over it
        self.keys("Open", "Return")
        self.noted(f"{self.folder}/stuff/beta 2.txt")

    def test_several_by_clicks_in_the_order_shown(self):
        self.ask("Several", 'jot(paths(choose file default location (POSIX file "FOLDER/stuff") with multiple selections allowed and invisibles))')
        self.click(self.row("shortcut"))
        self.applet.xdotool("keydown", "ctrl")
        self.click(self.row("Tool.app"))
        self.click(self.row(".secret"))
        self.applet.xdotool("keyup", "ctrl")
        self.picture("several")
        self.click(self.find("Open", "push button"))
        stuff = self.folder / "stuff"
        self.noted(f"{stuff}/.secret\n{stuff}/beta 2.txt\n{stuff}/Tool.app/\n")

    def test_a_bundle_is_one_file_and_a_folder_is_entered(self):
        self.ask("Bundle", 'jot(POSIX path of (choose file default location (POSIX file "FOLDER/stuff")))')
        self.click(self.row("Reports"), times=2)
        self.row("2027")
        self.click(self.find("Back"))
        self.click(self.row("Tool.app"), times=2)
        self.noted(f"{self.folder}/stuff/Tool.app/")

    def test_a_folder_that_is_typed(self):
        self.ask("Folder", 'jot(paths(choose folder with prompt "Pick" with multiple selections allowed))')
        self.find("Pick", "push button")
        self.keys("Choose", "slash")
        self.applet.type(str(self.folder)[1:] + "/stuff/Rep")
        self.picture("folder-typed")
        self.applet.type("orts")
        self.applet.press("Return")
        self.row("2027")
        self.picture("folder")
        self.keys("Choose", "Return")
        self.noted(f"{self.folder}/stuff/Reports/")

    def test_a_name_and_what_it_replaces(self):
        self.ask("Name", 'jot(POSIX path of (choose file name with prompt "Save the report as:" default name "beta 2.txt" default location (POSIX file "FOLDER/stuff")))')
        self.find("Save the report as:")
        self.row("alpha.png")
        self.picture("name")
        self.keys("Save", "Return")
        self.find("Replace", "push button")
        self.picture("replace")
        self.applet.press("Return")  # Return presses Cancel here
        until(lambda: not self.shown("Replace", "push button"), "the question to go")
        self.assertEqual(self.applet.said("noted"), "")
        self.keys("Save", "ctrl+a")
        self.applet.type("Reports/no/where")
        self.applet.press("Return")
        self.find(f"The folder “{self.folder}/stuff/Reports/no” cannot be found.")
        self.picture("problem")
        self.keys("Save", "ctrl+a")
        self.applet.type("new")
        self.applet.press("Return")
        self.noted(f"{self.folder}/stuff/new\n")

    def test_cancel_and_wrong_types(self):
        self.ask("Cancelled", 'choose folder')
        self.find("Choose", "push button")
        self.keys("Choose", "Escape")
        self.noted("error -128")
        self.ask("Wrong", 'choose file of type {"txt", {1, 2}}')
        self.noted("error -1700")

    def test_a_window_of_its_own(self):
        """Others call the script of an applet whose window is hidden."""
        applet = self.start("Hidden", """
on pick()
	return POSIX path of (choose file default location (POSIX file "FOLDER/stuff"))
end pick
on idle
	return 100
end idle
""", options=["-s"])
        self.applet = applet
        until(lambda: applet.process.poll() is not None or (self.folder / "run").exists() and any((self.folder / "run").rglob("*.sock")), "the applet to listen")
        time.sleep(0.5)
        import subprocess
        asking = subprocess.Popen([str(harness.binaries() / "osascript"), "-e", 'tell application "Hidden" to pick()'], env=applet.environment(), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.addCleanup(asking.kill)
        self.click(self.row("alpha.png"))
        self.picture("own-window")
        self.keys("Open", "Return")
        self.assertEqual(asking.communicate(timeout=harness.DEADLINE)[0], f"{self.folder}/stuff/alpha.png\n")

    def test_a_folder_of_many_files(self):
        many = self.folder / "many"
        many.mkdir()
        for number in range(50000):
            (many / f"file {number} of many.dat").touch()
        self.ask("Many", 'jot(POSIX path of (choose file default location (POSIX file "FOLDER/many")))')
        confirm = self.find("Open", "push button")
        self.row("file 0 of many.dat")
        self.picture("many")
        self.keys("Open", "End")
        until(lambda: self.is_enabled(confirm), "the last file to be selected")
        self.keys("Open", "Return")
        self.noted("many/file 49999 of many.dat")


if __name__ == "__main__":
    harness.main(FileDialogs)
