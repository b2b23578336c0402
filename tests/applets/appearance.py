#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""End to end: windows are dark or light and have the accent that the desktop's portal says, and follow it; seen in the colours on the screen.

    appearance.py BIN [PATTERN]
"""
import subprocess
import sys

import accessibility
import harness
from harness import until

# A portal that tells its settings. Each line on its standard input is a Python expression (key, type, value): a setting that changes.
PORTAL = """
import sys
from gi.repository import Gio, GLib
XML = '''<node><interface name="org.freedesktop.portal.Settings"><method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/>
<arg type="v" direction="out"/></method><signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal></interface></node>'''
SPACE, PATH, INTERFACE = "org.freedesktop.appearance", "/org/freedesktop/portal/desktop", "org.freedesktop.portal.Settings"
settings, nan = {}, float("nan")
def called(connection, sender, path, interface, method, arguments, invocation):
    value = settings.get(arguments.unpack()[1])
    if value is None:
        return invocation.return_dbus_error("org.freedesktop.portal.Error.NotFound", "no such setting")
    invocation.return_value(GLib.Variant("(v)", (GLib.Variant("v", value),)))
def changed(channel, condition):
    line = sys.stdin.readline()
    if not line:
        sys.exit()
    key, kind, value = eval(line)
    settings[key] = GLib.Variant(kind, value)
    bus.emit_signal(None, PATH, INTERFACE, "SettingChanged", GLib.Variant("(ssv)", (SPACE, key, settings[key])))
    print("done", flush=True)
    return True
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(XML).interfaces[0], called)
GLib.io_add_watch(sys.stdin.fileno(), GLib.IO_IN | GLib.IO_HUP, changed)
Gio.bus_own_name_on_connection(bus, "org.freedesktop.portal.Desktop", 0, lambda *a: print("ready", flush=True), None)
GLib.MainLoop().run()
"""

WORKING = "set progress total steps to 2\nset progress completed steps to 1\ndelay 60"
DARK = "#2B2B2E"
USUAL = "#308CC6"  # the toolkit's own accent
ORANGE, ORANGE_SHARES = "#FF8000", (1.0, 128 / 255, 0.0)
TEAL, TEAL_SHARES = "#008080", (0.0, 128 / 255, 128 / 255)


class Appearance(accessibility.AccessibleCase):
    def setUp(self):
        super().setUp()
        self.portal = subprocess.Popen([sys.executable, "-c", PORTAL], env=self.display.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        self.addCleanup(lambda: (self.portal.kill(), self.portal.communicate()))
        self.assertEqual(self.portal.stdout.readline(), "ready\n")

    def set(self, key, kind, value):
        print((key, kind, value), file=self.portal.stdin, flush=True)
        self.assertEqual(self.portal.stdout.readline(), "done\n")

    def colors(self, applet):
        """Answers the number of pixels of each colour in the applet's window, on a Wayland desktop of all windows."""
        window = applet.window()
        command = ["grim", "-t", "ppm", "-"] if self.is_wayland else ["import", "-window", str(window), "-depth", "8", "ppm:-"]
        picture = subprocess.run(command, env=self.display.environment, capture_output=True).stdout.split(b"\n", 3)[-1]
        counts = {}
        for at in range(0, len(picture), 3):
            color = "#" + picture[at:at + 3].hex().upper()
            counts[color] = counts.get(color, 0) + 1
        return counts

    def comes(self, applet, color):
        until(lambda: self.colors(applet).get(color, 0) > 100, f"{color} in the window")

    def goes(self, applet, color):
        until(lambda: self.colors(applet).get(color, 0) == 0, f"the window without {color}")

    def test_the_desktop_is_followed(self):
        self.set("color-scheme", "u", 1)
        self.set("accent-color", "(ddd)", ORANGE_SHARES)
        applet = self.start("Working", WORKING)
        self.comes(applet, DARK)
        self.comes(applet, ORANGE)
        self.set("accent-color", "(ddd)", TEAL_SHARES)
        self.comes(applet, TEAL)
        self.set("color-scheme", "u", 2)
        self.goes(applet, DARK)
        self.comes(applet, TEAL)  # whose text is light: only the accent is left of our colours

    def test_what_is_no_colour_takes_the_accent_away(self):
        for kind, value in [("(ddd)", (-1.0, -1.0, -1.0)), ("(ddd)", (2.0, 0.0, 0.0)), ("(ddd)", (float("nan"),) * 3), ("(dd)", (1.0, 1.0)), ("s", "red")]:
            with self.subTest(value=value):
                self.set("accent-color", "(ddd)", TEAL_SHARES)
                applet = self.start("Working", WORKING)
                self.comes(applet, TEAL)
                self.set("accent-color", kind, value)
                self.comes(applet, USUAL)
                applet.kill()

    def test_the_last_wish_is_remembered(self):
        self.set("accent-color", "(ddd)", TEAL_SHARES)
        applet = self.start("Working", WORKING)
        self.comes(applet, TEAL)
        applet.key("ctrl+q")
        applet.ends()
        self.portal.kill()
        self.portal.wait()
        applet.launch()
        self.comes(applet, TEAL)


if __name__ == "__main__":
    harness.main(Appearance)
