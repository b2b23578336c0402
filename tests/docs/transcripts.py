#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The guide does what it says: its files are written and its command lines run, in their order and in one folder.

    transcripts.py BIN

"into `NAME`:" before a block of source names a file. An indented line that begins with "$ " is typed; the lines below it are what it prints.
"…" stands for anything.
"""
import pathlib
import re
import sys
import unittest

from workplace import Workplace, pattern_of

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
            place = Workplace(self, BIN)
            taken = 0
            for kind, what, content in steps(page.read_text()):
                with self.subTest(page=page.name, what=what):
                    if kind == "file":
                        (place.folder / what).write_text(content)
                        continue
                    done = place.type(what, needs_display=what.startswith("quoddle run"))
                    self.assertRegex(done.stdout.rstrip("\n"), pattern_of(content))
                    taken += 1
            self.assertGreater(taken, 10, "the page's steps are not found")


if __name__ == "__main__":
    BIN = pathlib.Path(sys.argv.pop(1)).resolve()
    unittest.main(verbosity=2)
