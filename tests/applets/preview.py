#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: the preview panel over a list of files, with a real keyboard and pointer, as a screen reader sees it.

    preview.py BIN [PATTERN]

Pictures are left in the folder that QUODDLE_ARTEFACTS names, if any; QUODDLE_APPEARANCE=dark makes them dark.
"""
import signal
import struct
import subprocess
import time
import zlib

import accessibility
import harness
from harness import until

# Pixels to a side: 576 MB when the picture is decoded at once, some hundred kB in the file.
LARGE = 12000


def png(width, height, row):
    def chunk(kind, body):
        return struct.pack(">I", len(body)) + kind + body + struct.pack(">I", zlib.crc32(kind + body))

    compressor = zlib.compressobj(9)
    pixels = b"".join(compressor.compress(b"\0" + row) for _ in range(height)) + compressor.flush()
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)) + chunk(b"IDAT", pixels) + chunk(b"IEND", b"")


PDF = b"""%PDF-1.4
1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj
2 0 obj<</Type/Pages/Count 2/Kids[4 0 R 5 0 R]>>endobj
3 0 obj<</Length 94>>stream
BT /F1 40 Tf 50 700 Td (A page of a document) Tj ET 1 0 0 rg 50 50 200 100 re f               \nendstream endobj
4 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents 3 0 R/Resources<</Font<</F1<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>>>endobj
5 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 595 842]/Contents 3 0 R/Resources<</Font<</F1<</Type/Font/Subtype/Type1/BaseFont/Helvetica>>>>>>>>endobj
trailer<</Root 1 0 R>>
%%EOF
"""
FILES = {
    "picture.png": png(900, 500, b"\x30\x80\xe0\xff" * 450 + b"\xe0\x80\x30\x80" * 450),
    "text.txt": "A plain text: naïve, 日本.\n".encode() * 40,
    "source.py": b"def f(x):\n    return x + 1\n",
    "rich.rtf": rb"{\rtf1\ansi{\fonttbl{\f0 Helvetica;}}{\colortbl;\red200\green0\blue0;}\f0\fs48\b Rich\b0\par\fs24 and \cf1 red\par}",
    "document.pdf": PDF,
    "blob.bin": bytes(range(256)) * 20,
    "large.png": png(LARGE, LARGE, b"\x80" * (4 * LARGE)),
}
ORDER = [*FILES, "Folder"]


class List:
    """The process that shows the list of files."""

    def __init__(self, case, *options):
        self.case, self.name = case, "Files"
        environment = dict(case.display.environment, HOME=str(case.folder), XDG_CONFIG_HOME=str(case.folder / "config"),
                           XDG_DATA_HOME=str(case.folder / "data"))
        self.process = subprocess.Popen([harness.binaries() / "previewlist", *options, *[case.folder / name for name in ORDER]], env=environment)
        case.addCleanup(self.kill)
        until(lambda: self.active() == "Files", "the list to have the keyboard")

    kill, xdotool, picture = harness.Applet.kill, harness.Applet.xdotool, harness.Applet.picture

    def active(self):
        """Answers the window that has the keyboard; the window manager names it a little earlier as the active one."""
        return " ".join(self.xdotool("getwindowfocus", "getwindowname"))

    def becomes_active(self, name):
        until(lambda: self.active() == name, f"“{name}” to be in front; there is “{self.active()}”")


class Preview(accessibility.AccessibleCase):
    def setUp(self):
        super().setUp()
        for name, contents in FILES.items():
            (self.folder / name).write_bytes(contents)
        (self.folder / "Folder" / "inside").mkdir(parents=True)
        for file, content in {"data/applications/viewer.desktop": "[Desktop Entry]\nType=Application\nName=Image Viewer\nExec=true\n",
                              "config/mimeapps.list": "[Default Applications]\nimage/png=viewer.desktop\n"}.items():
            (self.folder / file).parent.mkdir(parents=True, exist_ok=True)
            (self.folder / file).write_text(content)

    def open(self, *options):
        self.applet = List(self, *options)
        self.applet.xdotool("key", "space")
        self.applet.becomes_active(ORDER[0])

    def seen(self):
        return [(name, role) for _, name, role in self.showing()]

    def text(self):
        control = self.find("Text", "text")
        return self.atspi.Text.get_text(control, 0, -1)

    def test_every_kind_by_keyboard(self):
        self.open()
        self.find("Picture")
        for name in ("Close", "Open with “Image Viewer”"):
            self.find(name, "push button")
        self.assertIsNone(self.shown("Next"))
        self.picture("picture")
        shows = {"text.txt": lambda: self.text().startswith("A plain text: naïve, 日本."), "source.py": lambda: self.text().startswith("def f(x)"),
                 "rich.rtf": lambda: self.text().startswith("Rich\nand red"), "document.pdf": lambda: self.shown("Page 2") or self.shown("Page 1"),
                 "blob.bin": lambda: self.shown("Information on blob.bin"), "large.png": lambda: self.shown("Picture"),
                 "Folder": lambda: any("1 item" in name for name, _ in self.seen())}
        for name in ORDER[1:]:
            self.applet.xdotool("key", "Down")
            self.applet.becomes_active(name)
            until(shows[name], name + " to be shown")
            self.picture(name)
        self.applet.xdotool("key", "space")
        self.applet.becomes_active("Files")
        self.assertIsNone(self.shown("Close"))

    def test_several_files(self):
        self.open()
        self.applet.xdotool("key", "shift+Down")
        following = self.find("Next", "push button")
        until(lambda: self.is_enabled(following), "a next file")
        self.applet.xdotool("key", "Right")
        self.applet.becomes_active("text.txt")
        self.picture("several")
        self.click(self.find("Previous", "push button"))
        self.applet.becomes_active("picture.png")
        self.applet.xdotool("key", "Escape")
        self.applet.becomes_active("Files")

    def test_a_file_changes_while_it_is_looked_at(self):
        self.open()
        self.find("Picture")
        (self.folder / "new").write_bytes(b"no picture")
        (self.folder / "new").rename(self.folder / ORDER[0])
        self.find("The picture cannot be shown.", "label")
        (self.folder / ORDER[0]).unlink()
        self.find("The file is not there any more.", "label")
        self.picture("gone")
        self.assertEqual(self.applet.active(), ORDER[0])

    def test_moved_and_made_larger_with_the_pointer(self):
        self.open()
        area = self.find("Picture").get_extents(self.atspi.CoordType.SCREEN)

        def drag(start, end):
            self.applet.xdotool("mousemove", *map(str, start), "mousedown", "1")
            for step in (0.3, 0.6, 1):
                time.sleep(0.1)
                self.applet.xdotool("mousemove", *(str(round(a + (b - a) * step)) for a, b in zip(start, end)))
            self.applet.xdotool("mouseup", "1")

        def comes_to(**wanted):
            def is_there():
                now = self.find("Picture").get_extents(self.atspi.CoordType.SCREEN)
                return all(abs(getattr(now, side) - value) <= 8 for side, value in wanted.items())
            until(is_there, f"the picture to come to {wanted}")

        drag((area.x + 300, area.y - 15), (area.x + 260, area.y - 5))
        comes_to(x=area.x - 40, y=area.y + 10, width=area.width)
        right = area.x - 40 + area.width + 3
        drag((right, area.y + 200), (right + 60, area.y + 200))
        comes_to(x=area.x - 40, width=area.width + 60)

    def test_a_click_that_is_past_when_it_is_heard_of_moves_nothing(self):
        self.open()
        area = self.find("Picture").get_extents(self.atspi.CoordType.SCREEN)

        def place():
            return self.applet.xdotool("getwindowfocus", "getwindowgeometry")[1]

        before = place()
        self.applet.process.send_signal(signal.SIGSTOP)
        try:
            self.applet.xdotool("mousemove", str(area.x + 300), str(area.y - 15), "click", "1")
        finally:
            self.applet.process.send_signal(signal.SIGCONT)
        self.find("Picture").get_extents(self.atspi.CoordType.SCREEN)  # comes back when the click has been handled
        self.applet.xdotool("mousemove", str(area.x + 260), str(area.y + 40))
        self.applet.xdotool("key", "Down")  # if the window manager were moving the panel, it would have the keyboard
        self.applet.becomes_active(ORDER[1])
        self.assertEqual(place(), before)


if __name__ == "__main__":
    harness.main(Preview)
