#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: scripts run by osascript, or by an applet that asks for the standard commands, and their dialogs on a display of their own, found by accessible name and
used by real keys and clicks.

    standarddialogs.py BIN [PATTERN]

Pictures of the dialogs are left in the folder that QUODDLE_ARTEFACTS names, if any; QUODDLE_APPEARANCE=dark makes them dark.
"""
import ctypes
import os
import pathlib
import plistlib
import signal
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "applets"))
import accessibility
import harness
from harness import binaries, until

# A notification service that shows nothing and writes down the notifications.
NOTIFICATIONS = """
import sys
from gi.repository import Gio, GLib
XML = '''<node><interface name="org.freedesktop.Notifications">
<method name="GetCapabilities"><arg type="as" direction="out"/></method>
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method></interface></node>'''
def called(connection, sender, path, interface, method, arguments, invocation):
    if method == "GetCapabilities":
        return invocation.return_value(GLib.Variant("(as)", (["body", "body-markup"],)))
    print(arguments.unpack()[3:5], arguments.unpack()[6], flush=True)
    invocation.return_value(GLib.Variant("(u)", (1,)))
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object("/org/freedesktop/Notifications", Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0], called)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.Notifications", 0, lambda *a: print("ready", flush=True), None)
GLib.MainLoop().run()
"""


# Every parameter of every command, in the form in which the language prints it.
PARAMETERS = """choose application with title "a" with prompt "b" as alias with multiple selections allowed
choose color default color {1, 2, 3}
choose file with prompt "a" of type {"b"} default location c with invisibles, multiple selections allowed and showing package contents
choose file name with prompt "a" default name "b" default location c
choose folder with prompt "a" default location c with invisibles, multiple selections allowed and showing package contents
choose from list {1} with title "a" with prompt "b" default items {1} OK button name "c" cancel button name "d" with multiple selections allowed and empty selection allowed
choose remote application with title "a" with prompt "b"
choose URL showing {Web servers, FTP Servers, Telnet hosts, File servers, News servers, Directory services, Media servers, Remote applications} with editable URL
display alert "a" message "b" as warning buttons {"c"} default button 1 cancel button "c" giving up after 3
display dialog "a" default answer "b" buttons {"c"} default button 1 cancel button "c" with title "d" with icon caution giving up after 3 with hidden answer
display notification "a" with title "b" subtitle "c" sound name "d"
say "a" displaying "b" using "c" speaking rate 1 pitch 2 modulation 3 volume 4 saving to "d" with stopping current speech and waiting until completion
"""


# The commands that a person answers, each in its shortest form.
COMMANDS = ['display dialog "x"', 'display alert "x"', "choose from list {1, 2}", "choose file", "choose folder", "choose file name", "choose color", "choose URL",
            "choose application"]


class Run:
    """A running script and its dialog."""

    def __init__(self, case, source, program="osascript"):
        self.case = case
        arguments = [str(binaries() / program), "-ss", "-e", source] if program == "osascript" else [program]
        self.process = subprocess.Popen(arguments, env=case.environment, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        case.addCleanup(self.kill)

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.communicate()

    def result(self):
        """Answers the output of the script, or the number of its error."""
        output, errors = self.process.communicate(timeout=harness.DEADLINE)
        if self.process.returncode == 0:
            return output.rstrip("\n")
        return errors.rstrip().rpartition("(")[2].rstrip(")")


class StandardDialogs(accessibility.AccessibleCase):
    def setUp(self):
        super().setUp()
        # The processes that show dialogs write their settings when they end, into the folder that is removed next.
        self.addCleanup(lambda: until(lambda: not self.helpers(), "the processes behind to end"))
        (self.folder / "run").mkdir(mode=0o700)
        (self.folder / "share").mkdir()
        self.environment = dict(self.display.environment, HOME=str(self.folder), XDG_CONFIG_HOME=str(self.folder / "config"), XDG_DATA_HOME=str(self.folder / "data"),
                                XDG_DATA_DIRS=str(self.folder / "share"), XDG_RUNTIME_DIR=str(self.folder / "run"), QUODDLE_SHELL=str(binaries() / "quoddle-shell"))

    def press(self, name):
        self.find(name, "push button").do_action(0)

    def xdotool(self, *words):
        return subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True).stdout.split()

    def window(self, title):
        return until(lambda: self.xdotool("search", "--onlyvisible", "--name", "^" + title + "$"), "a window “" + title + "”")[-1]

    def keys(self, title, *names):
        """Presses real keys when the window with the title has the keyboard by itself."""
        window = self.window(title)
        until(lambda: self.xdotool("getactivewindow") == [window], "the dialog to be in front")
        time.sleep(0.1)
        self.xdotool("key", *names)

    def picture(self, label):
        folder = os.environ.get("QUODDLE_ARTEFACTS")
        if folder:
            time.sleep(0.5)
            pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
            subprocess.run(["import", "-window", "root", os.path.join(folder, "standard-" + label + ".png")], env=self.environment)

    def script(self, source):
        return Run(self, source)

    def helpers(self):
        """Answers the processes that show dialogs for this test."""
        found = []
        for entry in pathlib.Path("/proc").iterdir():
            try:
                if entry.name.isdigit() and (entry / "cmdline").read_bytes().startswith(str(binaries() / "quoddle-dialogs").encode()) \
                        and str(self.folder).encode() in (entry / "environ").read_bytes() and "State:\tZ" not in (entry / "status").read_text():
                    found.append(int(entry.name))
            except OSError:
                pass
        return found

    # The commands

    def test_display_dialog(self):
        run = self.script('display dialog "What is your name?" default answer "" with title "Asking" with icon note')
        self.find("What is your name?", "label")
        self.picture("dialog-answer")
        self.keys("Asking", "Z", "o", "e", "Return")
        self.assertEqual(run.result(), '{button returned:"OK", text returned:"Zoe"}')

        run = self.script('display dialog "Delete 3 files?" buttons {"Keep", "Ask Me", "Delete"} default button 3 cancel button "Keep" with icon caution giving up after 60')
        self.find("Delete", "push button")
        self.picture("dialog-buttons")
        self.press("Ask Me")
        self.assertEqual(run.result(), '{button returned:"Ask Me", gave up:false}')

        run = self.script('display dialog "x" with title "Leaving"')
        self.keys("Leaving", "Escape")
        self.assertEqual(run.result(), "-128")
        self.assertEqual(self.script('display dialog "x" giving up after 1').result(), '{button returned:"", gave up:true}')
        self.assertEqual(self.script('display dialog "x" buttons {"a"} default button 2').result(), "-50")

    def test_display_alert(self):
        run = self.script('display alert "The disk is full." message "Nothing was saved. Remove some files and try again." as critical buttons {"Stop", "Try Again"} cancel button 1')
        self.find("The disk is full.", "label")
        self.picture("alert")
        self.press("Try Again")
        self.assertEqual(run.result(), '{button returned:"Try Again"}')
        run = self.script('display alert "The disk is full." buttons {"Stop", "Try Again"} cancel button 1')
        self.press("Stop")
        self.assertEqual(run.result(), "-128")

    def test_choose_from_list(self):
        run = self.script('choose from list {"Apple", "Banana", "Cherry", 4} with title "Fruit" with prompt "Which ones do you like?" default items {"Apple"} multiple selections allowed true')
        self.find("Banana")
        self.picture("list")
        self.keys("Fruit", "shift+Down", "Return")
        self.assertEqual(run.result(), '{"Apple", "Banana"}')
        run = self.script('choose from list {1, 2} with title "Fruit" default items {2} without multiple selections allowed and empty selection allowed')
        self.keys("Fruit", "Return")
        self.assertEqual(run.result(), "{2}")
        run = self.script('choose from list {1, 2} with title "Fruit" cancel button name "None of Them"')
        self.press("None of Them")
        self.assertEqual(run.result(), "false")
        self.assertEqual(self.script("choose from list {}").result(), "-50")

    def test_choose_files(self):
        files = self.folder / "files"
        (files / "Letters").mkdir(parents=True)
        for name in ("Invoice.txt", "Notes.txt", "Picture.png", ".hidden.txt"):
            (files / name).write_text("x")
        place = f'default location POSIX file "{files}"'
        run = self.script(f'POSIX path of (choose file with prompt "Which text is to be counted?" of type {{"txt"}} {place} without invisibles)')
        self.find("Notes.txt")
        self.picture("file")
        self.assertFalse([name for _, name, _ in self.showing() if name in ("Picture.png", ".hidden.txt")])
        self.keys("Open", "n", "o", "Return")
        self.assertEqual(run.result(), f'"{files}/Notes.txt"')
        run = self.script(f'choose folder with prompt "Where to?" {place} with multiple selections allowed')
        self.find("Letters")
        self.picture("folder")
        self.press("Choose")
        self.assertRegex(run.result(), '^{alias ".*:files:"}$')
        run = self.script(f'POSIX path of (choose file name with prompt "Save the report as:" default name "Report.txt" {place})')
        self.find("Save", "push button")
        self.picture("filename")
        self.press("Save")
        self.assertEqual(run.result(), f'"{files}/Report.txt"')
        self.assertFalse((files / "Report.txt").exists())
        run = self.script("choose file")
        self.keys("Open", "Escape")
        self.assertEqual(run.result(), "-128")

    def test_choose_color(self):
        run = self.script("choose color default color {1000, 2000, 65535}")
        self.find("OK", "push button")
        self.picture("color")
        self.keys("Choose a Color", "Return")
        self.assertEqual(run.result(), "{1000, 2000, 65535}")
        run = self.script("choose color")
        self.press("Cancel")
        self.assertEqual(run.result(), "-128")

    def test_choose_URL(self):
        run = self.script("choose URL showing {FTP Servers} with editable URL")
        self.find("URL")
        self.keys("Choose a URL", *"ftp", "period", *"example", "period", *"com")
        self.picture("url")
        self.xdotool("key", "Return")
        self.assertEqual(run.result(), '"ftp://ftp.example.com"')

    def test_choose_application(self):
        folder = self.folder / "share" / "applications"
        folder.mkdir()
        for name in ("Files", "Terminal", "Text Editor", "Web Browser"):
            (folder / (name.replace(" ", "-") + ".desktop")).write_text(f"[Desktop Entry]\nType=Application\nName={name}\nIcon=none\n")
        run = self.script('choose application with title "Which?" with prompt "Which application opens it?"')
        self.find("Applications", "list")
        self.picture("application")
        self.keys("Which\\?", "t", "e", "x", "Return")
        self.assertEqual(run.result(), 'application "Text Editor"')
        run = self.script("choose application as alias")
        self.press("Choose")
        self.assertTrue(run.result().endswith(':share:applications:Files.desktop"'))

    def test_notifications_reach_the_service_or_standard_error(self):
        source = 'display notification "a < b" with title "Title" subtitle "Sub" sound name "Glass"'
        run = self.script(source)
        self.assertEqual(run.process.communicate(timeout=harness.DEADLINE), ("", "Title: Sub: a < b\n"))
        service = subprocess.Popen(["/usr/bin/python3", "-c", NOTIFICATIONS], env=self.environment, stdout=subprocess.PIPE, text=True)
        try:
            self.assertEqual(service.stdout.readline(), "ready\n")
            self.assertEqual(self.script(source).result(), "")
            self.assertEqual(service.stdout.readline(), "('Title', 'Sub\\na &lt; b') {'sound-name': 'message-new-instant'}\n")
            self.script('display notification "x"').result()
            self.assertEqual(service.stdout.readline(), "('osascript', 'x') {}\n")
        finally:
            service.kill()
            service.communicate()
        self.assertEqual(self.script("display notification").result(), "-50")

    # The process that shows the dialogs

    def test_one_process_shows_them_all_and_ends_with_the_script(self):
        run = self.script('repeat with i from 1 to 3\ndisplay dialog "Number " & i with title "Many" buttons {"Next"}\nend repeat')
        seen = set()
        for number in (1, 2, 3):
            self.find(f"Number {number}", "label")
            seen.update(self.helpers())
            self.press("Next")
        self.assertEqual(run.result(), '{button returned:"Next"}')
        self.assertEqual(len(seen), 1)
        until(lambda: not self.helpers(), "the process to end")

        run = self.script('display dialog "x" with title "Orphan"')
        self.window("Orphan")
        run.process.kill()
        until(lambda: not self.helpers(), "the dialog of a script that has gone to go")

    def test_a_dialog_that_dies_is_an_error_and_not_a_hang(self):
        run = self.script('try\ndisplay dialog "x" with title "Doomed"\non error number n\nend try\n{n, button returned of (display dialog "y" with title "Second" buttons {"Well"})}')
        self.window("Doomed")
        os.kill(self.helpers()[0], signal.SIGKILL)
        self.window("Second")
        self.press("Well")
        self.assertEqual(run.result(), '{-609, "Well"}')

    def test_without_a_display_nobody_is_asked(self):
        for display in ({}, {"DISPLAY": ":7654"}):
            self.environment = {name: value for name, value in self.environment.items() if name not in ("DISPLAY", "QT_QPA_PLATFORM")} | display
            for command in ('display dialog "x"', "choose file", "choose color", 'choose from list {"a"}'):
                self.assertEqual(self.script(command).result(), "-1713", (display, command))
            self.assertEqual(self.script('display notification "x"').result(), "")

    def test_every_parameter_is_known_by_its_words(self):
        (self.folder / "all.applescript").write_text(PARAMETERS)
        subprocess.run([str(binaries() / "osacompile"), "-o", str(self.folder / "all.scpt"), str(self.folder / "all.applescript")], check=True)
        self.assertEqual(subprocess.run([str(binaries() / "osadecompile"), str(self.folder / "all.scpt")], capture_output=True, text=True).stdout, PARAMETERS)

    def test_osascript_itself_does_without_windows(self):
        libraries = subprocess.run(["ldd", str(binaries() / "osascript")], capture_output=True, text=True, check=True).stdout
        self.assertNotRegex(libraries, r"Qt|xcb|X11|wayland")

    def standard_applet(self, name, source):
        """Starts an applet that leaves its dialogs to the standard commands."""
        applet = self.folder / (name + ".app")
        subprocess.run([str(binaries() / "osacompile"), "-o", str(applet), "-e", source], check=True)
        info = applet / "Contents/Info.plist"
        values = plistlib.loads(info.read_bytes())
        info.write_bytes(plistlib.dumps(dict(values, KVBUseStandardOSAXEN=True)))
        return Run(self, "", str(applet / "Contents/Linux" / name))

    def test_an_applet_that_asks_for_them_shows_them_itself(self):
        run = self.standard_applet("Standard", 'set r to display dialog "In the applet" with title "From an applet"\ndo shell script "echo " & (count r) & " > '
                                   + str(self.folder) + '/result"')
        self.find("In the applet", "label")
        self.picture("applet")
        self.assertEqual(self.helpers(), [])
        self.press("OK")
        run.process.wait(timeout=harness.DEADLINE)
        self.assertEqual((self.folder / "result").read_text(), "1\n")


    # Ends while a dialog is shown

    def windows_of(self, pid):
        return self.xdotool("search", "--onlyvisible", "--pid", str(pid))

    def test_an_applet_ends_whatever_dialog_is_up(self):
        for number, command in enumerate(COMMANDS):
            run = self.standard_applet(f"Ending{number}", command)
            until(lambda: self.windows_of(run.process.pid), command)
            run.process.send_signal(signal.SIGTERM)
            self.assertEqual((command, run.process.wait(timeout=harness.DEADLINE)), (command, 0))
            self.assertEqual((command, self.windows_of(run.process.pid)), (command, []))

    def test_the_process_behind_ends_whatever_dialog_is_up(self):
        # The process becomes our child when the script that has started it is gone, so that its exit status can be read.
        ctypes.CDLL(None).prctl(36, 1)  # PR_SET_CHILD_SUBREAPER
        self.addCleanup(ctypes.CDLL(None).prctl, 36, 0)
        for command in COMMANDS:
            run = self.script(command)
            helper = until(self.helpers, "the process behind")[0]
            until(lambda: self.windows_of(helper), command)
            run.kill()
            self.assertEqual((command, os.waitpid(helper, 0)[1]), (command, 0))

    # Places of dialogs

    def test_dialogs_open_in_the_middle_of_the_screen(self):
        for number in range(30):
            run = self.script(f'display dialog "Well?" with title "Centred {number}" buttons {{"Fine"}}')
            window = self.window(f"Centred {number}")
            self.find("Well?", "label")
            until(lambda: self.xdotool("getactivewindow") == [window], "the dialog to be in front")
            frame = self.find("Well?", "dialog").get_extents(self.atspi.CoordType.SCREEN)
            self.assertAlmostEqual(frame.x + frame.width / 2, 512, delta=20)
            self.assertAlmostEqual(frame.y + frame.height / 2, 320, delta=60)
            self.press("Fine")
            run.result()


if __name__ == "__main__":
    harness.main(StandardDialogs)
