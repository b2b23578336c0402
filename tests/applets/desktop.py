#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: installed applets, asked over a session bus of their own as a desktop asks.

    desktop.py BIN [PATTERN]
"""
import configparser
import pathlib
import plistlib
import shlex
import shutil
import subprocess

import harness
from harness import binaries, until

NOTING = """
on jot(what)
	do shell script "echo " & quoted form of what & " >> FOLDER/noted"
end jot
on run
	jot("run")
end run
on open these
	repeat with f in these
		jot("open " & POSIX path of f)
	end repeat
end open
on idle
	return 100
end idle
on quit
	jot("quit")
	continue quit
end quit
"""

# A notification service that writes down the buttons, the icon with its picture's last pixel, and the launcher, and presses the first button of every notification, and that of another program's.
NOTIFICATIONS = """
from gi.repository import Gio, GLib
XML = '''<node><interface name="org.freedesktop.Notifications">
<method name="GetCapabilities"><arg type="as" direction="out"/></method>
<method name="Notify"><arg type="s" direction="in"/><arg type="u" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="as" direction="in"/><arg type="a{sv}" direction="in"/><arg type="i" direction="in"/><arg type="u" direction="out"/></method>
<signal name="ActionInvoked"><arg type="u"/><arg type="s"/></signal></interface></node>'''
def called(connection, sender, path, interface, method, arguments, invocation):
    if method == "GetCapabilities":
        return invocation.return_value(GLib.Variant("(as)", (["body", "actions"],)))
    actions = arguments.unpack()[5]
    hints = arguments.unpack()[6]
    picture = hints.get("image-data")
    print(actions, repr(arguments.unpack()[2]), picture and picture[:6], picture and bytes(picture[6][-4:]).hex(), hints.get("desktop-entry"), flush=True)
    invocation.return_value(GLib.Variant("(u)", (7,)))
    press = lambda number: connection.emit_signal(None, path, interface, "ActionInvoked", GLib.Variant("(us)", (number, "quit")))
    press(8) # of another program's
    if actions:
        GLib.timeout_add(500, lambda: press(7) and False)
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object("/org/freedesktop/Notifications", Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0], called)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.Notifications", 0, lambda *a: print("ready", flush=True), None)
GLib.MainLoop().run()
"""


class Desktop(harness.AppletCase):
    def setUp(self):
        super().setUp()
        self.environment = dict(self.display.environment, HOME=str(self.folder), XDG_CONFIG_HOME=str(self.folder / "config"),
                                XDG_DATA_HOME=str(self.folder / "data"), XDG_RUNTIME_DIR=str(self.folder / "run"), QUODDLE_SHELL=str(binaries() / "quoddle-shell"))
        (self.folder / "run").mkdir(mode=0o700)
        # The folder of the services does not exist when the bus starts; the installer must make the bus find it.
        bus = harness.SessionBus(self.environment)
        self.addCleanup(bus.close)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address
        self.processes = []
        self.addCleanup(self.end_all)

    def end_all(self):
        for process in self.processes:
            process.kill()
            process.wait()
        for number in self.numbers():
            subprocess.run(["kill", "-KILL", str(number)], check=False)

    def call(self, program, *words, **more):
        path = binaries() / program
        return subprocess.run([str(path if path.exists() else program), *map(str, words)], env=dict(self.environment, **more), capture_output=True, text=True, timeout=60)

    def make(self, name, source=NOTING, options=("-s",)):
        bundle = self.folder / (name + ".app")
        script = self.folder / "source"
        script.write_text(source.replace("FOLDER", str(self.folder)))
        made = self.call("osacompile", *options, "-o", bundle, script)
        self.assertEqual(made.returncode, 0, made.stderr)
        return bundle

    def launch(self, bundle, *files):
        process = subprocess.Popen([str(bundle / "Contents/Linux" / bundle.stem), *files], env=self.environment)
        self.processes.append(process)
        return process

    def install(self, bundle):
        done = self.call("quoddle", "install", bundle)
        self.assertEqual(done.returncode, 0, done.stderr)
        return pathlib.Path(done.stdout.removeprefix("Installed: ").rstrip("\n"))

    def ask(self, entry, method, *arguments):
        """Answers the error of a request to the applet of a desktop entry; empty when there is none."""
        name = entry.stem
        path = "/" + name.replace(".", "/").replace("-", "_")
        done = self.call("gdbus", "call", "--session", "--timeout", "20", "-d", name, "-o", path, "-m", "org.freedesktop.Application." + method, *arguments)
        return done.stderr.strip() if done.returncode else ""

    def quit(self, entry):
        """Asks an applet to end when it is at rest, because otherwise it would refuse."""
        for pid in self.numbers():
            harness.until_at_rest(pid)
        self.assertEqual(self.ask(entry, "ActivateAction", "quit", "[]", "{}"), "")

    def has_looked_for_the_bus(self, process):
        """Waits until an applet that the bus has not started has looked for the bus, which it does after its window had time to come."""
        until(lambda: self.noted() == "run\n", "the script to run")
        harness.until_at_rest(process.pid, 0.5)

    def owned(self, entry):
        done = self.call("gdbus", "call", "--session", "-d", "org.freedesktop.DBus", "-o", "/", "-m", "org.freedesktop.DBus.NameHasOwner", entry.stem)
        return "true" in done.stdout

    def noted(self):
        path = self.folder / "noted"
        return path.read_text() if path.exists() else ""

    def numbers(self):
        """Answers the process numbers of the running applets."""
        return [int(line.rpartition(" /")[0].split()[-1]) for line in self.call("quoddle", "list").stdout.splitlines()[1:]]

    def running(self):
        return len(self.numbers())

    def test_a_launcher_brings_the_window_to_the_front(self):
        if not self.is_wayland:
            self.skipTest("windows come to the front without a token on an X server")
        bundle = self.make("Shown", options=("-s", "-u"))
        entry = self.install(bundle)
        self.environment["WAYLAND_DEBUG"] = "1"
        with open(self.folder / "log", "w") as log:
            self.processes.append(subprocess.Popen([str(bundle / "Contents/Linux/Shown")], env=self.environment, stderr=log))
        del self.environment["WAYLAND_DEBUG"]
        until(lambda: self.owned(entry) and self.display.windows("Shown"), "the window and the name")
        for token, data in (("one", "{'activation-token': <'one'>, 'desktop-startup-id': <'x'>}"), ("two", "{'desktop-startup-id': <'two'>}")):
            self.assertEqual(self.ask(entry, "Activate", data), "")
            until(lambda: f'activate("{token}"' in (self.folder / "log").read_text(), "the window to come with the token " + token)

    def test_requests_reach_the_applet_that_runs(self):
        bundle = self.make("Server")
        entry = self.install(bundle)
        process = self.launch(bundle)
        until(lambda: self.owned(entry), "the name to be taken")
        self.assertEqual(self.ask(entry, "Activate", "{}"), "")
        self.assertEqual(self.ask(entry, "Open", "['file:///tmp/a%20b', 'file://localhost/etc/../etc/passwd']", "{'desktop-startup-id': <'x'>}"), "")
        until(lambda: "passwd" in self.noted(), "the files to be opened")
        self.quit(entry)
        until(lambda: process.poll() is not None, "the applet to end")
        self.assertEqual(self.noted(), "run\nopen /tmp/a b\nopen /etc/passwd\nquit\n")
        self.assertFalse(self.owned(entry))

    def test_what_is_no_request_is_refused(self):
        bundle = self.make("Server")
        entry = self.install(bundle)
        self.launch(bundle)
        until(lambda: self.owned(entry), "the name to be taken")
        many = "[" + ",".join(["'file:///a'"] * 10_001) + "]"
        long = "['file:///" + "a" * 16400 + "']"
        for method, arguments, expected in [
            ("Open", ["@as []", "{}"], "InvalidArgs"),
            ("Open", ["['http://example.com/a']", "{}"], "Only files of this computer"),
            ("Open", ["['file:///tmp/a', 'file://elsewhere/a']", "{}"], "elsewhere"),
            ("Open", ["['file:///tmp/%00']", "{}"], "InvalidArgs"),
            ("Open", ["['/tmp/a']", "{}"], "InvalidArgs"),
            ("Open", [many, "{}"], "LimitsExceeded"),
            ("Open", [long, "{}"], "LimitsExceeded"),
            ("ActivateAction", ["explode", "[]", "{}"], "explode"),
            ("Open", ["'file:///tmp/a'", "{}"], "UnknownMethod|InvalidArgs|Error"),
        ]:
            self.assertRegex(self.ask(entry, method, *arguments), expected, method + str(arguments)[:60])
        self.assertEqual(self.ask(entry, "Activate", "{}"), "")
        self.assertEqual(self.noted(), "run\n")

    def test_the_bus_starts_an_applet_for_a_request(self):
        # The name has every character that one of the readers of the two files could misunderstand.
        bundle = self.make("It's \"50% $HOME\" `x` \\y\né")
        entry = self.install(bundle)
        self.assertEqual(self.ask(entry, "Open", "['file:///etc/passwd']", "{}"), "")
        until(lambda: self.noted(), "the file to be opened")
        self.assertEqual(self.ask(entry, "Activate", "{}"), "")
        self.assertEqual(self.running(), 1)
        self.quit(entry)
        until(lambda: not self.owned(entry), "the name to be given back")
        self.assertEqual(self.noted(), "open /etc/passwd\nquit\n", "files that come with the launch are opened instead of a run")
        until(lambda: self.running() == 0, "the applet to end")
        # A quit request does not start an applet that is not running; an activation does.
        self.ask(entry, "ActivateAction", "quit", "[]", "{}")
        self.assertEqual(self.ask(entry, "Activate", "{}"), "")
        until(lambda: self.noted().endswith("quit\nrun\n"), "the applet to run")
        self.assertEqual(self.running(), 1)

    def test_an_applet_that_does_its_work_and_ends_can_be_asked_for_too(self):
        entry = self.install(self.make("Brief", "on run\ndo shell script \"echo run >> FOLDER/noted\"\nend run", ()))
        for times in (1, 2):
            self.assertEqual(self.ask(entry, "Activate", "{}"), "")
            until(lambda: self.noted() == "run\n" * times, "the applet to run")
            until(lambda: not self.owned(entry), "the name to be given back")

    def test_files_are_not_lost_on_one_that_was_started_before_it_was_installed(self):
        bundle = self.make("Early")
        process = self.launch(bundle)
        until(lambda: self.running() == 1, "the applet to run")
        self.has_looked_for_the_bus(process)
        entry = self.install(bundle)
        self.assertFalse(self.owned(entry))
        self.assertEqual(self.ask(entry, "Open", "['file:///etc/passwd']", "{}"), "")
        until(lambda: "open /etc/passwd" in self.noted(), "the file to be opened")
        until(lambda: not self.owned(entry), "the messenger to end")
        self.assertEqual(self.running(), 1)
        self.quit(entry)
        until(lambda: process.poll() is not None, "the applet to end")
        self.assertEqual(self.noted(), "run\nopen /etc/passwd\nquit\n")

    def test_a_copy_that_is_not_installed_leaves_the_name_alone(self):
        bundle = self.make("Server")
        entry = self.install(bundle)
        copy = self.folder / "copies" / "Server.app"
        shutil.copytree(bundle, copy)
        process = self.launch(copy)
        until(lambda: self.running() == 1, "the copy to run")
        self.has_looked_for_the_bus(process)
        self.assertFalse(self.owned(entry))

    def test_the_launcher_serves_with_a_bus_and_without(self):
        bundle = self.make("It's \"50% $HOME\" `x` \\y\né")
        entry = self.install(bundle)
        opened = ""
        # The file is launched by the bus, by the command line, which is all that some desktops use, and by the command line without a bus.
        for words, address, file in ((["gapplication", "launch", entry.stem], self.environment["DBUS_SESSION_BUS_ADDRESS"], "/etc/passwd"),
                                     (["gio", "launch", entry], self.environment["DBUS_SESSION_BUS_ADDRESS"], "/etc/group"),
                                     (["gio", "launch", entry], "disabled:", "/etc/hostname")):
            done = subprocess.run([*map(str, words), file], env=dict(self.environment, DBUS_SESSION_BUS_ADDRESS=address), stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=30)
            self.assertEqual(done.returncode, 0, words)
            opened += "open " + file + "\n"
            until(lambda: self.noted() == opened, "the launcher to open " + file)
        self.assertEqual(self.running(), 1)

    def test_quitting_from_outside(self):
        entry = self.install(self.make("Server"))
        launcher = configparser.RawConfigParser(delimiters="=", strict=True)
        launcher.optionxform = str
        launcher.read(entry, encoding="utf-8")
        self.assertEqual(launcher["Desktop Entry"]["Actions"], "quit;")
        action = shlex.split(launcher["Desktop Action quit"]["Exec"])
        refusing = "on quit\nend quit\n"
        for words, source, status, said in [(action, NOTING, 0, ""), ([str(binaries() / "quoddle"), "quit", "Server"], NOTING, 0, ""),
                                            ([str(binaries() / "quoddle"), "quit", "Server"], refusing + "on run\nend run", 1, "refused")]:
            process = self.launch(self.make("Server", source))
            until(lambda: self.running() == 1, "the applet to be found")
            harness.until_at_rest(process.pid)
            asked = subprocess.run(words, env=self.environment, capture_output=True, text=True, timeout=60)
            self.assertEqual((asked.returncode, said in asked.stderr), (status, True), asked.stderr)
            if status == 0:
                until(lambda: process.poll() is not None, "the applet to end")
            else:
                self.assertIsNone(process.poll())
                process.kill()
                process.wait()
            until(lambda: self.running() == 0, "nothing to run")
            self.assertIn("no such applet is running", self.call("quoddle", "quit", "Server").stderr)

    def test_a_notification_can_be_all_there_is_of_an_applet(self):
        service = subprocess.Popen(["/usr/bin/python3", "-c", NOTIFICATIONS], env=self.environment, stdout=subprocess.PIPE, text=True)
        self.processes.append(service)
        self.assertEqual(service.stdout.readline(), "ready\n")
        server = self.make("Server", 'on run\nend run\non idle\ndisplay notification "Well?"\nreturn 100\nend idle')
        subprocess.run(["convert", "-size", "128x128", "xc:#20c040", str(server / "Contents/Resources/applet.png")], check=True)
        settings = server / "Contents/Info.plist"
        settings.write_bytes(plistlib.dumps(plistlib.loads(settings.read_bytes()) | {"CFBundleIconFile": "applet"}))
        entry = self.install(server)
        process = self.launch(server)
        self.assertEqual(service.stdout.readline(), f"['quit', 'Quit'] '' (64, 64, 256, True, 8, 4) 20c040ff {entry.stem}\n")
        until(lambda: process.poll() is not None, "the applet to end")
        self.assertEqual(process.returncode, 0)
        # Notifications of an applet with a window and of a script without applet offer no button.
        self.launch(self.make("Seen", 'on run\nset progress total steps to 3\ndisplay notification "Well?"\ndelay 3600\nend run', []))
        self.assertEqual(service.stdout.readline(), "[] '' (64, 64, 256, True, 8, 4) 00000000 None\n")
        self.call("osascript", "-e", 'display notification "Well?"')
        self.assertEqual(service.stdout.readline(), "[] 'dialog-information' None None None\n")
        service.stdout.close()

    def test_uninstalling_ends_what_the_bus_knows(self):
        entry = self.install(self.make("Server"))
        self.assertEqual(self.call("quoddle", "uninstall", "Server").returncode, 0)
        self.assertIn("ServiceUnknown", self.ask(entry, "Activate", "{}"))


if __name__ == "__main__":
    harness.main(Desktop)
