#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: scripts and other programs copy and paste, on an X server and on a Wayland desktop of their own. The other programs are xclip
and wl-clipboard.

    clipboard.py BIN [PATTERN]
"""
import base64
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import uuid

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "applets"))
import harness
from harness import binaries, until

PNG = base64.b64decode("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8BQDwAEhQGAhKmMIQAAAABJRU5ErkJggg==")
GIF = base64.b64decode("R0lGODlhAQABAIAAAP///wAAACwAAAAAAQABAAACAkQBADs=")
PRINTED_PNG = "«data PNGf" + PNG.hex().upper() + "»"

# Expressions that scripts copy, the type that another program asks for, and the bytes that it gets.
COPIED = [
    ('"häl😀"', "text/plain", "häl😀".encode()),
    ('"häl😀"', "UTF8_STRING", "häl😀".encode()),
    ("17", "text/plain", b"17"),
    ('{Unicode text:"plain", «class RTF »:«data RTF 7B5C72746631207269636820747D»}', "text/plain", b"plain"),
    ('{Unicode text:"plain", «class RTF »:«data RTF 7B5C72746631207269636820747D»}', "text/rtf", b"{\\rtf1 rich t}"),
    ("«data RTF 7B5C72746631207269636820747D»", "text/plain", b"rich t"),
    ("«data HTML3C623E6F68793C2F623E»", "text/html", b"<b>ohy</b>"),
    ("«data HTML3C623E6F68793C2F623E»", "text/plain", b"ohy"),
    ('(POSIX file "/tmp/a b")', "text/uri-list", b"file:///tmp/a%20b\r\n"),
    ('(POSIX file "/tmp/a b")', "x-special/gnome-copied-files", b"copy\nfile:///tmp/a%20b"),
    ('(POSIX file "/tmp/a b")', "text/plain", b"/tmp/a b"),
    ('{POSIX file "/tmp/a", POSIX file "/tmp/ü"}', "text/uri-list", b"file:///tmp/a\r\nfile:///tmp/%C3%BC\r\n"),
    ("«data PNGf" + PNG.hex() + "»", "image/png", PNG),
    ("«data GIFf" + GIF.hex() + "»", "image/gif", GIF),
]
# Types and bytes that another program has copied, expressions of scripts, and their results.
GIVEN = [
    ("text/plain", "outside ü😀".encode(), "the clipboard", '"outside ü😀"'),
    ("text/plain", b"12", "(the clipboard) + 1", "13"),
    ("text/plain", b"ohy", "the clipboard as «class utf8»", '"ohy"'),
    ("text/rtf", b"{\\rtf1 rich}", "the clipboard as «class RTF »", "«data RTF 7B5C7274663120726963687D»"),
    ("text/html", b"<i>x</i>", "the clipboard as «class HTML»", "«data HTML3C693E783C2F693E»"),
    ("text/uri-list", b"file:///tmp/a%20b\r\n", "POSIX path of (the clipboard)", '"/tmp/a b"'),
    ("text/uri-list", b"file:///tmp/a\r\nfile:///tmp/b\r\n", "POSIX path of item 2 of (the clipboard)", '"/tmp/b"'),
    ("text/uri-list", b"file:///tmp/a\r\nfile:///tmp/b\r\n", "POSIX path of (the clipboard as «class furl»)", '"/tmp/a"'),
    ("text/uri-list", b"http://a.example/\r\n", "paragraph 1 of (the clipboard)", '"http://a.example/"'),
    ("image/png", PNG, "the clipboard", PRINTED_PNG),
    ("image/png", PNG, "clipboard info", "{{«class PNGf», " + str(len(PNG)) + "}}"),
    ("image/gif", GIF, '"" & (class of (the clipboard as «class PNGf»))', '"«class PNGf»"'),
    ("image/png", b"no picture at all", 'try\nthe clipboard as TIFF picture\non error number n\nn\nend try', "-1700"),
    ("application/x-quoddle-forms", b"QAE1" + b"\xff" * 40, "the clipboard", '""'),
]


class X11:
    def __init__(self):
        self.display = harness.Display()
        self.environment = self.display.environment

    def close(self):
        self.display.close()

    def copy(self, kind, data):
        subprocess.run(["xclip", "-selection", "clipboard", "-t", "UTF8_STRING" if kind == "text/plain" else kind, "-i"], input=data, env=self.environment,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)

    def paste(self, kind):
        try:
            return subprocess.run(["xclip", "-selection", "clipboard", "-t", kind, "-o"], env=self.environment, capture_output=True, timeout=1).stdout
        except subprocess.TimeoutExpired:
            return b""  # the owner of the clipboard went while it was asked


class Wayland(harness.WaylandDesktop):
    def copy(self, kind, data):
        subprocess.run(["wl-copy", "-t", kind], input=data, env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)

    def paste(self, kind):
        return subprocess.run(["wl-paste", "-n", "-t", kind], env=self.environment, capture_output=True, timeout=harness.DEADLINE).stdout


class ClipboardTests(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.mark = "quoddle-test-" + uuid.uuid4().hex
        cls.desktops = [X11(), Wayland()]
        for desktop in cls.desktops:
            desktop.environment = dict(desktop.environment, QUODDLE_TEST_MARK=cls.mark)

    @classmethod
    def tearDownClass(cls):
        for desktop in cls.desktops:
            desktop.close()

    def each(self):
        for desktop in self.desktops:
            with self.subTest(type(desktop).__name__):
                yield desktop

    def osascript(self, environment, source, **more):
        done = subprocess.run([str(binaries() / "osascript"), "-ss", "-e", source], env=environment, capture_output=True, text=True, timeout=60, **more)
        return done.stdout.rstrip("\n") + done.stderr

    def holders(self):
        """Answers the processes that keep the clipboard for this test."""
        found = []
        for process in pathlib.Path("/proc").iterdir():
            try:
                is_ours = self.mark.encode() in (process / "environ").read_bytes() and (process / "comm").read_text().startswith("quoddle-clipboa")
                if is_ours and (process / "stat").read_text().rpartition(")")[2].split()[0] != "Z":
                    found.append(process.name)
            except (OSError, ValueError):
                pass
        return found

    def test_what_a_script_copies_is_there_for_other_programs(self):
        for desktop in self.each():
            for expression, kind, expected in COPIED:
                with self.subTest(expression + " as " + kind):
                    self.assertEqual(self.osascript(desktop.environment, "set the clipboard to " + expression), "")
                    self.assertEqual(desktop.paste(kind), expected)
            self.osascript(desktop.environment, "set the clipboard to «data GIFf" + GIF.hex() + "»")
            self.assertTrue(desktop.paste("image/png").startswith(b"\x89PNG"), "what every program takes")

    def test_what_other_programs_copy_is_there_for_scripts(self):
        for desktop in self.each():
            for kind, data, expression, expected in GIVEN:
                with self.subTest(kind + " " + expression):
                    desktop.copy(kind, data)
                    self.assertEqual(self.osascript(desktop.environment, expression), expected)

    def test_scripts_give_each_other_any_value(self):
        for desktop in self.each():
            for value in ('{1, "a", {x:2.5}}', 'date "2001-02-03"', "missing value"):
                self.osascript(desktop.environment, "set the clipboard to " + value)
                self.assertEqual(self.osascript(desktop.environment, "(the clipboard) is " + value), "true", value)
            self.assertEqual(self.osascript(desktop.environment, 'set the clipboard to "a"\nset the clipboard to (the clipboard) & "b"\nthe clipboard'), '"ab"')

    def test_what_was_copied_is_held_until_another_program_takes_over(self):
        for desktop in self.each():
            self.osascript(desktop.environment, 'set the clipboard to "a"')
            first = self.holders()
            self.osascript(desktop.environment, 'set the clipboard to "b"')
            until(lambda: len(self.holders()) == 1 and self.holders() != first, "the second one to take over")
            self.osascript(desktop.environment, "the clipboard")
            desktop.copy("text/plain", b"c")
            until(lambda: not self.holders(), "nobody to be left")

    def test_who_holds_it_keeps_nothing_else(self):
        environment = self.desktops[0].environment
        read, write = os.pipe()
        self.osascript(environment, 'set the clipboard to "a"', pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as pipe:
            self.assertEqual(pipe.read(), "", "the end of what a caller waits for")
        (holder,) = self.holders()
        self.assertEqual(os.readlink(f"/proc/{holder}/cwd"), "/")
        self.assertEqual(os.getsid(int(holder)), int(holder), "an interrupt in a terminal is for the script alone")

    def test_what_a_user_copies_in_a_dialog_outlives_it(self):
        desktop = self.desktops[0]
        question = 'display dialog "?" default answer "an answer" with title "Asking"'
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        applet = folder.name + "/Copier.app"
        subprocess.run([str(binaries() / "osacompile"), "-o", applet, "-e", question], check=True)
        for program in ([str(binaries() / "osascript"), "-e", question], [str(binaries() / "quoddle-shell"), applet]):
            with self.subTest(program[0]):
                desktop.copy("text/plain", b"before")
                environment = dict(desktop.environment, HOME=folder.name, XDG_RUNTIME_DIR=folder.name)
                script = subprocess.Popen(program, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
                xdotool = lambda *words: subprocess.run(["xdotool", *words], env=environment, capture_output=True, text=True).stdout.split()
                window = until(lambda: xdotool("search", "--onlyvisible", "--name", "^Asking$"), "the dialog")[-1]

                def copied():
                    # Keys that come before the dialog has the keyboard are lost, so they are pressed until the text has been copied.
                    xdotool("windowfocus", "--sync", window)
                    xdotool("key", "ctrl+a", "ctrl+c")
                    return desktop.paste("UTF8_STRING") == b"an answer"

                until(copied, "the answer to be copied")
                xdotool("key", "Return")
                self.assertEqual(script.wait(harness.DEADLINE), 0)
                until(lambda: self.holders(), "somebody to hold it")
                until(lambda: desktop.paste("UTF8_STRING") == b"an answer", "it to be held")

    def test_without_a_desktop_it_is_private(self):
        environment = self.desktops[0].environment
        self.desktops[0].copy("text/plain", b"shared")
        source = 'set the clipboard to "private"\nthe clipboard'
        for changed in ({"DISPLAY": ""}, {"DISPLAY": ":9999"}, {"QT_QPA_PLATFORM": "offscreen"}):
            without = {name: value for name, value in environment.items() if name != "QT_QPA_PLATFORM"} | changed
            self.assertEqual(self.osascript(without, source), '"private"', changed)
        self.assertEqual(self.desktops[0].paste("UTF8_STRING"), b"shared")
        self.assertEqual(self.holders(), [])


if __name__ == "__main__":
    harness.main(ClipboardTests)
