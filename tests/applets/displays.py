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

    def __init__(self, size=(1024, 640)):
        self.size = size
        read, write = os.pipe()
        # Without -noreset a server starts over when its last client leaves, and takes a window manager that is just connecting with it.
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "{}x{}x24".format(*size), "-nolisten", "tcp", "-noreset"],
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

    def point(self, *places):
        """Moves the pointer, from one place on the screen to the next."""
        self.tool(*(str(word) for x, y in places for word in ("mousemove", round(x), round(y))))

    def hold(self):
        """Presses the left button, which stays down."""
        self.tool("mousedown", "1")

    def let_go(self):
        self.tool("mouseup", "1")

    def picture(self, path):
        subprocess.run(["import", "-window", "root", path], env=self.environment)

    def pixels(self, x, y, width, height):
        """Answers the colours on the screen, three bytes for each pixel."""
        return subprocess.run(["import", "-window", "root", "-crop", f"{width}x{height}+{x}+{y}", "-depth", "8", "rgb:-"], env=self.environment,
                              capture_output=True, check=True).stdout


class WaylandDesktop:
    """A Wayland desktop without a screen and without an X server. Programs cannot place their windows there, nor learn where these are; keys
    go to the window that has the keyboard."""
    NOBODY = 65534  # sway does not run as root
    size = 1280, 720

    def __init__(self, programs=None):
        """The folder of programs has the one that is the pointer."""
        self.programs, self.pointer = programs, None
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.folder.chmod(0o700)
        settings = self.folder / "settings"
        settings.write_text("xwayland disable\nfor_window [title=\".*\"] floating enable\n"
                            "for_window [app_id=\"dragsource\"] border none, move position 0 0\nno_focus [app_id=\"dragsource\"]\n")
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
        for process in (self.keyboard, self.pointer):
            if process:
                process.kill()
                process.wait()
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

    def _pointer_does(self, what):
        if not self.pointer:
            self.pointer = subprocess.Popen([self.programs / "waylandpointer"], env=self.environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
                                            bufsize=1, preexec_fn=dies_with_us)
        self.pointer.stdin.write(what + "\n")
        if self.pointer.stdout.readline() != "done\n":
            raise AssertionError("the pointer cannot " + what)

    def point(self, *places):
        for x, y in places:
            self._pointer_does(f"move {round(x)} {round(y)} {self.size[0]} {self.size[1]}")

    def hold(self):
        self._pointer_does("press")

    def let_go(self):
        self._pointer_does("release")

    def content(self):
        """Answers where the window in front is without its frame, as x, y, width and height; None when there is none, or when its frame has
        not been drawn yet."""
        for node in self._nodes():
            if node["focused"] and node["deco_rect"]["height"]:
                outer, inner = node["rect"], node["window_rect"]
                return outer["x"] + inner["x"], outer["y"] + inner["y"], inner["width"], inner["height"]
        return None

    def picture(self, path):
        subprocess.run(["grim", path], env=self.environment)

    def pixels(self, x, y, width, height):
        shot = subprocess.run(["grim", "-g", f"{x},{y} {width}x{height}", "-t", "ppm", "-"], env=self.environment, capture_output=True, check=True).stdout
        return shot[-3 * width * height:]
