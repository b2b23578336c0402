# SPDX-License-Identifier: MIT
"""The parts that the end-to-end tests share: a display, applets made by osacompile from source, and their use by keyboard, signals and
scripts."""
import ctypes
import json
import os
import pathlib
import plistlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

_binaries = None


def binaries():
    """Answers the folder that holds osacompile and quoddle-shell."""
    return _binaries


DEADLINE = 15  # seconds for anything to happen; a sanitized build is slow


def until(condition, what, deadline=DEADLINE):
    end = time.monotonic() + deadline
    while time.monotonic() < end:
        value = condition()
        if value:
            return value
        time.sleep(0.02)
    raise AssertionError("timed out: " + what)


def _work_of(pid):
    """Answers the processor time that a process has used; None while one of its threads wants the processor, or it has a child process."""
    used = 0
    try:
        for task in pathlib.Path(f"/proc/{pid}/task").iterdir():
            fields = (task / "stat").read_text().rpartition(")")[2].split()
            if fields[0] != "S" or (task / "children").read_text():
                return None
            used += int(fields[11]) + int(fields[12])
    except (FileNotFoundError, ProcessLookupError):  # a thread has ended, or all of them have
        return None if pathlib.Path(f"/proc/{pid}").exists() else 0
    return used


def until_at_rest(pid, seconds=0.08):
    """Waits until a process has slept for so long, so that nothing is under way in it. That holds on a busy machine, too, because a thread
    with something to do is not asleep there."""
    last, since = None, time.monotonic()

    def rests():
        nonlocal last, since
        used = _work_of(pid)
        if used is None or used != last:
            last, since = used, time.monotonic()
        return time.monotonic() - since >= seconds

    until(rests, f"process {pid} to come to rest")


def _dies_with_us():
    """Makes a server end with the test run, because nobody would end it when the run is killed."""
    ctypes.CDLL(None).prctl(1, signal.SIGTERM)  # PR_SET_PDEATHSIG


class Display:
    """An X server and a window manager that has begun to manage it."""

    def __init__(self, size="1024x640"):
        read, write = os.pipe()
        # Without -noreset a server starts over when its last client leaves, and takes a window manager that is just connecting with it.
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", size + "x24", "-nolisten", "tcp", "-noreset"],
                                       pass_fds=[write], stderr=subprocess.DEVNULL, preexec_fn=_dies_with_us)
        os.close(write)
        number = os.fdopen(read).readline().strip()
        # Tests have no session bus but one that they make. The user's own must not be used, and a library that finds none would launch one,
        # which stays.
        self.environment = dict(os.environ, DISPLAY=":" + number, QT_QPA_PLATFORM="xcb", LC_ALL="C.UTF-8", DBUS_SESSION_BUS_ADDRESS="disabled:",
                                # With such long pauses, only a wake can end a wait in time.
                                QUODDLE_LONGEST_PAUSE=str(4 * DEADLINE))
        self.manager = subprocess.Popen(["openbox"], env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=_dies_with_us)
        until(self._is_managed, "the window manager")

    def _is_managed(self):
        if self.manager.poll() is not None:
            raise AssertionError(f"openbox ended with {self.manager.returncode}")
        said = subprocess.run(["xprop", "-root", "_NET_SUPPORTING_WM_CHECK"], env=self.environment, capture_output=True, text=True).stdout
        return "window id" in said

    def close(self):
        for process in (self.manager, self.server):
            process.terminate()
            process.wait()


