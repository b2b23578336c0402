# SPDX-License-Identifier: MIT
"""A new user's home and folder, in which command lines of the documents are typed."""
import os
import pathlib
import re
import shutil
import subprocess
import tempfile

OF_THE_DESKTOP = ("DBUS_SESSION_BUS_ADDRESS", "XDG_DATA_HOME", "WAYLAND_DISPLAY", "DISPLAY")


def pattern_of(shown):
    """A pattern for a shown output; "…" stands for anything."""
    return "^(?s:" + ".*".join(re.escape(part) for part in shown.split("…")) + ")$"


class Workplace:
    """Is removed when the test ends."""

    def __init__(self, test, programs):
        whole = pathlib.Path(tempfile.mkdtemp())
        test.addCleanup(shutil.rmtree, whole, ignore_errors=True)
        (whole / "run").mkdir(mode=0o700)
        self.home = whole / "home"
        self.home.mkdir()
        self.folder = whole / "work"
        self.folder.mkdir()
        self.environment = {k: v for k, v in os.environ.items() if k not in OF_THE_DESKTOP} | {
            "HOME": str(self.home), "XDG_RUNTIME_DIR": str(whole / "run"), "LC_ALL": "C.UTF-8", "PATH": f"{programs}:{os.environ['PATH']}"}

    def type(self, line, needs_display=False, typed=""):
        """Runs a line; `typed` is what stands on standard input then. Errors are in its stdout too."""
        command = ["xvfb-run", "-a"] if needs_display else []
        return subprocess.run([*command, "bash", "-c", line], cwd=self.folder, env=self.environment, input=typed, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True, timeout=120)
