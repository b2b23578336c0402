#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The guide does what it says: its files are written and its command lines run, in their order and in one folder.

    transcripts.py BIN

"into `NAME`:" before a block of source names a file. An indented line that begins with "$ " is typed; the lines below it are what it prints.
"…" stands for anything.
"""
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

BIN = None
PAGES = [pathlib.Path(__file__).resolve().parents[2] / "docs" / name for name in ("guide.md",)]


def steps(page):
    """The page's steps: ("file", name, content) or ("typed", command, output)."""
    name, lines = None, page.splitlines()
    while lines:
        line = lines.pop(0)
        if found := re.search(r"into `([^`]+)`:$", line):
            name = found.group(1)
        elif line.startswith("```"):
            block = []
            while not lines[0].startswith("```"):
                block.append(lines.pop(0))
            lines.pop(0)
            if name:
                yield "file", name, "\n".join(block) + "\n"
            name = None
        elif line.startswith("    $ "):
            output = []
            while lines and lines[0].startswith("    ") and not lines[0].startswith("    $ "):
                output.append(lines.pop(0)[4:])
            yield "typed", line[6:], "\n".join(output)


class Transcripts(unittest.TestCase):
    def test_what_is_typed_prints_what_is_shown(self):
        for page in PAGES:
            folder = pathlib.Path(tempfile.mkdtemp())
            self.addCleanup(shutil.rmtree, folder)
            (folder / "run").mkdir(mode=0o700)
            home = folder / "home"
            home.mkdir()
            work = folder / "work"
            work.mkdir()
            environment = {k: v for k, v in os.environ.items() if k not in ("DBUS_SESSION_BUS_ADDRESS", "XDG_DATA_HOME", "WAYLAND_DISPLAY", "DISPLAY")} | {
                "HOME": str(home), "XDG_RUNTIME_DIR": str(folder / "run"), "LC_ALL": "C.UTF-8", "PATH": f"{BIN}:{os.environ['PATH']}"}
            taken = 0
            for kind, what, content in steps(page.read_text()):
                with self.subTest(page=page.name, what=what):
                    if kind == "file":
                        (work / what).write_text(content)
                        continue
                    # Only what opens a window needs a display.
                    command = ["xvfb-run", "-a"] if what.startswith("quoddle run") else []
                    done = subprocess.run([*command, "bash", "-c", what], cwd=work, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, timeout=120)
                    pattern = ".*".join(re.escape(part) for part in content.split("…"))
                    self.assertRegex(done.stdout.rstrip("\n"), f"^(?s:{pattern})$")
                    taken += 1
            self.assertGreater(taken, 10, "the page's steps are not found")


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