class WaylandDesktop:
    """A Wayland desktop without a screen and without an X server. Programs cannot place their windows there, nor learn where these are; keys
    go to the window that has the keyboard, and a pointer that a test could move is not there."""
    NOBODY = 65534  # sway does not run as root

    def __init__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.folder.chmod(0o700)
        settings = self.folder / "settings"
        settings.write_text("xwayland disable\nfor_window [title=\".*\"] floating enable\n")
        nobody = {"user": self.NOBODY, "group": self.NOBODY, "extra_groups": []} if os.getuid() == 0 else {}
        if nobody:
            os.chown(self.folder, self.NOBODY, self.NOBODY)
        kept = {name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM")}
        base = dict(kept, XDG_RUNTIME_DIR=str(self.folder), LC_ALL="C.UTF-8", DBUS_SESSION_BUS_ADDRESS="disabled:", QUODDLE_LONGEST_PAUSE=str(4 * DEADLINE))
        self.server = subprocess.Popen(["sway", "-c", str(settings)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **nobody, preexec_fn=_dies_with_us,
                                       env=dict(base, WLR_BACKENDS="headless", WLR_RENDERER="pixman", WLR_LIBINPUT_NO_DEVICES="1"))
        socket = until(lambda: [path for path in self.folder.glob("wayland-*") if path.suffix != ".lock"], "the Wayland desktop")[0]
        control = until(lambda: list(self.folder.glob("sway-ipc.*.sock")), "the desktop's controls")[0]
        self.environment = dict(base, WAYLAND_DISPLAY=str(socket), SWAYSOCK=str(control))
        # Windows take note of a keyboard that is there; one that comes with its first key would not be heard.
        self.keyboard = subprocess.Popen(["wtype", "-s", "3600000"], env=self.environment, preexec_fn=_dies_with_us)

    def close(self):
        self.keyboard.kill()
        self.keyboard.wait()
        self.server.terminate()
        self.server.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def windows(self):
        """Answers (number, title) of each window."""
        said = subprocess.run(["swaymsg", "-t", "get_tree"], env=self.environment, capture_output=True, text=True).stdout
        waiting, found = [json.loads(said or "{}")], []
        while waiting:
            node = waiting.pop()
            waiting += node.get("nodes", []) + node.get("floating_nodes", [])
            if node.get("pid"):
                found.append((str(node["id"]), node["name"]))
        return found

    def key(self, window, name):
        """Presses a key, called as in "ctrl+q"."""
        subprocess.run(["swaymsg", f"[con_id={window}]", "focus"], env=self.environment, stdout=subprocess.DEVNULL, check=True)
        if name == "alt+F4":  # a key of the desktop's, which has none here
            subprocess.run(["swaymsg", f"[con_id={window}]", "kill"], env=self.environment, stdout=subprocess.DEVNULL, check=True)
            return
        *held, key = name.split("+")
        subprocess.run(["wtype", *(word for each in held for word in ("-M", each)), "-k", key], env=self.environment, check=True)


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
                                       stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, preexec_fn=_dies_with_us)
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
        return subprocess.run(["xdotool", *words], env=self.case.display.environment, capture_output=True, text=True).stdout.split()

    def window(self):
        if self.case.is_wayland:
            return until(lambda: [number for number, title in self.case.display.windows() if title == self.name], "a window of " + self.name)[-1]
        return until(lambda: self.xdotool("search", "--onlyvisible", "--name", "^" + self.name + "$"), "a window of " + self.name)[-1]

    def picture(self, label):
        folder = os.environ.get("QUODDLE_ARTEFACTS")
        if folder:
            pathlib.Path(folder).mkdir(parents=True, exist_ok=True)
            if self.case.is_wayland:
                subprocess.run(["grim", os.path.join(folder, self.name + "-" + label + ".png")], env=self.case.display.environment)
                return
            subprocess.run(["import", "-window", "root", os.path.join(folder, self.name + "-" + label + ".png")], env=self.case.display.environment)

    def key(self, name):
        window = self.window()
        if self.case.is_wayland:
            return self.case.display.key(window, name)
        self.xdotool("windowfocus", "--sync", window)
        self.xdotool("key", name)

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
        cls.display = WaylandDesktop() if cls.is_wayland else Display()
        if cls.is_wayland:
            cls.display.environment["QT_QPA_PLATFORM"] = "wayland"

    @classmethod
    def tearDownClass(cls):
        cls.display.close()

    def setUp(self):
        self.applets = {}
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)

    def needs_x_server(self):
        """Leaves a test out that moves windows, the pointer or the keyboard's focus, or asks where they are, which Wayland keeps to itself."""
        if self.is_wayland:
            self.skipTest("a Wayland desktop does not let a program do that")

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
