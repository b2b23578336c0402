# SPDX-License-Identifier: MIT
"""The parts that the end-to-end tests share: a display, applets made by osacompile from source, and their use by keyboard, signals and
scripts."""
import os
import pathlib
import plistlib
import re
import shutil
import subprocess
import sys
import tempfile
import time
import unittest

from displays import Display, WaylandDesktop, dies_with_us
from waiting import DEADLINE, until, until_at_rest

_binaries = None


def binaries():
    """Answers the folder that holds osacompile and quoddle-shell."""
    return _binaries


class SessionBus:
    """A session bus that starts the services in the user's own folder, `XDG_DATA_HOME`. The ones that are installed on the machine are not
    started, because their daemons would answer where a test wants no answer."""

    def __init__(self, environment):
        self.folder = tempfile.TemporaryDirectory()
        config = pathlib.Path(self.folder.name, "session.conf")
        config.write_text(f"""<busconfig><type>session</type><keep_umask/><listen>unix:dir={self.folder.name}</listen><auth>EXTERNAL</auth>
            <servicedir>{environment.get("XDG_DATA_HOME", self.folder.name)}/dbus-1/services</servicedir>
            <policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/><allow own="*"/></policy></busconfig>""")
        self.daemon = subprocess.Popen(["dbus-daemon", f"--config-file={config}", "--nofork", "--print-address"], env=environment,
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, preexec_fn=dies_with_us)
        self.address = self.daemon.stdout.readline().strip()

    def close(self):
        self.daemon.terminate()
        self.daemon.communicate()
        self.folder.cleanup()


class Applet:
    def __init__(self, case, name, source, options=(), files=(), info=None, prepare=None):
        """`info` are further entries of the Info.plist. `prepare` is called with the bundle before it is launched."""
        self.case = case
        self.name = name
        self.folder = case.folder
        bundle = self.folder / (name + ".app")
        script = self.folder / (name + ".applescript")
        script.write_text(source.replace("FOLDER", str(self.folder)), encoding="utf-8")
        made = subprocess.run([str(binaries() / "osacompile"), *options, "-o", str(bundle), str(script)], capture_output=True, text=True)
        case.assertEqual(made.returncode, 0, made.stderr)
        if info:
            plist = bundle / "Contents/Info.plist"
            plist.write_bytes(plistlib.dumps(plistlib.loads(plist.read_bytes()) | info))
        if prepare:
            prepare(bundle)
        self.launch(*files)
        case.addCleanup(self.kill)

    def launch(self, *files):
        """Launches the applet, also again after it has ended."""
        program = self.folder / (self.name + ".app") / "Contents/Linux" / self.name
        self.process = subprocess.Popen([str(program), *files], env=self.environment(), stderr=open(self.folder / (self.name + ".log"), "w"))

    def environment(self):
        """Answers an environment with a home folder and a place to meet other applets, which all applets of a test share."""
        runtime = self.folder / "run"
        runtime.mkdir(mode=0o700, exist_ok=True)
        return dict(self.case.display.environment, HOME=str(self.folder), XDG_CONFIG_HOME=str(self.folder / "config"),
                    XDG_DATA_HOME=str(self.folder / "data"), XDG_RUNTIME_DIR=str(runtime), QUODDLE_SHELL=str(binaries() / "quoddle-shell"))

    def kill(self):
        if self.process.poll() is None:
            self.process.kill()
        self.process.wait()

    def xdotool(self, *words):
        self.case.needs_x_server()
        return self.case.display.tool(*words)

    def windows(self):
        """Answers the applet's windows on the screen, the newest last."""
        return self.case.display.windows(self.name)

    def window(self):
        return until(self.windows, "a window of " + self.name)[-1]

    def picture(self, label):
        folder = os.environ.get("QUODDLE_ARTEFACTS")
        if folder:
            pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
            self.case.display.picture(os.path.join(folder, self.name + "-" + label + ".png"))

    def key(self, name):
        """Presses a key in the applet's window."""
        self.case.display.focus(self.window())
        self.press(name)

    def press(self, *keys):
        """Presses keys in whichever window has the keyboard."""
        self.case.display.press(*keys)

    def type(self, text):
        self.case.display.type(text)

    def ends(self, within=DEADLINE):
        return until(lambda: self.process.poll() is not None, self.name + " to end", within)

    def rests(self):
        """Waits until the handlers have ended and the applet has done what follows, because a quit that comes while a handler ends is
        refused."""
        until_at_rest(self.process.pid)

    def said(self, file):
        path = self.folder / file
        return path.read_text() if path.exists() else ""


class AppletCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.is_wayland = os.environ.get("QUODDLE_TEST_DESKTOP") == "wayland"
        cls.display = WaylandDesktop(binaries()) if cls.is_wayland else Display()

    @classmethod
    def tearDownClass(cls):
        cls.display.close()

    def setUp(self):
        self.applets = {}
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def needs_x_server(self):
        """Leaves a test out that moves windows or gives one the keyboard, or asks where windows are, which Wayland keeps to itself."""
        if self.is_wayland:
            self.skipTest("a Wayland desktop does not let a program do that")

    def in_front(self):
        """Answers the title of the window that has the keyboard; empty when none has."""
        front = self.display.front()
        return self.display.title(front) if front else ""

    def start(self, name, source, **more):
        self.applets[name] = Applet(self, name, source, **more)
        return self.applets[name]

    def osascript(self, *arguments, **more):
        applet = next(iter(self.applets.values()), None)
        environment = applet.environment() if applet else self.display.environment
        return subprocess.run([str(binaries() / "osascript"), *arguments], env=environment, capture_output=True, text=True, timeout=60, **more)


def main(case):
    """Runs the tests of one class; the command line is FILE BIN [PATTERN]."""
    global _binaries
    _binaries = pathlib.Path(sys.argv[1]).resolve()
    pattern = sys.argv[2] if len(sys.argv) > 2 else ""
    suite = unittest.TestSuite(t for t in unittest.defaultTestLoader.loadTestsFromTestCase(case) if re.search(pattern, t.id()))
    sys.exit(not unittest.TextTestRunner(verbosity=2).run(suite).wasSuccessful())
