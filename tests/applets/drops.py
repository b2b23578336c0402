#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: files, and what is no file, dragged from the window of another program over a droplet's window, dropped or taken away again.

    drops.py BIN [PATTERN]

Pictures are left in the folder that QUODDLE_ARTEFACTS names, if any.
"""
import pathlib
import subprocess

import accessibility
import harness
from harness import binaries, until

GREEN, RED = (117, 209, 123), (228, 66, 72)

# Writes down which files came, and the end of each event.
OPENING = """
on open theFiles
    set names to ""
    repeat with f in theFiles
        set names to names & POSIX path of f & (character id 1)
    end repeat
    set noted to open for access (POSIX file "FOLDER/opened") with write permission
    write names & (character id 2) to noted starting at eof as «class utf8»
    close access noted
end open
"""

PLAIN_NAMES = ["report.txt", "two words.txt", "Grüße & Küsse.txt", "50% #1.txt", "日本語.txt", "two\nlines.txt", "plus+and?.txt", "quote'\".txt"]


class DragSource:
    """A program with a window in the corner of the screen, and the pointer."""

    def __init__(self, case, form, *names, listed=None):
        self.case = case
        arguments = []
        if listed:
            path = case.folder / "listed"
            path.write_bytes(b"\0".join(str(name).encode() for name in listed))
            arguments = ["--list", path]
        self.process = subprocess.Popen([binaries() / "dragsource", form, *arguments, *names], env=case.display.environment, stdout=subprocess.PIPE, text=True)
        case.addCleanup(self.end)
        self.says("ready")

    def end(self):
        self.process.kill()
        self.process.communicate()

    def says(self, word):
        self.case.assertEqual(self.process.stdout.readline().strip(), word)

    def xdotool(self, *words):
        subprocess.run(["xdotool", *map(str, words)], env=self.case.display.environment, check=True)

    def begin(self):
        """Takes hold of it. The button stays down."""
        self.xdotool("mousemove", 10, 10, "mousedown", 1, "mousemove", 30, 30)
        self.says("begun")

    def move(self, place):
        """There, and a little on, as a hand does."""
        x, y = place
        self.xdotool("mousemove", x - 8, y, "mousemove", x - 4, y, "mousemove", x, y)

    def let_go(self, action):
        self.xdotool("mouseup", 1)
        self.says(action)

    def drop(self, place, action):
        self.begin()
        self.move(place)
        self.let_go(action)


class Drops(accessibility.AccessibleCase):
    def start_droplet(self, name, source=OPENING, **more):
        applet = self.start(name, source, options=["-s"], **more)
        applet.window()
        self.find("Drop zone")
        return applet

    def files(self, *names):
        folder = self.folder / "Documents"
        folder.mkdir(exist_ok=True)
        for name in names:
            (folder / name).write_text("x")
        return [str(folder / name) for name in names]

    # What is seen

    def area(self, name):
        return self.find(name).get_extents(self.atspi.CoordType.SCREEN)

    def drop_zone(self):
        """A place in it that neither text nor pictures are on."""
        area = self.area("Drop zone")
        return area.x + 12, area.y + 12

    def pixels(self, x, y, width=1, height=1):
        drawn = subprocess.run(["import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"], env=self.display.environment,
                               capture_output=True, check=True).stdout
        return [tuple(drawn[i:i + 3]) for i in range(0, len(drawn), 3)]

    def becomes(self, color, place):
        until(lambda: self.pixels(*place) == [color], f"{color} at {place}, where {self.pixels(*place)} is")

    def artwork(self):
        area = self.area("Drop files here")
        return self.pixels(area.x, area.y, area.width, area.height)

    # What came of it

    def opened(self, applet):
        """The files of each event."""
        return [event.split("\1")[:-1] for event in applet.said("opened").split("\2")[:-1]]

    def test_files_are_taken(self):
        applet = self.start_droplet("Taker")
        files = self.files(*PLAIN_NAMES)
        place = self.drop_zone()
        plain = self.pixels(*place)[0]
        source = DragSource(self, "files", *files)
        source.begin()
        source.move(place)
        self.becomes(GREEN, place)
        applet.picture("dropping-accepted")
        source.let_go("copy")
        until(lambda: self.opened(applet) == [files], f"{files} to be opened, not {self.opened(applet)}")
        self.find("Drop zone")
        self.becomes(plain, place)


if __name__ == "__main__":
    harness.main(Drops)
