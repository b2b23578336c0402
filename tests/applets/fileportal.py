#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: files, folders and names are chosen in the desktop's own chooser where its portal can do what is asked, else in our own.

    fileportal.py BIN [PATTERN]
"""
import json
import os
import select
import signal
import subprocess
import time

import harness
from harness import binaries, until

# A portal whose chooser shows nothing. Each question is written down; each line on its standard input is an answer to the last one:
# [response, URIs], or "refuse" before a question. "closed" is said when a question is taken back.
PORTAL = """
import json, sys
from gi.repository import Gio, GLib
CHOOSER, PATH, REQUEST = "org.freedesktop.portal.FileChooser", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Request"
ASKS = '<method name="%s"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/><arg type="o" direction="out"/></method>'
XML = '<node><interface name="%s">%s%s<property name="version" type="u" access="read"/></interface><interface name="%s"><method name="Close"/></interface></node>' % (
    CHOOSER, ASKS % "OpenFile", ASKS % "SaveFile", REQUEST)
interfaces = Gio.DBusNodeInfo.new_for_xml(XML).interfaces
request, refuses = None, False
def called(connection, sender, path, interface, method, arguments, invocation):
    global request
    if method == "Close":
        print(json.dumps("closed"), flush=True)
        return invocation.return_value(None)
    if refuses:
        return invocation.return_dbus_error("org.freedesktop.portal.Error.Failed", "not now")
    window, title, options = arguments.unpack()
    token = options.pop("handle_token")
    request = PATH + "/request/" + sender[1:].replace(".", "_") + "/" + token
    connection.register_object(request, interfaces[1], called)
    invocation.return_value(GLib.Variant("(o)", ("/" if title == "elsewhere" else request,)))
    connection.flush_sync()
    print(json.dumps([method, window.partition(":")[0], title, options]), flush=True)
