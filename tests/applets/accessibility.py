# SPDX-License-Identifier: MIT
"""Windows as a screen reader sees them: a session bus with the accessibility service, and controls found by name.

Test classes inherit from accessibility.AccessibleCase and their files are run by harness.main. This module starts the file again with the
system's Python, for which the packages of the accessibility library are installed.
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
        width, height = cls.display.size
        cls.display.point((width - 1, height - 1))  # from now on there is a pointer, which windows take note of when they appear
        environment = cls.display.environment
        cls.bus = harness.SessionBus(environment)
        environment.update(DBUS_SESSION_BUS_ADDRESS=cls.bus.address, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        cls.launcher = subprocess.Popen(["/usr/libexec/at-spi-bus-launcher", "--launch-immediately"], env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        subprocess.run(["gdbus", "wait", "--session", "--timeout", str(harness.DEADLINE), "org.a11y.Bus"], env=environment, check=True)
        os.environ.update({name: environment[name] for name in ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS") if name in environment})
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
        """Yields (control, its name, its role) for everything on the screen, the first 100 of each container."""
        waiting = [self.atspi.get_desktop(0)]
        while waiting:
            control = waiting.pop(0)
            try:
                if control is None:
                    continue
                role = control.get_role_name()
                role = "push button" if role == "button" else role  # the word of newer libraries
                if not control.get_state_set().contains(self.atspi.StateType.SHOWING) and role not in ("application", "dialog", "frame", "desktop frame"):
                    continue
                waiting += [control.get_child_at_index(i) for i in range(min(control.get_child_count(), 100))]
                found = control, control.get_name(), role
            except gi.repository.GLib.Error:
                continue  # the control has gone in the meantime
            yield found

    def shown(self, name, role=None):
        """Answers the control, or None when it is not shown."""
        return next((control for control, called, kind in self.showing() if called == name and role in (None, kind)), None)

    def find(self, name, role=None):
        return until(lambda: self.shown(name, role), f"{role or 'control'} “{name}”")

    def area(self, control):
        """Answers where a control of the window in front is on the screen, as x, y, width and height, when it has come to rest: a desktop
        may still be moving a window that has just been shown."""
        places = [None]

        def stays():
            area = control.get_extents(self.atspi.CoordType.SCREEN)
            if self.is_wayland:  # windows do not know where they are, so places of controls are relative to where they think
                window, content = self.window_of(control).get_extents(self.atspi.CoordType.SCREEN), self.display.content()
                if not content or content[2:] != (window.width, window.height):  # another window is still in front
                    return False
                area.x, area.y = area.x - window.x + content[0], area.y - window.y + content[1]
            places.append((area.x, area.y, area.width, area.height))
            time.sleep(0.05)
            return places[-1] == places[-2] and area

        return until(stays, "the control to stay in its place")

    def window_of(self, control):
        above = control.get_parent()
        return control if above.get_role_name() == "application" else self.window_of(above)

    def middle(self, control):
        area = self.area(control)
        return area.x + area.width // 2, area.y + area.height // 2

    def is_enabled(self, control):
        return control.get_state_set().contains(self.atspi.StateType.ENABLED)

    # The following functions start an applet that asks a question when it is launched, and read what it notes of the answer.

    def ask(self, name, question, handlers="", **more):
        self.applet = self.start(name, handlers + ASKING.replace("ASK", question), **more)
        return self.applet

    def click(self, control, times=1):
        self.display.point(self.middle(control))
        time.sleep(0.1)
        for _ in range(times):
            self.display.hold()
            self.display.let_go()

    def picture(self, label):
        time.sleep(0.4)
        self.applet.picture(label)

    def noted(self, text):
        until(lambda: text in self.applet.said("noted"), f"{text!r} to be noted; there is {self.applet.said('noted')!r}")
        self.applet.ends()
