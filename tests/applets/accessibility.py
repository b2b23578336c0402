# SPDX-License-Identifier: MIT
"""Windows as a screen reader sees them: a session bus with the accessibility service, and controls found by name.

Use it as   class Tests(accessibility.AccessibleCase)   and run the file as harness.main does; it starts itself anew with the Python that the system's packages are for.
"""
import os
import subprocess
import sys
import time

try:
    import gi
    gi.require_version("Atspi", "2.0")
except (ImportError, ValueError):
    if sys.executable == "/usr/bin/python3":
        raise
    os.execv("/usr/bin/python3", ["/usr/bin/python3", *sys.argv])

import harness
from harness import until


ASKING = """
on jot(what)
	do shell script "echo " & quoted form of what & " >> FOLDER/noted"
end jot
on run
	try
		ASK
	on error message number n
		jot("error " & n)
	end try
end run
"""


class AccessibleCase(harness.AppletCase):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        environment = cls.display.environment
        cls.bus = harness.SessionBus(environment)
        environment.update(DBUS_SESSION_BUS_ADDRESS=cls.bus.address, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        cls.launcher = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        subprocess.run(["gdbus", "wait", "--session", "--timeout", str(harness.DEADLINE), "org.a11y.Bus"], env=environment, check=True)
        os.environ.update({name: environment[name] for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS")})
        from gi.repository import Atspi
        Atspi.init()
        cls.atspi = Atspi

    @classmethod
    def tearDownClass(cls):
        cls.launcher.terminate()
        cls.launcher.wait()
        cls.bus.close()
        super().tearDownClass()

    def showing(self):
        """(control, its name, its role) of everything on the screen, the first 100 of each container."""
        waiting = [self.atspi.get_desktop(0)]
        while waiting:
            control = waiting.pop(0)
            try:
                if control is None:
                    continue
                role = control.get_role_name()
                if not control.get_state_set().contains(self.atspi.StateType.SHOWING) and role not in ("application", "dialog", "frame", "desktop frame"):
                    continue
                waiting += [control.get_child_at_index(i) for i in range(min(control.get_child_count(), 100))]
                found = control, control.get_name(), role
            except gi.repository.GLib.Error:
                continue  # it has gone in the meantime
            yield found

    def shown(self, name, role=None):
        """The control, or None."""
        return next((control for control, called, kind in self.showing() if called == name and role in (None, kind)), None)

    def find(self, name, role=None):
        return until(lambda: self.shown(name, role), f"{role or 'control'} “{name}”")

    def middle(self, control):
        area = control.get_extents(self.atspi.CoordType.SCREEN)
        return area.x + area.width // 2, area.y + area.height // 2

    def is_enabled(self, control):
        return control.get_state_set().contains(self.atspi.StateType.ENABLED)

    # An applet that asks when it is launched, and writes down what comes of it.

    def ask(self, name, question, handlers="", **more):
        self.applet = self.start(name, handlers + ASKING.replace("ASK", question), **more)
        return self.applet

    def click(self, control, *options):
        """Where it stays: a window that has just been shown is still being put in its place."""
        places = [None]

        def stays():
            places.append(self.middle(control))
            time.sleep(0.05)
            return places[-1] == places[-2]

        until(stays, "the control to stay in its place")
        self.applet.xdotool("mousemove", *map(str, places[-1]))
        time.sleep(0.1)
        self.applet.xdotool("click", *options, "1")

    def picture(self, label):
        time.sleep(0.4)
        self.applet.picture(label)

    def noted(self, text):
        until(lambda: text in self.applet.said("noted"), f"{text!r} to be noted; there is {self.applet.said('noted')!r}")
        self.applet.ends()