def told(channel, condition):
    global refuses
    line = sys.stdin.readline()
    if not line:
        sys.exit()
    answer = json.loads(line)
    if answer == "refuse":
        refuses = True
    else:
        uris = {} if answer[1] is None else {"uris": GLib.Variant("as", answer[1])}
        bus.emit_signal(None, request, REQUEST, "Response", GLib.Variant("(ua{sv})", (answer[0], uris)))
    return True
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object(PATH, interfaces[0], called, lambda *a: GLib.Variant("u", VERSION))
GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN | GLib.IO_HUP, told)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.portal.Desktop", 0, lambda *a: print("ready", flush=True), None)
GLib.MainLoop().run()
"""

USUAL = {"modal": True, "multiple": False}


class FilePortal(harness.AppletCase):
    def setUp(self):
        super().setUp()
        (self.folder / "run").mkdir(mode=0o700)
        for name in ("a text.txt", "b.md", "photo.JPG"):
            (self.folder / name).write_text("x")
        (self.folder / "Tool.app/Contents").mkdir(parents=True)
        (self.folder / "Tool.app/Contents/Info.plist").write_text("x")
        os.symlink("a text.txt", self.folder / "link.txt")
        usual = self.display.environment
        self.addCleanup(setattr, self.display, "environment", usual)
        bus = harness.SessionBus(usual)
        self.addCleanup(bus.close)
        self.display.environment = dict(usual, DBUS_SESSION_BUS_ADDRESS=bus.address)
        self.environment = dict(self.display.environment, HOME=str(self.folder), XDG_RUNTIME_DIR=str(self.folder / "run"))
        self.portal = None

    def offer(self, version=4):
        self.withdraw()
        self.portal = subprocess.Popen(["/usr/bin/python3", "-c", PORTAL.replace("VERSION", str(version))], env=self.environment,
                                       stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(self.withdraw)
        self.assertEqual(self.portal.stdout.readline(), "ready\n")

    def withdraw(self):
        if self.portal:
            self.portal.kill()
            self.portal.communicate()
            self.portal = None

    def said(self):
        self.assertTrue(select.select([self.portal.stdout], [], [], harness.DEADLINE)[0], "the portal was told nothing")
        return json.loads(self.portal.stdout.readline())

    def answer(self, *what):
        print(json.dumps(what[0] if len(what) == 1 else what), file=self.portal.stdin, flush=True)

    def uri(self, name):
        return "file://" + str(self.folder / name).replace(" ", "%20")

    def script(self, source, **more):
        process = subprocess.Popen([str(binaries() / "osascript"), "-ss", "-e", source.replace("FOLDER", str(self.folder))], env=dict(self.environment, **more),
                                   stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(lambda: (process.kill(), process.communicate()))
        return process

    def result(self, process):
        output, errors = process.communicate(timeout=harness.DEADLINE)
        return output.rstrip("\n") if process.returncode == 0 else errors.rstrip().rpartition("(")[2].rstrip(")")

    def windows(self):
        return [name for name in ("Open", "Save", "Choose a Folder") if self.display.windows(name)]

    def escape(self):
        self.display.press("Escape")

    def path(self, name):
        return "Macintosh HD" + str(self.folder / name).replace("/", ":")

    def test_what_is_asked_and_answered(self):
        self.offer()
        folder = list(str(self.folder).encode() + b"\0")
        for source, question, answer, result in [
            ("choose file", ["OpenFile", "", "Open", USUAL], [self.uri("b.md")], f'alias "{self.path("b.md")}"'),
            ('choose file with prompt "Which?"', ["OpenFile", "", "Which?", USUAL], [self.uri("link.txt")], f'alias "{self.path("a text.txt")}"'),
            ("choose file with multiple selections allowed", ["OpenFile", "", "Open", USUAL | {"multiple": True}], [self.uri("b.md"), self.uri("photo.JPG")],
             f'{{alias "{self.path("b.md")}", alias "{self.path("photo.JPG")}"}}'),
            ("choose file", ["OpenFile", "", "Open", USUAL], [self.uri("b.md"), self.uri("photo.JPG")], f'alias "{self.path("b.md")}"'),
            ('choose folder default location POSIX file "FOLDER"', ["OpenFile", "", "Choose a Folder", USUAL | {"directory": True, "current_folder": folder}],
             [self.uri("")], f'alias "{self.path("").rstrip(":")}:"'),
            ('choose file name default name "new_one.txt" default location POSIX file "FOLDER"',
             ["SaveFile", "", "Save", {"modal": True, "current_name": "new_one.txt", "current_folder": folder}], [self.uri("other.txt")],
             f'file "{self.path("other.txt")}"'),
        ]:
            with self.subTest(source):
                process = self.script(source)
                self.assertEqual(self.said(), question)
                self.assertEqual(self.windows(), [])
                self.answer(0, answer)
                self.assertEqual(self.result(process), result)
        for response, pause in ((1, 0), (2, 0.6)):  # the second is what some portals say to the Escape key
            process = self.script("choose file")
            self.said()
            time.sleep(pause)
            self.answer(response, None)
            self.assertEqual(self.result(process), "-128")

    def test_types_become_filters(self):
        self.offer()
        process = self.script('choose file of type {"md", "public.jpeg"}')
        (name, conditions), = self.said()[3]["filters"]
        self.assertEqual(name, "*.md *.MD")
        for condition in ([0, "*.md"], [1, "text/markdown"], [1, "image/jpeg"]):
            self.assertIn(condition, conditions)
        self.assertNotIn([1, "image/png"], conditions)
        # A name that was typed may be of any type.
        self.answer(0, [self.uri("a text.txt")])
        until(lambda: self.windows() == ["Open"], "our own panel")
        until(lambda: (self.escape(), process.poll() is not None)[1], "the script to end")
        self.assertEqual(self.result(process), "-128")

    def test_our_own_panel(self):
        """Shown for what a portal has no word for, where there is none, and after one that refuses, answers nonsense or goes away."""
        ways = [(source, 4, {}, None) for source in ("choose file with invisibles", 'choose file default location POSIX file "FOLDER/b.md"',
                                                     'choose file with prompt "elsewhere"', 'choose file of type {"app"}', 'choose file with prompt "' + "long " * 50 + '"')]
        ways += [("choose folder", 2, {}, None), ('choose file default location POSIX file "FOLDER"', 3, {}, None), ("choose file", 4, {"QUODDLE_FILE_PANEL": "own"}, None),
                 ("choose file", None, {}, None), ("choose file", 4, {}, "refuse"), ("choose file", 4, {}, "gone")]
        ways += [("choose file", 4, {}, answer) for answer in ((2, None), (0, None), (0, []), (0, ["https://example.org/a"]), (0, ["a"]), (0, ["file:///%00"]),
                                                                (0, [self.uri("nothing")]), (0, [self.uri("")]))]
        for source, version, more, answer in ways:
            with self.subTest(source, version=version, more=more, answer=answer):
                self.withdraw()
                if version:
                    self.offer(version)
                if answer == "refuse":
                    self.answer("refuse")
                process = self.script(source, **more)
                if answer not in (None, "refuse"):
                    self.said()
                    self.withdraw() if answer == "gone" else self.answer(*answer)
                until(lambda: len(self.windows()) == 1, "our own panel")
                until(lambda: (self.escape(), process.poll() is not None)[1], "the script to end")
                self.assertEqual(self.result(process), "-128")

    def test_a_question_is_taken_back(self):
        self.offer()
        process = self.script("with timeout of 1 second\nchoose file\nend timeout")
        self.said()
        process.send_signal(signal.SIGINT)
        self.assertEqual(self.said(), "closed")

    def test_the_applet_waits_behind_the_chooser(self):
        self.needs_x_server()  # no portal can hang its chooser on a window of another program there
        self.offer()
        applet = self.start("Chooser", 'set progress total steps to 3\nset progress description to "Working"\ndelay 1.5\n'
                            'set f to choose file with prompt "Take"\ndo shell script "echo " & quoted form of POSIX path of f & " > FOLDER/out"\ndelay 60')
        method, window, _, options = self.said()
        self.assertEqual((method, window, options["accept_label"]), ("OpenFile", "x11", "Take"))
        self.answer(0, [self.uri("a text.txt")])
        until(lambda: applet.said("out") == str(self.folder / "a text.txt") + "\n", "the file")


if __name__ == "__main__":
    harness.main(FilePortal)
