# SPDX-License-Identifier: MIT
"""The two desktops on which applets are tested, which are used in the same way: by keys, and by the titles of windows."""
import ctypes
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import tempfile

from waiting import DEADLINE, until


def dies_with_us():
    """Makes a server end with the test run, because nobody would end it when the run is killed."""
    ctypes.CDLL(None).prctl(1, signal.SIGTERM)  # PR_SET_PDEATHSIG


class Display:
    """An X server and a window manager that has begun to manage it. Windows are known by numbers, as on the other desktop."""

    def __init__(self, size="1024x640"):
        read, write = os.pipe()
        # Without -noreset a server starts over when its last client leaves, and takes a window manager that is just connecting with it.
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", size + "x24", "-nolisten", "tcp", "-noreset"],
                                       pass_fds=[write], stderr=subprocess.DEVNULL, preexec_fn=dies_with_us)
        os.close(write)
        number = os.fdopen(read).readline().strip()
        # Tests have no session bus but one that they make. The user's own must not be used, and a library that finds none would launch one,
        # which stays.
        self.environment = dict(os.environ, DISPLAY=":" + number, QT_QPA_PLATFORM="xcb", LC_ALL="C.UTF-8", DBUS_SESSION_BUS_ADDRESS="disabled:",
                                # With such long pauses, only a wake can end a wait in time.
                                QUODDLE_LONGEST_PAUSE=str(4 * DEADLINE))
        self.manager = subprocess.Popen(["openbox"], env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=dies_with_us)
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

    def tool(self, *words):
        """Answers the words that xdotool says."""
        return subprocess.run(["xdotool", *words], env=self.environment, capture_output=True, text=True).stdout.split()

    def windows(self, title):
        """Answers the windows on the screen with a title, the newest last."""
        return self.tool("search", "--onlyvisible", "--name", "^" + re.escape(title) + "$")

    def number_of_windows(self):
        """Answers the number of all windows."""
        return subprocess.run(["xprop", "-root", "_NET_CLIENT_LIST"], env=self.environment, capture_output=True, text=True).stdout.count("0x")

    def front(self):
        """Answers the window that is in front; None when there is none."""
        return next(iter(self.tool("getactivewindow")), None)

    def title(self, window):
        return " ".join(self.tool("getwindowname", window))

    def focus(self, window):
        self.tool("windowfocus", "--sync", window)

    def press(self, *keys):
        """Presses keys, called as in "ctrl+q", one after the other."""
        self.tool("key", *keys)

    def type(self, text):
        self.tool("type", "--delay", "15", text)

    def picture(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.environment)


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
        self.server = subprocess.Popen(["sway", "-c", str(settings)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **nobody, preexec_fn=dies_with_us,
                                       env=dict(base, WLR_BACKENDS="headless", WLR_RENDERER="pixman", WLR_LIBINPUT_NO_DEVICES="1"))
        socket = until(lambda: [path for path in self.folder.glob("wayland-*") if path.suffix != ".lock"], "the Wayland desktop")[0]
        control = until(lambda: list(self.folder.glob("sway-ipc.*.sock")), "the desktop's controls")[0]
        self.environment = dict(base, QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY=str(socket), SWAYSOCK=str(control))
        # Windows take note of a keyboard that is there; one that comes with its first key would not be heard.
        self.keyboard = subprocess.Popen(["wtype", "-s", "3600000"], env=self.environment, preexec_fn=dies_with_us)

    def close(self):
        self.keyboard.kill()
        self.keyboard.wait()
        self.server.terminate()
        self.server.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def _nodes(self):
        """Yields the nodes of the desktop that are windows."""
        said = subprocess.run(["swaymsg", "-t", "get_tree"], env=self.environment, capture_output=True, text=True).stdout
        waiting = [json.loads(said or "{}")]
        while waiting:
            node = waiting.pop()
            waiting += node.get("nodes", []) + node.get("floating_nodes", [])
            if node.get("pid"):
                yield node

    def windows(self, title):
        return sorted(node["id"] for node in self._nodes() if node["name"] == title)

    def number_of_windows(self):
        return len(list(self._nodes()))

    def front(self):
        return next((node["id"] for node in self._nodes() if node["focused"]), None)

    def title(self, window):
        return next((node["name"] for node in self._nodes() if node["id"] == window), "")

    def focus(self, window):
        subprocess.run(["swaymsg", f"[con_id={window}]", "focus"], env=self.environment, stdout=subprocess.DEVNULL, check=True)

    def press(self, *keys):
        for key in keys:
            if key == "alt+F4":  # a key of the desktop's, which has none here
                subprocess.run(["swaymsg", "kill"], env=self.environment, stdout=subprocess.DEVNULL, check=True)
                continue
            *held, name = key.split("+")
            named = ["-k", name] if len(name) > 1 else ["--", name]  # a capital needs the shift key, which only typing presses
            subprocess.run(["wtype", *(word for each in held for word in ("-M", each)), *named], env=self.environment, check=True)

    def type(self, text):
        subprocess.run(["wtype", "-d", "15", text], env=self.environment, check=True)

    def picture(self, path):
        subprocess.run(["grim", path], env=self.environment)
